#include <algorithm>
#include <random>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <orncore/string/Conversion.h>
#include <ornwhatsnew/PanelRenderers.h>

#include "tests/support/LayoutBuilder.h"
#include "tests/support/RandomSource.h"

namespace ornwhatsnew {
namespace {

using enum ParagraphKind;
using test_support::kSeed;
using test_support::LayoutBuilder;
using testing::HasSubstr;
using testing::Not;

const TerminalOptions kStyled = {0, true, true};

std::string TerminalTextOf(const LayoutBuilder& builder, const TerminalOptions& options = {}) {
  return RenderTerminalText(builder.Layout(), options);
}

std::string RenderChange(const std::u16string& text, std::size_t width = 0) {
  return TerminalTextOf(LayoutBuilder().Begin(kChange).Span(text, kStyleChangeText),
                        {.width = width});
}

std::string RenderBullet(const std::u16string& bullet) {
  LayoutBuilder builder;
  builder.Begin(kChange).Span(u"text", kStyleChangeText);
  builder.Last().bullet = bullet;
  return TerminalTextOf(builder);
}

LayoutBuilder WithLink(StyleID style, const std::u16string& text, std::u16string link) {
  return LayoutBuilder().Begin(kDescription).Span(text, style, std::move(link));
}

TEST(TerminalRenderer, AnEmptyPanelIsAnEmptyLine) {
  EXPECT_EQ("\n", TerminalTextOf({}));
}

TEST(TerminalRenderer, IndentsAllParagraphsExceptTitles) {
  LayoutBuilder builder;
  builder.Begin(kTitle).Span(u"Title", kStyleFeatureTitle);
  builder.Begin(kDescription).Span(u"Description", kStyleFeatureDescription);
  builder.Begin(kChange).Span(u"Change", kStyleChangeText);
  EXPECT_EQ("Title\n   Description\n   \u2022  Change\n", TerminalTextOf(builder));
}

TEST(TerminalRenderer, AChangeBeginsAtTheNextIndentAfterItsBullet) {
  EXPECT_EQ("   \u2022  text\n", RenderBullet(u"\u2022"));
  EXPECT_EQ("   -> text\n", RenderBullet(u"->"));
  EXPECT_EQ("   abc   text\n", RenderBullet(u"abc"));
  EXPECT_EQ("   text\n", RenderBullet(u""));
  EXPECT_EQ("   \u241B  text\n", RenderBullet(u"\x1B"));
}

TEST(TerminalRenderer, AChangeWithoutTextIsABullet) {
  EXPECT_EQ("   \u2022\n", TerminalTextOf(LayoutBuilder().Begin(kChange)));
}

TEST(TerminalRenderer, AGapSeparatesLabelsAndLinksFromTheText) {
  LayoutBuilder builder;
  builder.Begin(kTitle)
      .Span(u"Title", kStyleFeatureTitle)
      .Span(u" ")
      .Span(u"NEW", kStyleUnlockLabel);
  builder.Begin(kDescription).Span(u"Text", kStyleFeatureDescription);
  builder.Span(u" ").Span(u"ORN-1", kStyleIssueLink).Span(u" ").Span(u"More", kStyleHotSpot);
  EXPECT_EQ("Title   NEW\n   Text ORN-1   More\n", TerminalTextOf(builder));
}

TEST(TerminalRenderer, ATranslatedGapIsUnchanged) {
  LayoutBuilder builder;
  builder.Begin(kTitle).Span(u"Title", kStyleFeatureTitle).Span(u" | ");
  EXPECT_EQ("Title | NEW\n", TerminalTextOf(builder.Span(u"NEW", kStyleUnlockLabel)));
}

TEST(TerminalRenderer, WrapsWithHangingIndents) {
  EXPECT_EQ("   \u2022  one two three four five six seven\n      eight\n",
            RenderChange(u"one two three four five six seven eight", 40));
  LayoutBuilder builder;
  builder.Begin(kDescription).Span(u"one two three four five six seven eight nine");
  EXPECT_EQ("   one two three four five six seven\n   eight nine\n",
            TerminalTextOf(builder, {.width = 40}));
}

TEST(TerminalRenderer, TheFirstWordIsOnTheLineOfTheBulletEvenIfItDoesNotFit) {
  EXPECT_EQ(" \u2022 wonderf\n   ul\n", RenderChange(u"wonderful", 10));
}

TEST(TerminalRenderer, LineEndsInAParagraphKeepTheHangingIndent) {
  EXPECT_EQ("   \u2022  one\n      two\n", RenderChange(u"one\u2028two"));
  EXPECT_EQ("   \u2022  one\n\n      two\n", RenderChange(u"one\u2028 \u2028\u2028two"));
}

// The indent of the lines after a long bullet is limited. Otherwise the size of the result could
// grow quadratically with the size of the layout.
TEST(TerminalRenderer, ALongBulletDoesNotIndentEachLineByItsWidth) {
  LayoutBuilder builder;
  builder.Begin(kChange).Span(u"one\u2028two");
  builder.Last().bullet = std::u16string(60, u'-');
  EXPECT_EQ("   " + std::string(60, '-') + "   one\n" + std::string(40, ' ') + "two\n",
            TerminalTextOf(builder));
}

TEST(TerminalRenderer, NarrowTerminalsHaveNarrowIndents) {
  const LayoutBuilder builder = LayoutBuilder().Begin(kDescription).Span(u"ab");
  EXPECT_EQ("   ab\n", TerminalTextOf(builder, {.width = 40}));
  EXPECT_EQ("  ab\n", TerminalTextOf(builder, {.width = 39}));
  EXPECT_EQ(" ab\n", TerminalTextOf(builder, {.width = 19}));
  EXPECT_EQ("a\nb\n", TerminalTextOf(builder, {.width = 1}));
}

TEST(TerminalRenderer, TitlesHaveAHangingIndent) {
  LayoutBuilder builder;
  builder.Begin(kTitle).Span(u"A long title", kStyleFeatureTitle).Span(u" ");
  EXPECT_EQ("A long\n title\n LABEL\n",
            TerminalTextOf(builder.Span(u"LABEL", kStyleUnlockLabel), {.width = 7}));
}

TEST(TerminalRenderer, EmptyLinesSeparateItemsHeaderNoticesAndRatings) {
  LayoutBuilder builder;
  builder.Begin(kHeader).Span(u"Header").Begin(kNotice).Span(u"Notice").Begin(kNotice).Span(
      u"More");
  builder.Begin(kTitle).Span(u"One").Begin(kChange).Span(u"change").Rating(u"Good?");
  builder.Begin(kTitle).Span(u"Two");
  EXPECT_EQ("   Header\n\n   Notice\n\n   More\n\nOne\n   \u2022  change\n\n   Good?\n\nTwo\n",
            TerminalTextOf(builder));
}

TEST(TerminalRenderer, AnEmptyLineFollowsAHeaderBeforeAChangeWithoutTitle) {
  LayoutBuilder builder;
  builder.Begin(kHeader).Span(u"Header").Begin(kChange).Span(u"change");
  EXPECT_EQ("   Header\n\n   \u2022  change\n", TerminalTextOf(builder));
}

TEST(TerminalRenderer, RatingRequestsHaveTheirOwnOrTheDefaultQuestion) {
  EXPECT_EQ("   Good?\n   rate it\n",
            TerminalTextOf(LayoutBuilder().Rating(u"Good?\nrate it", u"hidden")));
  EXPECT_EQ("   How do you like it?\n", TerminalTextOf(LayoutBuilder().Rating(u"")));
  EXPECT_EQ("   \x1B[3;94mGood?\x1B[0m\n",
            TerminalTextOf(LayoutBuilder().Rating(u"Good?"), kStyled));
}

TEST(TerminalRenderer, TheLineOfARatingRequestIsNotWrapped) {
  TerminalOptions options{.width = 12};
  options.ratingLine = [](const ornwhatsnew::RatingRequest& request) {
    return u"rate '" + request.question + u"'";
  };
  EXPECT_EQ(
      " Is it good\n enough?\n rate 'Is it good enough?'\n\n How do you\n like it?\n rate ''\n",
      TerminalTextOf(LayoutBuilder().Rating(u"Is it good enough?").Rating(u""), options));
}

TEST(TerminalRenderer, TheLineOfARatingRequestIsOneSafeLine) {
  TerminalOptions options = kStyled;
  options.ratingLine = [](const ornwhatsnew::RatingRequest&) { return u"a\x1B\n\tb"; };
  EXPECT_EQ("   \x1B[3;94mGood?\x1B[0m\n   \x1B[3;94ma\u241B  b\x1B[0m\n",
            TerminalTextOf(LayoutBuilder().Rating(u"Good?"), options));
}

TEST(TerminalRenderer, SwitchesStylesOnAndOffOnEachLine) {
  LayoutBuilder builder;
  builder.Begin(kTitle).Span(u"a ").Span(u"b c", kStyleFeatureTitle);
  EXPECT_EQ("a \x1B[1mb c\x1B[0m\n", TerminalTextOf(builder, kStyled));
  EXPECT_EQ("a \x1B[1mb\x1B[0m\n \x1B[1mc\x1B[0m\n", TerminalTextOf(builder, {3, true, true}));
  EXPECT_EQ("a b c\n", TerminalTextOf(builder));
}

TEST(TerminalRenderer, LabelsAreInABox) {
  const LayoutBuilder builder = LayoutBuilder().Begin(kTitle).Span(u"NEW", kStyleUnlockLabel);
  EXPECT_EQ("\x1B[94;7m\u00A0NEW\u00A0\x1B[0m\n", TerminalTextOf(builder, kStyled));
  EXPECT_EQ("NEW\n", TerminalTextOf(builder));
}

TEST(TerminalRenderer, LinksAreHyperlinksThatEndWithTheLine) {
  LayoutBuilder builder;
  builder.Begin(kTitle).Span(u"see ").Span(u"View more", kStyleHotSpot, u"https://x");
  EXPECT_THAT(TerminalTextOf(builder, kStyled),
              HasSubstr("\x1B]8;id=1;https://x\x1B\\View more\x1B]8;;"));
  std::istringstream lines(TerminalTextOf(builder, {8, true, true}));
  int count = 0;
  for (std::string line; std::getline(lines, line); ++count) {
    EXPECT_THAT(line, HasSubstr("id=1;"));
    EXPECT_TRUE(line.ends_with("\x1B]8;;\x1B\\\x1B[0m")) << line;
  }
  EXPECT_EQ(2, count);
}

TEST(TerminalRenderer, EachLinkHasItsOwnNumber) {
  LayoutBuilder builder;
  builder.Begin(kChange).Span(u"a", kStyleIssueLink, u"https://x");
  builder.Span(u"b", kStyleCommitLink, u"https://x");
  EXPECT_EQ("   \u2022  \x1B]8;id=1;https://x\x1B\\a\x1B]8;id=2;https://x\x1B\\b\x1B]8;;\x1B\\\n",
            TerminalTextOf(builder, {0, false, true}));
}

TEST(TerminalRenderer, ColoursAndHyperlinksAreSeparate) {
  const LayoutBuilder builder = WithLink(kStyleHotSpot, u"more", u"https://x");
  EXPECT_EQ("   \x1B]8;id=1;https://x\x1B\\more\x1B]8;;\x1B\\\n",
            TerminalTextOf(builder, {0, false, true}));
  EXPECT_EQ("   \x1B[4;94mmore <https://x>\x1B[0m\n", TerminalTextOf(builder, {0, true, false}));
}

TEST(TerminalRenderer, UnsafeLinksAreTextWithTheirTarget) {
  EXPECT_EQ("   \x1B[4;94mView <https://x%1B\\%1B[31m>\x1B[0m\n",
            TerminalTextOf(WithLink(kStyleHotSpot, u"View", u"https://x\x1B\\\x1B[31m"), kStyled));
  EXPECT_EQ(
      "   View <https://x/caf%C3%A9>\n",
      TerminalTextOf(WithLink(kStyleHotSpot, u"View", u"https://x/caf\u00E9"), {0, false, true}));
}

TEST(TerminalRenderer, PlainTextHasTheTargetAfterTheLink) {
  EXPECT_EQ("   View more <https://x>\n",
            TerminalTextOf(WithLink(kStyleHotSpot, u"View more", u"https://x")));
  EXPECT_EQ("   https://x\n", TerminalTextOf(WithLink(kStyleHotSpot, u"https://x", u"https://x")));
  EXPECT_EQ("   Title\n", TerminalTextOf(WithLink(kStyleFeatureTitle, u"Title", u"https://x")));
  EXPECT_EQ("   View <https://x%1B[31m%0A>\n",
            TerminalTextOf(WithLink(kStyleHotSpot, u"View", u"https://x\x1B[31m\n")));
}

TEST(TerminalRenderer, EscapeSequencesInTheTextAreMadeVisible) {
  EXPECT_EQ("   \u2022  \u241B[31mred\u241B]8;;https://evil\u2407\uFFFD2J\u240D\n",
            RenderChange(u"\x1B[31mred\x1B]8;;https://evil\x07\u009B2J\r"));
}

TEST(TerminalRenderer, ReplacesUnpairedSurrogates) {
  const std::u16string text = {u'a', char16_t{0xDC00}, u'b', char16_t{0xD800}};
  EXPECT_EQ("   \u2022  a\uFFFDb\uFFFD\n", RenderChange(text));
  EXPECT_EQ(
      "   "
      "\uFFFD"
      "  text\n",
      RenderBullet(text.substr(3)));
}

TEST(TerminalRenderer, PlainTextHasNoEscapeSequences) {
  LayoutBuilder builder;
  builder.Begin(kTitle).Span(u"A title", kStyleFeatureTitle, u"https://x");
  EXPECT_EQ("A title\n", RenderPlainText(builder.Layout()));
  EXPECT_EQ("A\n title\n", RenderPlainText(builder.Layout(), 6));
}

/// Returns the end of the escape sequence at `position` if the sequence is for a style or a
/// hyperlink. Otherwise returns `position`.
std::size_t EndOfOwnSequence(std::string_view line, std::size_t position) {
  const std::string_view rest = line.substr(position);
  if (rest.starts_with("\x1B[")) {
    const std::size_t end = rest.find_first_not_of("0123456789;", 2);
    return end != std::string_view::npos && rest[end] == 'm' ? position + end + 1 : position;
  }
  if (!rest.starts_with("\x1B]8;;") && !rest.starts_with("\x1B]8;id=")) return position;
  const std::size_t end = rest.find('\x1B', 1);
  return rest.substr(std::min(end, rest.size())).starts_with("\x1B\\") ? position + end + 2
                                                                       : position;
}

std::string WithoutOwnSequences(std::string_view line) {
  std::string bare;
  for (std::size_t position = 0; position < line.size();) {
    const std::size_t end = EndOfOwnSequence(line, position);
    if (end == position) bare += line[position];
    position = std::max(end, position + 1);
  }
  return bare;
}

TEST(TerminalRenderer, RandomTextIsSafeForTheTerminal) {
  SCOPED_TRACE(testing::Message() << "seed " << kSeed);
  std::mt19937 random(kSeed);
  const std::vector<std::u16string> fragments = {u"\x1B",   u"[",      u"]8;;",   u"\x07",   u"\\",
                                                 u"a b",    u"\u2028", u"\t",     u"\u009B", u"\r",
                                                 u"\u202E", u"\u200B", u"\u6C34", u"m"};
  for (int round = 0; round < 1000; ++round) {
    LayoutBuilder builder;
    for (auto i = random() % 8; i > 0; --i) {
      std::u16string text;
      std::u16string link = random() % 2 == 0 ? u"" : u"https://x";
      for (auto j = random() % 5; j > 0; --j) text += fragments[random() % fragments.size()];
      for (auto j = random() % 3; j > 0; --j) link += fragments[random() % fragments.size()];
      builder.Begin(static_cast<ParagraphKind>(random() % 5));
      builder.Span(text, static_cast<StyleID>(random() % 14), link).Span(text);
    }
    std::istringstream lines(TerminalTextOf(builder, {random() % 20, true, random() % 2 == 0}));
    for (std::string line; std::getline(lines, line);) {
      const std::string bare = WithoutOwnSequences(line);
      for (const char byte : bare) ASSERT_TRUE(byte < 0 || byte >= 0x20) << bare;
      ASSERT_THAT(bare, Not(HasSubstr("\xC2\x9B")));
      const std::size_t lastStyle = line.rfind("\x1B[");
      ASSERT_TRUE(lastStyle == std::string::npos || line.substr(lastStyle, 4) == "\x1B[0m");
      const std::size_t lastLink = line.rfind("\x1B]8;");
      ASSERT_TRUE(lastLink == std::string::npos || line.substr(lastLink, 5) == "\x1B]8;;");
    }
  }
}

}  // namespace
}  // namespace ornwhatsnew
