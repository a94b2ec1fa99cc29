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

// A change without a platform, or with a malformed platform, is relevant on every platform.
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

// Each of the following function templates checks some rules in a fixed order. The template calls
// `hides(rule)` for each rule that hides the change or the item. If a call returns true, the
// template stops and returns true. A display passes `kStopAtFirstRule`, to avoid unnecessary
// hashing and unnecessary queries to the host. `ExplainItem` passes a callback that returns false,
// because it collects all rules.

constexpr auto kStopAtFirstRule = [](HidingRule) { return true; };

// Returns a callback that adds each rule to `rules` and returns false. Several changes can hide an
// item by the same rule, so the callback ignores a rule that equals the last rule.
auto CollectInto(std::vector<HidingRule>& rules) {
  return [&rules](HidingRule rule) {
    if (rules.empty() || rules.back() != rule) rules.push_back(rule);
    return false;
  };
}

template <class Hides>
bool AnyRatingRuleHidesChange(const FeatureListDetail& change, bool isSeen, Hides hides) {
  if (change.GetRatingRequestOptional().empty() && hides(HidingRule::kNoRatingRequest)) return true;
  return !isSeen && !change.GetDescription().empty() && hides(HidingRule::kNotSeen);
}

template <class Hides>
bool AnyRatingRuleHidesItem(bool isRated, bool isSeen, Hides hides) {
  return (isRated && hides(HidingRule::kRated)) || (!isSeen && hides(HidingRule::kNotSeen));
}

template <class Hides>
bool AnyRuleHidesChange(const FeatureListDetail& change, const VisibilityFilter& filter,
                        const Guid& seenGuid, Hides hides) {
  if (filter.Has(kFilterRelevantPlatform) && !IsRelevantOnHostPlatform(change, filter) &&
      hides(HidingRule::kOtherPlatform)) {
    return true;
  }
  if (filter.Has(kFilterHeadlinesOnly) && !PassesHeadlineFilter(change) &&
      hides(HidingRule::kHeadlinesOnly)) {
    return true;
  }
  if (filter.Has(kFilterRelevantVersion) && !change.IsRelevantToVersions(filter.Versions()) &&
      hides(HidingRule::kOtherVersion)) {
    return true;
  }
  const bool isSeen = filter.DependsOnSeen() && filter.IsSeen(seenGuid);
  if (filter.Has(kRatingView)) return AnyRatingRuleHidesChange(change, isSeen, hides);
  if (isSeen && hides(HidingRule::kSeen)) return true;
  return change.GetDescription().empty() && hides(HidingRule::kNoText);
}

// Checks rules that need neither the changes of the item nor its identities.
template <class Hides>
bool AnyAccessRuleHidesItem(const FeatureListItem& item, const VisibilityFilter& filter,
                            Hides hides) {
  const bool isRatingView = filter.Has(kRatingView);
  if (isRatingView && orncore::appstatemanager::IsTerminating() &&
      hides(HidingRule::kTerminating)) {
    return true;
  }
  if (isRatingView && FeatureListItem::AnalyticsDisabled() && hides(HidingRule::kUsageLoggingOff)) {
    return true;
  }
  if (!item.IsSection() && !IsAvailableToUser(item) && hides(HidingRule::kUnavailable)) return true;
  return IsForInternalUsersOnly(item) && !feature::IsEntitlementSetToInternalFeaturesAllowed() &&
         hides(HidingRule::kInternalUsersOnly);
}

// Checks the rules that depend on whether a change of the item is shown, or on what the user has
// seen or rated. Also checks the rule that hides sections in the rating view.
template <class Hides>
bool AnySeenRuleHidesItem(const FeatureListItem& item, const VisibilityFilter& filter,
                          const Guid& seenGuid, bool isAnyChangeShown, Hides hides) {
  const bool isRatingView = filter.Has(kRatingView);
  if (item.IsSection()) {
    return (!isAnyChangeShown && hides(HidingRule::kNoShownChange)) ||
           (isRatingView && hides(HidingRule::kSectionInRatingView));
  }
  if (isRatingView) {
    const bool isRated = filter.IsSeen(item.GetItemRatedGuid());
    return AnyRatingRuleHidesItem(isRated, filter.IsSeen(seenGuid), hides) ||
           (!isAnyChangeShown && hides(HidingRule::kNoShownChange));
  }
  return filter.Has(kShowOnlyNew) && !isAnyChangeShown && filter.IsSeen(seenGuid) &&
         hides(HidingRule::kSeen);
}

// Checks all rules for an item. Calls `isChangeShown(change, guid)` for each change, where `guid`
// is the seen identity of the change. If `seenGuid` is not null, sets `*seenGuid` to the seen
// identity of the item. Stops and returns true when a call to `hides` returns true.
//
// If `seenGuid` is null and the filter does not depend on what the user has seen or rated, passes
// nil identities to `isChangeShown`. Computing identities takes longer than checking all rules.
template <class IsShown, class Hides>
bool AnyRuleHidesItem(const FeatureListItem& item, const VisibilityFilter& filter, Guid* seenGuid,
                      IsShown isChangeShown, Hides hides) {
  if (AnyAccessRuleHidesItem(item, filter, hides)) return true;
  const bool needsIdentities = seenGuid != nullptr || filter.DependsOnSeen();
  orncore::utility::GuidMixer seenMixer = ItemSeenMixer(item);
  bool isInternal = item.GetVisibility() == FeatureListItem::Visibility::kInternal;
  bool isAnyChangeShown = false;
  for (const auto& change : item.GetAllChanges()) {
    if (!item.IsSection() && change->DetailForcingItemToHiddenOverride() &&
        hides(HidingRule::kHideBetaFeature)) {
      return true;
    }
    // Compatibility: "UnhideBetaFeature" shows a feature with the visibility `kInternal`, although
    // the keyword counts as malformed (docs/compatibility.md).
    if (change->DetailForcingItemToNormalVisibility()) isInternal = false;
    const Guid changeGuid = needsIdentities ? change->GetItemSeenGuid() : Guid();
    MixChangeIntoItem(seenMixer, *change, changeGuid);
    if (isChangeShown(*change, changeGuid)) isAnyChangeShown = true;
  }
  if (isInternal && hides(HidingRule::kInternalVisibility)) return true;
  const Guid itemGuid = seenMixer.Result();
  if (seenGuid != nullptr) *seenGuid = itemGuid;
  return AnySeenRuleHidesItem(item, filter, itemGuid, isAnyChangeShown, hides);
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
  return !AnyRatingRuleHidesChange(change, isSeen, kStopAtFirstRule);
}

bool IsItemForRating(bool isRated, bool isSeen) {
  return !AnyRatingRuleHidesItem(isRated, isSeen, kStopAtFirstRule);
}

bool IsChangeShown(const FeatureListDetail& change, const VisibilityFilter& filter,
                   const Guid& seenGuid) {
  return !AnyRuleHidesChange(change, filter, seenGuid, kStopAtFirstRule);
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
  if (shown != nullptr) shown->changes.clear();
  const auto isChangeShown = [&](const FeatureListDetail& change, const Guid& seenGuid) {
    if (!IsChangeShown(change, filter, seenGuid)) return false;
    if (shown != nullptr) shown->changes.push_back({&change, seenGuid});
    return true;
  };
  Guid* const seenGuid = shown == nullptr ? nullptr : &shown->seenGuid;
  return !AnyRuleHidesItem(item, filter, seenGuid, isChangeShown, kStopAtFirstRule);
}

ItemVisibility ExplainItem(const FeatureListItem& item, const VisibilityFilter& filter) {
  ItemVisibility explained{.item = &item, .hidingRules = {}, .changes = {}};
  const auto isChangeShown = [&](const FeatureListDetail& change, const Guid& seenGuid) {
    explained.changes.push_back({.change = &change, .hidingRules = {}});
    std::vector<HidingRule>& rules = explained.changes.back().hidingRules;
    AnyRuleHidesChange(change, filter, seenGuid, CollectInto(rules));
    return rules.empty();
  };
  AnyRuleHidesItem(item, filter, nullptr, isChangeShown, CollectInto(explained.hidingRules));
  return explained;
}

}  // namespace ornwhatsnew
