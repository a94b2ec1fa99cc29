#include <ornwhatsnew/ChangePlacement.h>

#include <ornwhatsnew/utility/TextHelpers.h>

#include "ornwhatsnew/src/datafile/FieldCleaner.h"
#include "ornwhatsnew/src/rules/Keywords.h"

namespace ornwhatsnew {
namespace {

// Compatibility: an entry of the map can be empty (docs/compatibility.md). An empty entry counts as
// a missing item.
FeatureListItem* Find(const FeatureMap& items, std::string_view key) {
  const auto found = items.find(std::string(key));
  return found == items.end() ? nullptr : found->second.get();
}

FeatureListItem* FindByIDs(const FeatureMap& items, std::string_view groupingID,
                           std::string_view storyID) {
  if (CaseInsensitiveEqual(groupingID, keywords::kInternal))
    return Find(items, keywords::kInternal);
  FeatureListItem* const item = Find(items, storyID);
  return item != nullptr ? item : Find(items, groupingID);
}

}  // namespace

std::shared_ptr<FeatureListDetail> ChangeMaker::Make(const DataRow& row) {
  FeatureListDetail::Fields fields = row.values;
  for (std::size_t i = 0; i < fields.size(); ++i) {
    if (kDataColumns[i].isLowerCased) fields[i] = LowerField(fields[i], buffers_[i]);
  }
  return std::make_shared<FeatureListDetail>(fields);
}

ChangePlacement PlaceChange(const FeatureMap& items, const DataRow& row,
                            const FeatureListDetail& change) {
  const bool unreviewed = change.DetailInternalOverrideUnreviewed();
  ChangePlacement placement;
  placement.item =
      FindByIDs(items, row.Value(DataColumn::kGroupingID), row.Value(DataColumn::kStoryID));
  placement.unmatched = placement.item == nullptr;
  if (unreviewed || placement.unmatched) {
    placement.item = Find(items, unreviewed ? keywords::kUnreviewedSection : keywords::kInternal);
  }
  return placement;
}

}  // namespace ornwhatsnew
