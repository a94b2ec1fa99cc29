// Which part of a text takes part in identities.
#ifndef ORNWHATSNEW_SRC_RULES_HASHABLEPORTION_H_
#define ORNWHATSNEW_SRC_RULES_HASHABLEPORTION_H_

#include <string_view>
#include <utility>

namespace ornwhatsnew {

/// What a localisation key begins with.
inline constexpr std::string_view kZStringPrefix = "$$$/";

/// Returns the result of `ExtractHashablePortion` without a copy, as two parts in order. The views
/// lead into `text` or a constant. Inline because every identity calls it for each of its fields.
inline std::pair<std::string_view, std::string_view> SplitHashablePortion(
    std::string_view text) noexcept {
  constexpr std::string_view kPrivatePrefix = "$$$/private/";
  if (!text.starts_with(kZStringPrefix)) return {text, {}};
  const std::size_t equals = text.find('=');
  if (equals == std::string_view::npos) return {text, {}};
  const std::string_view key = text.substr(0, equals);
  if (!key.starts_with(kPrivatePrefix)) return {key, {}};
  return {kZStringPrefix, key.substr(kPrivatePrefix.size())};
}

}  // namespace ornwhatsnew

#endif  // ORNWHATSNEW_SRC_RULES_HASHABLEPORTION_H_
