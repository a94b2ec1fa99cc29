// Finds the item of the list to which a change of the data file is attached.
#ifndef ORNWHATSNEW_CHANGEPLACEMENT_H_
#define ORNWHATSNEW_CHANGEPLACEMENT_H_

#include <string_view>

#include <orncore/Export.h>
#include <ornwhatsnew/FeatureListItem.h>
#include <ornwhatsnew/utility/SharedTypes.h>

namespace ornwhatsnew {

/// The result of `PlaceChange`.
struct ChangePlacement {
  /// The item, owned by the list. Null if the section to which the change belongs is missing; the
  /// parser then drops the change.
  FeatureListItem* item = nullptr;
  /// Whether neither ID matched an item. Such a change goes to the internal section and is marked.
  bool unmatched = false;
};

/// Finds the item for a change. Looks up the IDs exactly as written, first the story ID, then the
/// grouping ID. The grouping ID "INTERNAL", in any letter case, is the internal section; the story
/// ID is then ignored. An unreviewed change goes to the unreviewed section, whatever its IDs are.
ORN_EXPORT ChangePlacement PlaceChange(const FeatureMap& items, std::string_view groupingID,
                                       std::string_view storyID, bool unreviewed);

}  // namespace ornwhatsnew

#endif  // ORNWHATSNEW_CHANGEPLACEMENT_H_
