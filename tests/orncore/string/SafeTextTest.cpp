#include <iomanip>
#include <sstream>
#include <string>

#include <gtest/gtest.h>
#include <orncore/string/SafeText.h>

namespace orncore::string {
namespace {

struct SafeCase {
  std::u16string text;
  std::u16string safe;
};

class SafeText : public testing::TestWithParam<SafeCase> {};

TEST_P(SafeText, ReplacesOrRemovesUnsafeCharacters) {
  EXPECT_EQ(GetParam().safe, SafeForTerminal(GetParam().text));
}

INSTANTIATE_TEST_SUITE_P(
    PlainText, SafeText,
    testing::Values(SafeCase{u"", u""}, SafeCase{u"plain ~ text", u"plain ~ text"},
                    SafeCase{u"a\n\tb", u"a\n\tb"},
                    SafeCase{u"\u00A0\u00E9\u6C34", u"\u00A0\u00E9\u6C34"},
                    SafeCase{u"e\u0301", u"e\u0301"}, SafeCase{u"\U0001F600", u"\U0001F600"},
                    SafeCase{u"\u05E9\u05DC\u05D5\u05DD", u"\u05E9\u05DC\u05D5\u05DD"},
                    // The Arabic number sign is a format character, but it is visible.
                    SafeCase{u"\u0600\u0661", u"\u0600\u0661"}));

INSTANTIATE_TEST_SUITE_P(
    Controls, SafeText,
    testing::Values(SafeCase{u"\x1B[31mred", u"\u241B[31mred"},
                    SafeCase{u"\x1B]0;title\x07", u"\u241B]0;title\u2407"},
                    SafeCase{u"a\rb\bc\x7F", u"a\u240Db\u2408c\u2421"},
                    SafeCase{std::u16string(1, u'\0'), u"\u2400"},
                    // U+009B starts a control sequence, and U+0085 ends a line.
                    SafeCase{u"\u009B31m\u0085", u"\uFFFD31m\uFFFD"},
                    SafeCase{u"a\u2028b\u2029c", u"a b c"}));

INSTANTIATE_TEST_SUITE_P(
    Invisible, SafeText,
    testing::Values(SafeCase{u"\uFEFF\uFEFF\tdescription", u"\tdescription"},
                    // This text contains direction overrides, isolates and marks.
                    SafeCase{u"a\u202Eb\u202Cc\u2066d\u2069e\u200Ef\u200Fg\u061Ch", u"abcdefgh"},
                    SafeCase{u"a\u200Bb\u2060c\u00ADd\u034Fe\u180Ef\u115Fg\u3164h", u"abcdefgh"},
                    // This text contains tag characters, which are invisible.
                    SafeCase{u"a\U000E0041\U000E007Fb", u"ab"},
                    SafeCase{u"a\U000E0100b\uFE0Fc", u"abc"}));

INSTANTIATE_TEST_SUITE_P(
    Joiners, SafeText,
    testing::Values(SafeCase{u"pay\u200Dpal\u200C", u"paypal"}, SafeCase{u"\u200D\u200C", u""},
                    SafeCase{u"e\u0301\u200D\u0301", u"e\u0301\u0301"},
                    SafeCase{u"\u0628\u200D\U000E0041", u"\u0628"},
                    // The joiners in emoji sequences, here a family and a burning heart, are kept.
                    SafeCase{u"\U0001F468\u200D\U0001F469\u200D\U0001F467",
                             u"\U0001F468\u200D\U0001F469\u200D\U0001F467"},
                    SafeCase{u"\u2764\uFE0F\u200D\U0001F525", u"\u2764\uFE0F\u200D\U0001F525"},
                    SafeCase{u"1\uFE0F\u20E3 1\uFE0F", u"1\uFE0F\u20E3 1"},
                    // Persian words contain zero-width non-joiners. Devanagari text contains
                    // zero-width joiners after viramas. Both change how the text looks.
                    SafeCase{u"\u0645\u06CC\u200C\u062E\u0648\u0627\u0647\u0645",
                             u"\u0645\u06CC\u200C\u062E\u0648\u0627\u0647\u0645"},
                    SafeCase{u"\u0915\u094D\u200D\u0937", u"\u0915\u094D\u200D\u0937"},
                    SafeCase{u"\u0645\u200C\u200C\u200C\u062E", u"\u0645\u200C\u062E"}));

INSTANTIATE_TEST_SUITE_P(
    Malformed, SafeText,
    testing::Values(SafeCase{std::u16string(1, char16_t{0xD800}), u"\uFFFD"},
                    SafeCase{std::u16string({char16_t{0xDC00}, u'a', char16_t{0xD83D}}),
                             u"\uFFFDa\uFFFD"},
                    SafeCase{u"\uFFFE\uFDD0\U0001FFFF", u"\uFFFD\uFFFD\uFFFD"}));

TEST(SafeForDocument, KeepsDirectionMarksAndRemovesWhatChangesADirection) {
  EXPECT_EQ(u"\u200F\u061Cabcdefghi\u200E",
            SafeForDocument(u"\u200F\u061C\u202Aa\u202Bb\u202Cc\u202Dd\u202Ee\u2066f\u2067g\u2068h"
                            u"\u2069i\u200E"));
  EXPECT_EQ(u"\u2065\u206A", SafeForDocument(u"\u2065\u206A"));
}

TEST(SafeForDocument, ReplacesControlCharactersLineEndsAndTabs) {
  EXPECT_EQ(u"a\u2028b\u2028c d", SafeForDocument(u"a\nb\u2028c\td"));
  EXPECT_EQ(u"a\uFFFDb\uFFFDc\uFFFDd\uFFFD~\u00A0", SafeForDocument(u"a\rb\x1B"
                                                                    u"c\x7F"
                                                                    u"d\u0085~\u00A0"));
  EXPECT_EQ(u"\uFFFD\uFFFD", SafeForDocument(std::u16string(1, u'\0') + u"\u2029"));
}

TEST(SafeForDocument, ReplacesWhatIsNoCharacter) {
  EXPECT_EQ(u"\uFFFD\uFFFD\uFFFD\U0001F600", SafeForDocument(u"\uFFFE\uFDD0\U0001FFFF\U0001F600"));
  EXPECT_EQ(u"\uFFFDa\uFFFD",
            SafeForDocument(std::u16string({char16_t{0xDC00}, u'a', char16_t{0xD83D}})));
  EXPECT_EQ(u"ab", SafeForDocument(u"\uFEFFa\uFEFFb"));
}

TEST(SafeText, EscapesEveryByteThatIsNotPrintableAscii) {
  for (int value = 0; value < 256; ++value) {
    const std::string text = {'a', static_cast<char>(value), 'b'};
    std::ostringstream expected;
    expected << std::hex << std::setfill('0');
    if (value < 0x20 || value == 0x7F) {
      expected << "a\\u" << std::setw(4) << value << 'b';
    } else if (value >= 0x80) {
      expected << "a\\x" << std::setw(2) << value << 'b';
    } else {
      expected << text;
    }
    EXPECT_EQ(expected.str(), EscapeInvisible(text));
  }
}

TEST(SafeText, EscapesInvisibleCharacters) {
  EXPECT_EQ("ORN-1204\\u200b", EscapeInvisible("ORN-1204\u200B"));
  EXPECT_EQ("\\u202egpj.exe \\u2028 \\ufdd0", EscapeInvisible("\u202Egpj.exe \u2028 \uFDD0"));
  EXPECT_EQ("a\\U000e0041b\\U0001ffff", EscapeInvisible("a\U000E0041b\U0001FFFF"));
  EXPECT_EQ("pay\\u200dpal\\u200c", EscapeInvisible("pay\u200Dpal\u200C"));
  EXPECT_EQ("\\xe6\\xb0 \\xf0", EscapeInvisible("\xE6\xB0 \xF0"));
}

TEST(SafeText, EscapingKeepsVisibleText) {
  for (const std::string text : {"", "it's \\ \\u200b", "\u00E9 \u6C34", "e\u0301", "\uFFFD",
                                 "\u2764\uFE0F\u200D\U0001F525", "\u0645\u06CC\u200C\u062E"}) {
    EXPECT_EQ(text, EscapeInvisible(text));
  }
}

TEST(SafeText, EscapesCharactersThatLookLikeASpace) {
  EXPECT_EQ("a\\u00a0b\\u2003c\\u3000\\u2800 d", EscapeInvisible("a\u00A0b\u2003c\u3000\u2800 d"));
}

// A joiner next to an escape is invisible, so it must be escaped too.
TEST(SafeText, EscapesAJoinerBesideAnEscape) {
  EXPECT_EQ("\u0915\u094D\\u200d\\u3164", EscapeInvisible("\u0915\u094D\u200D\u3164"));
  EXPECT_EQ("\u0915\u094D\\u200b\\u200d\u0937", EscapeInvisible("\u0915\u094D\u200B\u200D\u0937"));
}

TEST(SafeText, ReplacesOrRemovesEveryControlCharacterAndDirectionMark) {
  for (char32_t character = 0; character <= 0x10FFFF; ++character) {
    std::u16string text;
    if (character < 0x10000) {
      text = {u'a', static_cast<char16_t>(character), u'b'};
    } else {
      text = {u'a', static_cast<char16_t>(0xD7C0 + (character >> 10U)),
              static_cast<char16_t>(0xDC00 + (character & 0x3FFU)), u'b'};
    }
    for (const char16_t unit : SafeForTerminal(text)) {
      const bool isControl =
          (unit < 0x20 && unit != u'\n' && unit != u'\t') || (unit >= 0x7F && unit < 0xA0);
      const bool isMark = (unit >= 0x200B && unit <= 0x200F) ||
                          (unit >= 0x2028 && unit <= 0x202E) ||
                          (unit >= 0x2060 && unit <= 0x206F) || unit == 0xFEFF || unit == 0x061C;
      ASSERT_FALSE(isControl || isMark) << std::hex << static_cast<unsigned>(character);
    }
  }
}

}  // namespace
}  // namespace orncore::string
