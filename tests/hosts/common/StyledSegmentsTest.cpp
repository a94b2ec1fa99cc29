#include <climits>
#include <cstdint>
#include <random>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <orncore/string/Conversion.h>

#include "hosts/common/StyledSegments.h"

namespace hosts::common {
namespace {

using ornwhatsnew::StyleID;
using ornwhatsnew::StyleRun;
using ornwhatsnew::StyleRunMap;
using testing::ElementsAre;

StyleSet Styles(std::initializer_list<int> numbers) {
  StyleSet styles;
  for (const int number : numbers) styles.Set(static_cast<StyleID>(number), true);
  return styles;
}

StyleRun RunAt(int start, int length, std::u16string link = {}) {
  return {{start, length}, std::move(link)};
}

StyledSegment Segment(std::string text, std::initializer_list<int> styles, std::string link = {}) {
  return {std::move(text), Styles(styles), std::move(link)};
}

TEST(StyledSegments, EmptyTextHasNoSegments) {
  EXPECT_TRUE(SplitIntoStyledSegments(u"", {}).empty());
  EXPECT_TRUE(SplitIntoStyledSegments(u"", {{StyleID{0}, {RunAt(0, 5)}}}).empty());
}

TEST(StyledSegments, TextWithoutRunsIsOneSegment) {
  EXPECT_THAT(SplitIntoStyledSegments(u"a\n\tb", {}), ElementsAre(Segment("a\n\tb", {})));
}

TEST(StyledSegments, CountsStartAndLengthInBytesOfUTF8) {
  const StyleRunMap runs = {{StyleID{1}, {RunAt(2, 2)}}};
  EXPECT_THAT(SplitIntoStyledSegments(u"\u00C4\u00E9x", runs),
              ElementsAre(Segment("\u00C4", {}), Segment("\u00E9", {1}), Segment("x", {})));
}

TEST(StyledSegments, CombinesTheStylesOfRunsOverTheSameText) {
  const StyleRunMap runs = {{StyleID{9}, {RunAt(1, 2)}}, {StyleID{11}, {RunAt(1, 2)}}};
  EXPECT_THAT(SplitIntoStyledSegments(u"aBBc", runs),
              ElementsAre(Segment("a", {}), Segment("BB", {9, 11}), Segment("c", {})));
}

TEST(StyledSegments, SplitsPartiallyOverlappingRuns) {
  const StyleRunMap runs = {{StyleID{1}, {RunAt(0, 3)}}, {StyleID{2}, {RunAt(2, 3)}}};
  EXPECT_THAT(SplitIntoStyledSegments(u"abcde", runs),
              ElementsAre(Segment("ab", {1}), Segment("c", {1, 2}), Segment("de", {2})));
}

TEST(StyledSegments, RunsOfOneStyleMayOverlap) {
  const StyleRunMap runs = {{StyleID{2}, {RunAt(0, 4), RunAt(1, 1)}}};
  EXPECT_THAT(SplitIntoStyledSegments(u"abcde", runs),
              ElementsAre(Segment("abcd", {2}), Segment("e", {})));
}

TEST(StyledSegments, UsesTheLinkThatStartsLast) {
  const StyleRunMap runs = {{StyleID{0}, {RunAt(0, 6, u"https://outer")}},
                            {StyleID{6}, {RunAt(2, 2, u"https://inner")}}};
  EXPECT_THAT(
      SplitIntoStyledSegments(u"abcdef", runs),
      ElementsAre(Segment("ab", {0}, "https://outer"), Segment("cd", {0, 6}, "https://inner"),
                  Segment("ef", {0}, "https://outer")));
}

TEST(StyledSegments, AnOuterLinkMayEndBeforeTheInnerLink) {
  const StyleRunMap runs = {{StyleID{0}, {RunAt(0, 3, u"https://outer")}},
                            {StyleID{6}, {RunAt(2, 2, u"https://inner")}}};
  EXPECT_THAT(
      SplitIntoStyledSegments(u"abcdef", runs),
      ElementsAre(Segment("ab", {0}, "https://outer"), Segment("c", {0, 6}, "https://inner"),
                  Segment("d", {6}, "https://inner"), Segment("ef", {})));
}

TEST(StyledSegments, ARunThatExtendsOneByteCoversTheNewline) {
  const StyleRunMap runs = {{StyleID{5}, {RunAt(2, 4, u"https://c")}}};
  EXPECT_THAT(SplitIntoStyledSegments(u"x abc\ny", runs),
              ElementsAre(Segment("x ", {}), Segment("abc\n", {5}, "https://c"), Segment("y", {})));
}

TEST(StyledSegments, ARunThatEndsInsideACharacterEndsBeforeIt) {
  const StyleRunMap runs = {{StyleID{5}, {RunAt(2, 4)}}};
  EXPECT_THAT(SplitIntoStyledSegments(u"x abc\u2028y", runs),
              ElementsAre(Segment("x ", {}), Segment("abc", {5}), Segment("\u2028y", {})));
}

TEST(StyledSegments, ARunThatStartsInsideACharacterStartsAfterIt) {
  const StyleRunMap runs = {{StyleID{7}, {RunAt(1, 4)}}};
  EXPECT_THAT(SplitIntoStyledSegments(u"\u00A0key", runs),
              ElementsAre(Segment("\u00A0", {}), Segment("key", {7})));
}

TEST(StyledSegments, ClipsRunsToTheText) {
  const StyleRunMap runs = {
      {StyleID{1},
       {RunAt(-5, 6), RunAt(2, INT_MAX), RunAt(INT_MAX, INT_MAX), RunAt(INT_MIN, INT_MIN)}},
      {StyleID{2}, {RunAt(1, -1), RunAt(1, 0), RunAt(9, 1)}}};
  EXPECT_THAT(SplitIntoStyledSegments(u"abcd", runs),
              ElementsAre(Segment("a", {1}), Segment("b", {}), Segment("cd", {1})));
}

TEST(StyledSegments, IgnoresInvalidStyleNumbers) {
  const StyleRunMap runs = {
      {StyleID{-1}, {RunAt(0, 1)}}, {StyleID{32}, {RunAt(0, 1)}}, {StyleID{31}, {RunAt(1, 1)}}};
  EXPECT_THAT(SplitIntoStyledSegments(u"ab", runs),
              ElementsAre(Segment("a", {}), Segment("b", {31})));
}

TEST(StyledSegments, UnpairedSurrogatesBecomeTheReplacementCharacter) {
  const std::u16string text = {u'a', char16_t{0xD800}, u'b'};
  EXPECT_THAT(SplitIntoStyledSegments(text, {{StyleID{1}, {RunAt(1, 3)}}}),
              ElementsAre(Segment("a", {}), Segment("\uFFFD", {1}), Segment("b", {})));
}

/// Returns the styles of the character at the bytes `[begin, end)`. Checks each run separately.
StyleSet StylesOver(const StyleRunMap& runs, std::int64_t begin, std::int64_t end) {
  StyleSet styles;
  for (const auto& [style, styleRuns] : runs) {
    for (const StyleRun& run : styleRuns) {
      const std::int64_t from = run.first.first;
      const std::int64_t to = from + run.first.second;
      if (from <= begin && end <= to) styles.Set(style, true);
    }
  }
  return styles;
}

TEST(StyledSegments, AgreeWithASimpleImplementationForRandomRuns) {
  constexpr unsigned kSeed = 20'251;
  SCOPED_TRACE(testing::Message() << "seed " << kSeed);
  std::mt19937 random(kSeed);
  const std::u16string letters = u"a\u00E9\u20AC\n\t\u6C34";
  for (int round = 0; round < 2000; ++round) {
    std::u16string text;
    for (auto i = random() % 12; i > 0; --i) text += letters[random() % letters.size()];
    StyleRunMap runs;
    for (auto i = random() % 6; i > 0; --i) {
      runs[static_cast<StyleID>(random() % 3)].push_back(
          RunAt(static_cast<int>(random() % 30) - 5, static_cast<int>(random() % 20) - 3));
    }
    std::int64_t offset = 0;
    std::string whole;
    for (const StyledSegment& segment : SplitIntoStyledSegments(text, runs)) {
      ASSERT_FALSE(segment.text.empty());
      for (const char16_t character : orncore::string::UTF8to16(segment.text)) {
        const auto size = static_cast<std::int64_t>(
            orncore::string::UTF8Length(std::u16string_view(&character, 1)));
        ASSERT_EQ(StylesOver(runs, offset, offset + size), segment.styles);
        offset += size;
      }
      whole += segment.text;
    }
    ASSERT_EQ(orncore::string::UTF16to8(text), whole);
  }
}

}  // namespace
}  // namespace hosts::common
