// Tests the state store on a disk that fails. The test repeats each kind of write, with a different
// failing system call each time, until every call that the fault affects has failed. If the failed
// write has replaced the file, the store must contain the new state. Otherwise, the store must
// contain the old state. The next write must succeed. Further tests check when a write syncs the
// files, and that each error message of the store and of a `FileReplacement` names the failed
// action and its file.
#include <algorithm>
#include <filesystem>
#include <iostream>
#include <ostream>
#include <string>
#include <string_view>
#include <system_error>
#include <tuple>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <ornwhatsnew/FeatureListData.h>

#include "hosts/common/FileReplacement.h"
#include "hosts/common/PrivateFolder.h"
#include "hosts/common/StateStore.h"
#include "tests/hosts/common/FailingDisk.h"
#include "tests/hosts/common/StoreErrorOf.h"
#include "tests/support/Builders.h"
#include "tests/support/FakeHost.h"
#include "tests/support/Matchers.h"
#include "tests/support/TemporaryFolder.h"

namespace hosts::common {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::EndsWith;
using testing::IsEmpty;
using testing::StartsWith;

constexpr char kFeature[] = "EPIC-7";
constexpr int kChanges = 300;

std::string Data() {
  test_support::DataFile file;
  for (int i = 0; i < kChanges; ++i) {
    file.Row({.version = "25.1",
              .groupingID = kFeature,
              .ratingRequest = i == 0 ? "RequestRating" : "",
              .description = "Change " + std::to_string(i)});
  }
  return file.Text();
}

/// The list and the store of one run of a host.
class Session {
 public:
  explicit Session(const std::filesystem::path& file)
      : store_(file), list_(Data(), store_.Getter(), store_.Setter()) {}

  void Show() { test_support::Format(list_); }
  void Rate() { list_.MarkItemHasBeenRated(kFeature); }
  StateStore& Store() { return store_; }

 private:
  StateStore store_;
  ornwhatsnew::FeatureListData list_;
};

/// A kind of write: the action of the user, and the call that writes the new state.
struct Change {
  const char* name;
  bool isFirst;  ///< whether the write creates the store
  void (*apply)(Session&);
  void (*write)(StateStore&);
};

void PrintTo(const Change& change, std::ostream* out) {
  *out << change.name;
}

void Commit(StateStore& store) {
  store.Commit();
}

const Change kTestedChanges[] = {
    {"FirstDisplay", true, [](Session& session) { session.Show(); }, Commit},
    {"Display", false, [](Session& session) { session.Show(); }, Commit},
    {"Rating", false, [](Session& session) { session.Rate(); }, Commit},
    {"Reset", false, [](Session&) {}, [](StateStore& store) { store.Reset(); }},
};

using Case = std::tuple<Change, DiskFault, DiskFaultExtent>;

class StateStoreDiskTest : public testing::TestWithParam<Case> {
 protected:
  StateStoreDiskTest() {
    host_.AddFeature({.internalKey = "export", .epicKey = kFeature, .name = "Export"});
    ShowAndCommit(FileBefore(), "25.1");
    host_.SetClientVersion("25.2");
    const std::filesystem::path file = NewStore();
    before_ = StoredValues(file);
    Session session(file);
    TestedChange().apply(session);
    TestedChange().write(session.Store());
    after_ = StoredValues(file);
    ShowAndCommit(file, "25.3");
    later_ = StoredValues(file);
  }

  static const Change& TestedChange() { return std::get<Change>(GetParam()); }

  static StateValues StoredValues(const std::filesystem::path& file) {
    return StateStore(file).Values();
  }

  void ShowAndCommit(const std::filesystem::path& file, const std::string& version) {
    host_.SetClientVersion(version);
    Session session(file);
    session.Show();
    session.Store().Commit();
    host_.SetClientVersion("25.2");
  }

  std::filesystem::path FileBefore() const { return folder_.Path() / "before.json"; }

  /// Deletes the folder of the store. Unless the tested write creates the store, recreates the
  /// folder with a copy of `FileBefore()` as the store. Returns the path of the store.
  std::filesystem::path NewStore() const {
    const std::filesystem::path folder = folder_.Path() / "tested";
    std::filesystem::remove_all(folder);
    if (TestedChange().isFirst) return folder / "state.json";
    std::filesystem::create_directory(folder);
    std::filesystem::copy(FileBefore(), folder / "state.json");
    return folder / "state.json";
  }

  void FailAt(int n) {
    disk_.FailAt(n, std::get<DiskFault>(GetParam()), std::get<DiskFaultExtent>(GetParam()));
  }

  static void ExpectHelpfulMessage(const std::string& error, const std::filesystem::path& file) {
    const bool isFull = std::get<DiskFault>(GetParam()) == DiskFault::kFull;
    const std::string advice = isFull ? ": No space left on device; free some space and try again"
                                      : ": Input/output error; check the disk and try again";
    EXPECT_THAT(error, AllOf(StartsWith("cannot write the state store '" + file.native() + "': "),
                             EndsWith(advice + ", or name a file elsewhere with --state")));
  }

  /// Makes the n-th call that the fault affects fail during the write, and checks the store. Then
  /// repairs the disk, repeats the write, and checks the store again. Returns false if the write
  /// makes fewer than n such calls.
  bool TestFailureOf(int n) {
    const std::filesystem::path file = NewStore();
    Session session(file);
    TestedChange().apply(session);
    FailAt(n);
    const std::string error = StoreErrorOf([&] { TestedChange().write(session.Store()); });
    const bool hasFailed = disk_.Failures() > 0;
    if (hasFailed) ++failedCalls_;
    // If the sync of the folder fails, the write fails although the file has been replaced.
    const bool isReplaced =
        std::ranges::find(disk_.Calls(), "renameat state.json") != disk_.Calls().end();
    EXPECT_TRUE(isReplaced || !error.empty());
    const StateValues& expected = isReplaced ? after_ : before_;
    EXPECT_EQ(StoredValues(file), expected);
    const bool canDelete = !(std::get<DiskFault>(GetParam()) == DiskFault::kBroken &&
                             std::get<DiskFaultExtent>(GetParam()) == DiskFaultExtent::kFromThen);
    EXPECT_TRUE(!canDelete || !std::filesystem::exists(file.native() + ".tmp"));
    disk_.Repair();

    EXPECT_EQ(hasFailed, !error.empty()) << error;
    if (hasFailed) ExpectHelpfulMessage(error, file);
    TestedChange().write(session.Store());
    EXPECT_EQ(StoredValues(file), after_);
    ShowAndCommit(file, "25.3");
    EXPECT_EQ(StoredValues(file), later_);
    EXPECT_FALSE(std::filesystem::exists(file.native() + ".tmp"));
    return hasFailed;
  }

  test_support::FakeHost host_;
  test_support::TemporaryFolder folder_;
  StateValues before_;
  StateValues after_;
  StateValues later_;
  FailingDisk disk_;
  int failedCalls_ = 0;
};

TEST_P(StateStoreDiskTest, KeepsTheStateIfAnyCallFails) {
  ASSERT_NE(before_, after_);
  int n = 1;
  while (TestFailureOf(n) && !HasFailure()) ++n;
  std::cout << failedCalls_ << " calls failed in turn\n";
  // At least six calls of each write can fail. The write creates the lock file and the temporary
  // file, writes the temporary file, syncs it, renames it, and syncs the folder.
  EXPECT_GE(failedCalls_, 6);
}

std::string NameOf(const testing::TestParamInfo<Case>& info) {
  const auto& [change, fault, extent] = info.param;
  return std::string(change.name) + (fault == DiskFault::kFull ? "Full" : "Broken") +
         (extent == DiskFaultExtent::kOnce ? "Once" : "FromThen");
}

INSTANTIATE_TEST_SUITE_P(Disks, StateStoreDiskTest,
                         testing::Combine(testing::ValuesIn(kTestedChanges),
                                          testing::Values(DiskFault::kFull, DiskFault::kBroken),
                                          testing::Values(DiskFaultExtent::kOnce,
                                                          DiskFaultExtent::kFromThen)),
                         NameOf);

class StateStoreSync : public testing::Test {
 protected:
  std::string FolderName() const { return folder_.Path().filename(); }

  static void WriteValue(const std::filesystem::path& file, std::string_view value) {
    StateStore store(file);
    store.Set(kLastVersionSeenKey, value);
    store.Commit();
  }

  test_support::TemporaryFolder folder_;
};

TEST_F(StateStoreSync, TheFirstCommitSyncsEachNewFolderTheFileAndItsName) {
  const FailingDisk disk;
  WriteValue(folder_.Path() / "a" / "b" / "state.json", "1");
  EXPECT_THAT(disk.Calls(),
              ElementsAre("mkdirat a", "fsync " + FolderName(), "mkdirat b", "fsync a",
                          "openat state.json.lock", "unlinkat state.json.tmp",
                          "openat state.json.tmp", "write state.json.tmp", "fsync state.json.tmp",
                          "renameat state.json", "fsync b"));
}

TEST_F(StateStoreSync, ACommitSyncsTheFileBeforeTheRenameAndTheFolderAfterwards) {
  const std::filesystem::path file = folder_.Path() / "state.json";
  WriteValue(file, "1");
  const FailingDisk disk;
  WriteValue(file, "2");
  EXPECT_THAT(disk.Calls(),
              ElementsAre("openat state.json.lock", "unlinkat state.json.tmp",
                          "openat state.json.tmp", "fchmod state.json.tmp", "write state.json.tmp",
                          "fsync state.json.tmp", "renameat state.json", "fsync " + FolderName()));
}

TEST_F(StateStoreSync, ACommitWithoutChangesSyncsTheFolder) {
  // The commit must sync the folder. The program that wrote the value may have been killed between
  // its rename and its last sync.
  const std::filesystem::path file = folder_.Path() / "state.json";
  WriteValue(file, "1");
  const FailingDisk disk;
  WriteValue(file, "1");
  EXPECT_THAT(disk.Calls(), ElementsAre("openat state.json.lock", "fsync " + FolderName()));
}

TEST_F(StateStoreSync, AReadChangesNothing) {
  const std::filesystem::path file = folder_.Path() / "state.json";
  WriteValue(file, "1");
  const FailingDisk disk;
  EXPECT_EQ("1", StateStore(file).Get(kLastVersionSeenKey));
  EXPECT_EQ("", StateStore(folder_.Path() / "missing" / "state.json").Get(kLastVersionSeenKey));
  EXPECT_THAT(disk.Calls(), IsEmpty());
}

using StateStoreErrors = StateStoreSync;

TEST_F(StateStoreErrors, NameTheFailedActionAndItsFile) {
  const std::string folder = folder_.Path() / "a";
  const std::string file = folder + "/state.json";
  const auto errorOfCall = [&](int n) {
    FailingDisk disk;
    disk.FailAt(n, DiskFault::kBroken, DiskFaultExtent::kOnce);
    return StoreErrorOf([&] { WriteValue(file, std::to_string(n)); });
  };
  const auto message = [&file](const std::string& action) {
    return "cannot write the state store '" + file + "': " + action +
           ": Input/output error; check the disk and try again, or name a file elsewhere with "
           "--state";
  };
  EXPECT_EQ(message("cannot create the folder '" + folder + "'"), errorOfCall(1));
  EXPECT_EQ(message("cannot sync the folder '" + folder_.Path().native() + "'"), errorOfCall(2));
  WriteValue(file, "text");
  EXPECT_EQ(message("cannot open '" + file + ".lock'"), errorOfCall(1));
  EXPECT_EQ(message("cannot delete '" + file + ".tmp'"), errorOfCall(2));
  EXPECT_EQ(message("cannot open '" + file + ".tmp'"), errorOfCall(3));
  EXPECT_EQ(message("cannot set the mode of '" + file + ".tmp'"), errorOfCall(4));
  EXPECT_EQ(message("cannot write '" + file + ".tmp'"), errorOfCall(5));
  EXPECT_EQ(message("cannot sync '" + file + ".tmp'"), errorOfCall(6));
  EXPECT_EQ(message("cannot replace '" + file + "'"), errorOfCall(7));
  EXPECT_EQ(message("cannot sync the folder '" + folder + "'"), errorOfCall(8));
  EXPECT_EQ("", errorOfCall(9));
}

TEST_F(StateStoreErrors, NameTheNewFileWhoseModeCannotBeSet) {
  const PrivateFolder folder(folder_.Path());
  const FileReplacement replacement(folder, "new.csv");
  FailingDisk disk;
  disk.FailAt(1, DiskFault::kBroken, DiskFaultExtent::kOnce);
  EXPECT_THAT([&replacement] { replacement.SetModeOfNewFiles(); },
              testing::ThrowsMessage<std::system_error>("cannot set the mode of '" +
                                                        folder_.Path().native() +
                                                        "/new.csv.tmp': Input/output error"));
}

}  // namespace
}  // namespace hosts::common
