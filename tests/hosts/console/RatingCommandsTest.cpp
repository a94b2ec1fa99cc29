#include <array>
#include <string>
#include <utility>
#include <variant>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "hosts/console/Arguments.h"
#include "hosts/console/RatingCommands.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/LayoutBuilder.h"

namespace hosts::console {
namespace {

// Adds the rating command to a layout with one rating request. Returns the question of the request.
std::u16string QuestionWithCommand(const std::string& key, std::u16string question,
                                   const SourceArguments& sources) {
  test_support::LayoutBuilder builder;
  ornwhatsnew::PanelLayout layout = builder.Rating(std::move(question)).Layout();
  layout.ratingRequests.front().itemKey = key;
  AddRatingCommands(sources, layout);
  return layout.ratingRequests.front().question;
}

TEST(RatingCommands, QuotesWordsForAShell) {
  EXPECT_EQ("ORN-7", ShellWord("ORN-7"));
  EXPECT_EQ("/tmp/a_b.csv", ShellWord("/tmp/a_b.csv"));
  EXPECT_EQ("''", ShellWord(""));
  EXPECT_EQ("'a b'", ShellWord("a b"));
  EXPECT_EQ("'it'\\''s'", ShellWord("it's"));
  EXPECT_EQ("'$(x)'", ShellWord("$(x)"));
  EXPECT_EQ("'~'", ShellWord("~"));
}

TEST(RatingCommands, EscapesWordsThatATerminalCannotCopy) {
  EXPECT_EQ("$'a\\377b'", ShellWord("a\xFF"
                                    "b"));
  EXPECT_EQ("$'ORN-1\\342\\200\\213'", ShellWord("ORN-1\u200B"));
  EXPECT_EQ("$'\\033\\047\\1341 '", ShellWord("\x1B'\\1 "));
  EXPECT_EQ("$'\\037 ~\\177'", ShellWord("\x1F ~\x7F"));
  EXPECT_EQ("'\u6C34'", ShellWord("\u6C34"));
}

TEST(RatingCommands, AShellReadsEachWordUnchanged) {
  std::string bytes;
  for (int value = 1; value < 256; ++value) bytes += static_cast<char>(value);
  for (const std::string& word : {std::string(), std::string("it's \u6C34"), bytes, bytes + "7"}) {
    const test_support::ProgramResult result = test_support::RunProgram(
        "/bin/bash", {.arguments = {"-c", "printf %s " + ShellWord(word)}});
    EXPECT_EQ(word, result.output);
  }
}

TEST(RatingCommands, FollowTheQuestion) {
  const SourceArguments sources = {"my data.csv", "host.json", "state.json"};
  EXPECT_EQ(u"Better?\nornwhatsnew rate --host host.json --state state.json -- B 'my data.csv'",
            QuestionWithCommand("B", u"Better?", sources));
  EXPECT_TRUE(QuestionWithCommand("A", u"", sources).starts_with(u"How do you like it?\n"));
}

TEST(RatingCommands, WordsThatBeginWithADashAreNotOptions) {
  EXPECT_EQ(u"?\nornwhatsnew rate --host=-h.json --state=-s.json -- -k -d.csv",
            QuestionWithCommand("-k", u"?", {"-d.csv", "-h.json", "-s.json"}));
  const auto words = std::to_array<const char*>(
      {"ornwhatsnew", "rate", "--host=-h.json", "--state=-s.json", "--", "-k", "-d.csv"});
  const auto rate =
      std::get<RateArguments>(ParseArguments(static_cast<int>(words.size()), words.data()));
  EXPECT_EQ("-k", rate.key);
  EXPECT_EQ("-d.csv", rate.sources.data);
  EXPECT_EQ("-h.json", rate.sources.host);
  EXPECT_EQ("-s.json", rate.sources.state);
}

}  // namespace
}  // namespace hosts::console
