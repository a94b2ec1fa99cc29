// The host's beta features in the list: their items, their first order, and who leads it.
#include <algorithm>
#include <cassert>
#include <memory>
#include <utility>
#include <vector>

#include <ornappsupport/feature/FeatureService.h>
#include <orncore/string/Conversion.h>
#include <ornwhatsnew/FeatureListData.h>

#include "ornwhatsnew/src/CountedScope.h"
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

// Features in development and unlabelled ones never lead the list, and for users who may see
// internal features neither do those: what is theirs anyway is no news to them.
bool IsUnlockedForOrdering(const FeatureListItem& item) {
  const feature::BetaFeatureMap& table = feature::GetConstBetaFeatureMap();
  const auto entry = table.find(item.BetaFeatureInternalKey());
  if (entry == table.end()) return false;
  // Read before the host is asked, which may put another table in this one's place.
  const Visibility visibility = entry->second.GetVisibility();
  if (!feature::IsFeatureEnabled(item.BetaFeatureInternalKey().c_str())) return false;
  return visibility == Visibility::kPublic ||
         (visibility == Visibility::kInternal &&
          !feature::IsEntitlementSetToInternalFeaturesAllowed());
}

}  // namespace

void FeatureListData::ParseBetaFeatures() {
  assert(walks_ == 0);
  const feature::BetaFeatureMap& table = feature::GetConstBetaFeatureMap();
  std::vector<std::pair<UTF8String, UTF8String>> namesAndKeys;
  namesAndKeys.reserve(table.size());
  for (const auto& [internalKey, beta] : table) {
    auto item = MakeItem(internalKey, beta);
    namesAndKeys.emplace_back(item->GetFeatureName(), item->GetFeatureJiraIDKey());
    InsertFeatureListItem(std::move(item));
  }

  std::ranges::sort(namesAndKeys);
  MovingKeys keysByName;
  keysByName.reserve(namesAndKeys.size());
  for (const auto& [name, key] : namesAndKeys) keysByName.push_back(key);
  MoveKeysToFront(orderedKeys_, keysByName);

  EnsureSpecialCaseItemExists(std::string(keywords::kMisc),
                              u"$$$/ornwhatsnew/SectionKey/Miscellaneous=Miscellaneous", {});
  EnsureSpecialCaseItemExists(std::string(keywords::kBugfix),
                              u"$$$/ornwhatsnew/SectionKey/BugFixes=Bug fixes", {});
  EnsureSpecialCaseItemExists(std::string(keywords::kInternal),
                              u"$$$/ornwhatsnew/SectionKey/Internal=Internal notes", {});
  EnsureSpecialCaseItemExists(std::string(keywords::kUnreviewedSection),
                              u"$$$/ornwhatsnew/SectionKey/Unreviewed=Unreviewed", {});
}

void FeatureListData::BubbleUnlockedItemsToTheTop() {
  assert(walks_ == 0);
  MovingKeys leading = {keywords::kUnreviewedSection};
  {
    const CountedScope walk(walks_);
    for (const std::string& key : orderedKeys_) {
      // Callers of the public map have always found an entry for every key in the order.
      const auto& item = featureItems_[key];
      if (item != nullptr && IsUnlockedForOrdering(*item)) {
        leading.push_back(item->FeatureJiraIDKey());
      }
    }
  }
  MoveKeysToFront(orderedKeys_, leading);
}

}  // namespace ornwhatsnew
