#include "fuzz/PanelProperties.h"

#include <set>
#include <string>

#include "fuzz/Property.h"
#include "tests/support/PlainText.h"

namespace fuzz {

using ornwhatsnew::FeatureListData;
using ornwhatsnew::FeatureListDetail;
using ornwhatsnew::StyleID;
using test_support::PanelOutcome;

namespace {

std::size_t CountRuns(const PanelOutcome& panel, StyleID style) {
  const auto found = panel.runs.find(style);
  return found == panel.runs.end() ? 0 : found->second.size();
}

std::size_t CountChanges(const FeatureListData& list) {
  std::size_t count = 0;
  for (const auto& [key, item] : list.GetFeatureItems()) {
    if (item != nullptr) count += item->GetAllChanges().size();
  }
  return count;
}

void RequireRunInside(StyleID style, const ornwhatsnew::StyleRun& run, long long textBytes) {
  const long long reach = style == StyleID::kStyleCommitLink ? 1 : 0;
  const auto [start, length] = run.first;
  Require(start >= 0 && length >= 0, "no run begins before the text or has a negative length");
  Require(0LL + start + length <= textBytes + reach, "no run reaches beyond the text");
}

}  // namespace

void RequireKeysOnce(const FeatureListData& list) {
  const auto& order = list.GetOrderedFeatureKeys();
  const std::set<std::string> keys(order.begin(), order.end());
  RequireEqual(order.size(), keys.size(), "every key stands once in the order");
}

void RequireChangesOnce(const FeatureListData& list, std::size_t rows) {
  std::set<const FeatureListDetail*> changes;
  for (const auto& [key, item] : list.GetFeatureItems()) {
    if (item == nullptr) continue;
    for (const auto& change : item->GetAllChanges()) changes.insert(change.get());
  }
  RequireEqual(CountChanges(list), changes.size(), "no change hangs on a list twice");
  Require(changes.size() <= rows, "there are no more changes than rows");
}

void RequireWrittenOnce(const FeatureListData& list, const PanelOutcome& panel) {
  Require(CountRuns(panel, StyleID::kStyleFeatureTitle) <= list.GetFeatureItems().size(),
          "no feature is written more than once");
  // A change line has its bullet, perhaps its platform, and its text.
  Require(CountRuns(panel, StyleID::kStyleChangeText) <= 3 * CountChanges(list),
          "no change is written more than once");
  RequireEqual(panel.ratingItems.size(), CountRuns(panel, StyleID::kStyleFeatureTitle),
               "every feature written has a rating record");
}

void RequireRunsInside(const PanelOutcome& panel) {
  const auto textBytes = static_cast<long long>(test_support::PlainUTF16to8(panel.text).size());
  for (const auto& [style, runs] : panel.runs) {
    int lastStart = 0;
    for (const auto& run : runs) {
      RequireRunInside(style, run, textBytes);
      Require(run.first.first >= lastStart, "the runs of a style stand in ascending order");
      lastStart = run.first.first;
    }
  }
}

void RequireNoFeatureWritten(const PanelOutcome& panel) {
  RequireEqual(CountRuns(panel, StyleID::kStyleFeatureTitle), std::size_t{0},
               "no feature is written");
  Require(panel.ratingItems.empty(), "no feature is offered for rating");
}

}  // namespace fuzz
