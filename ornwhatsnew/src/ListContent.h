// The content of a list: what a reload replaces as a whole.
#ifndef ORNWHATSNEW_SRC_LISTCONTENT_H_
#define ORNWHATSNEW_SRC_LISTCONTENT_H_

#include <cstdint>
#include <list>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

#include <ornwhatsnew/FeatureListItem.h>
#include <ornwhatsnew/utility/SharedTypes.h>

#include "ornwhatsnew/src/rules/IdentitySet.h"

namespace ornwhatsnew {

/// What the user has seen and rated.
struct SeenState {
  IdentitySet seenGuids;
  /// What was shown since the state was read.
  IdentitySet newlySeenGuids;
  UTF8String lastVersionSeen;
  VersionSet seenVersions;
  /// The numbers of `seenVersions`, ascending.
  std::vector<std::int64_t> seenVersionNumbers;
};

struct ListContent {
  FeatureMap items;
  std::list<std::string> orderedKeys;
  SeenState state;
  /// Empty if no parsed text has a "Changes-Since" row.
  std::optional<UTF8String> changesSinceVersion;

  /// Returns the item under a key, or null if there is none or only an empty entry.
  const FeatureListItem* FindItem(const std::string& key) const;

  // The steps of the `FeatureListData` methods with similar names.
  void InsertItem(std::shared_ptr<FeatureListItem> item);
  void EnsureSectionExists(std::string_view key, const UTF16String& name,
                           const UTF16String& description);
  void AddBetaFeatures();
  void AddChanges(std::string_view dataText);
  void MoveUnlockedItemsToFront();
};

// A reload must not fail halfway through the replacement.
static_assert(std::is_nothrow_move_assignable_v<ListContent>);

}  // namespace ornwhatsnew

#endif  // ORNWHATSNEW_SRC_LISTCONTENT_H_
