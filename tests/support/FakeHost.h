// Provides a host for tests. Tests can set the results of its services.
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

/// Installs services with results that a test can set. A new result applies from the next query.
/// The constructor and the destructor reset all services to their defaults. If several objects
/// exist, the library queries the last one that was created, until any of the objects is destroyed.
/// Not thread-safe.
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

  /// Adds a feature, or replaces the feature with the same internal key.
  void AddFeature(const FakeFeature& feature);
  /// Removes a feature. Throws `std::logic_error` if the feature is not in the table.
  void RemoveFeature(std::string_view internalKey);
  /// Set whether a feature is switched on, and whether the user can switch it on. Throw
  /// `std::logic_error` if the feature is not in the table.
  void SetFeatureEnabled(std::string_view internalKey, bool enabled);
  void SetFeatureAvailableForUser(std::string_view internalKey, bool available);

  /// Set and return an entry of the debug database. `DebugEntry` returns an empty string if there
  /// is no entry.
  void SetDebugEntry(std::string_view key, std::string_view value);
  std::string DebugEntry(std::string_view key) const;
  /// Sets the debug switch that shows internal users all features that are off.
  void ShowAllOffFeatures(bool show);
  /// Sets the debug switch that shows internal users the internal keys.
  void ShowAllUnlockCodes(bool show);

  /// Adds `text` to the dictionary as the translation of `key`. Replaces an existing translation of
  /// `key`. `key` is the part of a key text before the `=`.
  void AddTranslation(std::string_view key, std::string_view text);

  /// Return the state store, and a getter and a setter that use it.
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
