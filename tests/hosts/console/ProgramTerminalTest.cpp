// Runs the program on a pseudo-terminal.
#include <algorithm>
#include <array>
#include <sstream>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <orncore/string/Conversion.h>
#include <orncore/string/DisplayWidth.h>

#include "tests/hosts/console/ProgramFixture.h"

namespace hosts::console {
namespace {

using test_support::ProgramCall;
using test_support::ProgramResult;
using testing::AllOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

class ProgramTerminalTest : public ProgramTest {
 protected:
  ProgramCall TerminalCall(const std::vector<std::string>& words, unsigned short columns) const {
    ProgramCall call = Call(words);
    call.isOnTerminal = true;
    call.columns = columns;
    return call;
  }

  std::string OnTerminal(const ProgramCall& call) const {
    const ProgramResult result = RunProgram(ProgramFile(), call);
    EXPECT_EQ(0, result.exitStatus);
    EXPECT_EQ("", result.errors);
    return result.output;
  }
};

std::size_t WidestLine(const std::string& output) {
  std::size_t widest = 0;
  std::istringstream lines(output);
  for (std::string line; std::getline(lines, line);) {
    widest = std::max(widest, orncore::string::DisplayWidth(orncore::string::UTF8to16(line)));
  }
  return widest;
}

TEST_F(ProgramTerminalTest, UsesColorsAndLinks) {
  EXPECT_THAT(OnTerminal(TerminalCall({"show", "{data}", "{host}"}, 80)),
              AllOf(HasSubstr("\x1B[1mDarkness\x1B[0m"), HasSubstr("\u00A0UNLOCKED\u00A0\x1B[0m\n"),
                    HasSubstr(";https://help.tarsa.example/export\x1B\\View more\x1B]8;;\x1B\\"),
                    Not(HasSubstr("<https"))));
}

TEST_F(ProgramTerminalTest, EveryLineEndsWithoutStyles) {
  std::istringstream lines(OnTerminal(TerminalCall({"show", "{data}", "{host}"}, 20)));
  for (std::string line; std::getline(lines, line);) {
    const std::size_t lastStyle = line.rfind("\x1B[");
    const std::size_t lastLink = line.rfind("\x1B]8;");
    EXPECT_TRUE(lastStyle == std::string::npos || line.substr(lastStyle).starts_with("\x1B[0m"));
    EXPECT_TRUE(lastLink == std::string::npos || line.substr(lastLink).starts_with("\x1B]8;;\x1B"));
  }
}

TEST_F(ProgramTerminalTest, NoColorKeepsLinks) {
  ProgramCall call = TerminalCall({"show", "{data}", "{host}"}, 80);
  call.environment["NO_COLOR"] = "1";
  EXPECT_THAT(OnTerminal(call),
              AllOf(Not(HasSubstr("\x1B[")),
                    HasSubstr(";https://help.tarsa.example/export\x1B\\View more\x1B]8;;\x1B\\")));
  call.environment["TERM"] = "dumb";
  EXPECT_THAT(OnTerminal(call), Not(HasSubstr("\x1B")));
}

TEST_F(ProgramTerminalTest, ColorNeverAndADumbTerminalPreventEscapeSequences) {
  ProgramCall dumb = TerminalCall({"show", "{data}", "{host}"}, 80);
  dumb.environment["TERM"] = "dumb";
  EXPECT_THAT(OnTerminal(dumb), Not(HasSubstr("\x1B")));
  dumb.environment.erase("TERM");
  EXPECT_THAT(OnTerminal(dumb), Not(HasSubstr("\x1B")));
  EXPECT_THAT(OnTerminal(TerminalCall({"show", "{data}", "{host}", "--color", "never"}, 80)),
              Not(HasSubstr("\x1B")));
}

TEST_F(ProgramTerminalTest, IgnoresAnEmptyNoColor) {
  ProgramCall call = TerminalCall({"show", "{data}", "{host}"}, 80);
  call.environment["NO_COLOR"] = "";
  EXPECT_THAT(OnTerminal(call), HasSubstr("\x1B[1m"));
}

TEST_F(ProgramTerminalTest, WrapsAtTheWidthOfTheTerminal) {
  for (const auto columns : std::to_array<unsigned short>({1, 2, 10, 24, 50, 80, 120})) {
    const std::string output =
        OnTerminal(TerminalCall({"show", "{data}", "{host}", "--color", "never"}, columns));
    EXPECT_LE(WidestLine(output), columns);
  }
}

TEST_F(ProgramTerminalTest, TheCommandsThatRateFeaturesAreNotWrapped) {
  OutputOf({"show", "{data}", "{host}"});
  EXPECT_THAT(
      OnTerminal(TerminalCall({"show", "{data}", "{host}", "--rating", "--color", "never"}, 30)),
      HasSubstr("\n  ornwhatsnew rate --host " + HostFile().native() + " -- EPIC-7 '" +
                DataFile().native() + "'"));
}

TEST_F(ProgramTerminalTest, UnknownWidthIsEightyColumns) {
  WriteData("25.1,EPIC-7,,,,,,,," + std::string(200, 'x') + "\n");
  EXPECT_EQ(
      80U,
      WidestLine(OnTerminal(TerminalCall({"show", "{data}", "{host}", "--color", "never"}, 0))));
}

TEST_F(ProgramTerminalTest, TheWidthOptionOverridesTheTerminal) {
  WriteData("25.1,EPIC-7,,,,,,,," + std::string(200, 'x') + "\n");
  EXPECT_EQ(30U, WidestLine(OnTerminal(TerminalCall(
                     {"show", "{data}", "{host}", "--color", "never", "--width", "30"}, 80))));
}

TEST_F(ProgramTerminalTest, TheConsolePrintsAPrompt) {
  ProgramCall call = TerminalCall({"console"}, 80);
  call.typed = "help\n\x04";
  EXPECT_THAT(OnTerminal(call), AllOf(StartsWith("ornwhatsnew> ValidateWhatsNew filepath"),
                                      EndsWith("help - List the commands\nornwhatsnew> \n")));
}

TEST_F(ProgramTerminalTest, TheConsolePrintsNoPromptForAPipe) {
  ProgramCall call = TerminalCall({"console"}, 80);
  call.input = "help\n";
  EXPECT_THAT(OnTerminal(call),
              AllOf(StartsWith("ValidateWhatsNew"), EndsWith("help - List the commands\n")));
}

}  // namespace
}  // namespace hosts::console
