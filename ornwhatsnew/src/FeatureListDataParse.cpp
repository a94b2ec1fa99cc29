// The changes of a data file in the list.
#include <array>
#include <cassert>
#include <memory>
#include <unordered_set>
#include <utility>

#include <ornwhatsnew/ChangePlacement.h>
#include <ornwhatsnew/DataFileReader.h>
#include <ornwhatsnew/FeatureListData.h>
#include <ornwhatsnew/utility/TextHelpers.h>

#include "ornwhatsnew/src/datafile/FieldCleaner.h"
#include "ornwhatsnew/src/rules/KeyOrder.h"
#include "ornwhatsnew/src/rules/Keywords.h"

namespace ornwhatsnew {
namespace {

// Turns rows into changes; keeps its buffers from row to row.
class ChangeMaker {
 public:
  std::shared_ptr<FeatureListDetail> Make(const DataRow& row) {
    return std::make_shared<FeatureListDetail>(FeatureListDetail::Fields{
        row.Value(DataColumn::kDescription),
        row.Value(DataColumn::kVersion),
        Lower(row, DataColumn::kGroupingID),
        Lower(row, DataColumn::kStoryID),
        Lower(row, DataColumn::kSalience),
        Lower(row, DataColumn::kFirstVersion),
        Lower(row, DataColumn::kPlatform),
        row.Value(DataColumn::kRatingRequest),
        row.Value(DataColumn::kURL),
        row.Value(DataColumn::kSHA),
    });
  }

 private:
  std::string_view Lower(const DataRow& row, DataColumn column) {
    return LowerField(row.Value(column), buffers_[static_cast<std::size_t>(column)]);
  }

  std::array<UTF8String, kDataColumnCount> buffers_;
};

// The features that received changes, in the order of their first one. Sections keep their places.
class TouchedFeatures {
 public:
  void Note(const FeatureListItem& item) {
    if (&item == last_) return;
    last_ = &item;
    if (IsSpecialCaseSection(item.FeatureJiraIDKey())) return;
    if (seen_.insert(&item).second) keys_.push_back(item.FeatureJiraIDKey());
  }

  MovingKeys TakeKeys() { return std::move(keys_); }

 private:
  const FeatureListItem* last_ = nullptr;
  std::unordered_set<const FeatureListItem*> seen_;
  MovingKeys keys_;
};

}  // namespace

void FeatureListData::ParseWhatsNewData(const UTF8String& dataText) {
  assert(walks_ == 0);
  ChangeMaker maker;
  TouchedFeatures touched;
  DataFileReader reader(dataText);
  while (const DataRow* row = reader.Next()) {
    if (row->kind == DataRowKind::kChangesSince) {
      changesSinceVersion_ = row->Value(DataColumn::kVersion);
    }
    if (row->kind != DataRowKind::kChange) continue;

    auto change = maker.Make(*row);
    const ChangePlacement placement =
        PlaceChange(featureItems_, row->Value(DataColumn::kGroupingID),
                    row->Value(DataColumn::kStoryID), change->DetailInternalOverrideUnreviewed());
    change->SetCouldNotMatchBetaFeature(placement.unmatched);
    if (placement.item == nullptr) continue;
    placement.item->AddFeatureDetail(std::move(change));
    touched.Note(*placement.item);
  }

  MovingKeys moving = touched.TakeKeys();
  moving.push_back(keywords::kUnreviewedSection);
  MoveKeysToBack(orderedKeys_, moving);
}

}  // namespace ornwhatsnew
