#include "ornwhatsnew/src/ListContent.h"

#include <algorithm>
#include <utility>

#include <ornappsupport/feature/FeatureService.h>
#include <orncore/string/Conversion.h>
#include <ornwhatsnew/ChangePlacement.h>
#include <ornwhatsnew/DataFileReader.h>
#include <ornwhatsnew/PanelText.h>

#include "ornwhatsnew/src/rules/KeyOrder.h"
#include "ornwhatsnew/src/rules/Keywords.h"

namespace ornwhatsnew {
namespace {

namespace feature = ornappsupport::feature;
using Visibility = feature::VisibilityInAllClientApps;

std::shared_ptr<FeatureListItem> MakeItem(const std::string& internalKey,
                                          const feature::BetaFeature& beta) {
  return std::make_shared<FeatureListItem>(
      beta.GetJiraEpicKey(), internalKey, orncore::string::UTF16to8(beta.GetDisplayName()),
      orncore::string::UTF16to8(beta.GetDisplayDescription()), beta.GetVisibility());
}

// A feature with the visibility `kInternal` is unlocked only for external users. Internal users see
// the label TARSA ONLY instead of UNLOCKED.
bool IsUnlockedForOrdering(const FeatureListItem& item) {
  const feature::BetaFeatureMap& table = feature::GetConstBetaFeatureMap();
  const auto entry = table.find(item.BetaFeatureInternalKey());
  if (entry == table.end()) return false;
  // Read the visibility before the queries. A service must not replace its table during a query. If
  // it does so anyway, the list must not read the destroyed table.
  const Visibility visibility = entry->second.GetVisibility();
  if (!feature::IsFeatureEnabled(item.BetaFeatureInternalKey().c_str())) return false;
  return visibility == Visibility::kPublic ||
         (visibility == Visibility::kInternal &&
          !feature::IsEntitlementSetToInternalFeaturesAllowed());
}

}  // namespace

const FeatureListItem* ListContent::FindItem(const std::string& key) const {
  const auto found = items.find(key);
  return found == items.end() ? nullptr : found->second.get();
}

void ListContent::InsertItem(std::shared_ptr<FeatureListItem> item) {
  // Allocate the key first. If its allocation failed after the item was added, the item would have
  // no key in the key order, and no display would show it.
  std::list<std::string> key;
  key.push_back(item->GetFeatureJiraIDKey());
  items.try_emplace(key.front(), std::move(item));
  orderedKeys.splice(orderedKeys.end(), key);
}

void ListContent::EnsureSectionExists(std::string_view key, const UTF16String& name,
                                      const UTF16String& description) {
  const std::string sectionKey(key);
  if (items.contains(sectionKey)) return;
  InsertItem(std::make_shared<FeatureListItem>(
      sectionKey, std::string(), orncore::string::UTF16to8(name),
      orncore::string::UTF16to8(description), Visibility::kPublic));
}

void ListContent::AddBetaFeatures() {
  const feature::BetaFeatureMap& table = feature::GetConstBetaFeatureMap();
  std::vector<std::pair<UTF8String, UTF8String>> namesAndKeys;
  namesAndKeys.reserve(table.size());
  for (const auto& [internalKey, beta] : table) {
    auto item = MakeItem(internalKey, beta);
    namesAndKeys.emplace_back(item->GetFeatureName(), item->GetFeatureJiraIDKey());
    InsertItem(std::move(item));
  }

  std::ranges::sort(namesAndKeys);
  MovingKeys keysByName;
  keysByName.reserve(namesAndKeys.size());
  for (const auto& [name, key] : namesAndKeys) keysByName.push_back(key);
  MoveKeysToFront(orderedKeys, keysByName);

  constexpr std::pair<std::string_view, PanelText> kSections[] = {
      {keywords::kMisc, PanelText::kMiscellaneous},
      {keywords::kBugfix, PanelText::kBugFixes},
      {keywords::kInternal, PanelText::kInternalNotes},
      {keywords::kUnreviewedSection, PanelText::kUnreviewed}};
  for (const auto& [key, title] : kSections) {
    EnsureSectionExists(key, orncore::string::UTF8to16(KeyText(title)), {});
  }
}

DataFileSummary ListContent::AddChanges(std::string_view dataText) {
  DataFileSummary counts;
  ChangeMaker maker;
  MovingKeys touchedFeatures;
  DataFileReader reader(dataText);
  bool isAfterBlank = false;
  while (const DataRow* row = reader.Next()) {
    const bool isBlank = row->fieldCount == 0;
    // A blank row inherits the version of the previous row. Copy the version only for the first of
    // several adjacent blank rows. Otherwise, a file with a long version and many blank rows would
    // take quadratic time.
    const bool isRepeated = std::exchange(isAfterBlank, isBlank) && isBlank;
    if (row->kind == DataRowKind::kChangesSince && !isRepeated) {
      changesSinceVersion = row->Value(DataColumn::kVersion);
    }
    if (row->kind == DataRowKind::kSkipped && !isBlank) ++counts.skippedRows;
    if (row->kind != DataRowKind::kChange) continue;

    auto change = maker.Make(*row);
    const auto [item, isUnmatched] = PlaceChange(items, *row, *change);
    change->SetCouldNotMatchBetaFeature(isUnmatched);
    ++counts.changes;
    if (isUnmatched) ++counts.unmatched;
    if (item == nullptr) continue;
    item->AddFeatureDetail(std::move(change));
    if (!item->IsSection()) touchedFeatures.push_back(item->FeatureJiraIDKey());
  }
  touchedFeatures.push_back(keywords::kUnreviewedSection);
  MoveKeysToBack(orderedKeys, touchedFeatures);
  return counts;
}

void ListContent::MoveUnlockedItemsToFront() {
  MovingKeys leading = {keywords::kUnreviewedSection};
  for (const std::string& key : orderedKeys) {
    // Compatibility: an ordered key without an item gets an empty entry (docs/compatibility.md).
    const auto& item = items[key];
    if (item != nullptr && IsUnlockedForOrdering(*item)) {
      leading.push_back(item->FeatureJiraIDKey());
    }
  }
  MoveKeysToFront(orderedKeys, leading);
}

}  // namespace ornwhatsnew
