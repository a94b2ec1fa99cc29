// Finds the item of the list to which a change of the data file belongs.
#ifndef ORNWHATSNEW_SRC_DATAFILE_CHANGEPLACEMENT_H_
#define ORNWHATSNEW_SRC_DATAFILE_CHANGEPLACEMENT_H_

#include <string_view>

#include <ornwhatsnew/FeatureListItem.h>
#include <ornwhatsnew/utility/SharedTypes.h>

namespace ornwhatsnew {

/// The result of `PlaceChange`.
struct ChangePlacement {
  /// The item, owned by the map of items. Null if the section to which the change belongs is
  /// missing; the parser then drops the change.
  FeatureListItem* item = nullptr;
  /// Whether the IDs match no item. The parser marks such a change; internal users then see a note.
  /// The change belongs to the section INTERNAL, or to UNREVIEWED if it is unreviewed.
  bool unmatched = false;
};

/// Finds the item for a change among `items`. The first rule that applies decides:
///
/// 1. An unreviewed change belongs to the section UNREVIEWED, whatever its IDs are.
/// 2. The grouping ID "INTERNAL", in any letter case, means the section INTERNAL.
/// 3. The story ID is the key of an item, compared byte for byte.
/// 4. The grouping ID is the key of an item, compared byte for byte.
/// 5. Any other change is unmatched and belongs to the section INTERNAL.
///
/// An entry of `items` without an item counts as missing. The function does not change `items` and
/// can be called from any thread while no thread changes them.
ChangePlacement PlaceChange(const FeatureMap& items, std::string_view groupingID,
                            std::string_view storyID, bool unreviewed);

}  // namespace ornwhatsnew

#endif  // ORNWHATSNEW_SRC_DATAFILE_CHANGEPLACEMENT_H_
