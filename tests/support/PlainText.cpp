#include "tests/support/PlainText.h"

#include <algorithm>
#include <array>
#include <limits>

#include <murmurhash.h>
#include <unicode/locid.h>
#include <unicode/unistr.h>
#include <boost/tokenizer.hpp>

namespace test_support {

using orncore::utility::Guid;

namespace {

icu::UnicodeString ToICU(std::u16string_view text) {
  return {text.data(), static_cast<std::int32_t>(text.size())};
}

std::u16string FromICU(const icu::UnicodeString& text) {
  return {text.getBuffer(), static_cast<std::size_t>(text.length())};
}

bool IsAscii(std::string_view text) {
  return std::ranges::all_of(text, [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

char PlainLowerAscii(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c;
}

// Parses an optional sign and decimal digits. Returns 0 if `text` has another form or if the number
// is outside the range of std::int64_t.
std::int64_t PlainNumber(std::string_view text) {
  const bool negative = text.starts_with('-');
  if (negative || text.starts_with('+')) text.remove_prefix(1);
  if (text.empty()) return 0;
  __extension__ using Wide = __int128;
  constexpr Wide kMax = std::numeric_limits<std::int64_t>::max();
  Wide value = 0;
  for (const char c : text) {
    if (c < '0' || c > '9') return 0;
    value = value * 10 + (c - '0');
    if (value > kMax + 1) return 0;
  }
  if (negative) value = -value;
  return value > kMax ? 0 : static_cast<std::int64_t>(value);
}

}  // namespace

std::u16string PlainUTF8to16(std::string_view text) {
  return FromICU(icu::UnicodeString::fromUTF8(
      icu::StringPiece(text.data(), static_cast<std::int32_t>(text.size()))));
}

std::string PlainUTF16to8(std::u16string_view text) {
  std::string result;
  ToICU(text).toUTF8String(result);
  return result;
}

std::u16string PlainLower(std::u16string_view text) {
  return FromICU(ToICU(text).toLower(icu::Locale::getRoot()));
}

std::u16string PlainUpper(std::u16string_view text) {
  return FromICU(ToICU(text).toUpper(icu::Locale::getRoot()));
}

std::u16string PlainReplace(std::u16string_view text, std::u16string_view pattern,
                            std::u16string_view replacement) {
  std::u16string result;
  while (!text.empty()) {
    const bool found = text.starts_with(pattern);
    result += found ? replacement : text.substr(0, 1);
    text.remove_prefix(found ? pattern.size() : 1);
  }
  return result;
}

std::vector<std::string> PlainSplit(std::string_view text, char separator) {
  std::vector<std::string> elements(1);
  for (const char c : text) {
    if (c == separator) {
      elements.emplace_back();
    } else {
      elements.back() += c;
    }
  }
  return elements;
}

std::vector<std::string> PlainCut(const std::string& text, const std::string& separator,
                                  const std::string& quote) {
  const boost::escaped_list_separator<char> format("", separator, quote);
  const boost::tokenizer<boost::escaped_list_separator<char>> tokens(text, format);
  return {tokens.begin(), tokens.end()};
}

std::vector<std::string> PlainFields(const std::string& row) {
  if (std::ranges::all_of(row, [](char c) { return c == '\r'; })) return {};
  std::vector<std::string> fields = PlainCut(row, ",", "\"");
  for (std::string& field : fields) {
    std::u16string wide = PlainUTF8to16(field);
    std::erase(wide, u'\r');
    std::erase(wide, u'\n');
    field = PlainUTF16to8(wide);
  }
  return fields;
}

std::string PlainLower8(std::string_view text) {
  return PlainUTF16to8(PlainLower(PlainUTF8to16(text)));
}

bool PlainEqualIgnoringCase(std::string_view a, std::string_view b) {
  // Comparing ASCII strings with ICU would take almost half of a fuzzer's time.
  if (IsAscii(a) && IsAscii(b)) {
    return std::ranges::equal(a, b, {}, PlainLowerAscii, PlainLowerAscii);
  }
  return PlainLower(PlainUTF8to16(a)) == PlainLower(PlainUTF8to16(b));
}

bool PlainIsSection(std::string_view key) {
  return PlainEqualIgnoringCase(key, "MISC") || PlainEqualIgnoringCase(key, "BUGFIX") ||
         PlainIsInternalSection(key);
}

bool PlainIsInternalSection(std::string_view key) {
  return PlainEqualIgnoringCase(key, "INTERNAL") || PlainEqualIgnoringCase(key, "UNREVIEWED");
}

bool PlainIsZString(std::string_view text) {
  return text.substr(0, 4) == "$$$/";
}

std::string PlainHashablePortion(std::string_view text) {
  if (!PlainIsZString(text)) return std::string(text);
  const std::size_t equals = text.find('=');
  if (equals == std::string_view::npos) return std::string(text);
  std::string portion(text.substr(0, equals));
  if (portion.starts_with("$$$/private/")) portion = "$$$/" + portion.substr(12);
  return portion;
}

std::int64_t PlainVersionNumber(std::string_view version) {
  std::vector<std::string> components = PlainSplit(version, '.');
  std::ranges::reverse(components);
  std::uint64_t sum = 0;
  std::uint64_t weight = 1;
  for (const std::string& component : components) {
    sum += static_cast<std::uint64_t>(PlainNumber(component)) * weight;
    weight *= 1000;
  }
  return static_cast<std::int64_t>(sum);
}

Guid PlainHash(std::string_view bytes) {
  std::array<std::uint64_t, 2> words{};
  lmmh_x64_128(bytes.data(), static_cast<unsigned>(bytes.size()), 0, words.data());
  std::array<std::uint8_t, Guid::kByteLength> result{};
  for (std::size_t i = 0; i < result.size(); ++i) {
    result[i] = static_cast<std::uint8_t>(words[i / 8] >> (8 * (i % 8)));
  }
  return Guid(result);
}

}  // namespace test_support
