// Disks that fail at every place where they can: in each thing that is remembered, the first
// operation on the disk fails, then the second, and so on until there is none left to fail. What
// was acknowledged is there afterwards, what was not is not, and the next writing works.
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
using testing::HasSubstr;

constexpr char kFeature[] = "EPIC-7";
// Identities that fill several pages of the database, so that it grows and is cut back again.
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

/// One run of a host: its list, and the store that remembers for it.
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

/// Something that is remembered: what the user does, and the call that writes it.
struct Deed {
  const char* name;
  bool isFirst;  ///< there is no store before
  void (*act)(Session&);
  void (*write)(StateStore&);
};

void PrintTo(const Deed& deed, std::ostream* out) {
  *out << deed.name;
}

void Commit(StateStore& store) {
  store.Commit();
}

const Deed kDeeds[] = {
    {"FirstDisplay", true, [](Session& session) { session.Show(); }, Commit},
    {"Display", false, [](Session& session) { session.Show(); }, Commit},
    {"Rating", false, [](Session& session) { session.Rate(); }, Commit},
    {"Reset", false, [](Session&) {}, [](StateStore& store) { store.Reset(); }},
};

using Case = std::tuple<Deed, DiskFault, DiskFaultExtent>;

class StateStoreDiskTest : public testing::TestWithParam<Case> {
 protected:
  StateStoreDiskTest() {
    host_.AddFeature({.internalKey = "export", .epicKey = kFeature, .name = "Export"});
    ShowAndCommit(FileBefore(), "25.1");
    host_.SetClientVersion("25.2");
    const std::filesystem::path file = NewStore();
    before_ = Kept(file);
    Session session(file);
    TheDeed().act(session);
    TheDeed().write(session.Store());
    after_ = Kept(file);
    ShowAndCommit(file, "25.3");
    later_ = Kept(file);
  }

  static const Deed& TheDeed() { return std::get<Deed>(GetParam()); }

  static StateValues Kept(const std::filesystem::path& file) { return StateStore(file).Values(); }

  void ShowAndCommit(const std::filesystem::path& file, const std::string& version) {
    host_.SetClientVersion(version);
    Session session(file);
    session.Show();
    session.Store().Commit();
    host_.SetClientVersion("25.2");
  }

  std::filesystem::path FileBefore() const { return folder_.Path() / "before.db"; }

  /// A store as it is before the deed.
  std::filesystem::path NewStore() const {
    const std::filesystem::path folder = folder_.Path() / "tried";
    std::filesystem::remove_all(folder);
    std::filesystem::create_directory(folder);
    if (!TheDeed().isFirst) std::filesystem::copy(FileBefore(), folder / "state.db");
    return folder / "state.db";
  }

  void FailAt(int n) {
    disk_.FailAt(n, std::get<DiskFault>(GetParam()), std::get<DiskFaultExtent>(GetParam()));
  }

  static void ExpectSaysWhatToDo(const std::string& error, const std::filesystem::path& file) {
    const bool isFull = std::get<DiskFault>(GetParam()) == DiskFault::kFull;
    const char* const reason =
        isFull ? "could not be written: the disk is full" : "could not be read or written";
    const char* const advice = isFull ? "free some space and try again, or name a file elsewhere"
                                      : "see to the disk and try again, or name a file elsewhere";
    EXPECT_THAT(error, AllOf(HasSubstr("'" + file.native() + "'"), HasSubstr(reason),
                             HasSubstr(advice), HasSubstr("--state")));
  }

  /// A store that was left in the middle is put in order by whoever reads it next. The disk fails
  /// at every place of that, too: the store may be refused then, but never read wrongly.
  void ExpectReadRightOrRefused(const std::filesystem::path& file, const StateValues& expected) {
    int n = 0;
    do {
      FailAt(++n);
      StateValues values;
      const std::string error = StoreErrorOf([&] { values = Kept(file); });
      if (error.empty()) {
        EXPECT_EQ(values, expected);
      } else {
        ExpectSaysWhatToDo(error, file);
      }
      if (disk_.Failures() > 0) ++failedPlaces_;
    } while (disk_.Failures() > 0 && !HasFailure());
  }

  /// Whether there was an n-th operation to fail.
  bool FailOne(int n) {
    const std::filesystem::path file = NewStore();
    Session session(file);
    TheDeed().act(session);
    FailAt(n);
    const std::string error = StoreErrorOf([&] { TheDeed().write(session.Store()); });
    const bool hasFailed = disk_.Failures() > 0;
    if (hasFailed) ++failedPlaces_;
    const StateValues& expected = error.empty() ? after_ : before_;
    ExpectReadRightOrRefused(file, expected);
    disk_.Mend();

    EXPECT_TRUE(hasFailed || error.empty()) << error;
    if (!error.empty()) ExpectSaysWhatToDo(error, file);
    EXPECT_EQ(Kept(file), expected);
    TheDeed().write(session.Store());
    EXPECT_EQ(Kept(file), after_);
    ShowAndCommit(file, "25.3");
    EXPECT_EQ(Kept(file), later_);
    return hasFailed;
  }

  test_support::FakeHost host_;
  test_support::TemporaryFolder folder_;
  StateValues before_;
  StateValues after_;
  StateValues later_;
  FailingDisk disk_;
  int failedPlaces_ = 0;
};

TEST_P(StateStoreDiskTest, LosesNothingWhereverItFails) {
  ASSERT_NE(before_, after_);
  int n = 1;
  while (FailOne(n) && !HasFailure()) ++n;
  std::cout << failedPlaces_ << " operations failed in turn\n";
  EXPECT_GT(failedPlaces_, 0);
}

std::string NameOf(const testing::TestParamInfo<Case>& info) {
  const auto& [deed, fault, extent] = info.param;
  return std::string(deed.name) + (fault == DiskFault::kFull ? "Full" : "Broken") +
         (extent == DiskFaultExtent::kOnce ? "Once" : "FromThen");
}

INSTANTIATE_TEST_SUITE_P(Disks, StateStoreDiskTest,
                         testing::Combine(testing::ValuesIn(kDeeds),
                                          testing::Values(DiskFault::kFull, DiskFault::kBroken),
                                          testing::Values(DiskFaultExtent::kOnce,
                                                          DiskFaultExtent::kFromThen)),
                         NameOf);

}  // namespace
}  // namespace hosts::common
