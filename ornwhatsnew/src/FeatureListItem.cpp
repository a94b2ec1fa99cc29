#include <ornwhatsnew/FeatureListItem.h>

#include <algorithm>
#include <stdexcept>
#include <utility>

#include <ornappsupport/analytics/SDMUsageLogger.h>
#include <ornappsupport/feature/FeatureService.h>
#include <ornwhatsnew/utility/TextHelpers.h>

#include "ornwhatsnew/src/rules/IdentityMixing.h"
#include "ornwhatsnew/src/rules/VisibilityRules.h"

namespace ornwhatsnew {
namespace {

// The keys of the fields, indexed by `FieldIndex`.
constexpr auto kFieldKeys = std::to_array<std::string_view>({
    "kFeatureName",
    "kFeatureDescription",
    "kFeatureViewMoreURL",
    "kFeaturePrefsUI",
    "kCustomRatingRequestStr",
});

}  // namespace

const std::string FeatureListItem::kKeyFeatureName{kFieldKeys[kNameIndex]};
const std::string FeatureListItem::kKeyFeatureDescription{kFieldKeys[kDescriptionIndex]};
const std::string FeatureListItem::kKeyFeatureViewMoreURL{kFieldKeys[kViewMoreURLIndex]};
const std::string FeatureListItem::kKeyFeaturePrefsUI{kFieldKeys[kPrefsUIIndex]};
const std::string FeatureListItem::kKeyCustomRatingRequestStr{kFieldKeys[kCustomRatingIndex]};

FeatureListItem::FeatureListItem(const std::string& featureJiraIDKey,
                                 const std::string& betaFeatureInternalKey, const UTF8String& name,
                                 const UTF8String& description, Visibility visibility)
    : featureJiraIDKey_(featureJiraIDKey),
      betaFeatureInternalKey_(betaFeatureInternalKey),
      kind_(KindOf(featureJiraIDKey)),
      visibility_(visibility),
      fields_{name, description} {}

FeatureListItem::Kind FeatureListItem::KindOf(std::string_view featureJiraIDKey) {
  if (IsInternalSpecialCaseSection(featureJiraIDKey)) return Kind::kInternalSection;
  return IsSpecialCaseSection(featureJiraIDKey) ? Kind::kSection : Kind::kFeature;
}

const UTF8String& FeatureListItem::GetField(std::string_view key) const {
  static_assert(kFieldKeys.size() == kFieldCount);
  const auto found = std::ranges::find(kFieldKeys, key);
  // Compatibility: hosts may compare the message with this text (docs/compatibility.md).
  if (found == kFieldKeys.end()) throw std::out_of_range("unordered_map::at: key not found");
  return fields_[static_cast<std::size_t>(found - kFieldKeys.begin())];
}

void FeatureListItem::AddFeatureDetail(std::shared_ptr<FeatureListDetail> detail) {
  const bool isDuplicateURL =
      !detail->GetViewMoreURLOptional().empty() && !GetFeatureViewMoreURL().empty();
  const bool setsURL = !isDuplicateURL && !detail->HasMalformedURL();
  // Do all allocations first, so that a failed allocation leaves the item unchanged.
  UTF8String url = setsURL ? detail->GetViewMoreURLOptional() : UTF8String();
  allChanges_.push_back(std::move(detail));

  FeatureListDetail& change = *allChanges_.back();
  if (change.DetailForcingItemToInternalOverride() && !IsSection()) itemInternalOverride_ = true;
  if (isDuplicateURL) change.SetHasDuplicateURL(true);
  if (setsURL) fields_[kViewMoreURLIndex] = std::move(url);
}

void FeatureListItem::MixFeatureIntoGuid(orncore::utility::GuidMixer& mixer) const {
  mixer.Mix(featureJiraIDKey_);
  mixer.Mix(betaFeatureInternalKey_);
  for (const FieldIndex index : {kNameIndex, kDescriptionIndex, kViewMoreURLIndex, kPrefsUIIndex}) {
    MixHashablePortion(mixer, fields_[index]);
  }
}

Guid FeatureListItem::GetItemSeenGuid() const {
  orncore::utility::GuidMixer mixer = ItemSeenMixer(*this);
  for (const auto& change : allChanges_) {
    MixChangeIntoItem(mixer, *change, change->GetItemSeenGuid());
  }
  return mixer.Result();
}

Guid FeatureListItem::GetItemRatedGuid() const {
  orncore::utility::GuidMixer mixer = TaggedMixer("FeatureItemRatedList");
  mixer.Mix(betaFeatureInternalKey_);
  for (const auto& change : allChanges_) {
    if (!change->GetRatingRequestOptional().empty()) mixer.Mix(change->GetItemRatedGuid());
  }
  return mixer.Result();
}

bool FeatureListItem::ShouldShowItemToUser(const DisplayOptions& options, const GuidSet& seen,
                                           const VersionSet& versions) const {
  const std::vector<std::int64_t> versionNumbers = VersionNumbers(versions);
  return IsItemShown(*this, VisibilityFilter(options, seen, versionNumbers));
}

bool FeatureListItem::ShowForRating(const GuidSet& seen) const {
  return IsItemForRating(ItemHasBeenRated(seen), ItemHasBeenSeen(seen));
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
