#include <algorithm>
#include <random>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <orncore/string/Conversion.h>

#include "hosts/console/DisplayWidth.h"
#include "hosts/console/TerminalPanel.h"

namespace hosts::console {
namespace {

using common::StyledSegment;
using ornwhatsnew::StyleID;
using testing::HasSubstr;
using testing::Not;

constexpr TerminalLook kPlain = {};
constexpr TerminalLook kStyled = {0, true, true};

StyledSegment Segment(std::string text, std::initializer_list<StyleID> members = {},
                      std::string link = {}) {
  common::StyleSet styles;
  for (const StyleID style : members) styles.Set(style, true);
  return {std::move(text), styles, std::move(link)};
}

std::string Render(const std::vector<StyledSegment>& segments, const TerminalLook& look) {
  return RenderTerminalPanel(segments, look);
}

std::string RenderPlain(const std::string& text, std::size_t width = 0) {
  return Render({Segment(text)}, {width, false, false});
}

TEST(TerminalPanel, AnEmptyPanelIsAnEmptyLine) {
  EXPECT_EQ("\n", Render({}, kPlain));
}

TEST(TerminalPanel, TabsAtTheStartBecomeTheIndent) {
  EXPECT_EQ("   a\n      b\nc\n", RenderPlain("\ta\n\t\tb\nc"));
}

TEST(TerminalPanel, ATabAfterABulletEndsAtTheHangingIndent) {
  EXPECT_EQ("   \u2022  text\n", RenderPlain("\t\u2022 \ttext"));
  EXPECT_EQ("   -  text\n", RenderPlain("\t-\ttext"));
  EXPECT_EQ("   --> text\n", RenderPlain("\t--> text"));
  EXPECT_EQ("   abc   text\n", RenderPlain("\tabc\ttext"));
}

TEST(TerminalPanel, OtherTabsBecomeAGap) {
  EXPECT_EQ("Title   LABEL\n", RenderPlain("Title\tLABEL"));
  EXPECT_EQ("   long text   View more\n", RenderPlain("\tlong text\tView more"));
}

TEST(TerminalPanel, DropsTheMarkersOfADescription) {
  EXPECT_EQ("   description\n", RenderPlain("\uFEFF\uFEFF\tdescription\n"));
}

TEST(TerminalPanel, WrapsWithHangingIndents) {
  EXPECT_EQ("   \u2022  one two three four five six seven\n      eight\n",
            RenderPlain("\t\u2022 \tone two three four five six seven eight", 40));
  EXPECT_EQ("   one two three four five six seven\n   eight nine\n",
            RenderPlain("\tone two three four five six seven eight nine", 40));
}

TEST(TerminalPanel, NarrowTerminalsHaveNarrowIndents) {
  EXPECT_EQ("  a\n", RenderPlain("\ta", 39));
  EXPECT_EQ(" a\n", RenderPlain("\ta", 19));
  EXPECT_EQ("a\nb\n", RenderPlain("\tab", 1));
}

TEST(TerminalPanel, DropsEmptyLinesAtTheEdgesAndJoinsOthers) {
  EXPECT_EQ("   a\n\nb\n", RenderPlain("\n\n\ta\n\n \t\n\nb\n\n"));
}

TEST(TerminalPanel, SeparatesFeaturesByAnEmptyLine) {
  const std::vector<StyledSegment> segments = {
      Segment("One", {StyleID::kStyleFeatureTitle}), Segment("\n\tchange\n"),
      Segment("Two", {StyleID::kStyleFeatureTitle}), Segment("\n")};
  EXPECT_EQ("One\n   change\n\nTwo\n", Render(segments, kPlain));
}

TEST(TerminalPanel, TitlesHaveAHangingIndent) {
  EXPECT_EQ("A long\n title\n LABEL\n",
            Render({Segment("A long title", {StyleID::kStyleFeatureTitle}), Segment("\tLABEL")},
                   {7, false, false}));
}

TEST(TerminalPanel, SwitchesStylesOnAndOffOnEachLine) {
  const std::vector<StyledSegment> segments = {
      Segment("a "), Segment("b c", {StyleID::kStyleFeatureTitle}), Segment("\n")};
  EXPECT_EQ("a \x1B[1mb c\x1B[0m\n", Render(segments, kStyled));
  EXPECT_EQ("a \x1B[1mb\x1B[0m\n\x1B[1mc\x1B[0m\n", Render(segments, {3, true, true}));
  EXPECT_EQ("a b c\n", Render(segments, kPlain));
}

TEST(TerminalPanel, LabelsAreInABox) {
  const std::vector<StyledSegment> segments = {
      Segment("NEW", {StyleID::kStyleUnlockLabel, StyleID::kStyleUnlockLabelBox})};
  EXPECT_THAT(Render(segments, kStyled), HasSubstr("m\u00A0NEW\u00A0\x1B[0m\n"));
  EXPECT_EQ("NEW\n", Render(segments, kPlain));
}

TEST(TerminalPanel, LinksAreHyperlinksThatEndWithTheLine) {
  const std::vector<StyledSegment> segments = {
      Segment("see "), Segment("View more", {StyleID::kStyleHotSpot}, "https://x")};
  EXPECT_THAT(Render(segments, kStyled), HasSubstr("\x1B]8;id=1;https://x\x1B\\View more\x1B]8;;"));
  std::istringstream lines(Render(segments, {8, true, true}));
  int count = 0;
  for (std::string line; std::getline(lines, line); ++count) {
    EXPECT_THAT(line, HasSubstr("id=1;"));
    EXPECT_TRUE(line.ends_with("\x1B]8;;\x1B\\\x1B[0m")) << line;
  }
  EXPECT_EQ(2, count);
}

TEST(TerminalPanel, ColoursAndHyperlinksAreSeparate) {
  const std::vector<StyledSegment> segments = {
      Segment("a "),
      Segment("more", {StyleID::kStyleFeatureTitle, StyleID::kStyleHotSpot}, "https://x")};
  EXPECT_EQ("a \x1B]8;id=1;https://x\x1B\\more\x1B]8;;\x1B\\\n",
            Render(segments, {0, false, true}));
  EXPECT_EQ("a \x1B[1;4;94mmore <https://x>\x1B[0m\n", Render(segments, {0, true, false}));
}

TEST(TerminalPanel, UnsafeLinksAreTextWithTheirTarget) {
  const std::vector<StyledSegment> segments = {
      Segment("View", {StyleID::kStyleHotSpot}, "https://x\x1B\\\x1B[31m")};
  EXPECT_EQ("\x1B[4;94mView <https://x%1B\\%1B[31m>\x1B[0m\n", Render(segments, kStyled));
  EXPECT_EQ(
      "View <https://x/caf%C3%A9>\n",
      Render({Segment("View", {StyleID::kStyleHotSpot}, "https://x/caf\u00E9")}, {0, false, true}));
}

TEST(TerminalPanel, PlainTextHasTheTargetAfterTheLink) {
  EXPECT_EQ("View more <https://x>\n",
            Render({Segment("View more", {StyleID::kStyleHotSpot}, "https://x")}, kPlain));
  EXPECT_EQ("https://x\n",
            Render({Segment("https://x", {StyleID::kStyleHotSpot}, "https://x")}, kPlain));
  EXPECT_EQ("Title\n",
            Render({Segment("Title", {StyleID::kStyleFeatureTitle}, "https://x")}, kPlain));
  EXPECT_EQ("View <https://x%1B[31m%0A>\n",
            Render({Segment("View", {StyleID::kStyleHotSpot}, "https://x\x1B[31m\n")}, kPlain));
}

TEST(TerminalPanel, EscapeSequencesInTheTextAreMadeVisible) {
  const std::string rendered =
      Render({Segment("\x1B[31mred\x1B]8;;https://evil\x07\u009B2J\r")}, kStyled);
  EXPECT_EQ("\u241B[31mred\u241B]8;;https://evil\u2407\uFFFD2J\u240D\n", rendered);
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

TEST(TerminalPanel, RandomTextIsSafeForTheTerminal) {
  constexpr unsigned kSeed = 18'191;
  SCOPED_TRACE(testing::Message() << "seed " << kSeed);
  std::mt19937 random(kSeed);
  const std::vector<std::string> fragments = {"\x1B",   "[",      "]8;;",   "\x07",   "\\",
                                              "a b",    "\n",     "\t",     "\u009B", "\r",
                                              "\u202E", "\uFEFF", "\u6C34", "m"};
  for (int round = 0; round < 1000; ++round) {
    std::vector<StyledSegment> segments;
    for (auto i = random() % 8; i > 0; --i) {
      std::string text;
      std::string link = random() % 2 == 0 ? "" : "https://x";
      for (auto j = random() % 5; j > 0; --j) text += fragments[random() % fragments.size()];
      for (auto j = random() % 3; j > 0; --j) link += fragments[random() % fragments.size()];
      segments.push_back(Segment(text, {static_cast<StyleID>(random() % 14)}, link));
    }
    const std::string rendered = Render(segments, {random() % 20, true, random() % 2 == 0});
    std::istringstream lines(rendered);
    for (std::string line; std::getline(lines, line);) {
      const std::string bare = WithoutOwnSequences(line);
      for (const char byte : bare) ASSERT_TRUE(byte < 0 || byte >= 0x20) << bare;
      ASSERT_THAT(bare, Not(HasSubstr("\xC2\x9B")));
      const std::size_t lastStyle = line.rfind("\x1B[");
      ASSERT_TRUE(lastStyle == std::string::npos || line.substr(lastStyle) == "\x1B[0m" ||
                  line.substr(lastStyle, 4) == "\x1B[0m");
      const std::size_t lastLink = line.rfind("\x1B]8;");
      ASSERT_TRUE(lastLink == std::string::npos || line.substr(lastLink, 5) == "\x1B]8;;");
    }
  }
}

}  // namespace
}  // namespace hosts::console
