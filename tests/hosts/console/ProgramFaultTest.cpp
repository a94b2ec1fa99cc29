// Tests input that the program cannot use and output that it cannot write. An error message must
// name the cause, such as the file, and the exit status must show the kind of error. The program
// must not lose stored state. Further tests read files with unusual names.
#include <chrono>
#include <filesystem>
#include <string>
#include <vector>

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include "hosts/common/FileLock.h"
#include "hosts/common/PrivateFolder.h"
#include "hosts/common/StateStore.h"
#include "hosts/common/TextFile.h"
#include "tests/hosts/console/ProgramFixture.h"

namespace hosts::console {
namespace {

using test_support::ChildProcess;
using test_support::ProgramCall;
using test_support::ProgramResult;
using testing::AllOf;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

const std::string kFullOutput =
    "ornwhatsnew: cannot write to standard output: No space left on device";
const std::string kClosedOutput = "ornwhatsnew: the reader has closed standard output";

class ProgramFaultTest : public ProgramTest {
 protected:
  /// Replaces standard output with a pipe without a reader.
  static void MakeOutputAClosedPipe() {
    int ends[2];
    if (::pipe(ends) != 0) ::_exit(99);
    ::close(ends[0]);
    ::dup2(ends[1], STDOUT_FILENO);
    ::close(ends[1]);
  }

  /// Runs the program with the arguments `words`. Expects the exit status `status`, no output, and
  /// a one-line error message that contains `name` and `what`.
  void ExpectError(int status, const std::vector<std::string>& words, const std::string& name,
                   const std::string& what) const {
    const ProgramResult result = Run(words);
    EXPECT_EQ(status, result.exitStatus) << result.errors;
    EXPECT_THAT(result.output, IsEmpty());
    EXPECT_THAT(result.errors,
                AllOf(StartsWith("ornwhatsnew: "), HasSubstr(name), HasSubstr(what)));
    EXPECT_EQ(result.errors.size() - 1, result.errors.find('\n'));
  }

  /// Runs the program with /dev/full as standard output, where every write fails as on a full disk.
  /// Expects the exit status 6 and returns the error message.
  std::string ErrorsOnFullOutput(const std::vector<std::string>& words) const {
    std::vector<std::string> line = {"-c", "exec \"$@\" > /dev/full", "sh", ProgramFile()};
    line.insert(line.end(), words.begin(), words.end());
    const ProgramResult result = test_support::RunProgram("/bin/sh", Call(line));
    EXPECT_EQ(6, result.exitStatus);
    return result.errors;
  }

  /// Expects that `show`, `status`, `why`, `rate` and `preview` reject the data file `file` with a
  /// message that contains `what`. Expects that they store no state.
  void ExpectUnreadableData(const std::string& file, const std::string& what) const {
    ExpectError(3, {"show", file, "{host}"}, file, what);
    ExpectError(3, {"status", file, "{host}"}, file, what);
    ExpectError(3, {"why", file, "{host}"}, file, what);
    ExpectError(3, {"rate", "EPIC-7", file, "{host}"}, file, what);
    ExpectError(3, {"preview", file, "{host}", "-o", "-"}, file, what);
    EXPECT_FALSE(std::filesystem::exists(folder_.Path() / "state"));
  }

  /// Expects that `show`, `status`, `why`, `rate`, `preview` and `console` reject the host
  /// description `file` with a message that contains `what`.
  void ExpectUnusableHost(const std::string& file, const std::string& what) const {
    ExpectError(3, {"show", "{data}", "--host", file}, file, what);
    ExpectError(3, {"status", "{data}", "--host", file}, file, what);
    ExpectError(3, {"why", "{data}", "--host", file}, file, what);
    ExpectError(3, {"rate", "EPIC-7", "{data}", "--host", file}, file, what);
    ExpectError(3, {"preview", "{data}", "--host", file, "-o", "-"}, file, what);
    ExpectError(3, {"console", "--host", file, "help"}, file, what);
  }
};

TEST_F(ProgramFaultTest, ReportsUnreadableDataFiles) {
  ExpectUnreadableData("/nowhere/data.csv", "No such file");
  ExpectUnreadableData(folder_.Path(), "Is a directory");
  ExpectUnreadableData("/dev/zero", "not a regular file");
  const std::string pipe = folder_.Path() / "pipe";
  ASSERT_EQ(0, ::mkfifo(pipe.c_str(), 0600));
  ExpectUnreadableData(pipe, "not a regular file");
  ExpectUnreadableData("/dev/stdin", "not a regular file");  // standard input is a pipe
  std::filesystem::create_symlink("loop", folder_.Path() / "loop");
  ExpectUnreadableData(folder_.Path() / "loop", "symbolic links");
  ExpectUnreadableData("", "cannot open '': No such file");
}

TEST_F(ProgramFaultTest, ReportsUnusableHosts) {
  ExpectUnusableHost("/nowhere/host.json", "No such file");
  ExpectUnusableHost(folder_.Path(), "directory");
  ExpectUnusableHost("/dev/zero", "not a regular file");
  const std::string pipe = folder_.Path() / "pipe";
  ASSERT_EQ(0, ::mkfifo(pipe.c_str(), 0600));
  ExpectUnusableHost(pipe, "not a regular file");
  ExpectUnusableHost(folder_.Write("broken.json", "{\"clientVersion\": "), "line 1");
  ExpectUnusableHost(folder_.Write("wrong.json", R"({"clientVersion": 25})"), "/clientVersion");
  ExpectUnusableHost(folder_.Write("unknown.json", R"({"version": "25"})"), "clientVersion");
  ExpectUnusableHost(folder_.Write("state.json", R"({"state": {}})"), "state");
}

TEST_F(ProgramFaultTest, ReportsUnreadableConsoleInput) {
  struct InputCase {
    const char* redirection;
    const char* reason;
  };
  for (const InputCase& test :
       {InputCase{"< /", "Is a directory"}, InputCase{"<&-", "Bad file descriptor"}}) {
    const std::string script = std::string("exec \"$@\" ") + test.redirection;
    const ProgramResult result = test_support::RunProgram(
        "/bin/sh", Call({"-c", script, "sh", ProgramFile(), "console", "{host}"}));
    EXPECT_EQ(3, result.exitStatus);
    EXPECT_THAT(result.output, IsEmpty());
    EXPECT_EQ("ornwhatsnew: cannot read standard input: " + std::string(test.reason) + "\n",
              result.errors);
  }
}

TEST_F(ProgramFaultTest, ReadsFilesWhoseNamesHaveSpacesQuotesAndNewlines) {
  for (const char* name : {"a b.csv", "it's \"it\".csv", "line\nfeed.csv", "-dash.csv", "..csv"}) {
    const std::filesystem::path file = folder_.Path() / "names" / name;
    folder_.Write(std::filesystem::path("names") / name, common::ReadTextFile(DataFile()));
    EXPECT_THAT(OutputOf({"show", file, "{host}", "--state", ":memory:"}),
                HasSubstr("Twice as fast"))
        << name;
  }
}

TEST_F(ProgramFaultTest, ReadsAFileWhoseNameIsNotUTF8) {
  const std::filesystem::path file = folder_.Write("\xFF.csv", common::ReadTextFile(DataFile()));
  EXPECT_THAT(OutputOf({"show", file, "{host}"}), HasSubstr("Twice as fast"));
}

TEST_F(ProgramFaultTest, ReadsAFileInAFolderWhoseNameIsNotUTF8) {
  const std::filesystem::path file =
      folder_.Write("\xFF/data.csv", common::ReadTextFile(DataFile()));
  EXPECT_THAT(OutputOf({"show", file, "{host}"}), HasSubstr("Twice as fast"));
}

TEST_F(ProgramFaultTest, FollowsALinkToADataFileInAnotherFolder) {
  std::filesystem::create_directory(folder_.Path() / "links");
  std::filesystem::create_symlink(DataFile(), folder_.Path() / "links" / "data.csv");
  EXPECT_THAT(OutputOf({"show", folder_.Path() / "links" / "data.csv", "{host}"}),
              HasSubstr("Twice as fast"));
}

TEST_F(ProgramFaultTest, ForeignStoresAreRejectedAndLeftUnchanged) {
  const std::string garbage = folder_.Write("garbage", "not a store");
  const std::vector<std::vector<std::string>> commands = {
      {"show", "{data}", "{host}", "--state", garbage},
      {"status", "{data}", "{host}", "--state", garbage},
      {"why", "{data}", "{host}", "--state", garbage},
      {"rate", "EPIC-7", "{data}", "{host}", "--state", garbage},
      {"state", "show", "--state", garbage},
      {"state", "reset", "--state", garbage}};
  for (const std::vector<std::string>& command : commands) {
    ExpectError(4, command, garbage, "--state");
  }
  EXPECT_EQ("not a store", common::ReadTextFile(garbage));
  ExpectError(4, {"show", "{data}", "{host}", "--state", folder_.Path()}, folder_.Path(), "folder");
  ExpectError(4, {"state", "show", "--state", ""}, "empty name", "--state");
}

TEST_F(ProgramFaultTest, WithoutAStateFolderTheErrorNamesTheVariable) {
  ProgramCall call = Call({"show", "{data}", "{host}"});
  call.environment.clear();
  const ProgramResult result = RunProgram(ProgramFile(), call);
  EXPECT_EQ(4, result.exitStatus);
  EXPECT_THAT(result.errors, HasSubstr("XDG_STATE_HOME"));
}

TEST_F(ProgramFaultTest, ReportsALockedStoreAfterALimitedWait) {
  OutputOf({"show", "{data}", "{host}"});
  const common::PrivateFolder folder(StateFile().parent_path());
  const auto lock =
      common::FileLock::Acquire(folder, "state.json.lock", std::chrono::milliseconds(0));
  ASSERT_TRUE(lock.has_value());
  ExpectError(4, {"state", "reset"}, StateFile(), "another program has locked it");
}

TEST_F(ProgramFaultTest, AFullDiskKeepsTheStoredState) {
  OutputOf({"rate", "EPIC-7", "{data}", "{host}"});
  const std::string before = OutputOf({"state", "show"});
  std::string rows;
  for (int i = 0; i < 2000; ++i) {
    rows += "25.1,EPIC-7,,,,,,,,Change " + std::to_string(i) + "\n";
  }
  WriteData(rows);
  ProgramCall call = Call({"show", "{data}", "{host}"});
  call.beforeStart = [] {
    const rlimit small = {32 * 1024, 32 * 1024};
    ::setrlimit(RLIMIT_FSIZE, &small);
  };
  const ProgramResult result = RunProgram(ProgramFile(), call);
  EXPECT_EQ(4, result.exitStatus);
  EXPECT_THAT(result.output, HasSubstr("Change 1999"));
  EXPECT_THAT(result.errors, AllOf(HasSubstr(StateFile()), HasSubstr("--state")));
  EXPECT_EQ(before, OutputOf({"state", "show"}));
}

TEST_F(ProgramFaultTest, APanelThatCannotBePrintedIsNotStored) {
  EXPECT_EQ(kFullOutput + "; nothing was stored\n",
            ErrorsOnFullOutput({"show", "{data}", "{host}"}));
  EXPECT_FALSE(std::filesystem::exists(StateFile()));
}

TEST_F(ProgramFaultTest, ARatingIsStoredEvenIfTheOutputFails) {
  OutputOf({"show", "{data}", "{host}"});
  EXPECT_EQ(kFullOutput + "; your rating of EPIC-7 was stored\n",
            ErrorsOnFullOutput({"rate", "EPIC-7", "{data}", "{host}"}));
  EXPECT_THAT(OutputOf({"show", "{data}", "{host}", "--rating"}), Not(HasSubstr("EPIC-7")));
}

TEST_F(ProgramFaultTest, AResetIsDoneEvenIfTheOutputFails) {
  OutputOf({"show", "{data}", "{host}"});
  EXPECT_EQ(kFullOutput + "; the state in " + StateFile().native() + " was deleted\n",
            ErrorsOnFullOutput({"state", "reset"}));
  EXPECT_THAT(OutputOf({"state", "show"}), StartsWith("Nothing is stored in "));
}

TEST_F(ProgramFaultTest, OutputErrorsOfOtherCommandsDoNotMentionTheState) {
  const std::vector<std::vector<std::string>> commands = {
      {"--help"},
      {"--version"},
      {"state", "show"},
      {"status", "{data}", "{host}"},
      {"preview", "{data}", "{host}", "-o", "-"},
      {"why", "{data}", "{host}"}};
  for (const std::vector<std::string>& command : commands) {
    EXPECT_EQ(kFullOutput + "\n", ErrorsOnFullOutput(command)) << testing::PrintToString(command);
  }
}

TEST_F(ProgramFaultTest, APanelIsNotStoredIfThePipeIsClosed) {
  for (const bool isSignalIgnored : {false, true}) {
    ProgramCall call = Call({"show", "{data}", "{host}"});
    call.beforeStart = [isSignalIgnored] {
      ::signal(SIGPIPE, isSignalIgnored ? SIG_IGN : SIG_DFL);
      MakeOutputAClosedPipe();
    };
    const ProgramResult result = RunProgram(ProgramFile(), call);
    EXPECT_EQ(6, result.exitStatus);
    EXPECT_EQ(kClosedOutput + "; nothing was stored\n", result.errors);
    EXPECT_FALSE(std::filesystem::exists(StateFile()));
  }
}

TEST_F(ProgramFaultTest, AShortPanelIsNotStoredIfItsReaderExitsEarly) {
  int noticed = 0;
  for (int attempt = 0; attempt < 100; ++attempt) {
    const std::filesystem::path file = folder_.Path() / (std::to_string(attempt) + ".state");
    ChildProcess process(ProgramFile(), Call({"show", "{data}", "{host}", "--state", file}));
    const std::string output = process.ReadOutput();
    process.CloseOutput();
    EXPECT_THAT(output, HasSubstr("Twice as fast"));
    const ProgramResult result = process.Wait();
    if (result.exitStatus == 0) continue;
    ++noticed;
    EXPECT_EQ(6, result.exitStatus);
    EXPECT_EQ(kClosedOutput + "; nothing was stored\n", result.errors);
    EXPECT_FALSE(std::filesystem::exists(file));
  }
  // The program waits only a limited time for the test to close the pipe. On a busy machine, the
  // test may close the pipe too late, and the program then succeeds. Allow up to ten such attempts.
  EXPECT_GE(noticed, 90);
}

TEST_F(ProgramFaultTest, AClosedPipePrintsNoErrorIfNothingWouldBeStored) {
  for (const std::vector<std::string>& words :
       {std::vector<std::string>{"show", "{data}", "{host}", "--no-remember"},
        {"status", "{data}", "{host}"},
        {"why", "{data}", "{host}"}}) {
    ProgramCall call = Call(words);
    call.beforeStart = MakeOutputAClosedPipe;
    const ProgramResult result = RunProgram(ProgramFile(), call);
    EXPECT_EQ(6, result.exitStatus);
    EXPECT_THAT(result.errors, IsEmpty());
  }
}

TEST_F(ProgramFaultTest, AClosedPipeDoesNotHideWhatWasStored) {
  OutputOf({"show", "{data}", "{host}"});
  ProgramCall call = Call({"rate", "EPIC-7", "{data}", "{host}"});
  call.beforeStart = MakeOutputAClosedPipe;
  const ProgramResult result = RunProgram(ProgramFile(), call);
  EXPECT_EQ(6, result.exitStatus);
  EXPECT_EQ(kClosedOutput + "; your rating of EPIC-7 was stored\n", result.errors);
}

TEST_F(ProgramFaultTest, WritesTheWholePanelToANonBlockingPipe) {
  std::string rows;  // for a panel that does not fit into the buffer of a pipe
  for (int i = 0; i < 20'000; ++i) {
    rows += "25.1,EPIC-7,,,,,,,,Change " + std::to_string(i) + std::string(50, '.') + "\n";
  }
  WriteData(rows);
  const std::string panel = OutputOf({"show", "{data}", "{host}"});
  ProgramCall call = Call({"show", "{data}", "{host}"});
  call.beforeStart = [] { ::fcntl(STDOUT_FILENO, F_SETFL, O_NONBLOCK); };
  const ProgramResult result = RunProgram(ProgramFile(), call);
  EXPECT_EQ(0, result.exitStatus);
  EXPECT_THAT(result.errors, IsEmpty());
  EXPECT_TRUE(panel == result.output) << result.output.size() << " bytes";
}

TEST_F(ProgramFaultTest, WaitsForTheLinesOfANonBlockingPipe) {
  ProgramCall call = Call({"console"});
  call.beforeStart = [] {
    int ends[2];
    if (::pipe2(ends, O_NONBLOCK) != 0) ::_exit(99);
    ::dup2(ends[0], STDIN_FILENO);
    if (::fork() == 0) {
      // Delay the line, so that the program first finds the pipe empty.
      ::usleep(200'000);
      ::_exit(::write(ends[1], "help\n", 5) == 5 ? 0 : 1);
    }
    ::close(ends[0]);
    ::close(ends[1]);
  };
  const ProgramResult result = RunProgram(ProgramFile(), call);
  EXPECT_EQ(0, result.exitStatus);
  EXPECT_THAT(result.errors, IsEmpty());
  EXPECT_THAT(result.output, HasSubstr("help - List the commands\n"));
}

}  // namespace
}  // namespace hosts::console
