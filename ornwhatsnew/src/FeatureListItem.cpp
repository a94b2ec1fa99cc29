#include <ornwhatsnew/FeatureListItem.h>

#include <utility>

#include <ornappsupport/analytics/SDMUsageLogger.h>
#include <ornappsupport/feature/FeatureService.h>
#include <ornwhatsnew/utility/TextHelpers.h>

#include "ornwhatsnew/src/rules/IdentityMixing.h"
#include "ornwhatsnew/src/rules/VisibilityRules.h"

namespace ornwhatsnew {
namespace {

constexpr std::string_view kItemRatedTag = "FeatureItemRatedList";

}  // namespace

const std::string FeatureListItem::kKeyFeatureName{kFieldKeys[kName]};
const std::string FeatureListItem::kKeyFeatureDescription{kFieldKeys[kDescription]};
const std::string FeatureListItem::kKeyFeatureViewMoreURL{kFieldKeys[kViewMoreURL]};
const std::string FeatureListItem::kKeyFeaturePrefsUI{kFieldKeys[kPrefsUI]};
const std::string FeatureListItem::kKeyCustomRatingRequestStr{kFieldKeys[kCustomRating]};

FeatureListItem::FeatureListItem(const std::string& featureJiraIDKey,
                                 const std::string& betaFeatureInternalKey, const UTF8String& name,
                                 const UTF8String& description, Visibility visibility)
    : featureJiraIDKey_(featureJiraIDKey),
      betaFeatureInternalKey_(betaFeatureInternalKey),
      visibility_(visibility) {
  fields_[kName] = name;
  fields_[kDescription] = description;
}

void FeatureListItem::AddFeatureDetail(std::shared_ptr<FeatureListDetail> detail) {
  const bool isDuplicateURL =
      !detail->GetViewMoreURLOptional().empty() && !GetFeatureViewMoreURL().empty();
  const bool givesURL = !isDuplicateURL && !detail->HasMalformedURL();
  // All that can fail comes first, so that a call that failed can be repeated.
  UTF8String url = givesURL ? detail->GetViewMoreURLOptional() : UTF8String();
  allChanges_.push_back(std::move(detail));

  FeatureListDetail& change = *allChanges_.back();
  if (change.DetailForcingItemToInternalOverride() && !IsSpecialCaseSection(featureJiraIDKey_)) {
    itemInternalOverride_ = true;
  }
  if (isDuplicateURL) change.SetHasDuplicateURL(true);
  if (givesURL) fields_[kViewMoreURL] = std::move(url);
}

void FeatureListItem::MixFeatureIntoGuid(orncore::utility::GuidMixer& mixer) const {
  mixer.Mix(featureJiraIDKey_);
  mixer.Mix(betaFeatureInternalKey_);
  for (const Place place : {kName, kDescription, kViewMoreURL, kPrefsUI}) {
    MixHashablePortion(mixer, fields_[place]);
  }
}

Guid FeatureListItem::GetItemSeenGuid() const {
  ItemSeenIdentity identity(*this);
  for (const auto& change : allChanges_) {
    ChangeIdentity changeIdentity(*change);
    identity.AddChange(*change, changeIdentity);
  }
  return identity.Result();
}

Guid FeatureListItem::GetItemRatedGuid() const {
  orncore::utility::GuidMixer mixer = TaggedMixer(kItemRatedTag);
  mixer.Mix(betaFeatureInternalKey_);
  for (const auto& change : allChanges_) {
    if (!change->GetRatingRequestOptional().empty()) mixer.Mix(change->GetItemRatedGuid());
  }
  return mixer.Result();
}

bool FeatureListItem::ShouldShowItemToUser(const DisplayOptions& options, const GuidSet& seen,
                                           const VersionSet& versions) const {
  return IsItemShown(*this, VisibilityQuestion(options, seen, versions));
}

bool FeatureListItem::ShowForRating(const GuidSet& seen) const {
  return !ItemHasBeenRated(seen) && ItemHasBeenSeen(seen);
}

bool FeatureListItem::ItemHasBeenSeen(const GuidSet& seen) const {
  return seen.contains(GetItemSeenGuid());
}

bool FeatureListItem::ItemHasBeenRated(const GuidSet& seen) const {
  return seen.contains(GetItemRatedGuid());
}

bool FeatureListItem::AnalyticsDisabled() {
  if (ornappsupport::analytics::SDMUsageLogger::IsLogging()) return false;
  return !ornappsupport::feature::IsEntitlementSetToInternalFeaturesAllowed();
}

}  // namespace ornwhatsnew
