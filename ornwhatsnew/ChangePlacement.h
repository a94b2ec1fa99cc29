// Where a change of the data file goes: which item of the list takes it.
#ifndef ORNWHATSNEW_CHANGEPLACEMENT_H_
#define ORNWHATSNEW_CHANGEPLACEMENT_H_

#include <string_view>

#include <orncore/Export.h>
#include <ornwhatsnew/FeatureListItem.h>
#include <ornwhatsnew/utility/SharedTypes.h>

namespace ornwhatsnew {

/// The item that takes a change, and whether the change's IDs led to it.
struct ChangePlacement {
  /// Owned by the list. Null when even the section that should take the change is missing: the
  /// change is dropped.
  FeatureListItem* item = nullptr;
  /// Whether neither ID named an item; such a change goes to the internal section and is marked.
  bool unmatched = false;
};

/// Finds the item for a change. The IDs are looked up exactly as written, the story ID before the
/// grouping ID; "INTERNAL" in any letter case names the internal section at once; an unreviewed
/// change always goes to the unreviewed section.
ORN_EXPORT ChangePlacement PlaceChange(const FeatureMap& items, std::string_view groupingID,
                                       std::string_view storyID, bool unreviewed);

}  // namespace ornwhatsnew

#endif  // ORNWHATSNEW_CHANGEPLACEMENT_H_
