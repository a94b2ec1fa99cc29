// What the user has seen and rated: read from the host, asked for, and handed back.
#include <cassert>
#include <utility>

#include <ornwhatsnew/FeatureListData.h>
#include <ornwhatsnew/utility/PersistedList.h>
#include <ornwhatsnew/utility/TextHelpers.h>

#include "ornwhatsnew/src/CountedScope.h"
#include "ornwhatsnew/src/rules/Keywords.h"
#include "ornwhatsnew/src/rules/VisibilityRules.h"

namespace ornwhatsnew {
namespace {

VersionSet ParseVersionList(const UTF8String& text) {
  VersionSet versions;
  for (const std::string_view version : SplitPersistedList(text)) versions.emplace(version);
  return versions;
}

}  // namespace

UTF8String FeatureListData::AskHost(const UTF8String& key) const {
  const CountedScope callback(callbacks_);
  return stateGetter_(key);
}

void FeatureListData::TellHost(const UTF8String& key, const UTF8String& text) {
  const CountedScope callback(callbacks_);
  stateSetter_(key, text);
}

void FeatureListData::RefreshInternalSeenState() {
  // All that can fail comes first, so that whatever throws leaves the state as it was.
  UTF8String lastVersionSeen = AskHost(UTF8String(keywords::kLastVersionSeen));
  VersionSet seenVersions = ParseVersionList(AskHost(UTF8String(keywords::kAllVersionsSeen)));
  seenVersions.insert(currentVersion_);
  IdentitySet seenGuids = ParseGuidList(AskHost(UTF8String(keywords::kAllSeenItems)));
  BubbleUnlockedItemsToTheTop();

  lastVersionSeen_ = std::move(lastVersionSeen);
  seenVersions_ = std::move(seenVersions);
  seenGuids_ = std::move(seenGuids);
  newlySeenGuids_.clear();
}

UTF8String FeatureListData::GetNewSeenState() const {
  return FormatGuidList(seenGuids_, newlySeenGuids_);
}

bool FeatureListData::IsAnythingNew(const DisplayOptions& options) const {
  const CountedScope walk(walks_);
  const VisibilityQuestion question(options, seenGuids_, seenVersions_);
  for (const std::string& key : orderedKeys_) {
    const FeatureListItem* const item = FindItem(key);
    if (item != nullptr && IsItemShown(*item, question)) return true;
  }
  return false;
}

bool FeatureListData::IsAnythingNeedingRating() const {
  return IsAnythingNew(kFilterRelevantPlatform | kFilterRelevantVersion | kRatingView);
}

void FeatureListData::MarkItemHasBeenRated(const std::string& featureKey) {
  assert(walks_ == 0);
  if (IsSpecialCaseSection(featureKey)) return;
  const FeatureListItem* const item = FindItem(featureKey);
  if (item == nullptr) return;
  const UTF8String key(keywords::kAllSeenItems);
  const IdentitySet rated = {item->GetItemRatedGuid()};
  const UTF8String seenState = FormatGuidList(seenGuids_, newlySeenGuids_, rated);
  seenGuids_.insert(rated);
  TellHost(key, seenState);
}

void FeatureListData::RememberDisplayPass(const IdentitySet& shown) {
  // What is shown only counts when all that can fail on our side is done: otherwise a rating would
  // later store as seen what never reached the user.
  const UTF8String seenItemsKey(keywords::kAllSeenItems);
  const UTF8String lastVersionKey(keywords::kLastVersionSeen);
  const UTF8String versionsKey(keywords::kAllVersionsSeen);
  const UTF8String seenState = FormatGuidList(seenGuids_, newlySeenGuids_, shown);
  const UTF8String versions = JoinPersistedList({seenVersions_.begin(), seenVersions_.end()});
  newlySeenGuids_.insert(shown);
  TellHost(seenItemsKey, seenState);
  TellHost(lastVersionKey, currentVersion_);
  TellHost(versionsKey, versions);
}

}  // namespace ornwhatsnew
