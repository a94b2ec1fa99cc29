#include <orncore/string/CaseMapping.h>

#include <cstdint>
#include <random>
#include <string>

#include <gtest/gtest.h>
#include <unicode/uloc.h>

#include <orncore/string/Conversion.h>

#include "tests/support/Allocations.h"
#include "tests/support/RandomSource.h"

namespace orncore::string {
namespace {

using namespace std::string_literals;
using test_support::kSeed;

TEST(CaseMapping, LowerCaseUsesTheFullUnicodeMapping) {
  const struct {
    std::u16string text;
    std::u16string lower;
  } cases[] = {
      {u"", u""},
      {u"Headline 25.1 [@Z`z{", u"headline 25.1 [@z`z{"},
      {u"already lower, long enough for groups", u"already lower, long enough for groups"},
      {u"ALL UPPER, LONG ENOUGH FOR GROUPS", u"all upper, long enough for groups"},
      {u"\u00C9COLE", u"\u00E9cole"},
      {u"Stra\u00DFe \u1E9E", u"stra\u00DFe \u00DF"},
      {u"\u0130", u"i\u0307"},             // becomes i and a combining dot
      {u"I\u0131", u"i\u0131"},            // no Turkish special case
      {u"\u212A", u"k"},                   // Kelvin sign
      {u"\u212B", u"\u00E5"},              // Angstrom sign
      {u"\u01C5", u"\u01C6"},              // title case digraph
      {u"\U00010400", u"\U00010428"},      // outside the basic multilingual plane
      {u"\u0391\u03A3", u"\u03B1\u03C2"},  // final sigma
      {u"\u03A3\u0391", u"\u03C3\u03B1"},  // sigma at the start of a word
      {u"\u0391\u03A3 \u0391", u"\u03B1\u03C2 \u03B1"},
      {u"\u03A3", u"\u03C3"},        // a single sigma is not final
      {u"ABC\u03A3", u"abc\u03C2"},  // final sigma after ASCII letters
      {u"ABCDEFGHIJKLMNOPQRSTUVWX\u03A3 Y", u"abcdefghijklmnopqrstuvwx\u03C2 y"},
      {u"\u65E5\u672C", u"\u65E5\u672C"},
      {u"A\0B"s, u"a\0b"s},
      {u"\u00C9\0B"s, u"\u00E9\0b"s},
  };
  for (const auto& [text, lower] : cases) {
    EXPECT_EQ(LowerCase(text), lower) << UTF16to8(text);
    EXPECT_EQ(LowerCaseUTF8(UTF16to8(text)), UTF16to8(lower)) << UTF16to8(text);
  }
}

TEST(CaseMapping, UpperCaseUsesTheFullUnicodeMapping) {
  const struct {
    std::u16string text;
    std::u16string upper;
  } cases[] = {
      {u"", u""},
      {u"Headline 25.1 [@Z`z{", u"HEADLINE 25.1 [@Z`Z{"},
      {u"Stra\u00DFe", u"STRASSE"},
      {u"\u00DF\u00DF\u00DF\u00DF\u00DF\u00DF\u00DF\u00DF\u00DF", u"SSSSSSSSSSSSSSSSSS"},
      {u"\u0131i", u"II"},
      {u"\u00FF\u00B5", u"\u0178\u039C"},
      {u"\uFB03", u"FFI"},                 // a ligature becomes three letters
      {u"\u0390", u"\u0399\u0308\u0301"},  // a letter with two accents becomes three characters
      {u"\u03C2\u03C3", u"\u03A3\u03A3"},
      {u"\U00010428", u"\U00010400"},
      {u"a\0\u00E9"s, u"A\0\u00C9"s},
  };
  for (const auto& [text, upper] : cases) EXPECT_EQ(UpperCase(text), upper) << UTF16to8(text);
}

TEST(CaseMapping, ReturnsResultsThatAreLongerThanTheText) {
  for (const std::size_t length : {1U, 7U, 8U, 9U, 100U, 5000U}) {
    const std::u16string text(length, u'\u0390');
    EXPECT_EQ(UpperCase(text).size(), 3 * length);
    EXPECT_EQ(LowerCase(std::u16string(length, u'\u0130')).size(), 2 * length);
    // U+023A has two bytes in UTF-8. Its lower-case form, U+2C65, has three.
    EXPECT_EQ(LowerCaseUTF8(UTF16to8(std::u16string(length, u'\u023A'))).size(), 3 * length);
  }
}

TEST(CaseMapping, KeepsUnpairedSurrogates) {
  const std::u16string text = {'A', 0xD800, 0xDC00, 0xDC00, 'B', 0xD83C};
  EXPECT_EQ(LowerCase(text), (std::u16string{'a', 0xD800, 0xDC00, 0xDC00, 'b', 0xD83C}));
  EXPECT_EQ(UpperCase(LowerCase(text)), text);
}

TEST(CaseMapping, MapsPureAsciiLikeAsciiInOtherText) {
  SCOPED_TRACE(testing::Message() << "seed " << kSeed);
  std::mt19937 random(kSeed);
  for (int round = 0; round < 2000; ++round) {
    std::u16string text(random() % 60, u'\0');
    for (char16_t& unit : text) unit = static_cast<char16_t>(random() % 0x80);
    // An ideograph has no case, so appending it must not change the mapping of the ASCII letters.
    ASSERT_EQ(LowerCase(text) + u"\u65E5", LowerCase(text + u"\u65E5"));
    ASSERT_EQ(UpperCase(text) + u"\u65E5", UpperCase(text + u"\u65E5"));
    const std::string utf8 = UTF16to8(text);
    ASSERT_EQ(LowerCaseUTF8(utf8) + "\u65E5", LowerCaseUTF8(utf8 + "\u65E5"));
  }
}

// The lower case of a sigma depends on its context. Therefore the strings mix sigmas with letters,
// combining marks, apostrophes, dots and spaces.
TEST(CaseMapping, LowersUTF8LikeUTF16InEveryContext) {
  SCOPED_TRACE(testing::Message() << "seed " << kSeed);
  constexpr std::u16string_view kUnits =
      u"AaI \u0027.\u03A3\u03C3\u03A3\u0391\u0307\u0301\u00AD\u0130\u2019\u65E5J";
  std::mt19937 random(kSeed);
  for (int round = 0; round < 20000; ++round) {
    std::u16string text(random() % 8, u'\0');
    for (char16_t& unit : text) unit = kUnits[random() % kUnits.size()];
    ASSERT_EQ(LowerCaseUTF8(UTF16to8(text)), UTF16to8(LowerCase(text))) << UTF16to8(text);
  }
}

TEST(CaseMapping, LowersIllFormedUTF8LikeItsUTF16Form) {
  EXPECT_EQ(LowerCaseUTF8("A\x80Z"), "a\uFFFDz");
  EXPECT_EQ(LowerCaseUTF8("\xED\xA0\x80"), "\uFFFD\uFFFD\uFFFD");
  EXPECT_EQ(LowerCaseUTF8("A\xE2\x82"), "a\uFFFD");
  SCOPED_TRACE(testing::Message() << "seed " << kSeed);
  std::mt19937 random(kSeed);
  for (int round = 0; round < 5000; ++round) {
    std::string text(random() % 40, '\0');
    for (char& byte : text) {
      // The bytes CE A3 are a capital sigma in UTF-8. Use them often, so that `text` contains
      // complete and incomplete sigmas.
      byte = static_cast<char>(random() % 2 ? 0xCE : random() % 2 ? 0xA3 : random() % 0x100);
    }
    ASSERT_EQ(LowerCaseUTF8(text), UTF16to8(LowerCase(UTF8to16(text))));
  }
}

TEST(CaseMapping, DoesNotDependOnTheLocale) {
  const std::string before = uloc_getDefault();
  for (const char* locale : {"tr_TR", "lt_LT", "en_US"}) {
    UErrorCode error = U_ZERO_ERROR;
    uloc_setDefault(locale, &error);
    ASSERT_TRUE(U_SUCCESS(error)) << locale;
    EXPECT_EQ(LowerCase(u"TITLE I\u00CC"), u"title i\u00EC") << locale;
    EXPECT_EQ(UpperCase(u"title \u00EC"), u"TITLE \u00CC") << locale;
    EXPECT_EQ(LowerCaseUTF8("TITLE I\u00CC"), "title i\u00EC") << locale;
  }
  UErrorCode error = U_ZERO_ERROR;
  uloc_setDefault(before.c_str(), &error);
}

TEST(CaseMapping, OverwritesTheOldContent) {
  std::string out = "an old text that is much longer";
  LowerCaseUTF8("\u00C9", out);
  EXPECT_EQ(out, "\u00E9");
  LowerCaseUTF8("AB", out);
  EXPECT_EQ(out, "ab");
  LowerCaseUTF8("", out);
  EXPECT_EQ(out, "");
}

TEST(CaseMapping, AllocatesNothingForAsciiWithEnoughCapacity) {
  const std::string ascii = "Headline Of A Change That Is Long Enough For The Heap";
  std::string out;
  out.reserve(ascii.size());
  EXPECT_EQ(test_support::CountAllocations([&] { LowerCaseUTF8(ascii, out); }), 0U);
  EXPECT_EQ(out, "headline of a change that is long enough for the heap");
}

TEST(CaseMapping, AcceptsDefaultViews) {
  EXPECT_EQ(LowerCase(std::u16string_view()), u"");
  EXPECT_EQ(UpperCase(std::u16string_view()), u"");
  EXPECT_EQ(LowerCaseUTF8(std::string_view()), "");
}

}  // namespace
}  // namespace orncore::string
