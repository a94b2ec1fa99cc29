// Runs commands of the program, among them the console command ValidateWhatsNew, with unusual
// files. The files are not regular, are not readable, have unusual names, or change during the run.
#include <algorithm>
#include <atomic>
#include <cerrno>
#include <filesystem>
#include <functional>
#include <string>
#include <string_view>
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
using testing::Not;
using testing::StartsWith;

constexpr uid_t kNobody = 65534;

class ProgramFileFaultTest : public ProgramTest {
 protected:
  /// Returns command lines with `file` as a data file.
  static std::vector<std::vector<std::string>> CommandsWithData(const std::string& file) {
    return {{"show", file, "{host}"},
            {"status", file, "{host}"},
            {"why", file, "{host}"},
            {"rate", "EPIC-7", file, "{host}"},
            {"preview", file, "{host}", "-o", "-"},
            {"preview", "{data}", "{host}", "--seen", file, "-o", "-"}};
  }
  static std::vector<std::vector<std::string>> CommandsWithHost(const std::string& file) {
    return {{"show", "{data}", "--host", file},
            {"status", "{data}", "--host", file},
            {"why", "{data}", "--host", file},
            {"rate", "EPIC-7", "{data}", "--host", file},
            {"preview", "{data}", "--host", file, "-o", "-"},
            {"console", "--host", file, "help"}};
  }
  static std::vector<std::vector<std::string>> CommandsWithState(const std::string& file) {
    return {{"show", "{data}", "{host}", "--state", file},
            {"status", "{data}", "{host}", "--state", file},
            {"why", "{data}", "{host}", "--state", file},
            {"rate", "EPIC-7", "{data}", "{host}", "--state", file},
            {"state", "show", "--state", file},
            {"state", "reset", "--state", file}};
  }

  /// Expects that each command ends with the exit status `status` and a one-line message that
  /// contains `file`. If `asNobody` is true, runs the commands without privileges.
  void ExpectRejected(const std::vector<std::vector<std::string>>& commands, int status,
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

  /// Runs ValidateWhatsNew with `file`, without privileges if `asNobody` is true. Returns its
  /// output. Expects success, because the command succeeds even if it cannot read the file.
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

  /// Drops the privileges of root, because file permissions do not apply to root.
  static void BecomeNobody() {
    const bool isDone = ::getuid() != 0 || (::setgid(kNobody) == 0 && ::setuid(kNobody) == 0);
    if (!isDone) ::_exit(99);
  }

  /// Makes the folder of the test accessible to every user.
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

TEST_F(ProgramFileFaultTest, RejectsPipesSocketsAndDevicesWithoutWaiting) {
  for (const std::string& file :
       {MakePipe(), MakeSocket(), std::string("/dev/null"), std::string("/dev/zero")}) {
    ExpectRejected(CommandsWithData(file), 3, file);
    ExpectRejected(CommandsWithHost(file), 3, file);
    ExpectRejected(CommandsWithState(file), 4, file);
    EXPECT_THAT(Validate(file), FailsWith(EOPNOTSUPP));
  }
  EXPECT_FALSE(std::filesystem::exists(StateFile()));
}

TEST_F(ProgramFileFaultTest, RejectsFilesWithoutPermission) {
  OpenFolder();
  const std::string file = folder_.Write("secret", common::ReadTextFile(DataFile()));
  std::filesystem::permissions(file, std::filesystem::perms{0200});
  ExpectRejected(CommandsWithData(file), 3, file, true);
  ExpectRejected(CommandsWithHost(file), 3, file, true);
  ExpectRejected(CommandsWithState(file), 4, file, true);
  EXPECT_THAT(Validate(file, true), FailsWith(EACCES));
}

TEST_F(ProgramFileFaultTest, AStoreThatCannotBeReadIsNotReportedAsNotWritable) {
  OpenFolder();
  const std::string file = folder_.Write("secret", "");
  std::filesystem::permissions(file, std::filesystem::perms{0200});
  for (const std::vector<std::string>& words :
       {std::vector<std::string>{"state", "show", "--state", file},
        {"status", "{data}", "{host}", "--state", file}}) {
    ProgramCall call = Call(words);
    call.beforeStart = BecomeNobody;
    const ProgramResult result = test_support::RunProgram(ProgramFile(), call);
    EXPECT_EQ(4, result.exitStatus);
    EXPECT_THAT(result.errors, AllOf(HasSubstr(file), Not(HasSubstr("for writing"))));
  }
}

TEST_F(ProgramFileFaultTest, RejectsFilesInAFolderWithoutPermission) {
  OpenFolder();
  const std::string file = folder_.Write("closed/data", common::ReadTextFile(DataFile()));
  std::filesystem::permissions(folder_.Path() / "closed", std::filesystem::perms{0700});
  std::filesystem::permissions(folder_.Path() / "closed", std::filesystem::perms::none);
  ExpectRejected(CommandsWithData(file), 3, file, true);
  ExpectRejected(CommandsWithHost(file), 3, file, true);
  ExpectRejected(CommandsWithState(file), 4, file, true);
  EXPECT_THAT(Validate(file, true), FailsWith(EACCES));
  std::filesystem::permissions(folder_.Path() / "closed", std::filesystem::perms{0700});
}

TEST_F(ProgramFileFaultTest, RejectsAStateFolderWithoutPermission) {
  OpenFolder();
  std::filesystem::permissions(DataFile(), std::filesystem::perms{0644});
  std::filesystem::permissions(HostFile(), std::filesystem::perms{0644});
  std::filesystem::create_directory(folder_.Path() / "readonly");
  std::filesystem::permissions(folder_.Path() / "readonly", std::filesystem::perms{0555});
  const std::string file = folder_.Path() / "readonly" / "state.json";
  ExpectRejected({{"show", "{data}", "{host}", "--state", file},
                  {"rate", "EPIC-7", "{data}", "{host}", "--state", file}},
                 4, file, true);
  // `state show`, `state reset` and `status` succeed, because they write nothing and a missing
  // store is not an error.
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

TEST_F(ProgramFileFaultTest, ConsoleReadsFilesWithUnusualNames) {
  const std::string text = common::ReadTextFile(DataFile());
  for (const char* const name : {"a b.csv", " .csv", "it's \"it\".csv", "line\nfeed.csv",
                                 "tab\tand\rreturn.csv", "\u00DCbersicht.csv"}) {
    const std::string file = folder_.Write(std::filesystem::path("names") / name, text);
    EXPECT_THAT(Validate(file),
                AllOf(StartsWith("Reading What's New file at \""), HasSubstr("finished")))
        << name;
  }
}

TEST_F(ProgramFileFaultTest, ReadsHostAndStateWhoseNamesAreNotUTF8) {
  const std::string host = folder_.Write("\xFF.json", common::ReadTextFile(HostFile()));
  const std::string state = folder_.Path() / "\xFE.json";
  EXPECT_THAT(OutputOf({"show", "{data}", "--host", host, "--state", state}),
              HasSubstr("Twice as fast"));
  EXPECT_TRUE(std::filesystem::exists(state));
  EXPECT_THAT(OutputOf({"state", "show", "--state", state}), HasSubstr("25.1.0.42"));
}

/// Calls `step` in a loop on another thread until the `BackgroundLoop` is destroyed.
class BackgroundLoop {
 public:
  explicit BackgroundLoop(std::function<void()> step)
      : thread_([this, step = std::move(step)] {
          while (!isOver_) step();
        }) {}
  ~BackgroundLoop() {
    isOver_ = true;
    thread_.join();
  }
  BackgroundLoop(const BackgroundLoop&) = delete;
  BackgroundLoop& operator=(const BackgroundLoop&) = delete;

 private:
  std::atomic<bool> isOver_ = false;
  std::thread thread_;
};

class ChangingFileTest : public ProgramFileFaultTest {
 protected:
  ChangingFileTest() : text_(common::ReadTextFile(DataFile())) {
    while (text_.size() < (std::size_t{1} << 18)) {
      changes_.push_back(std::to_string(text_.size()));
      text_ += "25.1,EPIC-7,,,,,,,,Change " + changes_.back() + "\n";
    }
    file_ = folder_.Write("changing.csv", text_);
  }

  /// Expects that `panel` shows the first elements of `changes_`, in order, and no other elements.
  /// The last shown change may be incomplete. Sets `count` to the number of shown changes.
  void ExpectPanelOfAPrefix(const std::string& panel, std::size_t& count) const {
    constexpr std::string_view kBeginning = "\u2022  Change ";
    count = 0;
    for (std::size_t begin = panel.find(kBeginning); begin != std::string::npos;
         begin = panel.find(kBeginning, begin)) {
      begin += kBeginning.size();
      const std::string change = panel.substr(begin, panel.find(" (v25.1)", begin) - begin);
      const bool isLast = panel.find(kBeginning, begin) == std::string::npos;
      ASSERT_LT(count, changes_.size());
      EXPECT_TRUE(change == changes_[count] || (isLast && changes_[count].starts_with(change)))
          << change << " instead of " << changes_[count];
      ++count;
    }
  }

  /// Runs `show`, `status` and ValidateWhatsNew while the file changes. Expects that each panel
  /// contains the changes of a prefix of the file, and that at least one panel contains a change.
  /// `show` and `status` may fail with a message that contains the file name.
  void ExpectReadOrRejected() const {
    std::size_t mostChanges = 0;
    for (int round = 0; round < 10 || (mostChanges == 0 && round < 1000); ++round) {
      const ProgramResult shown = Run({"show", file_, "{host}", "--state", ":memory:"});
      if (shown.exitStatus == 0) {
        EXPECT_THAT(shown.errors, IsEmpty());
        std::size_t changes = 0;
        ExpectPanelOfAPrefix(shown.output, changes);
        mostChanges = std::max(mostChanges, changes);
      } else {
        ExpectClearError(shown);
      }
      const ProgramResult status = Run({"status", file_, "{host}", "--state", ":memory:"});
      if (status.exitStatus != 0) ExpectClearError(status);
      EXPECT_THAT(Validate(file_), AnyOf(HasSubstr("finished"), HasSubstr("with result: -")));
    }
    EXPECT_GT(mostChanges, 0U);
  }

  void ExpectClearError(const ProgramResult& result) const {
    EXPECT_EQ(3, result.exitStatus);
    EXPECT_THAT(result.output, IsEmpty());
    EXPECT_THAT(result.errors, StartsWith("ornwhatsnew: cannot open '" + file_ + "': "));
  }

  std::string text_;
  std::vector<std::string> changes_;
  std::string file_;
};

TEST_F(ChangingFileTest, ReadsAFileThatShrinksAndGrows) {
  const BackgroundLoop loop([this] {
    EXPECT_EQ(::truncate(file_.c_str(), 100), 0);
    folder_.Write("changing.csv", text_);
  });
  ExpectReadOrRejected();
}

TEST_F(ChangingFileTest, ReadsOrRejectsAFileThatIsDeletedAndRecreated) {
  const BackgroundLoop loop([this] {
    ::unlink(file_.c_str());
    folder_.Write("changing.csv", text_);
  });
  ExpectReadOrRejected();
}

TEST_F(ChangingFileTest, ReadsOrRejectsAFileThatChangesItsType) {
  const BackgroundLoop loop([this] {
    ::unlink(file_.c_str());
    ::mkfifo(file_.c_str(), 0600);
    ::unlink(file_.c_str());
    ::mkdir(file_.c_str(), 0700);
    ::rmdir(file_.c_str());
    folder_.Write("changing.csv", text_);
  });
  ExpectReadOrRejected();
}

TEST_F(ChangingFileTest, ADeletedStoreIsRecreated) {
  const std::string state = folder_.Path() / "vanishing.json";
  {
    const BackgroundLoop loop([&] { ::unlink(state.c_str()); });
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
