#include "ornwhatsnew/src/rules/VisibilityRules.h"

#include <algorithm>

#include <ornappsupport/feature/FeatureService.h>
#include <orncore/appstatemanager/AppStateManager.h>
#include <orncore/config/ClientInfo.h>
#include <ornwhatsnew/WhatsNewTypes.h>
#include <ornwhatsnew/utility/TextHelpers.h>

#include "ornwhatsnew/src/rules/IdentityMixing.h"
#include "ornwhatsnew/src/rules/Keywords.h"

namespace ornwhatsnew {
namespace {

namespace feature = ornappsupport::feature;
using Platform = FeatureListDetail::Platform;

// A change with a malformed platform is relevant on every platform.
bool IsRelevantOnHostPlatform(const FeatureListDetail& change, const VisibilityFilter& filter) {
  return !change.HasUsablePlatform() || change.GetPlatform() == filter.HostPlatform();
}

// Compatibility: the filter shows only changes with a malformed salience (docs/compatibility.md).
bool PassesHeadlineFilter(const FeatureListDetail& change) {
  return change.HasMalformedSalience();
}

bool IsAvailableToUser(const FeatureListItem& item) {
  const char* const internalKey = item.BetaFeatureInternalKey().c_str();
  return feature::IsFeatureEnabled(internalKey) ||
         feature::IsAvailableForUserEnablement(internalKey) || ShowingAllOffFeaturesInternally();
}

bool IsForInternalUsersOnly(const FeatureListItem& item) {
  return item.IsInternalSection() || item.IsItemInternalOverride();
}

}  // namespace

Platform ParsePlatform(std::string_view text) {
  if (text.empty()) return Platform::kNone;
  if (CaseInsensitiveEqual(text, keywords::kMac)) return Platform::kMac;
  return CaseInsensitiveEqual(text, keywords::kWin) ? Platform::kWin : Platform::kOther;
}

std::vector<std::int64_t> VersionNumbers(const VersionSet& versions) {
  std::vector<std::int64_t> numbers(versions.size());
  std::ranges::transform(versions, numbers.begin(), VersionNumber);
  std::ranges::sort(numbers);
  return numbers;
}

VisibilityFilter::VisibilityFilter(const DisplayOptions& options, SeenIdentities seen,
                                   std::span<const std::int64_t> versionNumbers)
    : options_(options), seen_(seen), versionNumbers_(versionNumbers) {}

Platform VisibilityFilter::HostPlatform() const {
  if (!hostPlatform_) hostPlatform_ = ParsePlatform(orncore::config::GetClientPlatform());
  return *hostPlatform_;
}

bool IsChangeForRating(const FeatureListDetail& change, bool isSeen) {
  if (change.GetRatingRequestOptional().empty()) return false;
  return isSeen || change.GetDescription().empty();
}

bool IsChangeShown(const FeatureListDetail& change, const VisibilityFilter& filter,
                   const Guid& seenGuid) {
  if (filter.Has(kFilterRelevantPlatform) && !IsRelevantOnHostPlatform(change, filter))
    return false;
  if (filter.Has(kFilterHeadlinesOnly) && !PassesHeadlineFilter(change)) return false;
  if (filter.Has(kFilterRelevantVersion) && !change.IsRelevantToVersions(filter.Versions())) {
    return false;
  }
  if (filter.Has(kRatingView)) return IsChangeForRating(change, filter.IsSeen(seenGuid));
  if (filter.Has(kShowOnlyNew) && filter.IsSeen(seenGuid)) return false;
  return !change.GetDescription().empty();
}

void AddSeenIdentities(const ShownItem& shown, const DisplayOptions& options,
                       std::vector<Guid>& identities) {
  identities.push_back(shown.seenGuid);
  // A user opens the rating view to rate features, so the changes that it shows do not count as
  // seen.
  if (options.Has(kRatingView)) return;
  for (const ShownItem::Change& change : shown.changes) identities.push_back(change.seenGuid);
}

bool IsItemShown(const FeatureListItem& item, const VisibilityFilter& filter, ShownItem* shown) {
  const bool isRatingView = filter.Has(kRatingView);
  if (isRatingView && orncore::appstatemanager::IsTerminating()) return false;
  if (isRatingView && FeatureListItem::AnalyticsDisabled()) return false;
  if (!item.IsSection() && !IsAvailableToUser(item)) return false;
  if (IsForInternalUsersOnly(item) && !feature::IsEntitlementSetToInternalFeaturesAllowed()) {
    return false;
  }

  if (shown != nullptr) shown->changes.clear();
  orncore::utility::GuidMixer seenMixer = ItemSeenMixer(item);
  bool isHidden = item.GetVisibility() == FeatureListItem::Visibility::kInternal;
  bool isAnyChangeShown = false;
  for (const auto& change : item.GetAllChanges()) {
    if (!item.IsSection() && change->DetailForcingItemToHiddenOverride()) return false;
    // Compatibility: "UnhideBetaFeature" has this effect although it counts as malformed
    // (docs/compatibility.md).
    if (change->DetailForcingItemToNormalVisibility()) isHidden = false;
    const Guid seenGuid = change->GetItemSeenGuid();
    MixChangeIntoItem(seenMixer, *change, seenGuid);
    if (!IsChangeShown(*change, filter, seenGuid)) continue;
    isAnyChangeShown = true;
    if (shown != nullptr) shown->changes.push_back({change.get(), seenGuid});
  }
  if (isHidden) return false;

  const Guid seenGuid = seenMixer.Result();
  if (shown != nullptr) shown->seenGuid = seenGuid;
  if (item.IsSection()) return isAnyChangeShown && !isRatingView;
  if (isRatingView) {
    return isAnyChangeShown && filter.IsSeen(seenGuid) && !filter.IsSeen(item.GetItemRatedGuid());
  }
  return !filter.Has(kShowOnlyNew) || isAnyChangeShown || !filter.IsSeen(seenGuid);
}

}  // namespace ornwhatsnew
