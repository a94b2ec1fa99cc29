// Provides the fixture for tests that inject faults: a host, data files, and a user who has seen
// some of their changes. `World::Snapshot` describes a list and its state, so that tests can
// compare lists.
#ifndef TESTS_FAULTS_FAULTWORLD_H_
#define TESTS_FAULTS_FAULTWORLD_H_

#include <memory>
#include <string>

#include <gtest/gtest.h>

#include <ornwhatsnew/FeatureListData.h>

#include "tests/support/FakeHost.h"
#include "tests/support/FakeStateStore.h"

namespace faults {

/// Returns a data file. The user of a `FaultHost` has seen all changes of this file.
std::string SeenData();
/// Returns the data file that a `World` loads: `SeenData`, changes that are new to the user, and a
/// row that the library skips. This row does not have ten fields.
std::string LoadedData();
/// Returns a later version of `LoadedData`, with one more change and a different changes-since
/// version.
std::string LaterData();

/// A host with an internal user, and with features of each visibility. Most strings of the host are
/// too long for the small-string optimization, so copying them allocates memory.
class FaultHost : public test_support::FakeHost {
 public:
  FaultHost();

  /// Returns the content of the state store after the user has seen `SeenData`.
  const test_support::FakeStateStore::Texts& SeenState() const { return seenState_; }

 private:
  test_support::FakeStateStore::Texts seenState_;
};

/// A list and its state store.
struct World {
  /// Creates a list from `LoadedData`, with the state of a user who has seen `SeenData`.
  explicit World(const FaultHost& host);

  /// Returns a description of the items and changes of the list, the results of `IsAnythingNew`,
  /// `IsAnythingNeedingRating` and `GetNewSeenState`, and the content of the store. Changes neither
  /// the list nor the store.
  std::string Snapshot() const;

  /// Displays the list with two sets of options, rates an item, loads `SeenData` and displays the
  /// list again. Returns the results of the displays, and snapshots from before, during and after
  /// these steps. Tests use the result to check that the list is usable after a failure.
  std::string SnapshotsWhileUsed();

  test_support::FakeStateStore store;
  std::unique_ptr<ornwhatsnew::FeatureListData> list;
};

/// Base class of tests that inject faults.
class FaultTest : public testing::Test {
 protected:
  World MakeWorld() const { return World(host_); }

  FaultHost host_;
};

}  // namespace faults

#endif  // TESTS_FAULTS_FAULTWORLD_H_
