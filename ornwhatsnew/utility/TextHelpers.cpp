#include <ornwhatsnew/utility/TextHelpers.h>

#include <algorithm>

#include <orncore/string/CaseMapping.h>
#include <orncore/string/Conversion.h>

#include "ornwhatsnew/src/rules/HashablePortion.h"
#include "ornwhatsnew/src/rules/Keywords.h"

namespace ornwhatsnew {
namespace {

constexpr bool IsAsciiByte(char c) {
  return static_cast<unsigned char>(c) < 0x80;
}

constexpr char LowerAscii(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c;
}

constexpr bool AreSameAscii(char a, char b) {
  return IsAsciiByte(a) && LowerAscii(a) == LowerAscii(b);
}

}  // namespace

bool IsZString(std::string_view text) noexcept {
  return text.starts_with(kZStringPrefix);
}

UTF8String ExtractHashablePortion(std::string_view text) {
  const auto [first, second] = SplitHashablePortion(text);
  UTF8String portion(first);
  portion += second;
  return portion;
}

bool CaseInsensitiveEqual(std::string_view a, std::string_view b) {
  // Compare ASCII byte by byte, because the lower case of an ASCII letter does not depend on its
  // neighbours. Other letters need the full mapping: their lower case can consist of several
  // characters, including ASCII letters.
  const auto [restOfA, restOfB] = std::ranges::mismatch(a, b, AreSameAscii);
  if (restOfA == a.end() || restOfB == b.end()) return restOfA == a.end() && restOfB == b.end();
  if (IsAsciiByte(*restOfA) && IsAsciiByte(*restOfB)) return false;
  return LowerCase8(a) == LowerCase8(b);
}

UTF8String LowerCase8(std::string_view text) {
  return orncore::string::LowerCaseUTF8(text);
}

bool IsSpecialCaseSection(std::string_view key) {
  return CaseInsensitiveEqual(key, keywords::kMisc) ||
         CaseInsensitiveEqual(key, keywords::kBugfix) || IsInternalSpecialCaseSection(key);
}

bool IsInternalSpecialCaseSection(std::string_view key) {
  return CaseInsensitiveEqual(key, keywords::kInternal) ||
         CaseInsensitiveEqual(key, keywords::kUnreviewedSection);
}

// Compatibility: the weight of a component depends on its distance from the last component.
// Therefore, 25.1 is less than 25.0.0 (docs/compatibility.md).
std::int64_t VersionNumber(std::string_view version) {
  std::uint64_t sum = 0;
  std::uint64_t weight = 1;
  for (;;) {
    const std::size_t dot = version.rfind('.');
    const bool isFirst = dot == std::string_view::npos;
    std::int64_t component = 0;
    orncore::string::StringToNumber(isFirst ? version : version.substr(dot + 1), component);
    sum += static_cast<std::uint64_t>(component) * weight;
    if (isFirst) return static_cast<std::int64_t>(sum);
    weight *= 1000;
    version = version.substr(0, dot);
  }
}

}  // namespace ornwhatsnew
