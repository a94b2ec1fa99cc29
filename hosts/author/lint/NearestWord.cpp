#include "hosts/author/lint/NearestWord.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <limits>
#include <numeric>
#include <vector>

#include <orncore/string/CaseMapping.h>
#include <orncore/string/Conversion.h>

namespace hosts::author {
namespace {

constexpr std::size_t kMaximumLength = 64;

bool IsSpaceOrInvisible(char16_t unit) {
  return unit <= u' ' || unit == 0xA0 || unit == 0xAD || (unit >= 0x2000 && unit <= 0x200F) ||
         unit == 0x2028 || unit == 0x2029 || unit == 0x202F || unit == 0x205F || unit == 0x2060 ||
         unit == 0x3000 || unit == 0xFEFF;
}

bool IsDash(char16_t unit) {
  return unit == u'_' || (unit >= 0x2010 && unit <= 0x2015) || unit == 0x2212 || unit == 0xFE58 ||
         unit == 0xFE63 || unit == 0xFF0D;
}

bool HasDigit(std::u16string_view text) {
  return std::ranges::any_of(text, [](char16_t unit) { return unit >= u'0' && unit <= u'9'; });
}

/// Returns the edit distance (optimal string alignment): the minimum number of insertions,
/// deletions, substitutions and transpositions that convert `a` to `b`. A transposition exchanges
/// two adjacent characters. No other operation changes these two characters or inserts a character
/// between them.
std::size_t EditDistance(std::u16string_view a, std::u16string_view b) {
  std::vector<std::size_t> previous(b.size() + 1);
  std::vector<std::size_t> beforePrevious(previous.size());
  std::vector<std::size_t> current(previous.size());
  std::iota(previous.begin(), previous.end(), 0);
  for (std::size_t i = 1; i <= a.size(); ++i) {
    current[0] = i;
    for (std::size_t j = 1; j <= b.size(); ++j) {
      const std::size_t replaced = previous[j - 1] + (a[i - 1] == b[j - 1] ? 0 : 1);
      current[j] = std::min({replaced, previous[j] + 1, current[j - 1] + 1});
      const bool isExchange = i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1];
      if (isExchange) current[j] = std::min(current[j], beforePrevious[j - 2] + 1);
    }
    beforePrevious.swap(previous);
    previous.swap(current);
  }
  return previous[b.size()];
}

std::size_t AllowedDistance(std::size_t length) {
  if (length < 3) return 0;
  if (length < 6) return 1;
  return length < 10 ? 2 : 3;
}

/// Returns 0 for equal strings, the edit distance for similar strings, and `kMaximumLength` if one
/// string begins with the other. In the last case, both strings must have at least three characters
/// and no digits. Returns `std::nullopt` for all other strings.
std::optional<std::size_t> Difference(std::u16string_view text, std::u16string_view word) {
  if (text == word) return 0;
  const std::size_t shorter = std::min(text.size(), word.size());
  const std::size_t longer = std::max(text.size(), word.size());
  // Keys with digits, such as ORN-12 and ORN-34, are often similar although both are correct. Allow
  // at most one difference.
  const std::size_t allowed = HasDigit(word) ? std::min<std::size_t>(1, AllowedDistance(shorter))
                                             : AllowedDistance(shorter);
  if (longer <= kMaximumLength && longer - shorter <= allowed) {
    const std::size_t distance = EditDistance(text, word);
    if (distance <= allowed) return distance;
  }
  const bool isPrefix = shorter >= 3 && text.substr(0, shorter) == word.substr(0, shorter);
  if (isPrefix && !HasDigit(text) && !HasDigit(word)) return kMaximumLength;
  return std::nullopt;
}

}  // namespace

std::u16string Fold(std::string_view text) {
  std::u16string folded = orncore::string::LowerCase(orncore::string::UTF8to16(text));
  std::erase_if(folded, IsSpaceOrInvisible);
  std::ranges::replace_if(folded, IsDash, u'-');
  return folded;
}

std::optional<std::string> NearestWord(std::string_view text,
                                       std::span<const std::string_view> words) {
  const std::u16string folded = Fold(text.substr(0, 4 * kMaximumLength));
  std::optional<std::string> nearest;
  std::size_t least = std::numeric_limits<std::size_t>::max();
  for (const std::string_view word : words) {
    const std::optional<std::size_t> difference = Difference(folded, Fold(word));
    if (!difference || *difference >= least) continue;
    least = *difference;
    nearest = word;
  }
  return folded.empty() ? std::nullopt : nearest;
}

std::string_view TrimSpaces(std::string_view text) {
  // Return early for performance: many rules call this function, and nearly all fields begin and
  // end with a printable ASCII character.
  const auto isPrintableASCII = [](char c) { return c > ' ' && c <= '~'; };
  if (!text.empty() && isPrintableASCII(text.front()) && isPrintableASCII(text.back())) return text;
  static constexpr std::array<std::string_view, 5> kSpaces = {" ", "\t", "\xC2\xA0", "\xE2\x80\xAF",
                                                              "\xE3\x80\x80"};
  const auto trimOne = [&text] {
    for (const std::string_view space : kSpaces) {
      if (text.starts_with(space)) return text.remove_prefix(space.size()), true;
      if (text.ends_with(space)) return text.remove_suffix(space.size()), true;
    }
    return false;
  };
  while (trimOne()) {
  }
  return text;
}

}  // namespace hosts::author
