// Runs the commands in examples/README.md, docs/data-file.md and docs/author-guide.md, and compares
// their output with the output that these pages show.
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <regex>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/examples/WalkThrough.h"
#include "tests/support/TemporaryFolder.h"

namespace examples {
namespace {

using ::testing::HasSubstr;

std::string ReadAll(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  EXPECT_TRUE(file) << path;
  return {std::istreambuf_iterator<char>(file), {}};
}

// Runs a command and returns the lines that it writes to standard output and standard error.
Lines RunInShell(const std::string& command) {
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> pipe(
      popen(("{ " + command + "; } 2>&1").c_str(), "r"), pclose);
  EXPECT_NE(pipe, nullptr) << command;
  std::string output;
  for (int unit = std::fgetc(pipe.get()); unit != EOF; unit = std::fgetc(pipe.get())) {
    output += static_cast<char>(unit);
  }
  return SplitLines(output);
}

std::string JoinLines(const Lines& lines) {
  std::string text;
  for (const std::string& line : lines) text += line + '\n';
  return text;
}

// Runs the commands of the file `page` in the current folder. Expects the output that the page
// shows.
void ExpectPageShowsWhatItsCommandsPrint(const std::string& page) {
  const auto commands = ReadShownCommands(ReadAll(page));
  ASSERT_GT(commands.size(), 10U);
  for (const ShownCommand& shown : commands) {
    const Lines output = RunInShell(shown.command);
    EXPECT_TRUE(IsShown(shown.output, output)) << "$ " << shown.command << "\nprints\n"
                                               << JoinLines(output) << "but the page shows\n"
                                               << JoinLines(shown.output);
  }
}

// Prepares the environment for the commands of a page. Changes to the folder of the example, adds
// the folder of the program to PATH, and unsets COLUMNS. The state store is empty.
class ExamplePage : public ::testing::Test {
 protected:
  void SetUp() override {
    std::filesystem::current_path(EXAMPLE_FOLDER);
    setenv("XDG_STATE_HOME", stateHome_.Path().c_str(), 1);
    setenv("PATH", (std::string(PROGRAM_FOLDER ":") + std::getenv("PATH")).c_str(), 1);
    unsetenv("COLUMNS");
  }

  void TearDown() override { std::filesystem::current_path(startFolder_); }

 private:
  const test_support::TemporaryFolder stateHome_;
  const std::filesystem::path startFolder_ = std::filesystem::current_path();
};

TEST_F(ExamplePage, ShowsTheOutputOfItsCommands) {
  ExpectPageShowsWhatItsCommandsPrint(EXAMPLE_PAGE);
}

TEST_F(ExamplePage, DataFileManualShowsTheOutputOfItsCommands) {
  std::filesystem::current_path(RULES_FOLDER);
  ExpectPageShowsWhatItsCommandsPrint(RULES_PAGE);
}

// The commands in the author guide write files and use git. The test therefore runs them in a copy
// of the folder examples/author, and sets the author of their commits.
TEST_F(ExamplePage, AuthorGuideShowsTheOutputOfItsCommands) {
  const test_support::TemporaryFolder folder;
  std::filesystem::copy(AUTHOR_FOLDER, folder.Path(), std::filesystem::copy_options::recursive);
  std::filesystem::current_path(folder.Path());
  for (const char* const name : {"GIT_AUTHOR_NAME", "GIT_COMMITTER_NAME"}) setenv(name, "a", 1);
  for (const char* const name : {"GIT_AUTHOR_EMAIL", "GIT_COMMITTER_EMAIL"}) setenv(name, "a@b", 1);
  ExpectPageShowsWhatItsCommandsPrint(AUTHOR_GUIDE);
}

// The README of the examples quotes lines of the data file in table rows of this form:
// | line number | `quoted text` | explanation |
TEST_F(ExamplePage, QuotesTheLinesOfTheDataFile) {
  const Lines data = SplitLines(ReadAll("whatsnew.csv"));
  const std::regex tableRow(R"(^\| (\d+) \| `([^`]+)` \|)");
  int rowCount = 0;
  for (const std::string& line : SplitLines(ReadAll(EXAMPLE_PAGE))) {
    std::smatch match;
    if (!std::regex_search(line, match, tableRow)) continue;
    const std::size_t number = std::stoul(match[1]);
    ASSERT_LE(number, data.size()) << line;
    EXPECT_THAT(data[number - 1], HasSubstr(match[2].str())) << line;
    ++rowCount;
  }
  EXPECT_GT(rowCount, 20);
}

TEST(WalkThrough, AcceptsThreeDotsForAnyLines) {
  const Lines output = {"a", "b", "c", "b", "d"};
  EXPECT_TRUE(IsShown({"a", "b", "c", "b", "d"}, output));
  EXPECT_TRUE(IsShown({"...", "b", "d"}, output));
  EXPECT_TRUE(IsShown({"a", "...", "c", "..."}, output));
  EXPECT_TRUE(IsShown({"...", "c", "...", "d"}, output));
  EXPECT_TRUE(IsShown({"..."}, {}));
  EXPECT_FALSE(IsShown({"a", "b", "c", "b"}, output));
  EXPECT_FALSE(IsShown({"b", "..."}, output));
  EXPECT_FALSE(IsShown({"...", "c"}, output));
  EXPECT_FALSE(IsShown({"a", "...", "c", "d"}, output));
  EXPECT_FALSE(IsShown({"d", "...", "a"}, output));
  EXPECT_FALSE(IsShown({}, output));
}

TEST(WalkThrough, AcceptsThreeDotsForAnyCharacters) {
  EXPECT_TRUE(IsShown({"at \"...\" finished"}, {"at \"/a/b\" finished"}));
  EXPECT_TRUE(IsShown({"...", "at ..."}, {"before", "at last"}));
  EXPECT_FALSE(IsShown({"at \"...\" finished"}, {"at \"/a/b\" failed"}));
  EXPECT_FALSE(IsShown({"ab...ba"}, {"aba"}));
}

}  // namespace
}  // namespace examples
