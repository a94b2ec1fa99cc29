// Runs `ornwhatsnew preview` as an author or a script would.
#include <chrono>
#include <csignal>
#include <filesystem>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include "hosts/common/TextFile.h"
#include "tests/hosts/common/CatalogBytes.h"
#include "tests/hosts/console/ProgramFixture.h"

namespace hosts::console {
namespace {

using test_support::ChildProcess;
using test_support::ProgramResult;
using testing::AllOf;
using testing::Each;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

class PreviewCommand : public ProgramTest {
 protected:
  std::string PageFile() const { return folder_.Path() / "page.html"; }
  std::string Page() const { return common::ReadTextFile(PageFile()); }
  std::vector<std::string> Words() const {
    return {"preview", "{data}", "{host}", "-o", PageFile()};
  }

  /// Writes a catalog in which `text` is the translation of `$$$/News`. Returns the path of the
  /// catalog.
  std::filesystem::path WriteCatalog(const std::string& text) const {
    return folder_.Write(
        "de.mo", common::CatalogBytes(
                     {common::Properties(), {common::InContext("$$$/News", "News"), text}}));
  }

  /// Writes a host description that names the catalog de.mo, and a data file with the key text
  /// `$$$/News=News`. Does not write the catalog.
  void UseCatalog() const {
    folder_.Write("host.json", R"({"clientVersion": "25.1", "dictionaryFiles": ["de.mo"]})");
    WriteData("25.1,MISC,,,,,,,,$$$/News=News\n");
  }

  std::string ErrorFile() const { return folder_.Path() / "errors"; }

  /// Returns the names of all files in the folder of the page.
  std::vector<std::string> FileNames() const {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder_.Path())) {
      names.push_back(entry.path().filename());
    }
    return names;
  }

  /// Starts the program with `--watch` and `options`. `interrupt` is the program's initial
  /// disposition of SIGINT: SIG_DFL or SIG_IGN. Redirects the program's standard error to the file
  /// `ErrorFile()`.
  std::unique_ptr<ChildProcess> StartWatching(sighandler_t interrupt = SIG_DFL,
                                              const std::vector<std::string>& options = {}) const {
    std::vector<std::string> words = Words();
    words.emplace_back("--watch");
    words.insert(words.end(), options.begin(), options.end());
    test_support::ProgramCall call = Call(words);
    const std::string errors = ErrorFile();
    call.beforeStart = [&errors, interrupt] {
      ::dup2(::open(errors.c_str(), O_WRONLY | O_CREAT, 0600), STDERR_FILENO);
      ::signal(SIGINT, interrupt);
    };
    return std::make_unique<ChildProcess>(ProgramFile(), call);
  }

  /// Waits until `file` contains `text`. Fails the test if this does not happen within a minute.
  static void WaitUntilFileContains(const std::string& file, const std::string& text) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::minutes(1);
    std::string content;
    while (content.find(text) == content.npos && std::chrono::steady_clock::now() < end) {
      std::this_thread::sleep_for(std::chrono::milliseconds(20));
      if (std::filesystem::exists(file)) content = common::ReadTextFile(file);
    }
    EXPECT_THAT(content, HasSubstr(text));
  }
};

TEST_F(PreviewCommand, WritesAPage) {
  EXPECT_EQ(OutputOf(Words()), "");
  EXPECT_THAT(Page(), AllOf(StartsWith("<!DOCTYPE html>"), HasSubstr("Twice as fast"),
                            HasSubstr("<code>grouping-id-unknown</code>"), EndsWith("</html>\n")));
  EXPECT_FALSE(std::filesystem::exists(folder_.Path() / "state"));
}

TEST_F(PreviewCommand, DashIsStandardOutput) {
  OutputOf(Words());
  EXPECT_EQ(OutputOf({"preview", "{data}", "{host}", "-o", "-"}), Page());
}

TEST_F(PreviewCommand, ShowsAUserOfAnEarlierFile) {
  const std::string old = folder_.Write(
      "old.csv", "v,g,,,,,,,,\n25.0,EPIC-8,,,How dark is it?,24.0,,,,Every window is dark\n");
  std::vector<std::string> words = Words();
  words.insert(words.end(), {"--seen", old});
  OutputOf(words);
  EXPECT_THAT(Page(),
              HasSubstr("who has seen the changes in old.csv with version 25.0.0.42 and now "
                        "starts version 25.1.0.42."));
}

TEST_F(PreviewCommand, FailureKeepsThePage) {
  OutputOf(Words());
  const std::string page = Page();
  folder_.Write("host.json", "{");
  EXPECT_EQ(Run(Words()).exitStatus, kInput);
  std::filesystem::remove(DataFile());
  EXPECT_EQ(Run(Words()).exitStatus, kInput);
  EXPECT_EQ(Page(), page);
}

TEST_F(PreviewCommand, ReportsAPageThatCannotBeWritten) {
  const std::string file = folder_.Path() / "missing" / "page.html";
  const ProgramResult result = Run({"preview", "{data}", "{host}", "-o", file});
  EXPECT_EQ(result.exitStatus, kOutput);
  EXPECT_THAT(result.errors,
              HasSubstr("cannot open the folder of '" + file + "': No such file or directory"));
}

TEST_F(PreviewCommand, DoesNotReplaceItsInput) {
  const std::string before = common::ReadTextFile(DataFile());
  for (const std::string& file : {DataFile().native(), HostFile().native()}) {
    const ProgramResult result = Run({"preview", "{data}", "{host}", "-o", file});
    EXPECT_EQ(result.exitStatus, kUsage);
    EXPECT_THAT(result.errors, HasSubstr("would replace the input file '" + file + "'"));
  }
  EXPECT_EQ(common::ReadTextFile(DataFile()), before);
}

TEST_F(PreviewCommand, DoesNotReplaceFilesThatItsInputRefersTo) {
  UseCatalog();
  for (const std::filesystem::path& file :
       {WriteCatalog("Neu"), folder_.Write(".ornwhatsnew-lint.json", "{}")}) {
    const std::string before = common::ReadTextFile(file);
    const ProgramResult result = Run({"preview", "{data}", "{host}", "-o", file});
    EXPECT_EQ(result.exitStatus, kUsage);
    EXPECT_THAT(result.errors, HasSubstr("would replace the input file '" + file.native() + "'"));
    EXPECT_EQ(common::ReadTextFile(file), before);
  }
}

// If `preview` wrote its page to the configuration file of `lint`, `lint` and the next preview
// would read the page as their configuration and fail.
TEST_F(PreviewCommand, DoesNotCreateAConfigurationOfLint) {
  const std::string file = folder_.Path() / ".ornwhatsnew-lint.json";
  const ProgramResult result = Run({"preview", "{data}", "{host}", "-o", file});
  EXPECT_EQ(result.exitStatus, kUsage);
  EXPECT_EQ(
      result.errors,
      "ornwhatsnew: the output '" + file +
          "' has the name of the configuration file of 'ornwhatsnew lint'; write the output to "
          "another file\n");
  EXPECT_FALSE(std::filesystem::exists(file));
}

TEST_F(PreviewCommand, WatchNoticesChangesOfTheDictionary) {
  UseCatalog();
  WriteCatalog("Neuigkeit");
  const auto program = StartWatching();
  WaitUntilFileContains(PageFile(), "Neuigkeit");
  folder_.Write("de.mo", "not a catalog");
  WaitUntilFileContains(ErrorFile(), "de.mo");
  WriteCatalog("Eine Verbesserung");
  WaitUntilFileContains(PageFile(), "Eine Verbesserung");
  program->Interrupt();
  EXPECT_EQ(program->Wait().exitStatus, 0);
}

TEST_F(PreviewCommand, WatchNoticesANewConfigurationOfLint) {
  const std::string noteOnTheUnknownID = "<strong>note</strong> line 6,";
  const auto program = StartWatching();
  WaitUntilFileContains(PageFile(), "grouping-id-unknown");
  EXPECT_THAT(Page(), Not(HasSubstr(noteOnTheUnknownID)));
  folder_.Write(".ornwhatsnew-lint.json", R"({"severity": {"grouping-id-unknown": "note"}})");
  WaitUntilFileContains(PageFile(), noteOnTheUnknownID);
  program->Interrupt();
  EXPECT_EQ(program->Wait().exitStatus, 0);
}

TEST_F(PreviewCommand, WatchNoticesChangesOfTheEarlierFile) {
  const std::string old = folder_.Write("old.csv", "v,g,,,,,,,,\n25.0,MISC,,,,,,,,a\n");
  const auto program = StartWatching(SIG_DFL, {"--seen", old});
  WaitUntilFileContains(PageFile(), "in old.csv with version 25.0.0.42");
  folder_.Write("old.csv", "v,g,,,,,,,,\n24.9,MISC,,,,,,,,a\n");
  WaitUntilFileContains(PageFile(), "in old.csv with version 24.9.0.42");
  program->Interrupt();
  EXPECT_EQ(program->Wait().exitStatus, 0);
}

TEST_F(PreviewCommand, WatchWritesThePageAgainAfterEachChange) {
  const auto program = StartWatching();
  WaitUntilFileContains(PageFile(), "Twice as fast");
  WriteData("25.1,MISC,,,,,,,,A second text\n");
  WaitUntilFileContains(PageFile(), "A second text");
  WriteHost("25.2", false);
  WaitUntilFileContains(PageFile(), "version 25.2,");
  program->Interrupt();
  EXPECT_EQ(program->Wait().exitStatus, 0);
  EXPECT_THAT(common::ReadTextFile(ErrorFile()),
              StartsWith("ornwhatsnew: wrote '" + PageFile() + "'; waiting for changes"));
  EXPECT_THAT(FileNames(), Each(Not(EndsWith(".tmp"))));
}

// Shells start the background programs of a script with SIGINT ignored. The program must not handle
// an ignored signal.
TEST_F(PreviewCommand, WatchGoesOnAfterAnIgnoredSignal) {
  const auto program = StartWatching(SIG_IGN);
  WaitUntilFileContains(ErrorFile(), "waiting for changes");
  program->Interrupt();
  WriteData("25.1,MISC,,,,,,,,A second text\n");
  WaitUntilFileContains(PageFile(), "A second text");
}

TEST_F(PreviewCommand, WatchReportsAnErrorAndGoesOn) {
  const auto program = StartWatching();
  WaitUntilFileContains(PageFile(), "Twice as fast");
  const std::string page = Page();
  folder_.Write("host.json", "{");
  WaitUntilFileContains(ErrorFile(), "host.json");
  EXPECT_EQ(Page(), page);
  WriteHost("25.2", false);
  WaitUntilFileContains(PageFile(), "version 25.2,");
  program->Interrupt();
  EXPECT_EQ(program->Wait().exitStatus, 0);
}

TEST_F(PreviewCommand, WatchCannotWriteToStandardOutput) {
  const ProgramResult result = Run({"preview", "{data}", "{host}", "-o", "-", "--watch"});
  EXPECT_EQ(result.exitStatus, kUsage);
  EXPECT_THAT(result.errors, HasSubstr("--watch cannot write to standard output"));
}

TEST_F(PreviewCommand, WatchEndsIfTheFirstPageCannotBeWritten) {
  std::filesystem::remove(DataFile());
  std::vector<std::string> words = Words();
  words.emplace_back("--watch");
  EXPECT_EQ(Run(words).exitStatus, kInput);
}

}  // namespace
}  // namespace hosts::console
