// Tests the store on a disk that fails. For each kind of write, the first disk operation fails,
// then the second, and so on until every operation has failed once. After each failure, the store
// must contain every write that succeeded and none that failed. The next write must succeed.
#include <filesystem>
#include <iostream>
#include <ostream>
#include <string>
#include <tuple>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <ornwhatsnew/FeatureListData.h>

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
using testing::EndsWith;
using testing::StartsWith;

constexpr char kFeature[] = "EPIC-7";
// The number of changes in the data file. Their identities fill several database pages, so that
// the database file grows and is truncated again.
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

/// The list and the store of a host that runs once.
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

  std::filesystem::path FileBefore() const { return folder_.Path() / "before.db"; }

  /// Recreates the state folder with the store as it is before the tested write. Returns the path
  /// of the store. If the tested write creates the store, the folder is empty.
  std::filesystem::path NewStore() const {
    const std::filesystem::path folder = folder_.Path() / "tested";
    std::filesystem::remove_all(folder);
    std::filesystem::create_directory(folder);
    if (!TestedChange().isFirst) std::filesystem::copy(FileBefore(), folder / "state.db");
    return folder / "state.db";
  }

  void FailAt(int n) {
    disk_.FailAt(n, std::get<DiskFault>(GetParam()), std::get<DiskFaultExtent>(GetParam()));
  }

  static void ExpectHelpfulMessage(const std::string& error, const std::filesystem::path& file) {
    const bool isFull = std::get<DiskFault>(GetParam()) == DiskFault::kFull;
    const std::string problem = isFull ? "cannot write" : "cannot read or write";
    const std::string advice = isFull ? ": the disk is full; free some space and try again"
                                      : "; check the disk and try again";
    EXPECT_THAT(error, AllOf(StartsWith(problem + " the state store '" + file.native() + "': "),
                             EndsWith(advice + ", or name a file elsewhere with --state")));
  }

  /// Reads the store repeatedly after an interrupted write. In the n-th read, the n-th disk
  /// operation fails, until a read has fewer than n operations. A read rolls back the interrupted
  /// write. It may fail, but must never return values other than `expected`.
  void ExpectCorrectValuesOrError(const std::filesystem::path& file, const StateValues& expected) {
    int n = 0;
    do {
      FailAt(++n);
      StateValues values;
      const std::string error = StoreErrorOf([&] { values = StoredValues(file); });
      if (error.empty()) {
        EXPECT_EQ(values, expected);
      } else {
        ExpectHelpfulMessage(error, file);
      }
      if (disk_.Failures() > 0) ++failedOperations_;
    } while (disk_.Failures() > 0 && !HasFailure());
  }

  /// Tests a failure of the n-th disk operation of the write. Returns false if the write has fewer
  /// than n operations.
  bool TestFailureOf(int n) {
    const std::filesystem::path file = NewStore();
    Session session(file);
    TestedChange().apply(session);
    FailAt(n);
    const std::string error = StoreErrorOf([&] { TestedChange().write(session.Store()); });
    const bool hasFailed = disk_.Failures() > 0;
    if (hasFailed) ++failedOperations_;
    const StateValues& expected = error.empty() ? after_ : before_;
    ExpectCorrectValuesOrError(file, expected);
    disk_.Repair();

    EXPECT_TRUE(hasFailed || error.empty()) << error;
    if (!error.empty()) ExpectHelpfulMessage(error, file);
    EXPECT_EQ(StoredValues(file), expected);
    TestedChange().write(session.Store());
    EXPECT_EQ(StoredValues(file), after_);
    ShowAndCommit(file, "25.3");
    EXPECT_EQ(StoredValues(file), later_);
    return hasFailed;
  }

  test_support::FakeHost host_;
  test_support::TemporaryFolder folder_;
  StateValues before_;
  StateValues after_;
  StateValues later_;
  FailingDisk disk_;
  int failedOperations_ = 0;
};

TEST_P(StateStoreDiskTest, KeepsTheStateIfAnyOperationFails) {
  ASSERT_NE(before_, after_);
  int n = 1;
  while (TestFailureOf(n) && !HasFailure()) ++n;
  std::cout << failedOperations_ << " operations failed in turn\n";
  EXPECT_GT(failedOperations_, 0);
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

}  // namespace
}  // namespace hosts::common
