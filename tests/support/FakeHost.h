// A host for tests: all services that the library queries. Each can be set separately, and all are
// reset after the test.
#ifndef TESTS_SUPPORT_FAKEHOST_H_
#define TESTS_SUPPORT_FAKEHOST_H_

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include "tests/support/FakeStateStore.h"

namespace test_support {

/// One entry of the host's feature table. All strings are UTF-8.
struct FakeFeature {
  std::string internalKey;
  std::string epicKey = {};
  std::string name = {};
  std::string description = {};
  std::int32_t visibility = 0;
  bool enabled = true;
  bool availableForUser = false;
};

/// Replaces the process-wide services by its own from construction to destruction. A setter takes
/// effect with the next query, as with a real host. Only one object may exist. Not thread-safe.
class FakeHost {
 public:
  FakeHost();
  ~FakeHost();
  FakeHost(const FakeHost&) = delete;
  FakeHost& operator=(const FakeHost&) = delete;

  /// Set the version, build number and platform of the client (initially "25.1", "42", "Mac").
  void SetClientVersion(std::string_view version);
  void SetBuildNumber(std::string_view buildNumber);
  void SetPlatform(std::string_view platform);

  void SetTerminating(bool terminating);
  void SetUsageLogging(bool logging);
  void SetInternalFeaturesAllowed(bool allowed);

  /// Adds a feature or replaces the one with the same internal key.
  void AddFeature(const FakeFeature& feature);
  void RemoveFeature(std::string_view internalKey);
  /// Switches a feature on or off. REQUIRES: it is in the table.
  void SetFeatureEnabled(std::string_view internalKey, bool enabled);
  void SetFeatureAvailableForUser(std::string_view internalKey, bool available);

  /// Sets an entry of the debug database.
  void SetDebugEntry(std::string_view key, std::string_view value);
  std::string DebugEntry(std::string_view key) const;
  /// Set the two debug switches for internal users.
  void ShowAllOffFeatures(bool show);
  void ShowAllUnlockCodes(bool show);

  /// Adds a dictionary entry: the key (the part before `=`) and its text.
  void AddTranslation(std::string_view key, std::string_view text);

  /// The store of the callbacks, and the callbacks for a list.
  FakeStateStore& State() { return state_; }
  std::function<std::string(const std::string&)> Getter() { return state_.Getter(); }
  std::function<void(const std::string&, const std::string&)> Setter() { return state_.Setter(); }

 private:
  class Services;

  std::shared_ptr<Services> services_;
  std::map<std::string, std::string, std::less<>> dictionary_;
  FakeStateStore state_;
};

/// Base class of tests that need only a host.
class FakeHostTest : public ::testing::Test {
 protected:
  FakeHost host_;
};

}  // namespace test_support

#endif  // TESTS_SUPPORT_FAKEHOST_H_
