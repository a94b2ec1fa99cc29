// Tests operations on files that are not state stores, on stores that cannot be read or written,
// and on locked stores. An operation that fails must report a message with advice, and must not
// lose data.
#include <chrono>
#include <csignal>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include "hosts/common/FileLock.h"
#include "hosts/common/PrivateFolder.h"
#include "hosts/common/StateFile.h"
#include "hosts/common/StateFormat.h"
#include "hosts/common/StateStore.h"
#include "hosts/common/TextFile.h"
#include "tests/hosts/common/FailingDisk.h"
#include "tests/hosts/common/StoreErrorOf.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/TemporaryFolder.h"

namespace hosts::common {
namespace {

using std::chrono::milliseconds;
using test_support::InChildProcess;
using testing::AllOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

constexpr std::string_view kKey = "A.Key";
constexpr char kWriteAdvice[] =
    "; check the permissions of the file and its folder, or name a file elsewhere with --state";

/// Returns the content of each file in `folder` by file name. Omits the lock file, because a failed
/// write may create it.
std::map<std::string, std::string> Content(const std::filesystem::path& folder) {
  std::map<std::string, std::string> content;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    if (entry.path().filename() == "state.json.lock") continue;
    content[entry.path().filename()] = entry.is_regular_file() ? ReadTextFile(entry.path()) : "";
  }
  return content;
}

class StateStoreFaultTest : public testing::Test {
 protected:
  std::filesystem::path File() const { return folder_.Path() / "state.json"; }

  void WriteValue(std::string_view key, std::string_view value) const {
    StateStore store(File());
    store.Set(key, value);
    store.Commit();
  }

  /// Expects that reading and writing the store fail, that both messages contain `reason` and end
  /// with `advice`, and that no file in the folder changes.
  void ExpectRejected(
      std::string_view reason,
      std::string_view advice = "; move the file, or name another one with --state") const {
    const auto before = Content(folder_.Path());
    const auto isClear = AllOf(StartsWith("cannot use the state store '" + File().native() + "': "),
                               HasSubstr(std::string(reason)), EndsWith(std::string(advice)));
    EXPECT_THAT(StoreErrorOf([&] { StateStore store(File()); }), isClear);
    EXPECT_TRUE(before == Content(folder_.Path())) << "a file has changed";
    const auto change = [](StateValues& values) { values["new key"] = "text"; };
    EXPECT_THAT(StoreErrorOf([&] { ChangeStateFile(File(), milliseconds(50), change); }), isClear);
    EXPECT_TRUE(before == Content(folder_.Path())) << "a file has changed";
  }

  test_support::TemporaryFolder folder_;
};

TEST_F(StateStoreFaultTest, RejectsTextAndGarbage) {
  for (const std::string& bytes :
       {std::string("x"), std::string("Version,Epic\n1,2\n"), std::string(5000, '\0'),
        std::string(5000, '\xFF'), std::string("\n")}) {
    folder_.Write("state.json", bytes);
    ExpectRejected("not valid JSON");
  }
}

TEST_F(StateStoreFaultTest, RejectsTheJsonOfAnotherProgram) {
  for (const char* text : {"{}", R"({"format": "other", "formatVersion": 1, "values": {}})",
                           R"({"format": 1})", R"({"values": {}})"}) {
    folder_.Write("state.json", text);
    ExpectRejected("it is not a state store");
  }
}

TEST_F(StateStoreFaultTest, RejectsAStoreOfANewerVersion) {
  // A newer format may have more members, and its member `values` may have another type.
  folder_.Write("state.json",
                R"({"format": "ornwhatsnew state", "formatVersion": 2, "values": [], "more": 1})");
  ExpectRejected(
      "': a newer version of this program wrote it (format 2; this version supports format 1); ",
      "; update this program, or name another file with --state");
}

TEST_F(StateStoreFaultTest, RejectsAStoreThatBecomesNewerAfterTheRead) {
  WriteValue(kKey, "text");
  StateStore store(File());
  store.Set(kKey, "new");
  const std::string newer = R"({"format": "ornwhatsnew state", "formatVersion": 2})";
  folder_.Write("state.json", newer);
  EXPECT_THAT(StoreErrorOf([&] { store.Commit(); }), HasSubstr("a newer version"));
  EXPECT_EQ(newer, ReadTextFile(File()));
  EXPECT_FALSE(std::filesystem::exists(folder_.Path() / "state.json.tmp"));
}

TEST_F(StateStoreFaultTest, RejectsATruncatedStore) {
  WriteValue(kKey, std::string(20'000, 'x'));
  // Remove at least two bytes, because the JSON is complete without its final newline.
  const std::string whole = ReadTextFile(File());
  for (const std::size_t size :
       {std::size_t{1}, std::size_t{16}, std::size_t{100}, std::size_t{4096}, whole.size() - 2}) {
    SCOPED_TRACE(size);
    folder_.Write("state.json", whole.substr(0, size));
    ExpectRejected("not valid JSON");
  }
}

TEST_F(StateStoreFaultTest, RejectsAnEmptyFile) {
  // An empty file is not a state store. Another program may need the empty file, so `ornwhatsnew`
  // must not overwrite it.
  folder_.Write("state.json", "");
  ExpectRejected("': the file is empty; ",
                 "; delete it if you do not need it, or name another one with --state");
}

TEST_F(StateStoreFaultTest, RejectsDeepOrLongArraysEarly) {
  std::string deep = R"({"values":)";
  for (int i = 0; i < 50; ++i) deep += "[";
  folder_.Write("state.json", deep);
  ExpectRejected("nested more than 2 deep");
  std::string wide = "[[]";
  for (int i = 0; i < 2000; ++i) wide += ",[]";
  folder_.Write("state.json", wide + "]");
  ExpectRejected("all arrays together have more than 1000 elements");
}

TEST_F(StateStoreFaultTest, RejectsAStoreWithDestroyedBytes) {
  WriteValue(kKey, "text");
  std::string bytes = ReadTextFile(File());
  for (std::size_t i = 60; i < bytes.size(); ++i) bytes[i] = '\xA5';
  folder_.Write("state.json", bytes);
  ExpectRejected("not valid JSON");
}

TEST_F(StateStoreFaultTest, RejectsAStoreAboveTheSizeLimit) {
  WriteValue(kKey, "text");
  constexpr std::uintmax_t kLimit = std::uintmax_t{64} * 1024 * 1024;
  std::filesystem::resize_file(File(), kLimit);
  EXPECT_THAT(StoreErrorOf([&] { StateStore store(File()); }), HasSubstr("a NUL character"));
  std::filesystem::resize_file(File(), kLimit + 1);
  EXPECT_THAT(StoreErrorOf([&] { StateStore store(File()); }),
              AllOf(HasSubstr("it is larger than 64 MiB"), HasSubstr("--state")));
  EXPECT_EQ(kLimit + 1, std::filesystem::file_size(File()));
}

TEST_F(StateStoreFaultTest, DoesNotWriteAStoreThatItCouldNotReadAgain) {
  WriteValue(kKey, "old");
  StateStore store(File());
  store.Set(kKey, std::string(kMaximumStateSize, 'x'));
  EXPECT_EQ("cannot write the state store '" + File().native() +
                "': the state is larger than 64 MiB; "
                "name another file with --state",
            StoreErrorOf([&] { store.Commit(); }));
  EXPECT_EQ("old", StateStore(File()).Get(kKey));
}

TEST_F(StateStoreFaultTest, DoesNotWriteIllFormedText) {
  WriteValue(kKey, "old");
  for (const std::string& bytes : {std::string("\xFF"), std::string("\xC3"), std::string("a\x80z"),
                                   std::string("\xED\xA0\x80")}) {
    for (const bool isKey : {false, true}) {
      StateStore store(File());
      store.Set(isKey ? bytes : kKey, isKey ? "text" : bytes);
      EXPECT_THAT(
          StoreErrorOf([&] { store.Commit(); }),
          HasSubstr("'" + File().native() + "': a key or a value is not well-formed UTF-8"));
      EXPECT_EQ(isKey ? "text" : bytes, store.Get(isKey ? bytes : kKey));
      EXPECT_EQ("old", StateStore(File()).Get(kKey));
    }
  }
}

TEST_F(StateStoreFaultTest, RejectsAFolder) {
  std::filesystem::create_directory(File());
  ExpectRejected("it is a folder", "; name a file with --state");
}

TEST_F(StateStoreFaultTest, RejectsAPipeWithoutWaitingForIt) {
  ASSERT_EQ(0, ::mkfifo(File().c_str(), 0600));
  ExpectRejected("not a regular file");
}

TEST_F(StateStoreFaultTest, RejectsADevice) {
  EXPECT_THAT(StoreErrorOf([] { StateStore store("/dev/full"); }), HasSubstr("not a regular file"));
}

// Reading /proc/self/mem fails at offset 0, because no memory is mapped at address 0.
TEST_F(StateStoreFaultTest, TheMessageForAReadErrorSuggestsCheckingTheDisk) {
  const std::filesystem::path file = "/proc/self/mem";
  if (!std::filesystem::exists(file)) GTEST_SKIP() << "this system has no '/proc/self/mem'";
  EXPECT_THAT(StoreErrorOf([&] { StateStore store(file); }),
              HasSubstr("cannot read the state store '/proc/self/mem': Input/output error; check "
                        "the disk and try again, or name a file elsewhere with --state"));
}

TEST_F(StateStoreFaultTest, RejectsAPathBelowAFile) {
  folder_.Write("file", "x");
  const std::filesystem::path below = folder_.Path() / "file" / "state.json";
  const std::string error = StoreErrorOf([&] {
    StateStore store(below);
    store.Set(kKey, "text");
    store.Commit();
  });
  EXPECT_EQ("cannot read the state store '" + below.native() +
                "': Not a directory; check the path and try again, or name a file "
                "elsewhere with --state",
            error);
  EXPECT_EQ("x", ReadTextFile(folder_.Path() / "file"));
}

/// Locks the store, as another program does while it writes. `Release` and the destructor unlock
/// it.
class Writer {
 public:
  explicit Writer(const std::filesystem::path& file)
      : folder_(file.parent_path()),
        lock_(FileLock::Acquire(folder_, file.filename().native() + ".lock", milliseconds(0))) {
    EXPECT_TRUE(lock_.has_value());
  }
  void Release() { lock_.reset(); }

 private:
  PrivateFolder folder_;
  std::optional<FileLock> lock_;
};

TEST_F(StateStoreFaultTest, WaitsALimitedTimeForAWriterThatHangs) {
  WriteValue(kKey, "old");
  StateStore store(File(), milliseconds(100));
  Writer writer(File());
  store.Set(kKey, "new");
  const std::string message =
      "cannot lock the state store '" + File().native() +
      "' within 0.1 s: another program has locked it; wait for that program or end it, and try "
      "again";
  EXPECT_EQ(message, StoreErrorOf([&] { store.Commit(); }));
  EXPECT_EQ(message, StoreErrorOf([&] { store.Reset(); }));
  EXPECT_EQ("new", store.Get(kKey));
  writer.Release();
  EXPECT_EQ("old", StateStore(File()).Get(kKey));
  store.Commit();
  EXPECT_EQ("new", StateStore(File()).Get(kKey));
}

TEST_F(StateStoreFaultTest, WritesAsSoonAsTheOtherWriterHasFinished) {
  WriteValue(kKey, "old");
  StateStore store(File(), std::chrono::seconds(60));
  Writer writer(File());
  store.Set(kKey, "new");
  int attempts = 0;
  FailingDisk disk;
  disk.RunBefore("flock state.json.lock", [&] {
    if (++attempts == 3) writer.Release();
  });
  store.Commit();
  EXPECT_EQ(3, attempts);
  EXPECT_EQ("new", StateStore(File()).Get(kKey));
}

TEST_F(StateStoreFaultTest, CanBeReadWhileAnotherProgramWrites) {
  WriteValue(kKey, "old");
  const Writer writer(File());
  StateStore store(File(), milliseconds(100));
  EXPECT_EQ("old", store.Get(kKey));
  store.Refresh();
  EXPECT_EQ("old", store.Get(kKey));
}

TEST_F(StateStoreFaultTest, AFullDiskLosesNothing) {
  WriteValue(kAllSeenItemsKey, "a");
  WriteValue(kKey, "old");
  const bool succeeded = InChildProcess([this] {
    std::signal(SIGXFSZ, SIG_IGN);
    rlimit limit{};
    ::getrlimit(RLIMIT_FSIZE, &limit);
    const rlimit small = {64 * 1024, limit.rlim_max};
    StateStore store(File());
    store.Set(kAllSeenItemsKey, "a b");
    store.Set(kKey, std::string(1'000'000, 'x'));
    ::setrlimit(RLIMIT_FSIZE, &small);
    const std::string error = StoreErrorOf([&] { store.Commit(); });
    EXPECT_THAT(error, AllOf(HasSubstr("cannot "), HasSubstr(File().native()),
                             HasSubstr("increase the file size limit"), HasSubstr("--state")));
    EXPECT_EQ("old", StateStore(File()).Get(kKey));
    EXPECT_EQ("a", StateStore(File()).Get(kAllSeenItemsKey));
    ::setrlimit(RLIMIT_FSIZE, &limit);
    store.Commit();
    return !testing::Test::HasFailure();
  });
  EXPECT_TRUE(succeeded);
  EXPECT_EQ("a b", StateStore(File()).Get(kAllSeenItemsKey));
  EXPECT_EQ(1'000'000U, StateStore(File()).Get(kKey).size());
}

/// Runs `work` in a child process without privileges, because file permissions do not apply to
/// root. Returns the result of `work`, or false if the privileges cannot be dropped.
bool AsOrdinaryUser(const std::function<bool()>& work) {
  return InChildProcess([&work] {
    constexpr uid_t kNobody = 65534;
    if (::getuid() == 0 && (::setgid(kNobody) != 0 || ::setuid(kNobody) != 0)) return false;
    return work();
  });
}

TEST_F(StateStoreFaultTest, AStoreInAReadOnlyFolderCanOnlyBeRead) {
  WriteValue(kKey, "old");
  std::filesystem::permissions(File(), std::filesystem::perms{0444});
  std::filesystem::permissions(folder_.Path(), std::filesystem::perms{0555});
  const auto before = Content(folder_.Path());
  EXPECT_TRUE(AsOrdinaryUser([this] {
    StateStore store(File());
    EXPECT_EQ("old", store.Get(kKey));
    store.Set(kKey, "new");
    EXPECT_EQ("cannot write the state store '" + File().native() + "': cannot open '" +
                  File().native() + ".lock': Permission denied" + kWriteAdvice,
              StoreErrorOf([&] { store.Commit(); }));
    return !testing::Test::HasFailure();
  }));
  EXPECT_TRUE(before == Content(folder_.Path())) << "a file has changed";
  std::filesystem::permissions(folder_.Path(), std::filesystem::perms{0755});
}

TEST_F(StateStoreFaultTest, AReadOnlyStoreIsNotReplaced) {
  WriteValue(kKey, "old");
  std::filesystem::permissions(File(), std::filesystem::perms{0444});
  std::filesystem::permissions(File().native() + ".lock", std::filesystem::perms{0666});
  std::filesystem::permissions(folder_.Path(), std::filesystem::perms{0777});
  const auto before = Content(folder_.Path());
  EXPECT_TRUE(AsOrdinaryUser([this] {
    StateStore store(File());
    store.Set(kKey, "new");
    EXPECT_EQ("cannot write the state store '" + File().native() + "': cannot write '" +
                  File().native() + "': Permission denied" + kWriteAdvice,
              StoreErrorOf([&] { store.Commit(); }));
    return !testing::Test::HasFailure();
  }));
  EXPECT_TRUE(before == Content(folder_.Path())) << "a file has changed";
}

TEST_F(StateStoreFaultTest, FailsIfItsLockFileIsReplaced) {
  // After the replacement, another program can lock the new lock file and write at the same time.
  // The store must therefore check that its lock file is still in place.
  WriteValue(kKey, "old");
  const auto replaceLock = [this](StateValues& values) {
    values.insert_or_assign(std::string(kKey), "new");
    std::filesystem::rename(folder_.Write("new", ""), File().native() + ".lock");
  };
  EXPECT_EQ("cannot write the state store '" + File().native() +
                "': another program has deleted or replaced its lock file; try again",
            StoreErrorOf([&] { ChangeStateFile(File(), milliseconds(50), replaceLock); }));
  EXPECT_EQ("old", StateStore(File()).Get(kKey));
  WriteValue(kKey, "new");
  EXPECT_EQ("new", StateStore(File()).Get(kKey));
}

TEST_F(StateStoreFaultTest, TheUserNeedNotBeAbleToReadTheFoldersAboveTheStore) {
  // Users can traverse /home, but often cannot read it.
  std::filesystem::create_directories(folder_.Path() / "home" / "own");
  std::filesystem::permissions(folder_.Path() / "home" / "own", std::filesystem::perms{0777});
  std::filesystem::permissions(folder_.Path() / "home", std::filesystem::perms{0711});
  std::filesystem::permissions(folder_.Path(), std::filesystem::perms{0711});
  EXPECT_TRUE(AsOrdinaryUser([this] {
    const std::filesystem::path file = folder_.Path() / "home" / "own" / "new" / "state.json";
    StateStore store(file);
    store.Set(kKey, "text");
    store.Commit();
    return StateStore(file).Get(kKey) == "text";
  }));
}

TEST_F(StateStoreFaultTest, NamesAFolderThatCannotBeCreated) {
  std::filesystem::permissions(folder_.Path(), std::filesystem::perms{0555});
  EXPECT_TRUE(AsOrdinaryUser([this] {
    const std::filesystem::path folder = folder_.Path() / "new";
    StateStore store(folder / "state.json");
    store.Set(kKey, "new");
    EXPECT_EQ("cannot write the state store '" + (folder / "state.json").native() +
                  "': cannot create the folder '" + folder.native() + "': Permission denied" +
                  kWriteAdvice,
              StoreErrorOf([&] { store.Commit(); }));
    return !testing::Test::HasFailure();
  }));
  std::filesystem::permissions(folder_.Path(), std::filesystem::perms{0755});
}

TEST_F(StateStoreFaultTest, NamesAStoreWithoutReadPermission) {
  WriteValue(kKey, "old");
  std::filesystem::permissions(File(), std::filesystem::perms{0000});
  std::filesystem::permissions(folder_.Path(), std::filesystem::perms{0755});
  EXPECT_TRUE(AsOrdinaryUser([this] {
    EXPECT_EQ("cannot read the state store '" + File().native() +
                  "': Permission denied; check the permissions of the file and its folder, or name "
                  "a file "
                  "elsewhere with --state",
              StoreErrorOf([&] { StateStore store(File()); }));
    return !testing::Test::HasFailure();
  }));
}

TEST_F(StateStoreFaultTest, AdvisesToCheckThePathOfALoopOfLinks) {
  std::filesystem::create_symlink(File(), File());
  EXPECT_THAT(
      StoreErrorOf([&] { StateStore store(File()); }),
      AllOf(HasSubstr("cannot read the state store '" + File().native() + "'"),
            HasSubstr("; check the path and try again, or name a file"), HasSubstr("--state")));
}

}  // namespace
}  // namespace hosts::common
