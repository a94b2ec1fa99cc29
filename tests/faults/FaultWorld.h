// The world in which faults are injected: a host with features of every kind, data files that take
// every way through the parser and the panel, a user who has seen and rated part of it, and a
// description of a list in which every difference shows.
#ifndef TESTS_FAULTS_FAULTWORLD_H_
#define TESTS_FAULTS_FAULTWORLD_H_

#include <memory>
#include <string>

#include <gtest/gtest.h>

#include <ornwhatsnew/FeatureListData.h>

#include "tests/support/FakeHost.h"
#include "tests/support/FakeStateStore.h"

namespace faults {

/// The data file of which the user has seen everything.
std::string SeenData();
/// The same with changes that are new to the user: what lists of this world are loaded with.
std::string LoadedData();
/// A later file with other changes and another changes-since version.
std::string LaterData();

/// A host whose user may see internal features, and whose texts are too long for strings to hold
/// them without an allocation.
class FaultHost : public test_support::FakeHost {
 public:
  FaultHost();

  /// What the store holds after the user saw `SeenData`.
  const test_support::FakeStateStore::Texts& SeenState() const { return seenState_; }

 private:
  test_support::FakeStateStore::Texts seenState_;
};

/// A list and the store behind it.
struct World {
  /// A list loaded with `LoadedData`.
  explicit World(const FaultHost& host);

  /// A list with what it has and what it answers to every question, asked without changing it.
  std::string Look() const;

  /// What becomes of the list afterwards: shown, rated, reloaded, shown again, each with what the
  /// store holds then.
  std::string Aftermath();

  test_support::FakeStateStore store;
  std::unique_ptr<ornwhatsnew::FeatureListData> list;
};

class FaultTest : public testing::Test {
 protected:
  World MakeWorld() const { return World(host_); }

  FaultHost host_;
};

}  // namespace faults

#endif  // TESTS_FAULTS_FAULTWORLD_H_
