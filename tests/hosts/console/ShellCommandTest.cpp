#include <array>
#include <optional>
#include <string>
#include <variant>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "hosts/console/Arguments.h"
#include "hosts/console/ShellCommand.h"
#include "tests/support/ChildProcess.h"

namespace hosts::console {
namespace {

TEST(ShellCommand, QuotesWordsForAShell) {
  EXPECT_EQ("ORN-7", ShellWord("ORN-7"));
  EXPECT_EQ("/tmp/a_b.csv", ShellWord("/tmp/a_b.csv"));
  EXPECT_EQ("''", ShellWord(""));
  EXPECT_EQ("'a b'", ShellWord("a b"));
  EXPECT_EQ("'it'\\''s'", ShellWord("it's"));
  EXPECT_EQ("'$(x)'", ShellWord("$(x)"));
  EXPECT_EQ("'~'", ShellWord("~"));
}

TEST(ShellCommand, EscapesWordsThatATerminalCannotCopy) {
  EXPECT_EQ("$'a\\377b'", ShellWord("a\xFF"
                                    "b"));
  EXPECT_EQ("$'ORN-1\\342\\200\\213'", ShellWord("ORN-1\u200B"));
  EXPECT_EQ("$'\\033\\047\\1341 '", ShellWord("\x1B'\\1 "));
  EXPECT_EQ("$'\\037 ~\\177'", ShellWord("\x1F ~\x7F"));
  EXPECT_EQ("'\u6C34'", ShellWord("\u6C34"));
}

TEST(ShellCommand, AShellReadsEachWordUnchanged) {
  std::string bytes;
  for (int value = 1; value < 256; ++value) bytes += static_cast<char>(value);
  for (const std::string& word : {std::string(), std::string("it's \u6C34"), bytes, bytes + "7"}) {
    const test_support::ProgramResult result = test_support::RunProgram(
        "/bin/bash", {.arguments = {"-c", "printf %s " + ShellWord(word)}});
    EXPECT_EQ(word, result.output);
  }
}

TEST(ShellCommand, NamesTheFilesAndTheFeature) {
  EXPECT_EQ("ornwhatsnew rate --host host.json -- B 'my data.csv'",
            RatingCommand("B", {"my data.csv", "host.json", std::nullopt}));
  EXPECT_EQ("ornwhatsnew rate --host host.json --state state.json -- B data.csv",
            RatingCommand("B", {"data.csv", "host.json", "state.json"}));
}

TEST(ShellCommand, WordsThatBeginWithADashAreNotOptions) {
  EXPECT_EQ("ornwhatsnew rate --host=-h.json --state=-s.json -- -k -d.csv",
            RatingCommand("-k", {"-d.csv", "-h.json", "-s.json"}));
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
