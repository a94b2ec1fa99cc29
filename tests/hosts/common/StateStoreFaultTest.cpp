// Tests files that are not state stores, stores that cannot be read or written, and stores that
// another program has locked. The store rejects each of them with a message that gives advice, and
// no data is lost.
#include <chrono>
#include <csignal>
#include <filesystem>
#include <functional>
#include <map>
#include <string>

#include <SQLiteCpp/Database.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include "hosts/common/StateDatabase.h"
#include "hosts/common/StateStore.h"
#include "hosts/common/TextFile.h"
#include "tests/hosts/common/StoreErrorOf.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/TemporaryFolder.h"

namespace hosts::common {
namespace {

using std::chrono::milliseconds;
using test_support::InChildProcess;
using testing::AllOf;
using testing::HasSubstr;

constexpr std::string_view kKey = "A.Key";
constexpr uid_t kNobody = 65534;

/// Returns the contents of all files in `folder` by file name.
std::map<std::string, std::string> Content(const std::filesystem::path& folder) {
  std::map<std::string, std::string> content;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    content[entry.path().filename()] = entry.is_regular_file() ? ReadTextFile(entry.path()) : "";
  }
  return content;
}

class StateStoreFaultTest : public testing::Test {
 protected:
  std::filesystem::path File() const { return folder_.Path() / "state.db"; }

  void WriteValue(std::string_view key, std::string_view value) const {
    StateStore store(File());
    store.Set(key, value);
    store.Commit();
  }

  /// Expects that reading and writing the store fail, that both messages contain `reason`, and that
  /// no file in the folder changes.
  void ExpectRejected(std::string_view reason) const {
    const auto before = Content(folder_.Path());
    const auto isClear = AllOf(HasSubstr("'" + File().native() + "'"),
                               HasSubstr(std::string(reason)), HasSubstr("--state"));
    EXPECT_THAT(StoreErrorOf([&] { StateStore store(File()); }), isClear);
    const auto change = [](StateValues& values) { values["new key"] = "text"; };
    EXPECT_THAT(
        StoreErrorOf([&] { StateDatabase::OpenOrMake(File(), milliseconds(50)).Change(change); }),
        isClear);
    EXPECT_TRUE(before == Content(folder_.Path())) << "a file has changed";
  }

  test_support::TemporaryFolder folder_;
};

TEST_F(StateStoreFaultTest, RejectsTextAndGarbage) {
  for (const std::string& bytes : {std::string("x"), std::string("Version,Epic\n1,2\n"),
                                   std::string(5000, '\0'), std::string(5000, '\xFF')}) {
    folder_.Write("state.db", bytes);
    ExpectRejected("not a state store");
  }
}

TEST_F(StateStoreFaultTest, RejectsADatabaseOfAnotherProgram) {
  SQLite::Database(File().c_str(), SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE)
      .exec("CREATE TABLE kept_value (key TEXT PRIMARY KEY, value TEXT)");
  ExpectRejected("another program");
}

TEST_F(StateStoreFaultTest, RejectsADatabaseOfAnotherProgramWithoutChangingItsLog) {
  // A program that crashes leaves its write-ahead log. SQLite applies the log when the next program
  // reads the database.
  test_support::TemporaryFolder live;
  SQLite::Database other((live.Path() / "state.db").c_str(),
                         SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE);
  other.exec("PRAGMA journal_mode = WAL");
  other.exec("CREATE TABLE t (x)");
  std::filesystem::copy(live.Path(), folder_.Path());
  ASSERT_TRUE(std::filesystem::exists(folder_.Path() / "state.db-wal"));
  ExpectRejected("another program");
}

TEST_F(StateStoreFaultTest, RejectsADatabaseOfAnotherProgramWithoutChangingItsJournal) {
  test_support::TemporaryFolder live;
  const std::string file = live.Path() / "state.db";
  SQLite::Database other(file.c_str(), SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE);
  other.exec("CREATE TABLE t (x); INSERT INTO t VALUES (1); PRAGMA cache_size = 1; BEGIN");
  other.exec(
      "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 5000) "
      "INSERT INTO t SELECT i FROM n");
  std::filesystem::copy(live.Path(), folder_.Path());
  ASSERT_TRUE(std::filesystem::exists(folder_.Path() / "state.db-journal"));
  ExpectRejected("another program");
}

TEST_F(StateStoreFaultTest, RejectsAStoreOfANewerVersion) {
  WriteValue(kKey, "text");
  SQLite::Database(File().c_str(), SQLite::OPEN_READWRITE).exec("PRAGMA user_version = 2");
  ExpectRejected("newer version");
}

TEST_F(StateStoreFaultTest, RejectsATruncatedStore) {
  WriteValue(kKey, std::string(20'000, 'x'));
  const std::string whole = ReadTextFile(File());
  for (const std::size_t size :
       {std::size_t{16}, std::size_t{99}, std::size_t{100}, std::size_t{4095}, std::size_t{4096},
        std::size_t{8192}, whole.size() - 1}) {
    SCOPED_TRACE(size);
    folder_.Write("state.db", whole.substr(0, size));
    ExpectRejected("damaged or truncated");
  }
}

TEST_F(StateStoreFaultTest, RejectsAStoreWithDestroyedPages) {
  WriteValue(kKey, "text");
  std::string bytes = ReadTextFile(File());
  for (std::size_t i = 100; i < bytes.size(); ++i) bytes[i] = '\xA5';
  folder_.Write("state.db", bytes);
  ExpectRejected("damaged or truncated");
}

TEST_F(StateStoreFaultTest, RejectsAFolder) {
  std::filesystem::create_directory(File());
  ExpectRejected("it is a folder");
}

TEST_F(StateStoreFaultTest, RejectsAPipeWithoutWaitingForIt) {
  ASSERT_EQ(0, ::mkfifo(File().c_str(), 0600));
  ExpectRejected("not a regular file");
}

TEST_F(StateStoreFaultTest, RejectsADevice) {
  EXPECT_THAT(StoreErrorOf([] { StateStore store("/dev/full"); }), HasSubstr("not a regular file"));
}

TEST_F(StateStoreFaultTest, RejectsAPathBelowAFile) {
  folder_.Write("file", "x");
  const std::filesystem::path below = folder_.Path() / "file" / "state.db";
  const std::string error = StoreErrorOf([&] {
    StateStore store(below);
    store.Set(kKey, "text");
    store.Commit();
  });
  EXPECT_THAT(error, AllOf(HasSubstr((folder_.Path() / "file").native()), HasSubstr("--state")));
  EXPECT_EQ("x", ReadTextFile(folder_.Path() / "file"));
}

/// Locks the store as another program would. `begin` is the SQL statement that sets the lock.
class Holder {
 public:
  Holder(const std::filesystem::path& file, const std::string& begin)
      : database_(file.c_str(), SQLite::OPEN_READWRITE) {
    database_.exec(begin);
  }
  void Release() { database_.exec("ROLLBACK"); }

 private:
  SQLite::Database database_;
};

TEST_F(StateStoreFaultTest, WaitsALimitedTimeForAWriterThatHangs) {
  WriteValue(kKey, "old");
  StateStore store(File(), milliseconds(100));
  Holder holder(File(), "BEGIN EXCLUSIVE");
  store.Set(kKey, "new");
  const auto isClear = AllOf(HasSubstr("another program has locked it"), HasSubstr("within 0.1 s"),
                             HasSubstr(File().native()));
  EXPECT_THAT(StoreErrorOf([&] { store.Commit(); }), isClear);
  EXPECT_THAT(StoreErrorOf([&] { store.Refresh(); }), isClear);
  EXPECT_THAT(StoreErrorOf([&] { store.Reset(); }), isClear);
  EXPECT_EQ("new", store.Get(kKey));
  holder.Release();
  EXPECT_EQ("old", StateStore(File()).Get(kKey));
  store.Commit();
  EXPECT_EQ("new", StateStore(File()).Get(kKey));
}

TEST_F(StateStoreFaultTest, CanBeReadWhileAnotherProgramPreparesToWrite) {
  WriteValue(kKey, "old");
  Holder holder(File(), "BEGIN IMMEDIATE");
  StateStore store(File(), milliseconds(100));
  EXPECT_EQ("old", store.Get(kKey));
  store.Set(kKey, "new");
  EXPECT_THAT(StoreErrorOf([&] { store.Commit(); }), HasSubstr("another program has locked it"));
}

TEST_F(StateStoreFaultTest, WaitsForAReaderBeforeItCommits) {
  WriteValue(kKey, "old");
  Holder reader(File(), "BEGIN; SELECT * FROM kept_value");
  StateStore store(File(), milliseconds(100));
  store.Set(kKey, "new");
  EXPECT_THAT(StoreErrorOf([&] { store.Commit(); }), HasSubstr("another program has locked it"));
  reader.Release();
  store.Commit();
  EXPECT_EQ("new", StateStore(File()).Get(kKey));
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
    EXPECT_THAT(error,
                AllOf(HasSubstr("cannot "), HasSubstr(File().native()), HasSubstr("--state")));
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
    const std::string error = StoreErrorOf([&] { store.Commit(); });
    EXPECT_THAT(error,
                AllOf(HasSubstr("writing"), HasSubstr(File().native()), HasSubstr("--state")));
    return !testing::Test::HasFailure();
  }));
  EXPECT_TRUE(before == Content(folder_.Path())) << "a file has changed";
  std::filesystem::permissions(folder_.Path(), std::filesystem::perms{0755});
}

TEST_F(StateStoreFaultTest, NamesAFolderThatCannotBeCreated) {
  std::filesystem::permissions(folder_.Path(), std::filesystem::perms{0555});
  EXPECT_TRUE(AsOrdinaryUser([this] {
    const std::filesystem::path folder = folder_.Path() / "new";
    StateStore store(folder / "state.db");
    store.Set(kKey, "new");
    EXPECT_THAT(
        StoreErrorOf([&] { store.Commit(); }),
        AllOf(HasSubstr(folder.native()), HasSubstr("Permission denied"), HasSubstr("--state")));
    return !testing::Test::HasFailure();
  }));
  std::filesystem::permissions(folder_.Path(), std::filesystem::perms{0755});
}

TEST_F(StateStoreFaultTest, NamesAStoreWithoutReadPermission) {
  WriteValue(kKey, "old");
  std::filesystem::permissions(File(), std::filesystem::perms{0000});
  std::filesystem::permissions(folder_.Path(), std::filesystem::perms{0755});
  EXPECT_TRUE(AsOrdinaryUser([this] {
    EXPECT_THAT(StoreErrorOf([&] { StateStore store(File()); }),
                AllOf(HasSubstr(File().native()), HasSubstr("--state")));
    return !testing::Test::HasFailure();
  }));
}

}  // namespace
}  // namespace hosts::common
