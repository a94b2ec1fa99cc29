// Finds the item of the list to which a change of the data file belongs.
#ifndef ORNWHATSNEW_SRC_DATAFILE_CHANGEPLACEMENT_H_
#define ORNWHATSNEW_SRC_DATAFILE_CHANGEPLACEMENT_H_

#include <string_view>

#include <ornwhatsnew/FeatureListItem.h>
#include <ornwhatsnew/utility/SharedTypes.h>

namespace ornwhatsnew {

/// The result of `PlaceChange`: the item for a change, and whether the change is unmatched.
struct ChangePlacement {
  /// The item for the change, which the map of items owns. If the change belongs to a section that
  /// is missing, the pointer is null, and the list drops the change.
  FeatureListItem* item = nullptr;
  /// True if the IDs of the change match no item. Internal users then see a note in the panel. An
  /// unmatched change belongs to the section INTERNAL, or to UNREVIEWED if it is unreviewed.
  bool unmatched = false;
};

/// Returns the item in `items` to which a change belongs, and whether the change is unmatched.
/// `groupingID` and `storyID` are columns 2 and 3 of its row. `unreviewed` is true if its salience
/// is "Unreviewed". The first rule that applies decides:
///
/// 1. An unreviewed change belongs to the section UNREVIEWED, regardless of its IDs.
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
