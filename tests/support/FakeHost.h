// A host for tests: every service that the library asks, settable one by one, and put back to the
// defaults when the test is over.
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

/// One entry of the host's feature table; texts are UTF-8.
struct FakeFeature {
  std::string internalKey;
  std::string epicKey = {};
  std::string name = {};
  std::string description = {};
  std::int32_t visibility = 0;
  bool enabled = true;
  bool availableForUser = false;
};

/// Owns the world of one test: the process-wide services are reset when it is made and again when
/// it goes, and answer from here in between. What is set counts from the next question on, as it
/// does with a real host. Only one at a time, one thread at a time.
class FakeHost {
 public:
  FakeHost();
  ~FakeHost();
  FakeHost(const FakeHost&) = delete;
  FakeHost& operator=(const FakeHost&) = delete;

  /// Version, build number and platform of the running client ("25.1", "42", "Mac" at first).
  void SetClientVersion(std::string_view version);
  void SetBuildNumber(std::string_view buildNumber);
  void SetPlatform(std::string_view platform);

  void SetTerminating(bool terminating);
  void SetUsageLogging(bool logging);
  void SetInternalFeaturesAllowed(bool allowed);

  /// Adds a feature, or replaces the one under the same internal key.
  void AddFeature(const FakeFeature& feature);
  void RemoveFeature(std::string_view internalKey);
  /// Switches a feature that is in the table. REQUIRES: it is.
  void SetFeatureEnabled(std::string_view internalKey, bool enabled);
  void SetFeatureAvailableForUser(std::string_view internalKey, bool available);

  /// Entries of the debug database.
  void SetDebugEntry(std::string_view key, std::string_view value);
  std::string DebugEntry(std::string_view key) const;
  /// The two switches that let an internal user see what others see.
  void ShowAllOffFeatures(bool show);
  void ShowAllUnlockCodes(bool show);

  /// Adds a dictionary entry: a key as written before `=`, and its text.
  void AddTranslation(std::string_view key, std::string_view text);

  /// The store behind the callbacks, and the callbacks to hand to a list.
  FakeStateStore& State() { return state_; }
  std::function<std::string(const std::string&)> Getter() { return state_.Getter(); }
  std::function<void(const std::string&, const std::string&)> Setter() { return state_.Setter(); }

 private:
  class Services;

  std::shared_ptr<Services> services_;
  std::map<std::string, std::string, std::less<>> dictionary_;
  FakeStateStore state_;
};

/// The base of tests that need a host and nothing else around it.
class FakeHostTest : public ::testing::Test {
 protected:
  FakeHost host_;
};

}  // namespace test_support

#endif  // TESTS_SUPPORT_FAKEHOST_H_
