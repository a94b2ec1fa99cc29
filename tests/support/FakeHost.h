// A host for tests. It provides all services that the library queries. A test can set each service
// separately; all are reset after the test.
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

/// One beta feature of the host's feature table. All strings are UTF-8.
struct FakeFeature {
  std::string internalKey;
  std::string epicKey = {};
  std::string name = {};
  std::string description = {};
  std::int32_t visibility = 0;
  bool enabled = true;
  bool availableForUser = false;
};

/// Replaces the process-wide services with its own while it exists. The constructor and the
/// destructor reset all services to their defaults. A change takes effect with the next query. Only
/// one object may exist at a time. Not thread-safe.
class FakeHost {
 public:
  FakeHost();
  ~FakeHost();
  FakeHost(const FakeHost&) = delete;
  FakeHost& operator=(const FakeHost&) = delete;

  /// Set the client information (initially version "25.1", build number "42", platform "Mac").
  void SetClientVersion(std::string_view version);
  void SetBuildNumber(std::string_view buildNumber);
  void SetPlatform(std::string_view platform);

  /// Set whether the application is terminating (initially false), whether usage logging is on
  /// (initially true), and whether the user is an internal user (initially false).
  void SetTerminating(bool terminating);
  void SetUsageLogging(bool logging);
  void SetInternalFeaturesAllowed(bool allowed);

  /// Adds a feature or replaces the one with the same internal key.
  void AddFeature(const FakeFeature& feature);
  /// Removes a feature. Throws `std::logic_error` if it is not in the table.
  void RemoveFeature(std::string_view internalKey);
  /// Switch a feature on or off, or make it available to the user. Throw `std::logic_error` if it
  /// is not in the table.
  void SetFeatureEnabled(std::string_view internalKey, bool enabled);
  void SetFeatureAvailableForUser(std::string_view internalKey, bool available);

  /// Set and return an entry of the debug database.
  void SetDebugEntry(std::string_view key, std::string_view value);
  std::string DebugEntry(std::string_view key) const;
  /// Set the two debug switches. They affect only internal users.
  void ShowAllOffFeatures(bool show);
  void ShowAllUnlockCodes(bool show);

  /// Adds an entry to the dictionary. `key` is the part of a key text before the `=`.
  void AddTranslation(std::string_view key, std::string_view text);

  /// Return the state store, and the callbacks of a list that uses it.
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
