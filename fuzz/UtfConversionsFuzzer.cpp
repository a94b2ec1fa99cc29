// Fuzzes conversions between UTF-8 and UTF-16, case mapping, replacement, comparison and hashing.
// ICU and the plain implementation compute the expected results.
//
// The input is a line with one byte, followed by two strings that the byte 0xFF separates. The low
// four bits of the byte are the number of bytes to skip at the start of the first string.
// Therefore, this string can start at any alignment. The second string is the pattern to replace,
// the other operand of a comparison, and additional input for the hash.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

#include <orncore/string/CaseMapping.h>
#include <orncore/string/Conversion.h>
#include <orncore/string/Replace.h>
#include <orncore/utility/MixHashGuid.h>
#include <ornwhatsnew/utility/TextHelpers.h>
#include <unicode/unistr.h>
#include <unicode/ustring.h>

#include "fuzz/Input.h"
#include "fuzz/Property.h"
#include "tests/support/PlainText.h"

namespace fuzz {
namespace {

using namespace orncore::string;
using namespace test_support;

// Returns the bytes as UTF-16 code units. Ignores the last byte if the number of bytes is odd. The
// buffer has exactly the size of the code units, so that AddressSanitizer detects reads past its
// end.
std::vector<char16_t> UnitsOf(std::string_view bytes) {
  std::vector<char16_t> units(bytes.size() / sizeof(char16_t));
  if (!units.empty()) std::memcpy(units.data(), bytes.data(), units.size() * sizeof(char16_t));
  return units;
}

bool IsAcceptedByICU(std::string_view text) {
  std::vector<char16_t> out(text.size() + 1);
  std::int32_t length = 0;
  UErrorCode error = U_ZERO_ERROR;
  u_strFromUTF8(out.data(), static_cast<std::int32_t>(out.size()), &length, text.data(),
                static_cast<std::int32_t>(text.size()), &error);
  return U_SUCCESS(error) != 0;
}

void RequireFromUTF8(std::string_view text) {
  const std::u16string expected = PlainUTF8to16(text);
  Require(UTF8to16(text) == expected, "the conversion from UTF-8 to UTF-16 equals ICU's");
  std::u16string reused = expected;
  AppendUTF8to16(text, reused);
  Require(reused == expected + expected, "AppendUTF8to16 appends to the previous content");

  RequireEqual(IsWellFormedUTF8(text), IsAcceptedByICU(text),
               "text is well-formed if and only if ICU accepts it");
  const bool isAscii = std::ranges::all_of(text, [](char c) { return (c & 0x80) == 0; });
  if (isAscii) Require(AsciiToUTF16(text) == expected, "AsciiToUTF16 equals UTF8to16 for ASCII");

  std::string stripped(text);
  const bool hadBOM = RemoveUTF8BOM_IfPresent(stripped);
  RequireEqual(hadBOM, text.starts_with("\xEF\xBB\xBF"), "a byte order mark is detected");
  RequireEqual(stripped, std::string(text.substr(hadBOM ? 3 : 0)),
               "one byte order mark is removed");
}

void RequireFromUTF16(std::u16string_view text) {
  const std::string expected = PlainUTF16to8(text);
  RequireEqual(UTF16to8(text), expected, "the conversion from UTF-16 to UTF-8 equals ICU's");
  RequireEqual(UTF8Length(text), expected.size(), "UTF8Length is the length of the result");
  std::string reused = "the previous content, longer than most texts";
  UTF16to8(text, reused);
  RequireEqual(reused, expected, "UTF16to8 replaces the previous content");
  AppendUTF16to8(text, reused);
  RequireEqual(reused, expected + expected, "AppendUTF16to8 appends to the previous content");
  Require(IsWellFormedUTF8(expected), "the conversion to UTF-8 returns well-formed text");
  RequireEqual(UTF16to8(UTF8to16(expected)), expected,
               "converting well-formed text to UTF-16 and back does not change it");
}

void RequireCaseMapping(std::u16string_view text) {
  Require(LowerCase(text) == PlainLower(text), "the lower case equals ICU's");
  Require(UpperCase(text) == PlainUpper(text), "the upper case equals ICU's");
}

void RequireReplaces(std::u16string_view text, std::u16string_view pattern) {
  if (pattern.empty()) return;
  std::u16string replaced(text);
  ReplaceAllStringInString(replaced, pattern, u"@0");
  Require(replaced == PlainReplace(text, pattern, u"@0"), "each occurrence is replaced once");
}

void RequireTextRules(std::string_view text, std::string_view other) {
  RequireEqual(LowerCaseUTF8(text), PlainLower8(text),
               "the lower case of UTF-8 equals that of plain code");
  RequireEqual(ornwhatsnew::CaseInsensitiveEqual(text, other), PlainEqualIgnoringCase(text, other),
               "the comparison ignores letter case");
  RequireEqual(ornwhatsnew::IsSpecialCaseSection(text), PlainIsSection(text),
               "section names are recognised");
  RequireEqual(ornwhatsnew::ExtractHashablePortion(text), PlainHashablePortion(text),
               "the hashable portion equals that of plain code");
  RequireEqual(ornwhatsnew::VersionNumber(text), PlainVersionNumber(text),
               "the version number equals that of plain code");

  orncore::utility::GuidMixer mixer;
  mixer.Mix(text);
  mixer.Mix(other);
  mixer.Mix(text);
  const std::string concatenation = std::string(text) + std::string(other) + std::string(text);
  RequireEqual(mixer.Result().AsUTF8String(), PlainHash(concatenation).AsUTF8String(),
               "hashing parts equals hashing their concatenation");
}

void Run(Input input) {
  const std::size_t skipped = Switch(input.ReadLine(), 0) & 0x0F;
  std::string_view text = input.ReadPart();
  text.remove_prefix(std::min(skipped, text.size()));
  const std::string_view other = input.Rest();
  RequireFromUTF8(text);
  RequireTextRules(text, other);

  const std::vector<char16_t> units = UnitsOf(text);
  std::u16string_view wide(units.data(), units.size());
  wide.remove_prefix(std::min(skipped % 2, wide.size()));
  RequireFromUTF16(wide);
  RequireCaseMapping(wide);
  RequireCaseMapping(PlainUTF8to16(text));
  RequireReplaces(wide, wide.substr(0, other.size() % 4));
  RequireReplaces(PlainUTF8to16(text), PlainUTF8to16(other));
}

}  // namespace
}  // namespace fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::Run(fuzz::Input(data, size));
  return 0;
}
