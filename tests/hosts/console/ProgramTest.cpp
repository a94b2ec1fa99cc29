// Runs the program as a user or a script does, and checks its output and exit status.
#include <cstdlib>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <orncore/config/InitializerRegistrar.h>

#include "hosts/console/Program.h"
#include "tests/hosts/console/ProgramFixture.h"

namespace hosts::console {
namespace {

using nlohmann::json;
using test_support::ProgramCall;
using test_support::ProgramResult;
using testing::AllOf;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::MatchesRegex;
using testing::Not;
using testing::StartsWith;

using ShowTest = ProgramTest;

TEST_F(ShowTest, PrintsThePanelAsPlainTextToAPipe) {
  EXPECT_EQ(
      "   Changes since v24.0\n"
      "\n"
      "Export   UNLOCKED\n"
      "   Exports run beside your work.   View more <https://help.tarsa.example/export>\n"
      "   \u2022  (macOS only) Twice as fast (v25.1)\n"
      "\n"
      "Darkness   UNLOCKED\n"
      "   \u2022  Every window is dark (v24.0-v25.1)\n"
      "\n"
      "Bug fixes\n"
      "   \u2022  (win only) No crash on full disks (v25.1)\n",
      OutputOf({"show", "{data}", "{host}"}));
}

TEST_F(ShowTest, StoresTheShownChanges) {
  EXPECT_THAT(OutputOf({"show", "{data}", "{host}", "--only-new"}), HasSubstr("Twice as fast"));
  EXPECT_EQ("   Changes since last opened in v25.1.0.42\n\n   You\u2019re all caught up.\n",
            OutputOf({"show", "{data}", "{host}", "--only-new"}));
  EXPECT_TRUE(std::filesystem::exists(StateFile()));
}

TEST_F(ShowTest, OnlyNewHidesSeenChanges) {
  OutputOf({"show", "{data}", "{host}"});
  WriteData(
      "25.1,EPIC-8,,,How dark is it?,24.0,,,,Every window is dark\n"
      "25.1,EPIC-8,,,,,,,,Menus are dark\n");
  EXPECT_THAT(OutputOf({"show", "{data}", "{host}", "--only-new"}),
              AllOf(HasSubstr("Menus are dark"), Not(HasSubstr("Every window is dark"))));
}

TEST_F(ShowTest, FiltersByPlatform) {
  EXPECT_EQ(
      "   Changes since v24.0\n"
      "\n"
      "Export   UNLOCKED\n"
      "   Exports run beside your work.   View more <https://help.tarsa.example/export>\n"
      "   \u2022  (macOS only) Twice as fast (v25.1)\n"
      "\n"
      "Darkness   UNLOCKED\n"
      "   \u2022  Every window is dark (v24.0-v25.1)\n",
      OutputOf({"show", "{data}", "{host}", "--platform"}));
}

TEST_F(ShowTest, FiltersByTheVersionsThatRan) {
  EXPECT_EQ(
      "   Changes since v24.0\n"
      "\n"
      "Export   UNLOCKED\n"
      "   Exports run beside your work.   View more <https://help.tarsa.example/export>\n"
      "   \u2022  (macOS only) Twice as fast (v25.1)\n"
      "\n"
      "Darkness   UNLOCKED\n"
      "\n"
      "Bug fixes\n"
      "   \u2022  (win only) No crash on full disks (v25.1)\n",
      OutputOf({"show", "{data}", "{host}", "--relevant-versions"}));
}

TEST_F(ShowTest, FiltersByHeadlines) {
  EXPECT_EQ(
      "   Changes since v24.0\n"
      "\n"
      "Export   UNLOCKED\n"
      "   Exports run beside your work.   View more <https://help.tarsa.example/export>\n"
      "\n"
      "Darkness   UNLOCKED\n",
      OutputOf({"show", "{data}", "{host}", "--headlines"}));
}

TEST_F(ShowTest, InternalUsersSeeMore) {
  WriteHost("25.1", true);
  EXPECT_THAT(OutputOf({"show", "{data}", "{host}"}),
              AllOf(HasSubstr("Nobody knows"), HasSubstr("ORN-9"), HasSubstr("abc123")));
}

TEST_F(ShowTest, TheMemoryStoreCreatesNoFile) {
  OutputOf({"show", "{data}", "{host}", "--state", ":memory:"});
  EXPECT_FALSE(std::filesystem::exists(folder_.Path() / "state"));
  EXPECT_THAT(OutputOf({"show", "{data}", "{host}", "--only-new"}), HasSubstr("Twice as fast"));
}

TEST_F(ShowTest, NoRememberStoresNothing) {
  const std::string panel = OutputOf({"show", "{data}", "{host}"});
  const std::string state = OutputOf({"state", "show"});
  WriteData("25.1,EPIC-8,,,,,,,,Menus are dark\n");
  const std::vector<std::string> look = {"show", "{data}", "{host}", "--only-new", "--no-remember"};
  const std::string onlyNew = OutputOf(look);
  EXPECT_THAT(onlyNew,
              AllOf(HasSubstr("since last opened in v25.1.0.42"), HasSubstr("Menus are dark")));
  EXPECT_EQ(onlyNew, OutputOf(look));
  EXPECT_EQ(state, OutputOf({"state", "show"}));
}

TEST_F(ShowTest, NoRememberCreatesNoStore) {
  EXPECT_THAT(OutputOf({"show", "{data}", "{host}", "--no-remember", "--format", "json"}),
              HasSubstr("Twice as fast"));
  EXPECT_FALSE(std::filesystem::exists(folder_.Path() / "state"));
}

TEST_F(ShowTest, WritesUTF8InEveryLocale) {
  const std::string panel = OutputOf({"show", "{data}", "{host}", "--no-remember"});
  EXPECT_THAT(panel, HasSubstr("\u2022"));
  for (const char* const locale : {"C", "C.UTF-8", "de_DE.ISO-8859-1"}) {
    ProgramCall call = Call({"show", "{data}", "{host}", "--no-remember"});
    call.environment["LC_ALL"] = locale;
    EXPECT_EQ(panel, RunProgram(ProgramFile(), call).output) << locale;
  }
}

TEST_F(ShowTest, TheStateOptionSelectsTheStore) {
  const std::string file = folder_.Path() / "other.json";
  OutputOf({"show", "{data}", "{host}", "--state", file});
  EXPECT_TRUE(std::filesystem::exists(file));
  EXPECT_FALSE(std::filesystem::exists(StateFile()));
}

TEST_F(ShowTest, UsesTheHomeFolderWithoutAStateFolder) {
  ProgramCall call = Call({"show", "{data}", "{host}"});
  call.environment.erase("XDG_STATE_HOME");
  EXPECT_EQ(0, RunProgram(ProgramFile(), call).exitStatus);
  EXPECT_TRUE(std::filesystem::exists(folder_.Path() / "home/.local/state/ornwhatsnew/state.json"));
}

TEST_F(ShowTest, PrintsTheRatingCommandOfEachFeature) {
  OutputOf({"show", "{data}", "{host}"});
  const std::string host = "--host " + HostFile().native();
  const std::string data = " '" + DataFile().native() + "'\n";
  EXPECT_EQ(
      "Export   UNLOCKED\n   \u2022  (macOS only) Twice as fast (v25.1)\n\n"
      "   How do you like it?\n   ornwhatsnew rate " +
          host + " -- EPIC-7" + data +
          "\nDarkness   UNLOCKED\n   \u2022  Every window is dark (v24.0-v25.1)\n\n"
          "   How dark is it?\n   ornwhatsnew rate " +
          host + " -- EPIC-8" + data,
      OutputOf({"show", "{data}", "{host}", "--rating"}));
}

TEST_F(ShowTest, JsonHasTextRunsAndRatingItems) {
  const json panel = json::parse(OutputOf({"show", "{data}", "{host}", "--format", "json"}));
  EXPECT_THAT(panel["text"].get<std::string>(),
              StartsWith("\n\tChanges since v24.0\n\nExport\tUNLOCKED\n\uFEFF\uFEFF\tExports"));
  EXPECT_EQ(json::array({json::array({0, 23, ""})}), panel["runs"]["3"]);
  EXPECT_EQ("How dark is it?", panel["ratingItems"]["EPIC-8"]["customRating"]);
}

TEST_F(ShowTest, JsonHasTheParagraphsOfTheSamePanel) {
  OutputOf({"show", "{data}", "{host}"});
  const json panel =
      json::parse(OutputOf({"show", "{data}", "{host}", "--format", "json", "--rating"}));
  const json& paragraphs = panel["paragraphs"];
  ASSERT_EQ(6U, paragraphs.size());
  EXPECT_EQ("Export UNLOCKED", paragraphs[0]["text"]);
  EXPECT_EQ("\u2022", paragraphs[1]["bullet"]);
  EXPECT_EQ("How dark is it?", paragraphs[5]["rating"]["question"]);
}

TEST_F(ShowTest, HtmlIsAPageWithThePanel) {
  EXPECT_THAT(OutputOf({"show", "{data}", "{host}", "--format", "html"}),
              AllOf(StartsWith("<!DOCTYPE html>"), HasSubstr("id=\"ornwhatsnew-EPIC-7\""),
                    HasSubstr("href=\"https://help.tarsa.example/export\">View more</a>")));
}

TEST_F(ShowTest, MarkdownHasHeadingsAndLists) {
  EXPECT_THAT(OutputOf({"show", "{data}", "{host}", "--format", "markdown"}),
              StartsWith("## Changes since v24.0\n\n"
                         "### [Export](https://help.tarsa.example/export) `UNLOCKED`\n\n"
                         "Exports run beside your work. "
                         "[View more](https://help.tarsa.example/export)\n\n"
                         "- (macOS only) Twice as fast (v25.1)\n"));
}

TEST_F(ShowTest, PlainHasNoEscapeSequencesAndIsWrappedOnlyWithAWidth) {
  const std::vector<std::string> words = {"show", "{data}", "{host}", "--format", "plain"};
  EXPECT_EQ(OutputOf({"show", "{data}", "{host}"}), OutputOf(words));
  ProgramCall call = Call(words);
  call.isOnTerminal = true;
  call.columns = 20;
  call.arguments.insert(call.arguments.end(), {"--color", "always"});
  EXPECT_THAT(RunProgram(ProgramFile(), call).output,
              AllOf(Not(HasSubstr("\x1B")), HasSubstr("   \u2022  Every window is dark (v24")));
  call.arguments.insert(call.arguments.end(), {"--width", "24"});
  EXPECT_THAT(RunProgram(ProgramFile(), call).output,
              HasSubstr("  \u2022 Every window is dark\n    (v24.0-v25.1)\n"));
}

TEST_F(ShowTest, EachFormatStoresTheShownChanges) {
  for (const char* const format : {"text", "plain", "html", "markdown", "json"}) {
    OutputOf({"state", "reset"});
    OutputOf({"show", "{data}", "{host}", "--format", format});
    EXPECT_THAT(OutputOf({"show", "{data}", "{host}", "--only-new"}), HasSubstr("caught up"))
        << format;
  }
}

TEST_F(ShowTest, OnlyTextAndPlainHaveTheRatingCommands) {
  OutputOf({"show", "{data}", "{host}"});
  for (const char* const format : {"text", "plain", "html", "markdown"}) {
    const std::string panel =
        OutputOf({"show", "{data}", "{host}", "--rating", "--format", format});
    EXPECT_THAT(panel, HasSubstr("How dark is it?"));
    const bool isForTerminals =
        std::string_view(format) == "text" || std::string_view(format) == "plain";
    EXPECT_EQ(isForTerminals, panel.find("ornwhatsnew rate") != std::string::npos) << format;
  }
}

TEST_F(ShowTest, JsonIsPrintableAscii) {
  WriteData("25.1,EPIC-7,,,,,,,,\x1B[31m\xC2\x9B \xE2\x80\xAE\n");
  const std::string output = OutputOf({"show", "{data}", "{host}", "--format", "json"});
  EXPECT_THAT(output, HasSubstr("\\u001b[31m\\u009b"));
  for (const char byte : output) {
    ASSERT_TRUE(byte == '\n' || (byte >= 0x20 && byte < 0x7F));
  }
}

TEST_F(ShowTest, ControlCharactersAreReplacedByTheirPictures) {
  WriteData(
      "25.1,EPIC-7,,,,,,,,\x1B]0;owned\x07 \xC2\x9B"
      "2J \xE2\x80\xAE"
      "evil\n");
  const std::string output = OutputOf({"show", "{data}", "{host}", "--color", "always"});
  EXPECT_THAT(output, HasSubstr("\u241B]0;owned\u2407 \uFFFD2J evil"));
}

TEST_F(ShowTest, WrapsTheOutputToAPipeOnlyWithAWidth) {
  const std::string output = OutputOf({"show", "{data}", "{host}", "--width", "24"});
  EXPECT_THAT(output, HasSubstr("  \u2022 Every window is dark\n    (v24.0-v25.1)\n"));
}

struct ColorCase {
  std::vector<std::string> words;
  bool isNoColorSet;
  bool isColored;
};

TEST_F(ShowTest, ColorsTheOutputToAPipeOnlyWithAlways) {
  const std::vector<ColorCase> cases = {{{}, false, false},
                                        {{"--color", "auto"}, false, false},
                                        {{"--color", "never"}, false, false},
                                        {{"--color", "always"}, false, true},
                                        {{"--color", "always"}, true, true}};
  for (const ColorCase& test : cases) {
    ProgramCall call = Call({"show", "{data}", "{host}"});
    call.arguments.insert(call.arguments.end(), test.words.begin(), test.words.end());
    if (test.isNoColorSet) call.environment["NO_COLOR"] = "1";
    const ProgramResult result = RunProgram(ProgramFile(), call);
    EXPECT_EQ(0, result.exitStatus);
    EXPECT_THAT(result.output, HasSubstr("Twice as fast"));
    const bool isColored = result.output.find('\x1B') != std::string::npos;
    EXPECT_EQ(test.isColored, isColored) << testing::PrintToString(test.words);
  }
}

using StatusTest = ProgramTest;

TEST_F(StatusTest, PrintsTextOrJson) {
  EXPECT_EQ("There is something new.\nNothing needs rating.\n",
            OutputOf({"status", "{data}", "{host}"}));
  OutputOf({"show", "{data}", "{host}"});
  EXPECT_EQ("Nothing is new.\nThere is something to rate.\n",
            OutputOf({"status", "{data}", "{host}"}));
  EXPECT_EQ((json{{"anythingNew", false}, {"anythingNeedingRating", true}}),
            json::parse(OutputOf({"status", "{data}", "{host}", "--format", "json"})));
}

TEST_F(StatusTest, SetsTheExitStatusWithTheOption) {
  const std::vector<std::string> status = {"status", "{data}", "{host}", "--exit-status"};
  EXPECT_EQ(10, Run(status).exitStatus);
  OutputOf({"show", "{data}", "{host}"});
  EXPECT_EQ(11, Run(status).exitStatus);
  OutputOf({"rate", "EPIC-7", "{data}", "{host}"});
  OutputOf({"rate", "EPIC-8", "{data}", "{host}"});
  EXPECT_EQ(0, Run(status).exitStatus);
  WriteData("25.2,EPIC-7,,,How is it now?,,,,,Thrice as fast\n25.2,EPIC-8,,,Better?,,,,,\n");
  EXPECT_EQ(10, Run(status).exitStatus);
  OutputOf({"show", "{data}", "{host}"});
  WriteData(
      "25.2,EPIC-7,,,How is it now?,,,,,Thrice as fast\n25.2,EPIC-8,,,Better?,,,,,\n"
      "25.2,MISC,,,,,,,,Something else\n");
  EXPECT_EQ(12, Run(status).exitStatus);
}

TEST_F(StatusTest, StoresNothing) {
  OutputOf({"status", "{data}", "{host}"});
  EXPECT_FALSE(std::filesystem::exists(folder_.Path() / "state"));
}

using RateTest = ProgramTest;

TEST_F(RateTest, StoresARating) {
  OutputOf({"show", "{data}", "{host}"});
  EXPECT_EQ("Thank you. Your rating of EPIC-7 was stored.\n",
            OutputOf({"rate", "EPIC-7", "{data}", "{host}"}));
  const std::string left = OutputOf({"show", "{data}", "{host}", "--rating"});
  EXPECT_THAT(left, AllOf(HasSubstr("EPIC-8"), Not(HasSubstr("EPIC-7"))));
}

TEST_F(RateTest, StoresARepeatedRatingOnce) {
  OutputOf({"show", "{data}", "{host}"});
  OutputOf({"rate", "EPIC-7", "{data}", "{host}"});
  const std::string once = OutputOf({"state", "show"});
  OutputOf({"rate", "EPIC-7", "{data}", "{host}"});
  EXPECT_EQ(once, OutputOf({"state", "show"}));
}

TEST_F(RateTest, AnUnknownKeyListsTheKeysThatCanBeRated) {
  for (const char* key : {"EPIC-1", "epic-7", "", "BUGFIX", "EPIC-9", "f.export"}) {
    const ProgramResult result = Run({"rate", key, "{data}", "{host}"});
    EXPECT_EQ(5, result.exitStatus) << key;
    EXPECT_THAT(result.output, IsEmpty());
    EXPECT_EQ("ornwhatsnew: cannot rate '" + std::string(key) +
                  "': these features can be rated: EPIC-7, EPIC-8\n",
              result.errors);
  }
  EXPECT_FALSE(std::filesystem::exists(folder_.Path() / "state"));
}

TEST_F(RateTest, AFeatureWithoutARatingRequestCannotBeRated) {
  WriteData(
      "25.1,EPIC-7,,,,,,,,Twice as fast\n"
      "25.1,EPIC-8,,,RequestRating,,,,,Every window is dark\n");
  EXPECT_THAT(Run({"rate", "EPIC-7", "{data}", "{host}"}).errors,
              HasSubstr("these features can be rated: EPIC-8\n"));
  WriteData("25.1,EPIC-7,,,,,,,,Twice as fast\n");
  EXPECT_THAT(Run({"rate", "EPIC-7", "{data}", "{host}"}).errors,
              HasSubstr("cannot rate 'EPIC-7': no visible feature requests a rating\n"));
}

TEST_F(RateTest, SectionsAndHiddenFeaturesCannotBeRated) {
  WriteData(
      "25.1,EPIC-8,,,RequestRating,,,,,Every window is dark\n"
      "25.1,EPIC-9,,,RequestRating,,,,,Nobody sees this\n"
      "25.1,BUGFIX,,,RequestRating,,,,,No crash on full disks\n");
  for (const char* key : {"EPIC-9", "BUGFIX"}) {
    const ProgramResult result = Run({"rate", key, "{data}", "{host}"});
    EXPECT_EQ(5, result.exitStatus);
    EXPECT_EQ("ornwhatsnew: cannot rate '" + std::string(key) +
                  "': these features can be rated: EPIC-8\n",
              result.errors);
  }
}

TEST_F(RateTest, WithoutUsageLoggingNothingCanBeRated) {
  folder_.Write("host.json", R"({"usageLogging": false, "betaFeatures": [
    {"internalKey": "f.export", "epicKey": "EPIC-7", "name": "Export", "enabled": true}]})");
  const ProgramResult result = Run({"rate", "EPIC-7", "{data}", "{host}"});
  EXPECT_EQ(5, result.exitStatus);
  EXPECT_EQ(
      "ornwhatsnew: cannot rate 'EPIC-7': usage logging is off in the host description, so nothing "
      "can be rated\n",
      result.errors);
}

TEST_F(RateTest, NothingCanBeRatedWhileTheApplicationTerminates) {
  folder_.Write("host.json", R"({"terminating": true, "betaFeatures": [
    {"internalKey": "f.export", "epicKey": "EPIC-7", "name": "Export", "enabled": true}]})");
  const ProgramResult result = Run({"rate", "EPIC-7", "{data}", "{host}"});
  EXPECT_EQ(5, result.exitStatus);
  EXPECT_EQ(
      "ornwhatsnew: cannot rate 'EPIC-7': the application is terminating, so nothing can be "
      "rated\n",
      result.errors);
  EXPECT_FALSE(std::filesystem::exists(folder_.Path() / "state"));
}

using StateTest = ProgramTest;

TEST_F(StateTest, ARatingAloneStoresNoVersion) {
  OutputOf({"rate", "EPIC-7", "{data}", "{host}"});
  EXPECT_EQ("State store:     " + StateFile().native() +
                "\nLast opened in:  not yet\nOpened in:       not yet\n"
                "Seen or rated:   1 identity\n",
            OutputOf({"state", "show"}));
}

TEST_F(StateTest, ShowsTheStoredState) {
  EXPECT_EQ("Nothing is stored in " + StateFile().native() + ".\n", OutputOf({"state", "show"}));
  OutputOf({"show", "{data}", "{host}"});
  WriteHost("25.2", false);
  OutputOf({"show", "{data}", "{host}"});
  EXPECT_EQ("State store:     " + StateFile().native() +
                "\nLast opened in:  25.2.0.42\nOpened in:       25.1.0.42 25.2.0.42\n"
                "Seen or rated:   6 identities\n",
            OutputOf({"state", "show"}));
  const json state = json::parse(OutputOf({"state", "show", "--format", "json"}));
  EXPECT_EQ(StateFile().native(), state["location"]);
  EXPECT_EQ("25.2.0.42", state["lastVersionSeen"]);
  EXPECT_EQ((json{"25.1.0.42", "25.2.0.42"}), state["versionsSeen"]);
  EXPECT_EQ(6U, state["seenItems"].size());
}

TEST_F(StateTest, ResetDeletesTheStoredState) {
  OutputOf({"show", "{data}", "{host}"});
  EXPECT_EQ("Deleted the state in " + StateFile().native() + ".\n", OutputOf({"state", "reset"}));
  EXPECT_EQ("Nothing is stored in " + StateFile().native() + ".\n", OutputOf({"state", "show"}));
  EXPECT_THAT(OutputOf({"show", "{data}", "{host}", "--only-new"}), HasSubstr("Twice as fast"));
}

using ConsoleTest = ProgramTest;

constexpr const char* kValidateUsage =
    "ValidateWhatsNew filepath - Parse a What's New file to validate changes before commiting to "
    "version control\n";

TEST_F(ConsoleTest, RunsACommandFromTheArguments) {
  EXPECT_EQ("Reading What's New file at \"" + DataFile().native() + "\" finished\n",
            OutputOf({"console", "ValidateWhatsNew", "{data}"}));
  EXPECT_EQ(kValidateUsage, OutputOf({"console", "ValidateWhatsNew"}));
  EXPECT_EQ("Failed to read What's New file at \"/nowhere\" with result: -2\n",
            OutputOf({"console", "{host}", "ValidateWhatsNew", "/nowhere"}));
  EXPECT_FALSE(std::filesystem::exists(folder_.Path() / "state"));
}

TEST_F(ConsoleTest, ListsTheCommands) {
  const std::string list = std::string(kValidateUsage) + "help - List the commands\n";
  EXPECT_EQ(list, OutputOf({"console", "help"}));
  EXPECT_EQ(list, OutputOf({"console", "--", "help"}));
}

TEST_F(ConsoleTest, RunsTheLinesOfStandardInput) {
  ProgramCall call = Call({"console"});
  call.input = "help\n\n  \nnonsense more\r\nValidateWhatsNew";
  const ProgramResult result = RunProgram(ProgramFile(), call);
  EXPECT_EQ(7, result.exitStatus);
  EXPECT_EQ(std::string(kValidateUsage) + "help - List the commands\n" + kValidateUsage,
            result.output);
  EXPECT_EQ("ornwhatsnew: unknown console command 'nonsense'; 'help' lists the commands\n",
            result.errors);
}

TEST_F(ConsoleTest, HelpAcceptsSpacesAndArguments) {
  const std::string list = std::string(kValidateUsage) + "help - List the commands\n";
  for (const char* line : {"help", "help ", "  help", "\thelp", " help  me ", "help\r"}) {
    ProgramCall call = Call({"console"});
    call.input = line + std::string("\n");
    const ProgramResult result = RunProgram(ProgramFile(), call);
    EXPECT_EQ(0, result.exitStatus) << line;
    EXPECT_EQ(list, result.output) << line;
    EXPECT_THAT(result.errors, IsEmpty()) << line;
  }
  EXPECT_EQ(list, OutputOf({"console", "help", "ValidateWhatsNew"}));
}

struct UnknownCase {
  const char* line;
  const char* name;
};

TEST_F(ConsoleTest, NamesTheUnknownCommand) {
  for (const UnknownCase& test :
       {UnknownCase{"  nonsense more", "nonsense"}, UnknownCase{"help\tme now", "help\\u0009me"},
        UnknownCase{"Help", "Help"}}) {
    ProgramCall call = Call({"console"});
    call.input = test.line;
    const ProgramResult result = RunProgram(ProgramFile(), call);
    EXPECT_EQ(7, result.exitStatus);
    EXPECT_EQ("ornwhatsnew: unknown console command '" + std::string(test.name) +
                  "'; 'help' lists the commands\n",
              result.errors);
  }
}

TEST_F(ConsoleTest, LinesMayBeLong) {
  ProgramCall call = Call({"console"});
  const std::string name = "/" + std::string(20'000, 'x');
  call.input = "ValidateWhatsNew " + name + "\nhelp\n";
  EXPECT_THAT(RunProgram(ProgramFile(), call).output,
              AllOf(StartsWith("Failed to read What's New file at \"" + name + "\""),
                    HasSubstr("\nhelp - List")));
}

TEST_F(ConsoleTest, FileNamesAreSafeForTheTerminal) {
  EXPECT_EQ("Failed to read What's New file at \"/\u241B[31m\" with result: -2\n",
            OutputOf({"console", "ValidateWhatsNew", "/\x1B[31m"}));
}

using HelpTest = ProgramTest;

TEST_F(HelpTest, ListsCommandsAndExitStatus) {
  EXPECT_THAT(OutputOf({"--help"}),
              AllOf(HasSubstr("show"), HasSubstr("status"), HasSubstr("rate"), HasSubstr("state"),
                    HasSubstr("console"), HasSubstr("Exit status:"),
                    HasSubstr("or standard input cannot be used")));
}

TEST_F(HelpTest, PrintsTheVersion) {
  EXPECT_THAT(OutputOf({"--version"}), MatchesRegex("ornwhatsnew [0-9]+\\.[0-9]+\\.[0-9]+\n"));
}

TEST_F(HelpTest, DoesNotOfferValidateWhatsNewAsACheck) {
  // ValidateWhatsNew succeeds even if the file is missing or is not a data file.
  const std::string utf16 = folder_.Write("utf16.csv", std::string("\xFF\xFE"
                                                                   "A\0\n\0",
                                                                   6));
  for (const std::string& file : {std::string("/nowhere.csv"), folder_.Path().native(), utf16,
                                  DataFile().native() + " " + DataFile().native()}) {
    EXPECT_EQ(0, Run({"console", "ValidateWhatsNew", file}).exitStatus) << file;
  }
  EXPECT_THAT(OutputOf({"console", "--help"}),
              AllOf(Not(HasSubstr("ValidateWhatsNew FILE")),
                    HasSubstr("ValidateWhatsNew always succeeds, even if")));
}

TEST_F(HelpTest, AnInvalidCommandLineIsAnError) {
  const ProgramResult result = Run({"show", "--nonsense\x1B[31m"});
  EXPECT_EQ(2, result.exitStatus);
  EXPECT_THAT(result.output, IsEmpty());
  EXPECT_THAT(result.errors,
              AllOf(StartsWith("ornwhatsnew: "), HasSubstr("--help"), Not(HasSubstr("\x1B"))));
}

TEST(ProgramDeathTest, EndsItsContextsBeforeItReturns) {
  const auto run = [] {
    bool isShutDown = false;
    const orncore::config::InitializerRegistrar registrar(
        "test", orncore::config::EInitializerContextFlags::kConsole, [] { return true; },
        [&isShutDown] { isShutDown = true; });
    const char* const arguments[] = {"ornwhatsnew"};
    console::RunProgram(1, arguments);
    std::_Exit(isShutDown ? 0 : 1);
  };
  EXPECT_EXIT(run(), testing::ExitedWithCode(0), "no command given");
}

}  // namespace
}  // namespace hosts::console
