#include <ornwhatsnew/utility/TextHelpers.h>

#include <algorithm>

#include <boost/algorithm/string/classification.hpp>
#include <boost/algorithm/string/split.hpp>
#include <boost/container/small_vector.hpp>

#include <orncore/string/CaseMapping.h>
#include <orncore/string/Number.h>

#include "ornwhatsnew/src/rules/Keywords.h"

namespace ornwhatsnew {
namespace {

constexpr std::string_view kZStringPrefix = "$$$/";
constexpr std::string_view kPrivateZStringPrefix = "$$$/private/";

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

std::pair<std::string_view, std::string_view> SplitHashablePortion(std::string_view text) noexcept {
  if (!IsZString(text)) return {text, {}};
  const std::size_t equals = text.find('=');
  if (equals == std::string_view::npos) return {text, {}};
  const std::string_view key = text.substr(0, equals);
  if (!key.starts_with(kPrivateZStringPrefix)) return {key, {}};
  return {kZStringPrefix, key.substr(kPrivateZStringPrefix.size())};
}

UTF8String ExtractHashablePortion(std::string_view text) {
  const auto [first, second] = SplitHashablePortion(text);
  UTF8String portion(first);
  portion += second;
  return portion;
}

bool CaseInsensitiveEqual(std::string_view a, std::string_view b) {
  // ASCII letters lower one by one and without regard to their neighbours, so up to the first byte
  // beyond ASCII the bytes tell. There a letter may lower to several, and to ASCII ones, so nothing
  // but the full mapping does.
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

std::int64_t VersionNumber(std::string_view version) {
  const auto isDot = boost::algorithm::is_any_of(".");
  boost::container::small_vector<std::string_view, 16> components;
  // Captured by reference, the predicate is small enough for the splitter to hold it without an
  // allocation.
  boost::algorithm::split(components, version, [&isDot](char c) { return isDot(c); });

  std::uint64_t sum = 0;
  std::uint64_t weight = 1;
  for (auto component = components.rbegin(); component != components.rend(); ++component) {
    std::int64_t value = 0;
    orncore::string::StringToNumber(*component, value);
    sum += static_cast<std::uint64_t>(value) * weight;
    weight *= 1000;
  }
  return static_cast<std::int64_t>(sum);
}

}  // namespace ornwhatsnew
