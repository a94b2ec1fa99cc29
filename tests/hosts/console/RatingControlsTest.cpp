#include <array>
#include <memory>
#include <string>
#include <variant>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "hosts/console/Arguments.h"
#include "hosts/console/RatingControls.h"
#include "tests/support/Builders.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/FakeHost.h"

namespace hosts::console {
namespace {

using ornwhatsnew::StyleID;
using testing::ElementsAre;
using testing::EndsWith;

common::StyledSegment Placeholder(std::string text) {
  common::StyleSet styles;
  styles.Set(StyleID::kStyleRatingPlaceholder, true);
  return {std::move(text), styles, {}};
}

TEST(RatingControls, QuotesWordsForAShell) {
  EXPECT_EQ("ORN-7", ShellWord("ORN-7"));
  EXPECT_EQ("/tmp/a_b.csv", ShellWord("/tmp/a_b.csv"));
  EXPECT_EQ("''", ShellWord(""));
  EXPECT_EQ("'a b'", ShellWord("a b"));
  EXPECT_EQ("'it'\\''s'", ShellWord("it's"));
  EXPECT_EQ("'$(x)'", ShellWord("$(x)"));
  EXPECT_EQ("'~'", ShellWord("~"));
}

TEST(RatingControls, EscapesWordsThatATerminalCannotCopy) {
  EXPECT_EQ("$'a\\377b'", ShellWord("a\xFF"
                                    "b"));
  EXPECT_EQ("$'ORN-1\\342\\200\\213'", ShellWord("ORN-1\u200B"));
  EXPECT_EQ("$'\\033\\047\\1341 '", ShellWord("\x1B'\\1 "));
  EXPECT_EQ("$'\\037 ~\\177'", ShellWord("\x1F ~\x7F"));
  EXPECT_EQ("'\u6C34'", ShellWord("\u6C34"));
}

TEST(RatingControls, AShellReadsEachWordUnchanged) {
  std::string bytes;
  for (int value = 1; value < 256; ++value) bytes += static_cast<char>(value);
  for (const std::string& word : {std::string(), std::string("it's \u6C34"), bytes, bytes + "7"}) {
    const test_support::ProgramResult result = test_support::RunProgram(
        "/bin/bash", {.arguments = {"-c", "printf %s " + ShellWord(word)}});
    EXPECT_EQ(word, result.output);
  }
}

class RatingControlsTest : public test_support::FakeHostTest {};

TEST_F(RatingControlsTest, FollowTheOrderOfThePanelAndUseTheFeaturesQuestion) {
  ornwhatsnew::FeatureListData list(host_.Getter(), host_.Setter());
  ornwhatsnew::RatingMap ratingItems;
  for (const char* key : {"B", "A", "HIDDEN"}) {
    list.InsertFeatureListItem(test_support::MakeItem({.groupingKey = key}));
  }
  ratingItems["A"] = test_support::MakeItem({.groupingKey = "A"});
  ratingItems["B"] = test_support::MakeItem({.groupingKey = "B"});
  ratingItems["B"]->SetCustomRatingStr("$$$/question=Better?");
  const SourceArguments sources = {"my data.csv", "host.json", "state.json"};
  EXPECT_THAT(RatingControls(list, ratingItems, sources),
              ElementsAre("\n\tBetter?\n\tornwhatsnew rate --host host.json --state state.json "
                          "-- B 'my data.csv'\n",
                          "\n\tHow do you like it?\n\tornwhatsnew rate --host host.json --state "
                          "state.json -- A 'my data.csv'\n"));
}

TEST_F(RatingControlsTest, WordsThatBeginWithADashAreNotOptions) {
  ornwhatsnew::FeatureListData list(host_.Getter(), host_.Setter());
  ornwhatsnew::RatingMap ratingItems;
  list.InsertFeatureListItem(test_support::MakeItem({.groupingKey = "-k"}));
  ratingItems["-k"] = test_support::MakeItem({.groupingKey = "-k"});
  const std::vector<std::string> controls =
      RatingControls(list, ratingItems, {"-d.csv", "-h.json", "-s.json"});
  ASSERT_EQ(1U, controls.size());
  EXPECT_THAT(controls.front(),
              EndsWith("\tornwhatsnew rate --host=-h.json --state=-s.json -- -k -d.csv\n"));
  const auto words = std::to_array<const char*>(
      {"ornwhatsnew", "rate", "--host=-h.json", "--state=-s.json", "--", "-k", "-d.csv"});
  const auto rate =
      std::get<RateArguments>(ParseArguments(static_cast<int>(words.size()), words.data()));
  EXPECT_EQ("-k", rate.key);
  EXPECT_EQ("-d.csv", rate.sources.data);
  EXPECT_EQ("-h.json", rate.sources.host);
  EXPECT_EQ("-s.json", rate.sources.state);
}

TEST(RatingControls, ReplaceThePlaceholders) {
  std::vector<common::StyledSegment> segments = {
      Placeholder("x"), {"text", {}, {}}, Placeholder("x")};
  PlaceRatingControls({"one", "two"}, segments);
  EXPECT_EQ("one", segments[0].text);
  EXPECT_EQ("text", segments[1].text);
  EXPECT_EQ("two", segments[2].text);
}

TEST(RatingControls, KeepPlaceholdersIfTheNumbersDiffer) {
  std::vector<common::StyledSegment> segments = {Placeholder("x")};
  PlaceRatingControls({"one", "two"}, segments);
  EXPECT_EQ("x", segments[0].text);
}

}  // namespace
}  // namespace hosts::console
