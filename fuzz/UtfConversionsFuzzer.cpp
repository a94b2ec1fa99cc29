// Entry point: arbitrary bytes and UTF-16 units, through conversions, case mappings and text rules,
// compared with ICU.
//
// Input: a line with one switch (the number of bytes to skip, so that texts begin at any address),
// then two parts: a text, and another text that is used as pattern, keyword and second element.
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

// A buffer of exactly the size of the text, so that a sanitizer finds a read past its end.
std::vector<char16_t> UnitsOf(std::string_view bytes) {
  std::vector<char16_t> units(bytes.size() / sizeof(char16_t));
  if (!units.empty()) std::memcpy(units.data(), bytes.data(), units.size() * sizeof(char16_t));
  return units;
}

bool ICUTakes(std::string_view text) {
  std::vector<char16_t> out(text.size() + 1);
  std::int32_t length = 0;
  UErrorCode error = U_ZERO_ERROR;
  u_strFromUTF8(out.data(), static_cast<std::int32_t>(out.size()), &length, text.data(),
                static_cast<std::int32_t>(text.size()), &error);
  return U_SUCCESS(error) != 0;
}

void RequireFromUTF8(std::string_view text) {
  const std::u16string expected = PlainUTF8to16(text);
  Require(UTF8to16(text) == expected, "UTF-8 to UTF-16 as ICU does it");
  std::u16string used = u"what was there before, long enough for most texts";
  UTF8to16(text, used);
  Require(used == expected, "UTF-8 to UTF-16 into a used text");
  AppendUTF8to16(text, used);
  Require(used == expected + expected, "UTF-8 to UTF-16 appended");

  RequireEqual(IsWellFormedUTF8(text), ICUTakes(text), "well-formed is what ICU takes");
  const bool isAscii = std::ranges::all_of(text, [](char c) { return (c & 0x80) == 0; });
  if (isAscii) Require(AsciiToUTF16(text) == expected, "ASCII to UTF-16");

  std::string withoutMark(text);
  const bool hadMark = RemoveUTF8BOM_IfPresent(withoutMark);
  RequireEqual(hadMark, text.starts_with("\xEF\xBB\xBF"), "a byte order mark is found");
  RequireEqual(withoutMark, std::string(text.substr(hadMark ? 3 : 0)), "one mark is removed");
}

void RequireFromUTF16(std::u16string_view text) {
  const std::string expected = PlainUTF16to8(text);
  RequireEqual(UTF16to8(text), expected, "UTF-16 to UTF-8 as ICU does it");
  RequireEqual(UTF8Length(text), expected.size(), "the length is that of the result");
  std::string used = "what was there before, long enough for most texts";
  UTF16to8(text, used);
  RequireEqual(used, expected, "UTF-16 to UTF-8 into a used text");
  AppendUTF16to8(text, used);
  RequireEqual(used, expected + expected, "UTF-16 to UTF-8 appended");
  Require(IsWellFormedUTF8(expected), "the result is well-formed");
  RequireEqual(UTF16to8(UTF8to16(expected)), expected, "well-formed text survives the way");
}

void RequireCaseMapping(std::u16string_view text) {
  Require(LowerCase(text) == PlainLower(text), "lower case as ICU does it");
  Require(UpperCase(text) == PlainUpper(text), "upper case as ICU does it");
}

void RequireReplaces(std::u16string_view text, std::u16string_view pattern) {
  if (pattern.empty()) return;
  std::u16string replaced(text);
  ReplaceAllStringInString(replaced, pattern, u"@0");
  Require(replaced == PlainReplace(text, pattern, u"@0"), "every occurrence is replaced once");
}

void RequireTextRules(std::string_view text, std::string_view other) {
  RequireEqual(LowerCaseUTF8(text), PlainLower8(text), "UTF-8 in lower case");
  RequireEqual(ornwhatsnew::CaseInsensitiveEqual(text, other), PlainEqualIgnoringCase(text, other),
               "equal but for letter case");
  RequireEqual(ornwhatsnew::IsSpecialCaseSection(text), PlainIsSection(text), "a section's name");
  RequireEqual(ornwhatsnew::ExtractHashablePortion(text), PlainHashablePortion(text),
               "the portion that identifies");
  RequireEqual(ornwhatsnew::VersionNumber(text), PlainVersionNumber(text), "a version's number");

  orncore::utility::GuidMixer mixer;
  mixer.Mix(text);
  mixer.Mix(other);
  mixer.Mix(text);
  const std::string together = std::string(text) + std::string(other) + std::string(text);
  RequireEqual(mixer.Result().AsUTF8String(), PlainHash(together).AsUTF8String(),
               "pieces hash like their bytes side by side");
}

void Run(Input input) {
  const std::size_t leftOut = Switch(input.TakeLine(), 0) & 0x0F;
  std::string_view text = input.TakePart();
  text.remove_prefix(std::min(leftOut, text.size()));
  const std::string_view other = input.Rest();
  RequireFromUTF8(text);
  RequireTextRules(text, other);

  const std::vector<char16_t> units = UnitsOf(text);
  std::u16string_view wide(units.data(), units.size());
  wide.remove_prefix(std::min(leftOut % 2, wide.size()));
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
