// Tests the commands `import` and `add`. Further tests check that the commands for authors reject
// files that are too large.
#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <unistd.h>

#include "hosts/author/DataFileWriter.h"
#include "hosts/author/lint/LintContext.h"
#include "hosts/common/TextFile.h"
#include "tests/hosts/console/ProgramFixture.h"

namespace hosts::console {
namespace {

using ::testing::AllOf;
using ::testing::ContainsRegex;
using ::testing::EndsWith;
using ::testing::HasSubstr;

class AuthorCommands : public ProgramTest {
 protected:
  std::string PathOf(const std::string& name) const { return folder_.Path() / name; }
  std::string ReadFile(const std::string& name) const { return common::ReadTextFile(PathOf(name)); }
};

TEST_F(AuthorCommands, ImportWritesADataFile) {
  folder_.Write("table.csv", "Grouping ID;Message\r\nMISC;\"5\"\" gr\xFC\xDF\"\r\n");
  const std::string expected = author::HeaderRow() + "\n,MISC,,,,,,,,5″ grüß\n";

  const auto result = Run({"import", PathOf("table.csv")});
  EXPECT_EQ(0, result.exitStatus);
  EXPECT_EQ(expected, result.output);
  EXPECT_THAT(result.errors, HasSubstr("table.csv: read as Windows-1252, "));
  EXPECT_THAT(result.errors, HasSubstr("table.csv:2: in the column 'Public/Internal message'"));

  EXPECT_EQ(expected, Run({"import", PathOf("table.csv"), "-o", "-"}).output);

  EXPECT_EQ("", Run({"import", PathOf("table.csv"), "-o", PathOf("data.csv")}).output);
  EXPECT_EQ(expected, ReadFile("data.csv"));
}

TEST_F(AuthorCommands, ImportUsesTheNamedEncoding) {
  folder_.Write("table.csv", "Grouping ID,Message\nMISC,\x81\n");
  const auto result = Run({"import", "--encoding=IBM850", PathOf("table.csv")});
  EXPECT_THAT(result.output, HasSubstr(",MISC,,,,,,,,ü\n"));
  EXPECT_THAT(result.errors, HasSubstr("read as IBM850, because of --encoding"));
}

TEST_F(AuthorCommands, ImportWritesNothingIfTheTableHasAnError) {
  folder_.Write("data.csv", "old");
  folder_.Write("table.csv", "Grouping ID;Message;Owner\n;a;b\n");
  const auto result = Run({"import", PathOf("table.csv"), "--output", PathOf("data.csv")});
  EXPECT_EQ(kInput, result.exitStatus);
  EXPECT_THAT(result.errors, HasSubstr("table.csv:1: the column 'Owner' is unknown"));
  EXPECT_THAT(result.errors,
              HasSubstr("found one error in the table, whose columns are separated by "
                        "semicolons; nothing was written"));
  EXPECT_EQ("old", ReadFile("data.csv"));
  folder_.Write("table.csv", "Grouping ID,Message,Owner\n,a,b\n");
  EXPECT_THAT(Run({"import", PathOf("table.csv")}).errors, HasSubstr("separated by commas;"));
  folder_.Write("table.csv", "Grouping ID\tMessage\tOwner\n\ta\tb\n");
  EXPECT_THAT(Run({"import", PathOf("table.csv")}).errors, HasSubstr("separated by tabs;"));
}

TEST_F(AuthorCommands, ImportReportsFilesThatItCannotUse) {
  folder_.Write("table.csv", "Grouping ID,Message\nMISC,\"open\n");
  auto result = Run({"import", PathOf("table.csv")});
  EXPECT_EQ(kInput, result.exitStatus);
  EXPECT_THAT(result.errors, HasSubstr("table.csv:2: a double quote is missing or misplaced"));
  EXPECT_EQ(kInput, Run({"import", PathOf("missing.csv")}).exitStatus);
  folder_.Write("table.csv", "Grouping ID,Message\n");
  result = Run({"import", PathOf("table.csv"), "-o", PathOf("missing/data.csv")});
  EXPECT_EQ(kOutput, result.exitStatus);
  EXPECT_THAT(result.errors, HasSubstr("cannot open the folder of '" + PathOf("missing/data.csv") +
                                       "': No such file or directory"));
}

TEST_F(AuthorCommands, ImportDoesNotReplaceItsTable) {
  const std::string table = "Grouping ID,Message\nMISC,new\n";
  folder_.Write("table.csv", table);
  std::filesystem::create_symlink("table.csv", PathOf("link.csv"));
  for (const std::string name : {"table.csv", "link.csv"}) {
    const auto result = Run({"import", PathOf("table.csv"), "-o", PathOf(name)});
    EXPECT_EQ(kUsage, result.exitStatus) << name;
    EXPECT_EQ("ornwhatsnew: the output would replace the input file '" + PathOf("table.csv") +
                  "'; write the output to another file\n",
              result.errors);
  }
  EXPECT_EQ(table, ReadFile("table.csv"));
}

TEST_F(AuthorCommands, ImportDoesNotCreateAConfigurationOfLint) {
  folder_.Write("table.csv", "Grouping ID,Message\nMISC,new\n");
  const auto result = Run({"import", PathOf("table.csv"), "-o", PathOf(".ornwhatsnew-lint.json")});
  EXPECT_EQ(kUsage, result.exitStatus);
  EXPECT_THAT(result.errors,
              HasSubstr("' has the name of the configuration file of 'ornwhatsnew lint'; "));
  EXPECT_FALSE(std::filesystem::exists(PathOf(".ornwhatsnew-lint.json")));
}

TEST_F(AuthorCommands, ImportRejectsAnUnknownEncoding) {
  folder_.Write("table.csv", "Grouping ID,Message\n");
  for (const std::string encoding : {"nonsense", ""}) {
    const auto result = Run({"import", PathOf("table.csv"), "--encoding", encoding});
    EXPECT_EQ(kUsage, result.exitStatus);
    EXPECT_THAT(result.errors, HasSubstr("the encoding '" + encoding + "' is unknown"));
  }
}

TEST_F(AuthorCommands, MessagesContainThePathThatTheAuthorWrote) {
  auto call = Call({"add", "missing.csv", "--grouping-id", "MISC"});
  const std::string folder = folder_.Path();
  call.beforeStart = [&folder] {
    if (::chdir(folder.c_str()) != 0) ::_exit(126);
  };
  EXPECT_EQ("ornwhatsnew: cannot open 'missing.csv': No such file or directory\n",
            test_support::RunProgram(ProgramFile(), call).errors);
  call.arguments[1] = "missing/data.csv";
  EXPECT_EQ(
      "ornwhatsnew: cannot open the folder of 'missing/data.csv': No such file or directory\n",
      test_support::RunProgram(ProgramFile(), call).errors);
}

// The messages must not name the temporary file, because users do not know it.
TEST_F(AuthorCommands, MessagesNameTheFileOnAFullDisk) {
  folder_.Write("table.csv", "Grouping ID,Message\nMISC,new\n");
  folder_.Write("data.csv", author::HeaderRow() + "\n");
  const std::string folder = folder_.Path();
  for (const auto& words : std::vector<std::vector<std::string>>{
           {"import", "table.csv", "-o", "data.csv"},
           {"import", "table.csv", "-o", "new.csv"},
           {"add", "data.csv", "--grouping-id", "MISC", "--message", "new"}}) {
    auto call = Call(words);
    call.beforeStart = [&folder] {
      constexpr rlimit kNothing = {0, 0};
      ::setrlimit(RLIMIT_FSIZE, &kNothing);
      if (::chdir(folder.c_str()) != 0) ::_exit(126);
    };
    const auto result = test_support::RunProgram(ProgramFile(), call);
    const std::string file = words[0] == "add" ? words[1] : words[3];
    EXPECT_EQ(kOutput, result.exitStatus);
    EXPECT_THAT(result.errors,
                EndsWith("ornwhatsnew: cannot write '" + file + "': File too large\n"));
  }
}

TEST_F(AuthorCommands, AFolderIsNoDataFile) {
  std::filesystem::create_directory(PathOf("folder"));
  const std::string folder = folder_.Path();
  for (const std::string name : {".", "folder/", "folder"}) {
    auto call = Call({"add", name, "--grouping-id", "MISC"});
    call.beforeStart = [&folder] {
      if (::chdir(folder.c_str()) != 0) ::_exit(126);
    };
    EXPECT_THAT(
        test_support::RunProgram(ProgramFile(), call).errors,
        ContainsRegex("^ornwhatsnew: cannot (open|write) '" + name + "'.*: Is a directory\n$"));
  }
}

TEST_F(AuthorCommands, AnEmptyNameIsNoFile) {
  const std::string message = "ornwhatsnew: cannot open '': No such file or directory\n";
  const auto add = Run({"add", "", "--grouping-id", "MISC"});
  EXPECT_EQ(kInput, add.exitStatus);
  EXPECT_EQ(message, add.errors);
  folder_.Write("table.csv", "Grouping ID,Message\nMISC,new\n");
  EXPECT_THAT(Run({"import", PathOf("table.csv"), "-o", ""}).errors, EndsWith(message));
}

TEST_F(AuthorCommands, MessagesNameTheMaximumSizeOfAFile) {
  folder_.Write("large.csv", std::string((std::size_t{16} << 20) + 1, 'x'));
  for (const std::string command : {"import", "lint", "messages"}) {
    EXPECT_EQ("ornwhatsnew: cannot open '" + PathOf("large.csv") + "': larger than 16 MiB\n",
              Run({command, PathOf("large.csv")}).errors);
  }
}

TEST_F(AuthorCommands, AddAppendsAChangeThatShowPrints) {
  const std::string before = common::ReadTextFile(DataFile());
  EXPECT_EQ("", OutputOf({"add", "{data}", "--app-version", "25.1", "--grouping-id", "EPIC-8",
                          "--jira-id=ORN-1", "--salience=Detail", "--rating", "Why, though?",
                          "--first-version=24.0", "--platform=Mac", "--url=https://a.example",
                          "--commit=ab12", "--message", "- faster, on \u201Call\u201D machines"}));
  EXPECT_EQ(
      before +
          "25.1,EPIC-8,ORN-1,Detail,\"Why, though?\",24.0,Mac,https://a.example,ab12,\"- faster, "
          "on \u201Call\u201D machines\"\n",
      common::ReadTextFile(DataFile()));
  EXPECT_THAT(OutputOf({"show", "{host}", "{data}"}),
              HasSubstr("(macOS only) - faster, on “all” machines (v24.0-v25.1)"));
}

TEST_F(AuthorCommands, AddRefusesARowInWhichLintFindsAnError) {
  const std::string before = common::ReadTextFile(DataFile());
  const auto result = Run({"add", "{data}", "--grouping-id", "misc", "--app-version", "25.1",
                           "--salience", "Headlines", "--message", " new"});
  EXPECT_EQ(kInput, result.exitStatus);
  EXPECT_THAT(result.errors, HasSubstr("whats new.csv: error: 'misc' in "));
  EXPECT_THAT(result.errors, HasSubstr("[grouping-id-unknown]\n"));
  EXPECT_THAT(result.errors, HasSubstr("write 'Headline' [salience-unknown]\n"));
  EXPECT_THAT(result.errors, HasSubstr("whats new.csv: warning: "));
  EXPECT_THAT(result.errors, HasSubstr("found 2 errors in the new row; nothing was written\n"));
  EXPECT_EQ(before, common::ReadTextFile(DataFile()));
}

TEST_F(AuthorCommands, AddPrintsTheWarningsOnTheNewRowOnly) {
  WriteData("25.1,Changes-Since\n25.1,MISC,,Headlines,,,,,,old\n,MISC,,,,,,,,old\n");
  const std::string before = common::ReadTextFile(DataFile());
  const std::vector<std::string> call = {"add",  "{data}",    "--grouping-id",
                                         "MISC", "--message", "new"};
  auto result = Run(call);
  EXPECT_EQ(0, result.exitStatus);
  EXPECT_THAT(result.errors,
              AllOf(HasSubstr("whats new.csv:5: warning: "), EndsWith("[version-missing]\n")));
  EXPECT_EQ(1, std::ranges::count(result.errors, '\n')) << result.errors;
  EXPECT_EQ(before + ",MISC,,,,,,,,new\n", common::ReadTextFile(DataFile()));
  folder_.Write(".ornwhatsnew-lint.json", R"({"severity": {"version-missing": "error"}})");
  result = Run(call);
  EXPECT_EQ(kInput, result.exitStatus);
  EXPECT_THAT(result.errors, HasSubstr("whats new.csv: error: "));
}

// `lint` would report that the data file has no Changes-Since row. `add` must report only the
// findings on the new row.
TEST_F(AuthorCommands, AddOfTheFirstChangePrintsNoFindingOnTheFile) {
  WriteData("");
  EXPECT_EQ("", OutputOf({"add", "{data}", "--grouping-id", "MISC", "--app-version", "25.1",
                          "--message", "new"}));
}

TEST_F(AuthorCommands, AddReportsItsOwnMistakeEvenIfManyRowsHaveIt) {
  std::string rows = "25.1,Changes-Since\n";
  for (std::size_t i = 0; i <= author::kMaximumFindings; ++i) rows += "25.1,misc,,,,,,,,old\n";
  WriteData(rows);
  const auto result =
      Run({"add", "{data}", "--grouping-id", "misc", "--app-version", "25.1", "--message", "new"});
  EXPECT_EQ(kInput, result.exitStatus);
  EXPECT_THAT(result.errors, HasSubstr("found one error in the new row; nothing was written\n"));
}

TEST_F(AuthorCommands, AddRequiresAHeaderRow) {
  folder_.Write("data.csv", "4.3,MISC\n");
  const auto result = Run({"add", PathOf("data.csv"), "--grouping-id", "MISC", "--app-version",
                           "25.1", "--message", "new"});
  EXPECT_EQ(kInput, result.exitStatus);
  EXPECT_THAT(result.errors,
              HasSubstr("data.csv: the file has no header row with ten columns, so the "
                        "library would use the new row as the header; add a header "
                        "row as the first line\n"));
}

TEST_F(AuthorCommands, AddRefusesAFileThatIsNotUTF8) {
  WriteData("25.1,MISC,,,,,,,,\xFF\n");
  const auto result = Run({"add", "{data}", "--grouping-id", "MISC", "--message", "new"});
  EXPECT_EQ(kInput, result.exitStatus);
  EXPECT_THAT(result.errors, HasSubstr("whats new.csv: the file is not valid UTF-8; convert it"));
}

TEST_F(AuthorCommands, AddRefusesAFileThatLintCannotJudge) {
  folder_.Write("data.csv", "a,a,a,a,a,a,a,a,a,a\n;;;;;;;;;\n;;;;;;;;;\n;;;;;;;;;\n");
  const auto result = Run({"add", PathOf("data.csv"), "--grouping-id", "MISC", "--app-version",
                           "25.1", "--message", "new"});
  EXPECT_EQ(kInput, result.exitStatus);
  EXPECT_THAT(result.errors, HasSubstr("data.csv: error: the fields are separated by semicolons"));
  EXPECT_THAT(result.errors, HasSubstr("found one error in the file; nothing was written\n"));
}

TEST_F(AuthorCommands, MessagesContainTheFeatureTableOfTheHost) {
  folder_.Write("map.json",
                R"({"betaFeatures": [{"internalKey": "map", "name": "$$$/map/name=Map"}]})");
  EXPECT_THAT(OutputOf({"messages", "{data}", "--host", PathOf("map.json")}),
              HasSubstr("msgctxt \"$$$/map/name\"\nmsgid \"Map\"\n"));
  EXPECT_THAT(OutputOf({"messages", "{data}"}), Not(HasSubstr("$$$/map/name")));
}

TEST_F(AuthorCommands, RefuseFilesThatNeedTooMuchMemory) {
  folder_.Write("large.csv", "");
  std::filesystem::resize_file(PathOf("large.csv"), (std::size_t{16} << 20) + 1);
  for (const std::vector<std::string>& call : std::vector<std::vector<std::string>>{
           {"import", PathOf("large.csv")},
           {"messages", PathOf("large.csv")},
           {"why", PathOf("large.csv"), "{host}"},
           {"add", PathOf("large.csv"), "--grouping-id", "MISC"}}) {
    const auto result = Run(call);
    EXPECT_EQ(kInput, result.exitStatus) << call.front();
    EXPECT_THAT(result.errors, ContainsRegex("File too large|larger than 16 MiB")) << call.front();
  }
}

TEST_F(AuthorCommands, AddLosesNoChangeOfAnotherProgram) {
  constexpr std::size_t kPrograms = 6;
  const std::string before = common::ReadTextFile(DataFile());
  const auto call = Call({"add", "{data}", "--grouping-id", "MISC", "--message", "new"});
  std::vector<std::unique_ptr<test_support::ChildProcess>> programs;
  for (std::size_t i = 0; i < kPrograms; ++i) {
    programs.push_back(std::make_unique<test_support::ChildProcess>(ProgramFile(), call));
  }
  std::string expected = before;
  for (const auto& program : programs) {
    const auto result = program->Wait();
    EXPECT_EQ(0, result.exitStatus) << result.errors;
    expected += ",MISC,,,,,,,,new\n";
  }
  EXPECT_EQ(expected, common::ReadTextFile(DataFile()));
}

TEST_F(AuthorCommands, AddRequiresAGroupingID) {
  const auto result = Run({"add", "{data}", "--message", "new"});
  EXPECT_EQ(kUsage, result.exitStatus);
  EXPECT_THAT(result.errors, HasSubstr("--grouping-id is required"));
}

TEST_F(AuthorCommands, AddRefusesWhatADataFileCannotContain) {
  const std::string before = common::ReadTextFile(DataFile());
  const auto result = Run({"add", "{data}", "--grouping-id", "MISC", "--message", "5\" screens"});
  EXPECT_EQ(kUsage, result.exitStatus);
  EXPECT_THAT(result.errors, HasSubstr("the value of 'Public/Internal message' contains a double"));
  EXPECT_EQ(kUsage, Run({"add", "{data}", "--grouping-id", ""}).exitStatus);
  EXPECT_EQ(before, common::ReadTextFile(DataFile()));
  EXPECT_EQ(kInput, Run({"add", PathOf("missing.csv"), "--grouping-id", "MISC"}).exitStatus);
  EXPECT_FALSE(std::filesystem::exists(PathOf("missing.csv")));
}

}  // namespace
}  // namespace hosts::console
