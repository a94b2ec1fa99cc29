// Files that are no regular files, that may not be read, whose names are strange, or that change
// while they are read, given to every command of the program and to the console's ValidateWhatsNew.
#include <atomic>
#include <cerrno>
#include <filesystem>
#include <functional>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include "hosts/common/TextFile.h"
#include "tests/hosts/console/ProgramFixture.h"

namespace hosts::console {
namespace {

using test_support::ProgramCall;
using test_support::ProgramResult;
using testing::AllOf;
using testing::AnyOf;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

constexpr uid_t kNobody = 65534;

class ProgramFileFaultTest : public ProgramTest {
 protected:
  /// Every command that reads a file, with this one in its place.
  static std::vector<std::vector<std::string>> CommandsWithData(const std::string& file) {
    return {
        {"show", file, "{host}"}, {"status", file, "{host}"}, {"rate", "EPIC-7", file, "{host}"}};
  }
  static std::vector<std::vector<std::string>> CommandsWithHost(const std::string& file) {
    return {{"show", "{data}", "--host", file},
            {"status", "{data}", "--host", file},
            {"rate", "EPIC-7", "{data}", "--host", file},
            {"console", "--host", file, "help"}};
  }
  static std::vector<std::vector<std::string>> CommandsWithState(const std::string& file) {
    return {{"show", "{data}", "{host}", "--state", file},
            {"status", "{data}", "{host}", "--state", file},
            {"rate", "EPIC-7", "{data}", "{host}", "--state", file},
            {"state", "show", "--state", file},
            {"state", "reset", "--state", file}};
  }

  /// The commands end with this status and one line that names the file.
  void ExpectRefused(const std::vector<std::vector<std::string>>& commands, int status,
                     const std::string& file, bool asNobody = false) const {
    for (const std::vector<std::string>& words : commands) {
      ProgramCall call = Call(words);
      if (asNobody) call.beforeStart = BecomeNobody;
      const ProgramResult result = test_support::RunProgram(ProgramFile(), call);
      SCOPED_TRACE(words.front() + " " + file);
      EXPECT_EQ(result.exitStatus, status) << result.errors;
      EXPECT_THAT(result.errors, AllOf(StartsWith("ornwhatsnew: "), HasSubstr(file)));
      EXPECT_EQ(result.errors.size() - 1, result.errors.find('\n'));
    }
  }

  /// What ValidateWhatsNew writes about a file; it always succeeds.
  std::string Validate(const std::string& file, bool asNobody = false) const {
    ProgramCall call = Call({"console", "ValidateWhatsNew " + file});
    if (asNobody) call.beforeStart = BecomeNobody;
    const ProgramResult result = test_support::RunProgram(ProgramFile(), call);
    EXPECT_EQ(result.exitStatus, 0);
    EXPECT_THAT(result.errors, IsEmpty());
    return result.output;
  }

  static auto FailsWith(int error) {
    return AllOf(StartsWith("Failed to read What's New file at \""),
                 HasSubstr("with result: " + std::to_string(-error)));
  }

  /// Whom the permissions of files bind.
  static void BecomeNobody() {
    const bool isDone = ::getuid() != 0 || (::setgid(kNobody) == 0 && ::setuid(kNobody) == 0);
    if (!isDone) ::_exit(99);
  }

  /// Lets anybody into the folder of the test.
  void OpenFolder() const {
    std::filesystem::permissions(folder_.Path(), std::filesystem::perms{0755});
  }

  std::string MakePipe() const {
    const std::string pipe = folder_.Path() / "pipe";
    EXPECT_EQ(::mkfifo(pipe.c_str(), 0666), 0);
    return pipe;
  }

  std::string MakeSocket() const {
    const std::string path = folder_.Path() / "socket";
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    path.copy(address.sun_path, sizeof address.sun_path - 1);
    const int socket = ::socket(AF_UNIX, SOCK_STREAM, 0);
    EXPECT_EQ(::bind(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    ::close(socket);
    return path;
  }
};

TEST_F(ProgramFileFaultTest, PipesSocketsAndDevicesAreRefusedWithoutWaiting) {
  for (const std::string& file :
       {MakePipe(), MakeSocket(), std::string("/dev/null"), std::string("/dev/zero")}) {
    ExpectRefused(CommandsWithData(file), 3, file);
    ExpectRefused(CommandsWithHost(file), 3, file);
    ExpectRefused(CommandsWithState(file), 4, file);
    EXPECT_THAT(Validate(file), FailsWith(EOPNOTSUPP));
  }
  EXPECT_FALSE(std::filesystem::exists(StateFile()));
}

TEST_F(ProgramFileFaultTest, FilesWithoutPermissionAreRefused) {
  OpenFolder();
  const std::string file = folder_.Write("secret", common::ReadTextFile(DataFile()));
  std::filesystem::permissions(file, std::filesystem::perms{0200});
  ExpectRefused(CommandsWithData(file), 3, file, true);
  ExpectRefused(CommandsWithHost(file), 3, file, true);
  ExpectRefused(CommandsWithState(file), 4, file, true);
  EXPECT_THAT(Validate(file, true), FailsWith(EACCES));
}

TEST_F(ProgramFileFaultTest, FilesInAFolderWithoutPermissionAreRefused) {
  OpenFolder();
  const std::string file = folder_.Write("closed/data", common::ReadTextFile(DataFile()));
  std::filesystem::permissions(folder_.Path() / "closed", std::filesystem::perms{0700});
  std::filesystem::permissions(folder_.Path() / "closed", std::filesystem::perms::none);
  ExpectRefused(CommandsWithData(file), 3, file, true);
  ExpectRefused(CommandsWithHost(file), 3, file, true);
  ExpectRefused(CommandsWithState(file), 4, file, true);
  EXPECT_THAT(Validate(file, true), FailsWith(EACCES));
  std::filesystem::permissions(folder_.Path() / "closed", std::filesystem::perms{0700});
}

TEST_F(ProgramFileFaultTest, AStateFolderThatMayNotBeWrittenIsRefused) {
  OpenFolder();
  std::filesystem::permissions(DataFile(), std::filesystem::perms{0644});
  std::filesystem::permissions(HostFile(), std::filesystem::perms{0644});
  std::filesystem::create_directory(folder_.Path() / "readonly");
  std::filesystem::permissions(folder_.Path() / "readonly", std::filesystem::perms{0555});
  const std::string file = folder_.Path() / "readonly" / "state.db";
  ExpectRefused({{"show", "{data}", "{host}", "--state", file},
                 {"rate", "EPIC-7", "{data}", "{host}", "--state", file}},
                4, file, true);
  // What only reads finds nothing there, and that is no error.
  for (const std::vector<std::string>& words :
       {std::vector<std::string>{"state", "show", "--state", file},
        {"state", "reset", "--state", file},
        {"status", "{data}", "{host}", "--state", file}}) {
    ProgramCall call = Call(words);
    call.beforeStart = BecomeNobody;
    EXPECT_EQ(test_support::RunProgram(ProgramFile(), call).exitStatus, 0) << words.front();
  }
  EXPECT_FALSE(std::filesystem::exists(file));
}

TEST_F(ProgramFileFaultTest, NamesOfTheConsoleMayHoldAnything) {
  const std::string text = common::ReadTextFile(DataFile());
  for (const char* const name : {"a b.csv", " .csv", "it's \"it\".csv", "line\nfeed.csv",
                                 "tab\tand\rreturn.csv", "\u00DCbersicht.csv"}) {
    const std::string file = folder_.Write(std::filesystem::path("names") / name, text);
    EXPECT_THAT(Validate(file),
                AllOf(StartsWith("Reading What's New file at \""), HasSubstr("finished")))
        << name;
  }
}

TEST_F(ProgramFileFaultTest, ANameThatIsNoUTF8IsMissingToTheConsole) {
  // The console's lines are text, so that such a name cannot be said there.
  const std::string file = folder_.Write("\xFF.csv", common::ReadTextFile(DataFile()));
  EXPECT_THAT(Validate(file), FailsWith(ENOENT));
}

TEST_F(ProgramFileFaultTest, HostAndStateMayHaveNamesThatAreNoUTF8) {
  const std::string host = folder_.Write("\xFF.json", common::ReadTextFile(HostFile()));
  const std::string state = folder_.Path() / "\xFE.db";
  EXPECT_THAT(OutputOf({"show", "{data}", "--host", host, "--state", state}),
              HasSubstr("Twice as fast"));
  EXPECT_TRUE(std::filesystem::exists(state));
  EXPECT_THAT(OutputOf({"state", "show", "--state", state}), HasSubstr("25.1.0.42"));
}

/// Somebody who does something with a file all the time.
class Meddler {
 public:
  explicit Meddler(std::function<void()> meddle)
      : thread_([this, meddle = std::move(meddle)] {
          while (!isOver_) meddle();
        }) {}
  ~Meddler() {
    isOver_ = true;
    thread_.join();
  }
  Meddler(const Meddler&) = delete;
  Meddler& operator=(const Meddler&) = delete;

 private:
  std::atomic<bool> isOver_ = false;
  std::thread thread_;
};

class ChangingFileTest : public ProgramFileFaultTest {
 protected:
  ChangingFileTest() : text_(common::ReadTextFile(DataFile())) {
    while (text_.size() < (std::size_t{1} << 18)) {
      text_ += "25.1,EPIC-7,,,,,,,,Change " + std::to_string(text_.size()) + "\n";
    }
    file_ = folder_.Write("changing.csv", text_);
  }

  /// Runs the commands on the file, and accepts the file as it was at some moment, or a clear
  /// error.
  void ExpectReadOrRefused() const {
    for (int round = 0; round < 10; ++round) {
      for (const std::vector<std::string>& words :
           {std::vector<std::string>{"show", file_, "{host}", "--state", ":memory:"},
            {"status", file_, "{host}", "--state", ":memory:"}}) {
        const ProgramResult result = Run(words);
        EXPECT_THAT(result.exitStatus, AnyOf(0, 3)) << result.errors;
        const bool isClear = result.errors.find(file_) != std::string::npos;
        EXPECT_TRUE(result.exitStatus == 0 ? result.errors.empty() : isClear) << result.errors;
      }
      EXPECT_THAT(Validate(file_), AnyOf(HasSubstr("finished"), HasSubstr("with result: -")));
    }
  }

  std::string text_;
  std::string file_;
};

TEST_F(ChangingFileTest, AFileThatShrinksAndGrowsIsReadAsFarAsItGoes) {
  const Meddler meddler([this] {
    EXPECT_EQ(::truncate(file_.c_str(), 100), 0);
    folder_.Write("changing.csv", text_);
  });
  ExpectReadOrRefused();
}

TEST_F(ChangingFileTest, AFileThatVanishesAndComesBackIsReadOrRefused) {
  const Meddler meddler([this] {
    ::unlink(file_.c_str());
    folder_.Write("changing.csv", text_);
  });
  ExpectReadOrRefused();
}

TEST_F(ChangingFileTest, AFileThatBecomesSomethingElseIsReadOrRefused) {
  const Meddler meddler([this] {
    ::unlink(file_.c_str());
    ::mkfifo(file_.c_str(), 0600);
    ::unlink(file_.c_str());
    ::mkdir(file_.c_str(), 0700);
    ::rmdir(file_.c_str());
    folder_.Write("changing.csv", text_);
  });
  ExpectReadOrRefused();
}

TEST_F(ChangingFileTest, AStoreThatVanishesLosesNoMoreThanItself) {
  const std::string state = folder_.Path() / "vanishing.db";
  {
    const Meddler meddler([&] { ::unlink(state.c_str()); });
    for (int round = 0; round < 10; ++round) {
      const ProgramResult result = Run({"show", "{data}", "{host}", "--state", state});
      EXPECT_THAT(result.exitStatus, AnyOf(0, 4)) << result.errors;
      EXPECT_THAT(result.output, HasSubstr("Twice as fast"));
    }
  }
  OutputOf({"show", "{data}", "{host}", "--state", state});
  EXPECT_THAT(OutputOf({"state", "show", "--state", state}), HasSubstr("25.1.0.42"));
}

}  // namespace
}  // namespace hosts::console
