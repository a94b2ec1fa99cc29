// Runs `ornwhatsnew lint` as an author or a script would.
#include <cstddef>
#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "hosts/common/TextFile.h"
#include "tests/hosts/console/ProgramFixture.h"

namespace hosts::console {
namespace {

using test_support::ProgramCall;
using test_support::ProgramResult;
using testing::AllOf;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

constexpr int kFindings = 1;
constexpr int kFailed = 2;

class LintCommandTest : public ProgramTest {
 protected:
  LintCommandTest() { WriteData("4.2,Changes-Since\n4.3,MISC,ORN-1,,,,,,,Text\n"); }

  void WriteMistake() const { WriteData("4.2,Changes-Since\n4.3,bugfix,ORN-1,,,,,,,Text\n"); }
  void WriteNote() const { WriteData("4.2,Changes-Since\n4.3,MISC,,Unreviewed,,,,,,Text\n"); }

  std::string Content() const { return common::ReadTextFile(DataFile()); }
};

TEST_F(LintCommandTest, FileWithoutFindingsHasTheStatus0) {
  EXPECT_EQ(OutputOf({"lint", "{data}"}),
            "features, their keys and the version of the host are checked only with --host\n"
            "no errors, no warnings and no notes in one change of one file\n");
}

TEST_F(LintCommandTest, ErrorHasTheStatus1) {
  WriteMistake();
  const ProgramResult result = Run({"lint", "{data}"});
  EXPECT_EQ(result.exitStatus, kFindings);
  EXPECT_THAT(result.output, StartsWith(DataFile().native() + ":3:5: error: 'bugfix' in \"Epic\""));
  EXPECT_THAT(result.output, HasSubstr(" [grouping-id-unknown]\n"));
}

TEST_F(LintCommandTest, FailOnSelectsTheSeveritiesForTheStatus1) {
  WriteNote();
  EXPECT_EQ(Run({"lint", "{data}"}).exitStatus, 0);
  EXPECT_EQ(Run({"lint", "{data}", "--fail-on", "note"}).exitStatus, kFindings);
  EXPECT_EQ(Run({"lint", "{data}", "--severity", "unreviewed-left=error"}).exitStatus, kFindings);
}

TEST_F(LintCommandTest, EveryFailureHasTheStatus2) {
  const std::vector<std::vector<std::string>> calls = {
      {"lint"},
      {"lint", "no-such-file.csv"},
      {"lint", "{data}", "--host", "no-such-host.json"},
      {"lint", "{data}", "--severity", "no-such-code=off"},
      {"lint", "{data}", "--severity", "html=fatal"},
      {"lint", "--explain", "no-such-code"},
      {"lint", "{data}", "--fix=some"},
      {"lint", "{data}", "--dry-run"},
      {"lint", "-", "--fix"},
      {"lint", "{data}", "--baseline", "no-such-file.csv"},
      {"lint", "{data}", "--baseline", "git:-x"},
      {"lint", "{data}", "--baseline", "git:no-such-revision"},
      {"lint", "{data}", "--no-such-option"},
  };
  for (const std::vector<std::string>& call : calls) {
    const ProgramResult result = Run(call);
    EXPECT_EQ(result.exitStatus, kFailed) << testing::PrintToString(call);
    EXPECT_EQ(result.output, "") << testing::PrintToString(call);
    EXPECT_THAT(result.errors, StartsWith("ornwhatsnew: ")) << testing::PrintToString(call);
  }
}

TEST_F(LintCommandTest, ReadsStandardInput) {
  ProgramCall call = Call({"lint", "-", "--format", "json"});
  call.input = "v,g,,,,,,,,\n4.2,Changes-Since\n4.3,bugfix,,,,,,,,Text\n";
  const ProgramResult result = test_support::ChildProcess(ProgramFile(), call).Wait();
  EXPECT_EQ(result.exitStatus, kFindings);
  const auto report = nlohmann::json::parse(result.output);
  EXPECT_EQ(report["findings"].at(0)["file"], "<stdin>");
  EXPECT_EQ(report["findings"].at(0)["line"], 3);
}

TEST_F(LintCommandTest, ReadsAtMost16MiBOfStandardInput) {
  const auto runWithInput = [this](std::size_t size) {
    const std::string input = folder_.Write("input", std::string(size, 'x'));
    return test_support::RunProgram(
        "/bin/sh", Call({"-c", "exec \"$@\" <\"$0\"", input, ProgramFile(), "lint", "-"}));
  };
  constexpr std::size_t kMaximum = std::size_t{16} << 20;
  EXPECT_EQ(runWithInput(kMaximum).exitStatus, kFindings);
  const ProgramResult result = runWithInput(kMaximum + 1);
  EXPECT_EQ(result.exitStatus, kFailed);
  EXPECT_THAT(result.errors, HasSubstr("cannot read standard input: larger than 16 MiB\n"));
}

TEST_F(LintCommandTest, ChecksSeveralFiles) {
  const std::string other = folder_.Path() / "other.csv";
  folder_.Write("other.csv", "");
  const ProgramResult result = Run({"lint", "{data}", other});
  EXPECT_EQ(result.exitStatus, kFindings);
  EXPECT_THAT(result.output, AllOf(StartsWith(other + ":1:1: error: the file is empty"),
                                   HasSubstr("in one change of 2 files\n")));
}

TEST_F(LintCommandTest, ChecksAFileThatIsNamedTwiceOnce) {
  EXPECT_THAT(Run({"lint", "{data}", "{data}"}).output, HasSubstr(" in one change of one file\n"));
  ProgramCall call = Call({"lint", "-", "-"});
  call.input = Content();
  EXPECT_THAT(test_support::RunProgram(ProgramFile(), call).output,
              AllOf(Not(HasSubstr("[file-empty]")), HasSubstr(" in one change of one file\n")));
}

TEST_F(LintCommandTest, StandardInputIsNotItsOwnBaseline) {
  const ProgramResult result = Run({"lint", "-", "--baseline", "-"});
  EXPECT_EQ(result.exitStatus, kFailed);
  EXPECT_EQ(result.errors,
            "ornwhatsnew: standard input cannot be both the data file and the baseline; name a "
            "file for one of them\n");
}

TEST_F(LintCommandTest, HostIsJudged) {
  const ProgramResult result = Run({"lint", "{data}", "{host}"});
  EXPECT_THAT(result.output,
              AllOf(HasSubstr("[feature-without-change]"), Not(HasSubstr("are not checked"))));
}

TEST_F(LintCommandTest, TerminalShowsTheLineWithCarets) {
  WriteMistake();
  ProgramCall call = Call({"lint", "{data}"});
  call.environment["TERM"] = "xterm";
  call.isOnTerminal = true;
  const ProgramResult result = test_support::ChildProcess(ProgramFile(), call).Wait();
  EXPECT_THAT(result.output, HasSubstr("  4.3,bugfix,ORN-1,,,,,,,Text\n      ^^^^^^\n"));
}

TEST_F(LintCommandTest, EachSeverityHasItsOwnColor) {
  WriteNote();
  for (const auto& [severity, color] :
       {std::pair("error", "31"), std::pair("warning", "35"), std::pair("note", "94")}) {
    EXPECT_THAT(Run({"lint", "{data}", "--color", "always", "--severity",
                     std::string("unreviewed-left=") + severity})
                    .output,
                HasSubstr(std::string(": \x1B[1;") + color + "m" + severity + "\x1B[0m: "));
  }
}

TEST_F(LintCommandTest, LineWithCaretsHasNoLineEnd) {
  for (const std::string lineEnd : {"\r\n", ""}) {
    WriteData("4.2,Changes-Since\r\n4.3,bugfix,ORN-1,,,,,,,Text" + lineEnd);
    EXPECT_THAT(Run({"lint", "{data}", "--color", "always"}).output,
                HasSubstr("  4.3,bugfix,ORN-1,,,,,,,Text\n      ^^^^^^\n"));
  }
}

TEST_F(LintCommandTest, CaretsAreBelowTheTextAfterSupplementaryCharacters) {
  for (const auto& [character, column] :
       {std::pair("\U0001F600", 23U), std::pair("\U00010000", 21U)}) {
    const std::string row =
        character + std::string(",MISC,ORN-1,,,,,,,") + character + " #{endl} end";
    folder_.Write("whats new.csv", "4.2,Changes-Since\n" + row + "\n");
    EXPECT_THAT(Run({"lint", "{data}", "--color", "always"}).output,
                AllOf(HasSubstr("\n  4.2,Changes-Since\n  ^^^^^^^^^^^^^^^^^\n"),
                      HasSubstr("\n  " + row + "\n  " + std::string(column, ' ') + "^^^^^^^\n")));
  }
}

TEST_F(LintCommandTest, PointsShowWhereALongLineIsShortened) {
  WriteData("4.2,Changes-Since\n4.3,bugfix,ORN-1,,,,,,," + std::string(60, 'x') + "\n");
  EXPECT_THAT(Run({"lint", "{data}", "--color", "always"}).output,
              HasSubstr("\n  4.3,bugfix,ORN-1,,,,,,," + std::string(50, 'x') + "...\n"));
  WriteData("4.2,Changes-Since\n4.3,MISC,ORN-1,,,,,,," + std::string(60, 'x') + " #{endl} end\n");
  EXPECT_THAT(Run({"lint", "{data}", "--color", "always"}).output,
              HasSubstr("\n  ..." + std::string(26, 'x') + " #{endl} end\n  " +
                        std::string(30, ' ') + "^^^^^^^\n"));
}

TEST_F(LintCommandTest, WithoutATerminalPrintsOneLineForAFinding) {
  WriteMistake();
  EXPECT_THAT(Run({"lint", "{data}"}).output,
              AllOf(HasSubstr("[grouping-id-unknown]\nfeatures, "), Not(HasSubstr("^"))));
}

TEST_F(LintCommandTest, FindingAboutAWholeFileHasNoCarets) {
  folder_.Write("whats new.csv", "");
  EXPECT_THAT(Run({"lint", "{data}", "--color", "always"}).output,
              AllOf(HasSubstr("[file-empty]\n"), Not(HasSubstr("^"))));
}

TEST_F(LintCommandTest, MessagesContainNoControlCharacters) {
  WriteData("4.2,Changes-Since\n4.3,MISC,,\x1B]0;title\x07,,,,,,Text\n");
  const ProgramResult result = Run({"lint", "{data}", "--color", "always"});
  EXPECT_THAT(result.output, AllOf(Not(HasSubstr("\x1B]0")), Not(HasSubstr("\x07"))));
}

TEST_F(LintCommandTest, ConfigurationFileSetsSeverities) {
  WriteNote();
  folder_.Write(".ornwhatsnew-lint.json", R"({"severity": {"unreviewed-left": "error"}})");
  EXPECT_EQ(Run({"lint", "{data}"}).exitStatus, kFindings);
  EXPECT_EQ(Run({"lint", "{data}", "--severity", "unreviewed-left=off"}).exitStatus, 0);
}

TEST_F(LintCommandTest, InvalidConfigurationHasTheStatus2) {
  folder_.Write(".ornwhatsnew-lint.json", "{");
  EXPECT_EQ(Run({"lint", "{data}"}).exitStatus, kFailed);
}

TEST_F(LintCommandTest, FixCorrectsTheFile) {
  WriteMistake();
  const ProgramResult result = Run({"lint", "{data}", "--fix"});
  EXPECT_EQ(result.exitStatus, 0);
  EXPECT_THAT(result.errors, HasSubstr("corrected one mistake in"));
  EXPECT_THAT(Content(), HasSubstr("\n4.3,BUGFIX,ORN-1,"));
}

TEST_F(LintCommandTest, OnlyFixAllAnnouncesAChangeAgain) {
  WriteData("4.2,Changes-Since\n4.3,MISC, ORN-1,,,,,,,Text\n");
  EXPECT_THAT(Run({"lint", "{data}", "--fix"}).errors,
              HasSubstr("--fix=all makes one more correction, but announces "));
  EXPECT_THAT(Content(), HasSubstr("\n4.3,MISC, ORN-1,"));
  EXPECT_THAT(Run({"lint", "{data}", "--fix=all"}).errors, HasSubstr("corrected one mistake in"));
  EXPECT_THAT(Content(), HasSubstr("\n4.3,MISC,ORN-1,"));
}

TEST_F(LintCommandTest, FixKeepsMistakesWhoseCodeIsOff) {
  WriteMistake();
  const std::string before = Content();
  EXPECT_EQ(Run({"lint", "{data}", "--fix", "--severity", "grouping-id-unknown=off"}).exitStatus,
            0);
  EXPECT_EQ(Content(), before);
}

TEST_F(LintCommandTest, DryRunPrintsADiffAndKeepsTheFile) {
  WriteMistake();
  const std::string before = Content();
  const ProgramResult result = Run({"lint", "{data}", "--fix", "--dry-run"});
  EXPECT_THAT(result.output, AllOf(StartsWith("--- a/"), HasSubstr("\n+4.3,BUGFIX,ORN-1,")));
  EXPECT_THAT(result.errors, HasSubstr("would correct one mistake in"));
  EXPECT_EQ(Content(), before);
}

TEST_F(LintCommandTest, BaselineReportsEdits) {
  const std::string old = folder_.Path() / "old.csv";
  folder_.Write("old.csv", Content());
  WriteData("4.2,Changes-Since\n4.3,MISC,ORN-1,,,,,,,Another text\n");
  EXPECT_THAT(Run({"lint", "{data}", "--baseline", old}).output,
              HasSubstr("warning: users who saw the change see it as new"));
}

TEST_F(LintCommandTest, ExplainsACode) {
  EXPECT_THAT(OutputOf({"lint", "--explain", "open-quote"}),
              StartsWith("open-quote (error): a quote is not closed, and commas follow it\n\n"));
}

TEST_F(LintCommandTest, UnknownCodeIsReportedWithTheNearestCode) {
  constexpr const char* kUsageHint = ". Run 'ornwhatsnew lint --help' for usage.\n";
  EXPECT_EQ(Run({"lint", "--explain", "open-qoute"}).errors,
            std::string("ornwhatsnew: --explain: unknown code 'open-qoute'; write 'open-quote'") +
                kUsageHint);
  EXPECT_EQ(Run({"lint", "{data}", "--severity", "12345=off"}).errors,
            std::string("ornwhatsnew: --severity: unknown code '12345'; --list-codes lists all "
                        "codes") +
                kUsageHint);
}

TEST_F(LintCommandTest, ListsAllCodes) {
  const std::string codes = OutputOf({"lint", "--list-codes"});
  EXPECT_THAT(codes, AllOf(HasSubstr("file-separator"), HasSubstr("baseline-rated-again")));
  // The severities and the titles are aligned.
  EXPECT_THAT(codes, AllOf(HasSubstr("\nhtml                         warning  "),
                           HasSubstr("\nchanges-since-before-header  error    ")));
}

}  // namespace
}  // namespace hosts::console
