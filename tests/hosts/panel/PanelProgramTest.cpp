// Runs the program `ornwhatsnew-panel` without a screen. The tested program contains
// WindowObserver.cpp, which operates the window. The observer prints the panel or rates a feature,
// and then closes the window.
#include <filesystem>
#include <sstream>
#include <string>
#include <vector>

#include <sys/resource.h>
#include <unistd.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <orncore/filesupport/File.h>

#include "tests/hosts/console/ProgramFixture.h"

namespace hosts::panel {
namespace {

using test_support::ProgramCall;
using test_support::ProgramResult;
using testing::ContainsRegex;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

class PanelProgramTest : public console::ProgramTest {
 protected:
  ProgramCall PanelCall(const std::vector<std::string>& words) const {
    ProgramCall call = Call(words);
    call.environment["QT_QPA_PLATFORM"] = "offscreen";
    // Switch off warnings, because the offscreen plugin of Qt warns that it cannot raise windows.
    call.environment["QT_LOGGING_RULES"] = "default.warning=false";
    call.environment["XDG_CONFIG_HOME"] = folder_.Path() / "config";
    call.environment["LC_ALL"] = "C.UTF-8";
    return call;
  }

  static ProgramResult RunPanel(const ProgramCall& call) {
    return test_support::RunProgram(ORNWHATSNEW_PANEL, call);
  }

  /// Runs `ornwhatsnew-panel` and returns its standard output. Expects success and no error output.
  std::string PanelOutput(const std::vector<std::string>& words) const {
    const ProgramResult result = RunPanel(PanelCall(words));
    EXPECT_EQ(0, result.exitStatus);
    EXPECT_EQ("", result.errors);
    return result.output;
  }

  /// Expects that `ornwhatsnew-panel` and `ornwhatsnew show` fail with the exit status `status`,
  /// and with the same message after the name of the program.
  void ExpectSameError(int status, const std::vector<std::string>& words) const {
    std::vector<std::string> showWords = words;
    showWords.insert(showWords.begin(), "show");
    const ProgramResult show = Run(showWords);
    const ProgramResult panel = RunPanel(PanelCall(words));
    EXPECT_EQ(status, show.exitStatus);
    EXPECT_EQ(status, panel.exitStatus);
    EXPECT_EQ("", panel.output);
    ASSERT_THAT(show.errors, StartsWith("ornwhatsnew: "));
    EXPECT_EQ("ornwhatsnew-panel" + show.errors.substr(std::string("ornwhatsnew").size()),
              panel.errors);
  }
};

TEST_F(PanelProgramTest, ShowsTheDataFile) {
  const std::string output = PanelOutput({"{data}", "{host}"});
  EXPECT_THAT(output, StartsWith("What's New\n"));
  EXPECT_THAT(output, HasSubstr("Exports run beside your work."));
  EXPECT_THAT(output, HasSubstr("Twice as fast"));
}

TEST_F(PanelProgramTest, TheConsoleHostKnowsWhatThePanelHasShown) {
  PanelOutput({"{data}", "{host}"});
  // The panel does not show the changes for other platforms and versions, so they are still new.
  // Omit them from the status.
  EXPECT_THAT(OutputOf({"status", "{data}", "{host}", "--platform", "--relevant-versions"}),
              StartsWith("Nothing is new.\n"));
}

TEST_F(PanelProgramTest, ThePanelKnowsWhatTheConsoleHostHasShown) {
  OutputOf({"show", "{data}", "{host}"});
  EXPECT_THAT(PanelOutput({"{data}", "{host}"}), Not(HasSubstr("Twice as fast")));
}

TEST_F(PanelProgramTest, StoresNothingInMemory) {
  EXPECT_THAT(PanelOutput({"{data}", "{host}", "--state", ":memory:"}), HasSubstr("Twice as fast"));
  EXPECT_FALSE(std::filesystem::exists(StateFile()));
}

TEST_F(PanelProgramTest, StoresTheStateInTheNamedFile) {
  const std::filesystem::path state = folder_.Path() / "named.json";
  PanelOutput({"{data}", "{host}", "--state", state});
  EXPECT_TRUE(std::filesystem::exists(state));
  EXPECT_FALSE(std::filesystem::exists(StateFile()));
}

TEST_F(PanelProgramTest, PrintsARatingAndStoresThatTheFeatureIsRated) {
  OutputOf({"show", "{data}", "{host}"});
  ASSERT_THAT(OutputOf({"show", "{data}", "{host}", "--rating"}), HasSubstr("Export"));
  EXPECT_EQ("What's New\nrated EPIC-7: 4 of 5, 'Very good'\n",
            PanelOutput({"{data}", "{host}", "--rating"}));
  EXPECT_THAT(OutputOf({"show", "{data}", "{host}", "--rating"}), Not(HasSubstr("Export")));
}

TEST_F(PanelProgramTest, TranslationsOfTheHostDescriptionReplaceThoseOfTheCompanion) {
  ProgramCall call = PanelCall({"{data}", "{host}"});
  call.environment["LC_ALL"] = "de_DE.UTF-8";
  EXPECT_THAT(RunPanel(call).output, StartsWith("Was ist neu\n"));
  folder_.Write("host.json",
                R"({"dictionary": {"$$$/ornwhatsnewqt/Action/Show": "Neu im Herbarium"}})");
  EXPECT_THAT(RunPanel(call).output, StartsWith("Neu im Herbarium\n"));
}

TEST_F(PanelProgramTest, ReportsUnusableFilesAsTheConsoleHostDoes) {
  ExpectSameError(3, {"missing.csv", "{host}"});
  ExpectSameError(3, {folder_.Path(), "{host}"});
  const std::filesystem::path large = folder_.Write("large.csv", "");
  std::filesystem::resize_file(large, orncore::filesupport::kMaxFileBytes + 1);
  ExpectSameError(3, {large, "{host}"});
  ExpectSameError(3, {"{data}", "--host", "missing.json"});
  folder_.Write("damaged.json", "{\n  \"platform\": 7}");
  ExpectSameError(3, {"{data}", "--host", folder_.Path() / "damaged.json"});
  ExpectSameError(4, {"{data}", "{host}", "--state", folder_.Path() / "damaged.json"});
}

TEST_F(PanelProgramTest, ReportsAStoreThatCannotBeWritten) {
  ProgramCall call = PanelCall({"{data}", "{host}"});
  call.beforeStart = [] {
    const rlimit nothing = {0, 0};
    ::setrlimit(RLIMIT_FSIZE, &nothing);
  };
  const ProgramResult result = RunPanel(call);
  EXPECT_EQ(4, result.exitStatus);
  EXPECT_THAT(result.output, ContainsRegex("Cannot remember what you have seen: .*state\\.json"));
  EXPECT_THAT(result.output, HasSubstr("Twice as fast"));
  EXPECT_THAT(result.errors, HasSubstr("state.json"));
}

TEST_F(PanelProgramTest, ReportsARatingThatCannotBePrinted) {
  OutputOf({"show", "{data}", "{host}"});
  ProgramCall call = PanelCall({"{data}", "{host}", "--rating"});
  // Replace standard output with a pipe that has no reader.
  call.beforeStart = [] {
    int ends[2];
    if (::pipe(ends) != 0) ::_exit(99);
    ::close(ends[0]);
    ::dup2(ends[1], STDOUT_FILENO);
    ::close(ends[1]);
  };
  const ProgramResult result = RunPanel(call);
  EXPECT_EQ(6, result.exitStatus);
  EXPECT_EQ("ornwhatsnew-panel: the reader has closed standard output; a rating was not printed\n",
            result.errors);
  EXPECT_THAT(OutputOf({"show", "{data}", "{host}", "--rating"}), Not(HasSubstr("Export")));
}

TEST_F(PanelProgramTest, RejectsInvalidCommandLines) {
  const ProgramResult unknown = RunPanel(PanelCall({"{data}", "{host}", "--raiting"}));
  EXPECT_EQ(2, unknown.exitStatus);
  EXPECT_EQ(
      "ornwhatsnew-panel: unknown option '--raiting'. Run 'ornwhatsnew-panel --help' for usage.\n",
      unknown.errors);
  const ProgramResult missing = RunPanel(PanelCall({"{data}"}));
  EXPECT_EQ(2, missing.exitStatus);
  EXPECT_THAT(missing.errors, StartsWith("ornwhatsnew-panel: --host is required."));
}

TEST_F(PanelProgramTest, HelpFitsATerminalOf80Columns) {
  std::istringstream lines(RunPanel(Call({"--help"})).output);
  std::string line;
  ASSERT_TRUE(std::getline(lines, line));
  do {
    EXPECT_LE(line.size(), 80U) << line;
  } while (std::getline(lines, line));
}

TEST_F(PanelProgramTest, PrintsHelpAndVersionWithoutADisplay) {
  for (const char* const option : {"--help", "--version"}) {
    ProgramCall call = Call({option});
    const ProgramResult result = RunPanel(call);
    EXPECT_EQ(0, result.exitStatus);
    EXPECT_THAT(result.output, HasSubstr("ornwhatsnew-panel"));
  }
}

}  // namespace
}  // namespace hosts::panel
