#include "ornwhatsnew/src/rules/VisibilityRules.h"

#include <algorithm>
#include <cstddef>

#include <ornappsupport/feature/FeatureService.h>
#include <orncore/appstatemanager/AppStateManager.h>
#include <orncore/config/ClientInfo.h>
#include <ornwhatsnew/WhatsNewTypes.h>
#include <ornwhatsnew/utility/TextHelpers.h>

#include "ornwhatsnew/src/rules/Keywords.h"
#include "ornwhatsnew/src/rules/ReadAhead.h"

namespace ornwhatsnew {
namespace {

namespace feature = ornappsupport::feature;

bool IsOnThisPlatform(const FeatureListDetail& change, const VisibilityQuestion& question) {
  return !change.HasUsablePlatform() ||
         CaseInsensitiveEqual(change.GetRelevantPlatformOptional(), question.Platform());
}

// The two tests exclude each other, so only a malformed salience passes. Hosts have come to rely
// on it.
bool PassesHeadlineFilter(const FeatureListDetail& change) {
  if (change.HasMalformedSalience()) return true;
  const UTF8String& salience = change.GetSalienceOptional();
  if (!salience.empty()) return false;
  return CaseInsensitiveEqual(salience, keywords::kHeadline);
}

bool IsRelevantToVersionsRun(const FeatureListDetail& change, const VisibilityQuestion& question) {
  const UTF8String& firstVersion = change.GetRelevantFirstVersionOptional();
  if (firstVersion.empty()) return true;
  return question.RanVersionWithin(VersionNumber(firstVersion),
                                   VersionNumber(change.GetChangeAddedVersion()));
}

bool IsRatingRequestOnly(const FeatureListDetail& change) {
  return !change.GetRatingRequestOptional().empty() && change.GetDescription().empty();
}

// A feature that the user has, can switch on, or is shown by the debug switch.
bool IsWithinReach(const FeatureListItem& item) {
  const char* const internalKey = item.BetaFeatureInternalKey().c_str();
  return feature::IsFeatureEnabled(internalKey) ||
         feature::IsAvailableForUserEnablement(internalKey) || ShowingAllOffFeaturesInternally();
}

bool IsForInternalUsersOnly(const FeatureListItem& item) {
  return IsInternalSpecialCaseSection(item.FeatureJiraIDKey()) || item.IsItemInternalOverride();
}

// The walk over an item's changes: which are shown, whether they hide the item, and the item's
// identity on the way, so that nothing is hashed twice.
class ChangeWalk {
 public:
  ChangeWalk(const FeatureListItem& item, const VisibilityQuestion& question, bool special,
             ItemFindings* findings)
      : item_(item), question_(question), special_(special), findings_(findings) {
    if (findings_ != nullptr) findings_->shownChanges.clear();
    if (findings_ != nullptr || question_.AsksForState()) seenIdentity_.emplace(item);
    hiddenByVisibility_ = item.GetVisibility() == FeatureListItem::Visibility::kInternal;
  }

  /// False when a change hides the item.
  bool Run() {
    const FeatureListItem::Changes& changes = item_.GetAllChanges();
    for (std::size_t i = 0; i < changes.size(); ++i) {
      ReadAhead(
          i, changes.size(), [&](std::size_t at) -> const auto& { return *changes[at]; });
      const FeatureListDetail& change = *changes[i];
      if (!special_ && change.DetailForcingItemToHiddenOverride()) return false;
      if (change.DetailForcingItemToNormalVisibility()) hiddenByVisibility_ = false;
      Visit(change);
    }
    if (findings_ != nullptr) findings_->itemSeen = seenIdentity_->Result();
    return !hiddenByVisibility_;
  }

  bool AnyShown() const { return anyShown_; }
  /// REQUIRES: the question asks for state, and while it asks for new things only, nothing is
  /// shown.
  Guid ItemSeen() const { return seenIdentity_->Result(); }

 private:
  void Visit(const FeatureListDetail& change) {
    // A new change makes its item new whatever else stands there, so the rest need not be hashed.
    const bool decided = anyShown_ && !question_.Has(kRatingView) && findings_ == nullptr;
    if (decided) return;

    ChangeIdentity identity(change);
    const bool shown = IsChangeShown(change, question_, identity);
    anyShown_ |= shown;
    if (seenIdentity_) seenIdentity_->AddChange(change, identity);
    if (shown && findings_ != nullptr) {
      findings_->shownChanges.push_back({&change, identity.Seen()});
    }
  }

  const FeatureListItem& item_;
  const VisibilityQuestion& question_;
  const bool special_;
  ItemFindings* const findings_;
  std::optional<ItemSeenIdentity> seenIdentity_;
  bool hiddenByVisibility_ = false;
  bool anyShown_ = false;
};

}  // namespace

bool VisibilityQuestion::RanVersionWithin(std::int64_t first, std::int64_t end) const {
  if (versionNumbers_.empty()) {
    versionNumbers_.reserve(versions_.size());
    for (const UTF8String& version : versions_) versionNumbers_.push_back(VersionNumber(version));
    std::ranges::sort(versionNumbers_);
  }
  const auto ran = std::ranges::lower_bound(versionNumbers_, first);
  return ran != versionNumbers_.end() && *ran < end;
}

const UTF8String& VisibilityQuestion::Platform() const {
  if (!platform_) platform_ = orncore::config::GetClientPlatform();
  return *platform_;
}

bool IsChangeForRating(const FeatureListDetail& change, SeenIdentities seen,
                       ChangeIdentity& identity) {
  if (change.GetRatingRequestOptional().empty()) return false;
  return change.GetDescription().empty() || seen.Contains(identity.Seen());
}

bool IsChangeShown(const FeatureListDetail& change, const VisibilityQuestion& question,
                   ChangeIdentity& identity) {
  // First what decides most often: nearly everything is seen, and a walk needs the identities in
  // any case.
  if (question.AsksForNewOnly() &&
      (IsRatingRequestOnly(change) || question.IsSeen(identity.Seen()))) {
    return false;
  }
  if (question.Has(kFilterRelevantPlatform) && !IsOnThisPlatform(change, question)) return false;
  if (question.Has(kFilterHeadlinesOnly) && !PassesHeadlineFilter(change)) return false;
  if (question.Has(kFilterRelevantVersion) && !IsRelevantToVersionsRun(change, question)) {
    return false;
  }
  if (question.Has(kRatingView)) return IsChangeForRating(change, question.Seen(), identity);
  return !change.GetDescription().empty();
}

bool IsItemShown(const FeatureListItem& item, const VisibilityQuestion& question,
                 ItemFindings* findings) {
  const bool rating = question.Has(kRatingView);
  if (rating && orncore::appstatemanager::IsTerminating()) return false;
  if (rating && FeatureListItem::AnalyticsDisabled()) return false;

  const bool special = IsSpecialCaseSection(item.FeatureJiraIDKey());
  if (!special && !IsWithinReach(item)) return false;
  if (IsForInternalUsersOnly(item) && !feature::IsEntitlementSetToInternalFeaturesAllowed()) {
    return false;
  }
  if (special && item.GetAllChanges().empty()) return false;

  ChangeWalk walk(item, question, special, findings);
  if (!walk.Run()) return false;
  if (special && !walk.AnyShown()) return false;

  if (rating) {
    if (special || question.IsSeen(item.GetItemRatedGuid())) return false;
    return walk.AnyShown() && question.IsSeen(walk.ItemSeen());
  }
  if (question.Has(kShowOnlyNew)) {
    return walk.AnyShown() || !question.IsSeen(walk.ItemSeen());
  }
  return true;
}

}  // namespace ornwhatsnew
