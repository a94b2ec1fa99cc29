#include <ornappsupport/feature/FeatureService.h>

#include <utility>

#include "orncore/src/utility/ServiceHolder.h"

namespace ornappsupport::feature {
namespace {

orncore::utility::ServiceHolder<const FeatureService> serviceHolder;

using KeyQuery = bool (FeatureService::*)(std::string_view) const;

bool QueryForKey(KeyQuery query, const char* internalKey) {
  const auto service = serviceHolder.Get();
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
  const auto setPresence = [&internalKey](Keys& keys, bool present) {
    if (present) {
      keys.insert(internalKey);
    } else {
      keys.erase(internalKey);
    }
  };
  setPresence(enabled_, enabled);
  setPresence(available_, availableForUser);
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
  serviceHolder.Set(std::move(service));
}

const BetaFeatureMap& GetConstBetaFeatureMap() {
  static orncore::utility::NoDestructor<BetaFeatureMap> emptyTable;
  const auto service = serviceHolder.Get();
  return service ? service->GetBetaFeatures() : *emptyTable;
}

bool IsFeatureEnabled(const char* internalKey) {
  return QueryForKey(&FeatureService::IsEnabled, internalKey);
}

bool IsAvailableForUserEnablement(const char* internalKey) {
  return QueryForKey(&FeatureService::IsAvailableForUser, internalKey);
}

bool IsEntitlementSetToInternalFeaturesAllowed() {
  const auto service = serviceHolder.Get();
  return service && service->AreInternalFeaturesAllowed();
}

}  // namespace ornappsupport::feature
