// The named texts of a record: a fixed table of keys and an array of texts beside it. Records come
// by the hundred thousand, so a text is reached by its place; the key is for callers who ask by
// name.
#ifndef ORNWHATSNEW_UTILITY_KEYEDTEXTS_H_
#define ORNWHATSNEW_UTILITY_KEYEDTEXTS_H_

#include <algorithm>
#include <array>
#include <cstddef>
#include <stdexcept>
#include <string_view>

#include <ornwhatsnew/utility/SharedTypes.h>

namespace ornwhatsnew {

/// One text for each key of `kKeys`, an array of `std::string_view` with static storage. All keys
/// are always present, so a text is at worst empty.
template <const auto& kKeys>
class KeyedTexts {
 public:
  /// How many texts there are.
  static constexpr std::size_t kCount = kKeys.size();

  /// Empty texts.
  KeyedTexts() = default;

  /// Copies one text per key, in the table's order.
  explicit KeyedTexts(const std::array<std::string_view, kCount>& texts) {
    std::ranges::copy(texts, texts_.begin());
  }

  /// The text at a place of the table. REQUIRES: `place < kCount`.
  const UTF8String& operator[](std::size_t place) const noexcept { return texts_[place]; }
  /// The same, to be changed.
  UTF8String& operator[](std::size_t place) noexcept { return texts_[place]; }

  /// The text under a key. Throws `std::out_of_range` for a key that the table lacks.
  const UTF8String& At(std::string_view key) const {
    const auto found = std::ranges::find(kKeys, key);
    if (found == kKeys.end()) throw std::out_of_range("unordered_map::at: key not found");
    return texts_[static_cast<std::size_t>(found - kKeys.begin())];
  }

 private:
  std::array<UTF8String, kCount> texts_;
};

}  // namespace ornwhatsnew

#endif  // ORNWHATSNEW_UTILITY_KEYEDTEXTS_H_
