// Implements the methods of the list that query and update the state.
#include <cassert>
#include <string>
#include <utility>
#include <vector>

#include <ornwhatsnew/FeatureListData.h>
#include <ornwhatsnew/utility/PersistedList.h>
#include <ornwhatsnew/utility/TextHelpers.h>

#include "ornwhatsnew/src/FeatureListDataImpl.h"
#include "ornwhatsnew/src/ScopedCount.h"
#include "ornwhatsnew/src/rules/JoinPersistedList.h"
#include "ornwhatsnew/src/rules/Keywords.h"
#include "ornwhatsnew/src/rules/VisibilityRules.h"

namespace ornwhatsnew {

UTF8String FeatureListData::Impl::ReadValue(std::string_view key) {
  const ScopedCount callback(activeCallbacks);
  return stateGetter(UTF8String(key));
}

void FeatureListData::Impl::WriteValue(const UTF8String& key, const UTF8String& value) {
  const ScopedCount callback(activeCallbacks);
  stateSetter(key, value);
}

SeenState FeatureListData::Impl::ReadState() {
  SeenState state;
  state.lastVersionSeen = ReadValue(keywords::kLastVersionSeen);
  const UTF8String versions = ReadValue(keywords::kAllVersionsSeen);
  for (const std::string_view version : SplitPersistedList(versions)) {
    state.seenVersions.emplace(version);
  }
  state.seenVersions.insert(currentVersion);
  state.seenVersionNumbers = VersionNumbers(state.seenVersions);
  state.seenGuids = ParseIdentities(ReadValue(keywords::kAllSeenItems));
  return state;
}

void FeatureListData::Impl::RecordDisplayPass(const IdentitySet& shown) {
  // Do all allocations before the state changes. If an allocation failed afterwards, a later
  // rating could persist the identities of changes that the user never saw.
  SeenState& state = content.state;
  const UTF8String seenItemsKey(keywords::kAllSeenItems);
  const UTF8String lastVersionKey(keywords::kLastVersionSeen);
  const UTF8String versionsKey(keywords::kAllVersionsSeen);
  IdentitySet newlySeen = UnionOf(state.newlySeenGuids, shown);
  const UTF8String seenItems = FormatIdentities(UnionOf(state.seenGuids, newlySeen));
  const UTF8String versions =
      JoinPersistedList({state.seenVersions.begin(), state.seenVersions.end()});
  state.newlySeenGuids = std::move(newlySeen);
  WriteValue(seenItemsKey, seenItems);
  WriteValue(lastVersionKey, currentVersion);
  WriteValue(versionsKey, versions);
}

void FeatureListData::RefreshInternalSeenState() {
  // Replace the state last, so that an exception leaves it unchanged.
  SeenState state = impl_->ReadState();
  BubbleUnlockedItemsToTheTop();
  impl_->content.state = std::move(state);
}

UTF8String FeatureListData::GetNewSeenState() const {
  const SeenState& state = impl_->content.state;
  return FormatIdentities(UnionOf(state.seenGuids, state.newlySeenGuids));
}

bool FeatureListData::IsAnythingNew(const DisplayOptions& options) const {
  const ScopedCount iteration(impl_->activeIterations);
  return impl_->content.AnyOfShownItems(options, nullptr,
                                        [](const FeatureListItem&) { return true; });
}

NewCount FeatureListData::CountNew(const DisplayOptions& options) const {
  const ScopedCount iteration(impl_->activeIterations);
  NewCount count;
  impl_->content.VisitShownItems(options, [&](const FeatureListItem&, const ShownItem& shown) {
    ++count.items;
    count.changes += shown.changes.size();
  });
  return count;
}

std::vector<ItemVisibility> FeatureListData::ExplainVisibility(
    const DisplayOptions& options) const {
  const ScopedCount iteration(impl_->activeIterations);
  const ListContent& content = impl_->content;
  const VisibilityFilter filter(options, content.state.seenGuids, content.state.seenVersionNumbers);
  std::vector<ItemVisibility> explained;
  for (const std::string& key : content.orderedKeys) {
    const FeatureListItem* const item = content.FindItem(key);
    if (item != nullptr) explained.push_back(ExplainItem(*item, filter));
  }
  return explained;
}

bool FeatureListData::IsAnythingNeedingRating() const {
  return IsAnythingNew(kFilterRelevantPlatform | kFilterRelevantVersion | kRatingView);
}

void FeatureListData::MarkAllSeen() {
  assert(impl_->activeIterations == 0);
  constexpr DisplayOptions kNoFilter;
  std::vector<Guid> seen;
  {
    const ScopedCount iteration(impl_->activeIterations);
    impl_->content.VisitShownItems(kNoFilter, [&](const FeatureListItem&, const ShownItem& shown) {
      AddSeenIdentities(shown, kNoFilter, seen);
    });
  }
  impl_->RecordDisplayPass(MakeIdentitySet(std::move(seen)));
}

void FeatureListData::MarkItemHasBeenRated(const std::string& featureKey) {
  assert(impl_->activeIterations == 0);
  if (IsSpecialCaseSection(featureKey)) return;
  const FeatureListItem* const item = impl_->content.FindItem(featureKey);
  if (item == nullptr) return;
  SeenState& state = impl_->content.state;
  const UTF8String seenItemsKey(keywords::kAllSeenItems);
  IdentitySet seen = UnionOf(state.seenGuids, MakeIdentitySet({item->GetItemRatedGuid()}));
  const UTF8String seenItems = FormatIdentities(UnionOf(seen, state.newlySeenGuids));
  state.seenGuids = std::move(seen);
  impl_->WriteValue(seenItemsKey, seenItems);
}

}  // namespace ornwhatsnew
