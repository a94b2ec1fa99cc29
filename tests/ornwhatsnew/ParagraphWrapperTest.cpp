#include <algorithm>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <orncore/string/Conversion.h>
#include <orncore/string/DisplayWidth.h>

#include "ornwhatsnew/src/render/ParagraphWrapper.h"
#include "tests/support/RandomSource.h"

namespace ornwhatsnew {
namespace {

using test_support::kSeed;
using testing::ElementsAre;

/// Returns the lines of the paragraph `text`, each with its indent, as they appear in plain text
/// and on a terminal.
std::vector<std::string> Lines(std::u16string_view text, std::size_t width,
                               ParagraphShape shape = {}) {
  ParagraphWrapper wrapper(width);
  std::vector<std::string> lines;
  for (const WrappedLine& line : wrapper.Wrap(text, shape)) {
    lines.push_back(std::string(line.indent, ' ') +
                    orncore::string::UTF16to8(text.substr(line.begin, line.end - line.begin)));
  }
  return lines;
}

TEST(ParagraphWrapper, AnEmptyParagraphIsOneEmptyLine) {
  EXPECT_THAT(Lines(u"", 10), ElementsAre(""));
  EXPECT_THAT(Lines(u"   ", 10), ElementsAre(""));
  EXPECT_THAT(Lines(u"   ", 1), ElementsAre(""));
}

TEST(ParagraphWrapper, DoesNotWrapWithoutAWidth) {
  EXPECT_THAT(Lines(u"one two three ", 0, {3, 6, 0}), ElementsAre("   one two three"));
}

TEST(ParagraphWrapper, BreaksBetweenWordsAndDropsTheSpaces) {
  EXPECT_THAT(Lines(u"one two  three four", 9), ElementsAre("one two", "three", "four"));
  EXPECT_THAT(Lines(u"one two", 7), ElementsAre("one two"));
  EXPECT_THAT(Lines(u"one two", 6), ElementsAre("one", "two"));
}

TEST(ParagraphWrapper, KeepsLeadingSpaces) {
  EXPECT_THAT(Lines(u"  one two", 5), ElementsAre("  one", "two"));
}

TEST(ParagraphWrapper, IndentsTheOtherLines) {
  EXPECT_THAT(Lines(u"one two three", 10, {2, 4, 0}), ElementsAre("  one two", "    three"));
}

TEST(ParagraphWrapper, KeepsTheBulletWithItsText) {
  const ParagraphShape bullet = {3, 6, 3};
  EXPECT_THAT(Lines(u"\u2022  one two", 12, bullet), ElementsAre("   \u2022  one", "      two"));
  EXPECT_THAT(Lines(u"\u2022  abcdefghijkl", 12, bullet),
              ElementsAre("   \u2022  abcdef", "      ghijkl"));
}

TEST(ParagraphWrapper, LimitsIndentsToHalfOfTheWidth) {
  EXPECT_THAT(Lines(u"abcdef", 4, {3, 6, 0}), ElementsAre("  ab", "  cd", "  ef"));
}

TEST(ParagraphWrapper, BreaksAccordingToTheUnicodeRules) {
  EXPECT_THAT(Lines(u"semi-automatic", 8), ElementsAre("semi-", "automati", "c"));
  EXPECT_THAT(Lines(u"a\u00A0b c", 3), ElementsAre("a\u00A0b", "c"));
  EXPECT_THAT(Lines(u"ab (v25.1)", 9), ElementsAre("ab", "(v25.1)"));
}

TEST(ParagraphWrapper, CountsWideCharactersTwice) {
  EXPECT_THAT(Lines(u"\u6C34\u6C34\u6C34", 5), ElementsAre("\u6C34\u6C34", "\u6C34"));
}

TEST(ParagraphWrapper, BreaksLongWordsBetweenCharacters) {
  EXPECT_THAT(Lines(u"a abcdefg b", 3), ElementsAre("a", "abc", "def", "g b"));
}

// Regression test: the wrapper counted a wide space after a broken word as one column.
TEST(ParagraphWrapper, CountsAWideSpaceAfterABrokenWordTwice) {
  EXPECT_THAT(Lines(u"abcdef\u3000g", 4), ElementsAre("abcd", "ef", "g"));
  EXPECT_THAT(Lines(u"abcdef\u3000g", 5), ElementsAre("abcde", "f\u3000g"));
}

TEST(ParagraphWrapper, KeepsCombiningMarksWithTheirCharacter) {
  EXPECT_THAT(Lines(u"e\u0301e\u0301e\u0301", 1), ElementsAre("e\u0301", "e\u0301", "e\u0301"));
  EXPECT_THAT(Lines(u"\U0001F468\u200D\U0001F469x", 2),
              ElementsAre("\U0001F468\u200D\U0001F469", "x"));
}

TEST(ParagraphWrapper, ACharacterWiderThanTheLineIsOnASeparateLine) {
  EXPECT_THAT(Lines(u"\u6C34a\u6C34", 1, {4, 4, 2}), ElementsAre("\u6C34", "a", "\u6C34"));
}

TEST(ParagraphWrapper, AJoinedEmojiIsOnASeparateLine) {
  EXPECT_THAT(Lines(u"on \U0001F468\u200D\U0001F469\u200D\U0001F467 foot", 5),
              ElementsAre("on", "\U0001F468\u200D\U0001F469\u200D\U0001F467", "foot"));
}

TEST(ParagraphWrapper, WrapsSeveralParagraphs) {
  ParagraphWrapper wrapper(5);
  EXPECT_THAT(wrapper.Wrap(u"one two", {}),
              ElementsAre(WrappedLine{0, 3, 0}, WrappedLine{4, 7, 0}));
  EXPECT_THAT(wrapper.Wrap(u"abcdefg", {}),
              ElementsAre(WrappedLine{0, 5, 0}, WrappedLine{5, 7, 0}));
}

TEST(ParagraphWrapper, KeepsAllTextAndFitsAtEveryWidth) {
  SCOPED_TRACE(testing::Message() << "seed " << kSeed);
  std::mt19937 random(kSeed);
  const std::vector<std::u16string> fragments = {
      u"a",          u"bc-",          u" ",    u"  ", u"\u6C34", u"e\u0301",
      u"\U0001F600", u"\u2764\uFE0F", u"long", u"/",  u"("};
  for (int round = 0; round < 3000; ++round) {
    std::u16string text;
    for (auto i = random() % 25; i > 0; --i) text += fragments[random() % fragments.size()];
    const std::size_t width = 1 + random() % 12;
    ParagraphWrapper wrapper(width);
    std::size_t position = 0;
    const ParagraphShape shape = {random() % 4, random() % 8,
                                  std::min<std::size_t>(2, text.size())};
    for (const WrappedLine& line : wrapper.Wrap(text, shape)) {
      ASSERT_EQ(std::u16string::npos, std::u16string_view(text)
                                          .substr(position, line.begin - position)
                                          .find_first_not_of(u' '));
      const std::size_t columns =
          line.indent + orncore::string::DisplayWidth(
                            std::u16string_view(text).substr(line.begin, line.end - line.begin));
      const bool isSingleWideCharacter = columns - line.indent <= 2;
      ASSERT_TRUE(columns <= width || isSingleWideCharacter) << columns << " of " << width;
      position = line.end;
    }
    ASSERT_EQ(std::u16string::npos,
              std::u16string_view(text).substr(position).find_first_not_of(u' '));
  }
}

}  // namespace
}  // namespace ornwhatsnew
