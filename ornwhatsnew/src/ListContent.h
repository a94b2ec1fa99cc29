// Defines the content of a list, which a reload replaces in one step.
#ifndef ORNWHATSNEW_SRC_LISTCONTENT_H_
#define ORNWHATSNEW_SRC_LISTCONTENT_H_

#include <algorithm>
#include <cstdint>
#include <list>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

#include <ornwhatsnew/FeatureListItem.h>
#include <ornwhatsnew/PanelLayout.h>
#include <ornwhatsnew/utility/SharedTypes.h>

#include "ornwhatsnew/src/rules/IdentitySet.h"
#include "ornwhatsnew/src/rules/VisibilityRules.h"

namespace ornwhatsnew {

/// The state of a list in memory.
struct SeenState {
  /// The identities from the last read of the state, and the rated identities that
  /// `MarkItemHasBeenRated` has added since then.
  IdentitySet seenGuids;
  /// The identities that displays and `MarkAllSeen` have added since the state was read.
  IdentitySet newlySeenGuids;
  /// The full version in which the user had last opened the panel when the state was read. It is
  /// empty for a new user.
  UTF8String lastVersionSeen;
  /// The full versions in which the user opened the panel, including the current version. The set
  /// is empty until the state is read.
  VersionSet seenVersions;
  /// The `VersionNumber` of each element of `seenVersions`, in ascending order.
  std::vector<std::int64_t> seenVersionNumbers;
};

struct ListContent {
  FeatureMap items;
  std::list<std::string> orderedKeys;
  SeenState state;
  /// The changes-since version. Has no value if no data file contained a `Changes-Since` row.
  std::optional<UTF8String> changesSinceVersion;
  DataFileSummary summary;

  /// Returns the item with this key. Returns null if the key has no entry or an empty entry.
  const FeatureListItem* FindItem(const std::string& key) const;

  /// Calls `predicate(item)` for each item that a display with these options shows, in key order.
  /// Stops and returns true when a call returns true. If `shown` is null, allocates nothing.
  /// Otherwise, `*shown` describes `item` during the call to `predicate`.
  template <class Predicate>
  bool AnyOfShownItems(const DisplayOptions& options, ShownItem* shown, Predicate predicate) const {
    const VisibilityFilter filter(options, state.seenGuids, state.seenVersionNumbers);
    return std::ranges::any_of(orderedKeys, [&](const std::string& key) {
      const FeatureListItem* const item = FindItem(key);
      return item != nullptr && IsItemShown(*item, filter, shown) && predicate(*item);
    });
  }

  /// Calls `visit(item, shown)` for each item that a display with these options shows, in key
  /// order. `shown` contains the identity and the shown changes of the item, and is valid only
  /// during the call.
  template <class Visit>
  void VisitShownItems(const DisplayOptions& options, Visit visit) const {
    ShownItem shown;
    AnyOfShownItems(options, &shown, [&](const FeatureListItem& item) {
      visit(item, shown);
      return false;
    });
  }

  /// Implements `FeatureListData::InsertFeatureListItem`.
  void InsertItem(std::shared_ptr<FeatureListItem> item);
  /// Implements `FeatureListData::EnsureSpecialCaseItemExists`.
  void EnsureSectionExists(std::string_view key, const UTF16String& name,
                           const UTF16String& description);
  /// Implements `FeatureListData::ParseBetaFeatures`.
  void AddBetaFeatures();
  /// Implements `FeatureListData::ParseWhatsNewData`. Returns the numbers of changes, unmatched
  /// changes and skipped rows in `dataText`. In the result, `isFound` has no value.
  DataFileSummary AddChanges(std::string_view dataText);
  /// Implements `FeatureListData::BubbleUnlockedItemsToTheTop`.
  void MoveUnlockedItemsToFront();
};

// A reload moves the new content into the list. The move must not throw, because the list would
// then have only some of the new members.
static_assert(std::is_nothrow_move_constructible_v<ListContent> &&
              std::is_nothrow_move_assignable_v<ListContent>);

}  // namespace ornwhatsnew

#endif  // ORNWHATSNEW_SRC_LISTCONTENT_H_
