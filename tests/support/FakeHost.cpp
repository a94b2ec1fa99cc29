#include "tests/support/FakeHost.h"

#include <set>
#include <stdexcept>
#include <utility>

#include <ornappsupport/Services.h>
#include <ornappsupport/analytics/SDMUsageLogger.h>
#include <ornappsupport/feature/FeatureService.h>
#include <orncore/appstatemanager/AppStateManager.h>
#include <orncore/config/ClientInfo.h>
#include <orncore/config/Localizer.h>
#include <orncore/debug/DebugDatabase.h>
#include <orncore/string/Conversion.h>

namespace test_support {

using ornappsupport::feature::BetaFeature;
using ornappsupport::feature::BetaFeatureMap;
using ornappsupport::feature::VisibilityInAllClientApps;
using orncore::debug::DebugDatabase;
using orncore::string::UTF16String;
using orncore::string::UTF8String;
using orncore::string::UTF8to16;

namespace {

using KeySet = std::set<std::string, std::less<>>;

void SetMember(KeySet& keys, std::string_view key, bool member) {
  if (member) {
    keys.emplace(key);
  } else if (const auto found = keys.find(key); found != keys.end()) {
    keys.erase(found);
  }
}

void ResetAllServices() {
  ornappsupport::ResetServices();
}

}  // namespace

/// Implements the client information and the feature service, and contains the results of the
/// termination query and the logging query. The library shares ownership of this object, because a
/// service that is being queried can outlive the `FakeHost`.
class FakeHost::Services : public orncore::config::ClientInfo,
                           public ornappsupport::feature::FeatureService {
 public:
  UTF16String GetClientVersion() const override { return UTF8to16(version); }
  UTF16String GetClientBuildNumber() const override { return UTF8to16(buildNumber); }
  UTF8String GetClientPlatform() const override { return platform; }

  const BetaFeatureMap& GetBetaFeatures() const override { return features; }
  bool IsEnabled(std::string_view key) const override { return enabled.contains(key); }
  bool IsAvailableForUser(std::string_view key) const override { return available.contains(key); }
  bool AreInternalFeaturesAllowed() const override { return internalFeaturesAllowed; }

  void RequireFeature(std::string_view key) const {
    if (!features.contains(key))
      throw std::logic_error("no feature has the key '" + std::string(key) + "'");
  }

  std::string version = "25.1";
  std::string buildNumber = "42";
  std::string platform = "Mac";
  bool terminating = false;
  bool logging = true;
  bool internalFeaturesAllowed = false;
  BetaFeatureMap features;
  KeySet enabled;
  KeySet available;
};

FakeHost::FakeHost() : services_(std::make_shared<Services>()) {
  ResetAllServices();
  orncore::config::SetClientInfo(services_);
  ornappsupport::feature::SetFeatureService(services_);
  orncore::appstatemanager::SetTerminationQuery(
      [services = services_] { return services->terminating; });
  ornappsupport::analytics::SDMUsageLogger::SetLoggingQuery(
      [services = services_] { return services->logging; });
}

FakeHost::~FakeHost() {
  ResetAllServices();
}

void FakeHost::SetClientVersion(std::string_view version) {
  services_->version = version;
}

void FakeHost::SetBuildNumber(std::string_view buildNumber) {
  services_->buildNumber = buildNumber;
}

void FakeHost::SetPlatform(std::string_view platform) {
  services_->platform = platform;
}

void FakeHost::SetTerminating(bool terminating) {
  services_->terminating = terminating;
}

void FakeHost::SetUsageLogging(bool logging) {
  services_->logging = logging;
}

void FakeHost::SetInternalFeaturesAllowed(bool allowed) {
  services_->internalFeaturesAllowed = allowed;
}

void FakeHost::AddFeature(const FakeFeature& feature) {
  services_->features.insert_or_assign(
      feature.internalKey,
      BetaFeature(feature.epicKey, UTF8to16(feature.name), UTF8to16(feature.description),
                  static_cast<VisibilityInAllClientApps>(feature.visibility)));
  SetFeatureEnabled(feature.internalKey, feature.enabled);
  SetFeatureAvailableForUser(feature.internalKey, feature.availableForUser);
}

void FakeHost::RemoveFeature(std::string_view internalKey) {
  services_->RequireFeature(internalKey);
  services_->features.erase(services_->features.find(internalKey));
  SetMember(services_->enabled, internalKey, false);
  SetMember(services_->available, internalKey, false);
}

void FakeHost::SetFeatureEnabled(std::string_view internalKey, bool enabled) {
  services_->RequireFeature(internalKey);
  SetMember(services_->enabled, internalKey, enabled);
}

void FakeHost::SetFeatureAvailableForUser(std::string_view internalKey, bool available) {
  services_->RequireFeature(internalKey);
  SetMember(services_->available, internalKey, available);
}

void FakeHost::SetDebugEntry(std::string_view key, std::string_view value) {
  DebugDatabase::Instance().SetEntry(key, value);
}

std::string FakeHost::DebugEntry(std::string_view key) const {
  return DebugDatabase::Instance().GetEntry(key);
}

void FakeHost::ShowAllOffFeatures(bool show) {
  SetDebugEntry("ornappsupport.betafeature.SimulateShowingAllOffFeaturesInWhatsNew",
                show ? "true" : "false");
}

void FakeHost::ShowAllUnlockCodes(bool show) {
  SetDebugEntry("ornappsupport.betafeature.SimulateShowingAllUnlockCodesInWhatsNew",
                show ? "true" : "false");
}

void FakeHost::AddTranslation(std::string_view key, std::string_view text) {
  dictionary_.insert_or_assign(std::string(key), std::string(text));
  orncore::config::Localizer::Get().SetDictionary(
      std::make_shared<orncore::config::MapDictionary>(dictionary_));
}

}  // namespace test_support
