// Runs the program with names that a terminal cannot show: names with invisible characters, and
// file names that are not valid UTF-8.
#include <filesystem>
#include <sstream>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/hosts/console/ProgramFixture.h"

namespace hosts::console {
namespace {

using test_support::ProgramCall;
using test_support::ProgramResult;
using testing::AllOf;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

/// A fixture with a data file and a host description whose names are not valid UTF-8.
class NamesTest : public ProgramTest {
 protected:
  NamesTest() {
    std::filesystem::rename(DataFile(), Path("data\xFF'.csv"));
    std::filesystem::rename(HostFile(), Path("host\xC3\x1B.json"));
  }

  std::string Path(const std::string& name) const { return folder_.Path() / name; }

  /// Returns the arguments of `command`, with the data file, the host description and a state
  /// store. None of the three file names is valid UTF-8.
  std::vector<std::string> WordsFor(const std::string& command) const {
    return {command,   Path("data\xFF'.csv"),     "--host", Path("host\xC3\x1B.json"),
            "--state", Path("state\xE2\x80.json")};
  }
};

TEST_F(NamesTest, EveryCommandUsesTheBytesOfTheFileNames) {
  EXPECT_EQ("There is something new.\nNothing needs rating.\n", OutputOf(WordsFor("status")));
  std::vector<std::string> why = WordsFor("why");
  why.insert(why.end(), {"--line", "3"});
  EXPECT_THAT(OutputOf(why), HasSubstr("/data\\xff'.csv:3: a change of the feature 'EPIC-7'"));
  EXPECT_THAT(OutputOf(WordsFor("show")), HasSubstr("Twice as fast"));
  EXPECT_TRUE(std::filesystem::exists(Path("state\xE2\x80.json")));
  EXPECT_THAT(OutputOf({"state", "show", "--state", Path("state\xE2\x80.json")}),
              AllOf(HasSubstr("/state\\xe2\\x80.json\n"), HasSubstr("6 identities")));
  EXPECT_THAT(OutputOf({"state", "reset", "--state", Path("state\xE2\x80.json")}),
              HasSubstr("/state\\xe2\\x80.json.\n"));
}

TEST_F(NamesTest, AShellRunsThePrintedRatingCommand) {
  OutputOf(WordsFor("show"));
  std::vector<std::string> words = WordsFor("show");
  words.push_back("--rating");
  std::istringstream lines(OutputOf(words));
  std::vector<std::string> commands;
  for (std::string line; std::getline(lines, line);) {
    const std::size_t begin = line.find("ornwhatsnew rate ");
    if (begin != std::string::npos) commands.push_back(line.substr(begin));
  }
  ASSERT_EQ(2U, commands.size());
  ProgramCall call;
  call.arguments = {"-c", commands[0]};
  call.environment = {{"PATH", std::filesystem::path(ProgramFile()).parent_path()}};
  EXPECT_EQ("Thank you. Your rating of EPIC-7 was stored.\n",
            test_support::RunProgram("/bin/bash", call).output);
  EXPECT_THAT(OutputOf(words), testing::Not(HasSubstr("EPIC-7")));
}

TEST_F(NamesTest, MessagesShowTheBytesOfFileNames) {
  EXPECT_EQ("ornwhatsnew: cannot open 'none\\xff.csv': No such file or directory\n",
            Run({"show", "none\xFF.csv", "--host", Path("host\xC3\x1B.json")}).errors);
  EXPECT_EQ("ornwhatsnew: cannot open 'none\\xff\\u200b.json': No such file or directory\n",
            Run({"status", "{data}", "--host", "none\xFF\u200B.json"}).errors);
  folder_.Write("bad\xFF.json", "[]");
  EXPECT_THAT(Run({"status", "{data}", "--host", Path("bad\xFF.json")}).errors,
              HasSubstr("/bad\\xff.json: expected an object"));
}

// If the console accepted a line that is not UTF-8, the conversion to UTF-16 would replace the
// ill-formed bytes. The command would then open the file whose name contains U+FFFD.
TEST_F(NamesTest, TheConsoleRefusesLinesThatAreNotUTF8) {
  folder_.Write("x\uFFFD.csv", "");
  const std::string name = Path("x\xFF.csv");
  const ProgramResult result = Run({"console", "ValidateWhatsNew", name});
  EXPECT_EQ(7, result.exitStatus);
  EXPECT_THAT(result.output, IsEmpty());
  EXPECT_THAT(result.errors,
              AllOf(StartsWith("ornwhatsnew: cannot run the console command 'ValidateWhatsNew /"),
                    HasSubstr("/x\\xff.csv': not valid UTF-8\n")));

  ProgramCall call = Call({"console"});
  call.input = "ValidateWhatsNew " + name + "\nValidateWhatsNew\n";
  const ProgramResult ofLines = RunProgram(ProgramFile(), call);
  EXPECT_EQ(7, ofLines.exitStatus);
  EXPECT_THAT(ofLines.output, StartsWith("ValidateWhatsNew filepath"));
  EXPECT_EQ(result.errors, ofLines.errors);
}

using VisibleMessageTest = ProgramTest;

TEST_F(VisibleMessageTest, MessagesCutLongConsoleLines) {
  const std::string name(30'000, 'x');
  ProgramCall call = Call({"console"});
  call.input = name + "\n" + name + "\xFF\n";
  const ProgramResult result = RunProgram(ProgramFile(), call);
  EXPECT_EQ(7, result.exitStatus);
  const std::string cut = std::string(100, 'x') + " ... " + std::string(99, 'x');
  EXPECT_EQ("ornwhatsnew: unknown console command '" + cut + "x'; 'help' lists the commands\n" +
                "ornwhatsnew: cannot run the console command '" + cut + "\\xff': not valid UTF-8\n",
            result.errors);
}

TEST_F(VisibleMessageTest, QuotedNamesShowTheirInvisibleCharacters) {
  EXPECT_EQ(
      "ornwhatsnew: cannot rate 'EPIC-7\\u200b': these features can be rated: EPIC-7, EPIC-8\n",
      Run({"rate", "EPIC-7\u200B", "{data}", "{host}"}).errors);
  EXPECT_THAT(Run({"sh\u00ADow"}).errors, HasSubstr("unknown command 'sh\\u00adow'"));
  EXPECT_EQ("ornwhatsnew: unknown console command 'help\\u2060'; 'help' lists the commands\n",
            Run({"console", "help\u2060"}).errors);
  folder_.Write("host.json", "{\"platform\u200B\": \"Mac\"}");
  EXPECT_THAT(Run({"status", "{data}", "{host}"}).errors,
              HasSubstr("unknown member \"platform\\u200b\""));
}

TEST_F(VisibleMessageTest, AStoredRatingShowsTheInvisibleCharactersOfItsKey) {
  folder_.Write("host.json", R"({"betaFeatures": [
    {"internalKey": "f", "epicKey": "EPIC-7\u200b", "name": "Export", "enabled": true}]})");
  WriteData("25.1,EPIC-7\u200B,,,RequestRating,,,,,Twice as fast\n");
  EXPECT_EQ("Thank you. Your rating of EPIC-7\\u200b was stored.\n",
            OutputOf({"rate", "EPIC-7\u200B", "{data}", "{host}"}));
}

}  // namespace
}  // namespace hosts::console
