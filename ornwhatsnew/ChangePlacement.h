// Creates the changes of a data file and finds the items to which they belong, for
// `FeatureListData` and for tools that check a file.
//
//     ChangeMaker maker;
//     const std::shared_ptr<FeatureListDetail> change = maker.Make(row);
//     const ChangePlacement placement = PlaceChange(list.GetFeatureItems(), row, *change);
#ifndef ORNWHATSNEW_CHANGEPLACEMENT_H_
#define ORNWHATSNEW_CHANGEPLACEMENT_H_

#include <array>
#include <memory>

#include <orncore/Export.h>
#include <ornwhatsnew/DataFileReader.h>
#include <ornwhatsnew/FeatureListItem.h>
#include <ornwhatsnew/utility/SharedTypes.h>

namespace ornwhatsnew {

/// Creates changes from rows. Uses the same buffers for all rows, to save allocations. A maker is
/// not thread-safe: use one maker from one thread at a time.
class ChangeMaker {
 public:
  /// Returns a change with the current values of `row`. If `DataColumnInfo::isLowerCased` of a
  /// column is true, converts its value to lower case. `HasDuplicateURL` and
  /// `DetailInternalCouldNotMatchBetaFeature` of the change return false. `row` can be of any kind.
  /// The change does not refer to `row`.
  ORN_EXPORT std::shared_ptr<FeatureListDetail> Make(const DataRow& row);

 private:
  std::array<UTF8String, kDataColumnCount> buffers_;
};

/// The result of `PlaceChange`: the item for a change, and whether the change is unmatched.
struct ChangePlacement {
  /// The item to which the change belongs. The map of items owns the item. If the change belongs to
  /// a section that is missing, the pointer is null, and the list drops the change.
  FeatureListItem* item = nullptr;
  /// True if neither ID of the change matches an item. Internal users then see a note in the panel.
  /// An unmatched change belongs to the section UNREVIEWED if its salience is "Unreviewed", and
  /// otherwise to the section INTERNAL.
  bool unmatched = false;
};

/// Returns the item in `items` to which `change` belongs, and whether `change` is unmatched. `row`
/// is the row of `change`. The function reads the grouping ID and the story ID from `row`, because
/// the IDs in `change` can be in lower case. The first rule that applies determines the item:
///
/// 1. A change with the salience "Unreviewed" belongs to the section UNREVIEWED, regardless of its
///    IDs.
/// 2. A change with the grouping ID "INTERNAL", in any letter case, belongs to the section
///    INTERNAL.
/// 3. If the story ID is the key of an item, the change belongs to that item. Keys are compared
///    byte for byte.
/// 4. If the grouping ID is the key of an item, the change belongs to that item.
/// 5. Any other change belongs to the section INTERNAL.
///
/// A change is unmatched if none of the rules 2 to 4 finds an item, even if rule 1 applies.
///
/// A null entry of `items` counts as missing. The function does not change `items`, and can be
/// called from any thread while no thread changes `items`.
ORN_EXPORT ChangePlacement PlaceChange(const FeatureMap& items, const DataRow& row,
                                       const FeatureListDetail& change);

}  // namespace ornwhatsnew

#endif  // ORNWHATSNEW_CHANGEPLACEMENT_H_
