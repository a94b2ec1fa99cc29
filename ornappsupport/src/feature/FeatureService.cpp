#include <ornappsupport/feature/FeatureService.h>

#include <utility>

#include <orncore/utility/NoDestructor.h>

namespace ornappsupport::feature {
namespace {

using orncore::utility::NoDestructor;

// Each query holds the service it asks, which may put another in its place meanwhile.
std::shared_ptr<const FeatureService>& TheService() {
  static NoDestructor<std::shared_ptr<const FeatureService>> service;
  return *service;
}

using KeyQuery = bool (FeatureService::*)(std::string_view) const;

bool Answer(KeyQuery query, const char* internalKey) {
  const auto service = TheService();
  if (!service || internalKey == nullptr) return false;
  const std::string_view key = internalKey;
  return service->GetBetaFeatures().contains(key) && (*service.*query)(key);
}

}  // namespace

FeatureService::~FeatureService() = default;

FixedFeatureService::FixedFeatureService() = default;

FixedFeatureService::~FixedFeatureService() = default;

void FixedFeatureService::Add(std::string internalKey, BetaFeature feature, bool enabled,
                              bool availableForUser) {
  const auto put = [&internalKey](Keys& keys, bool present) {
    if (present) {
      keys.insert(internalKey);
    } else {
      keys.erase(internalKey);
    }
  };
  put(enabled_, enabled);
  put(available_, availableForUser);
  features_.insert_or_assign(std::move(internalKey), std::move(feature));
}

const BetaFeatureMap& FixedFeatureService::GetBetaFeatures() const {
  return features_;
}

bool FixedFeatureService::IsEnabled(std::string_view internalKey) const {
  return enabled_.contains(internalKey);
}

bool FixedFeatureService::IsAvailableForUser(std::string_view internalKey) const {
  return available_.contains(internalKey);
}

bool FixedFeatureService::AreInternalFeaturesAllowed() const {
  return internalFeaturesAllowed_;
}

void SetFeatureService(std::shared_ptr<const FeatureService> service) {
  TheService().swap(service);
}

const BetaFeatureMap& GetConstBetaFeatureMap() {
  static NoDestructor<BetaFeatureMap> emptyTable;
  const auto service = TheService();
  return service ? service->GetBetaFeatures() : *emptyTable;
}

bool IsFeatureEnabled(const char* internalKey) {
  return Answer(&FeatureService::IsEnabled, internalKey);
}

bool IsAvailableForUserEnablement(const char* internalKey) {
  return Answer(&FeatureService::IsAvailableForUser, internalKey);
}

bool IsEntitlementSetToInternalFeaturesAllowed() {
  const auto service = TheService();
  return service && service->AreInternalFeaturesAllowed();
}

}  // namespace ornappsupport::feature
