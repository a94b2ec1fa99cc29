#include "fuzz/PanelProperties.h"

#include <set>
#include <string>
#include <string_view>

#include <ornwhatsnew/utility/PersistedList.h>

#include "fuzz/Property.h"
#include "tests/support/PlainText.h"

namespace fuzz {

using ornwhatsnew::DisplayOptions;
using ornwhatsnew::FeatureListData;
using ornwhatsnew::FeatureListDetail;
using ornwhatsnew::GuidSet;
using ornwhatsnew::kAllSeenItemsKey;
using ornwhatsnew::kAllVersionsSeenKey;
using ornwhatsnew::SplitPersistedList;
using ornwhatsnew::StyleID;
using ornwhatsnew::VersionSet;
using test_support::PanelOutcome;
using test_support::PlainPanel;

namespace {

std::size_t CountRuns(const PanelOutcome& panel, StyleID style) {
  const auto found = panel.runs.find(style);
  return found == panel.runs.end() ? 0 : found->second.size();
}

std::string_view FindText(const PlainPanel::Texts& texts, std::string_view key) {
  const auto found = texts.find(key);
  return found == texts.end() ? std::string_view() : std::string_view(found->second);
}

// Returns the versions that the display call stored.
VersionSet VersionsOf(const PanelOutcome& panel) {
  VersionSet versions;
  for (const auto& [key, text] : panel.writes) {
    if (key != kAllVersionsSeenKey) continue;
    for (const std::string_view element : SplitPersistedList(text)) versions.emplace(element);
  }
  return versions;
}

// The numbers of runs that a panel must contain for the titles of items and for changes.
struct RunCounts {
  std::size_t titles = 0;
  std::size_t changeTexts = 0;
};

// Returns the numbers of runs that the panel must contain for the items and changes that are shown
// to the user.
RunCounts CountRunsOfShown(const FeatureListData& list, DisplayOptions options, const GuidSet& seen,
                           const VersionSet& versions) {
  RunCounts counts;
  for (const auto& [key, item] : list.GetFeatureItems()) {
    if (item == nullptr || !item->ShouldShowItemToUser(options, seen, versions)) continue;
    ++counts.titles;
    for (const auto& change : item->GetAllChanges()) {
      if (!change->ShouldShowItemToUser(options, seen, versions)) continue;
      // The bullet, the optional platform, and the text have one run each.
      counts.changeTexts += change->HasUsablePlatform() ? 3U : 2U;
    }
  }
  return counts;
}

std::size_t CountChanges(const FeatureListData& list) {
  std::size_t count = 0;
  for (const auto& [key, item] : list.GetFeatureItems()) {
    if (item != nullptr) count += item->GetAllChanges().size();
  }
  return count;
}

void RequireRunInside(StyleID style, const ornwhatsnew::StyleRun& run, long long textBytes) {
  const long long excess = style == StyleID::kStyleCommitLink ? 1 : 0;
  const auto [start, length] = run.first;
  Require(start >= 0 && length >= 0, "no run starts before the text or has a negative length");
  Require(0LL + start + length <= textBytes + excess, "no run ends after the text");
}

}  // namespace

void RequireKeysOnce(const FeatureListData& list) {
  const auto& order = list.GetOrderedFeatureKeys();
  const std::set<std::string> keys(order.begin(), order.end());
  RequireEqual(order.size(), keys.size(), "each key occurs once in the key order");
}

void RequireChangesOnce(const FeatureListData& list, std::size_t rows) {
  std::set<const FeatureListDetail*> changes;
  for (const auto& [key, item] : list.GetFeatureItems()) {
    if (item == nullptr) continue;
    for (const auto& change : item->GetAllChanges()) changes.insert(change.get());
  }
  RequireEqual(CountChanges(list), changes.size(), "no change is in the list twice");
  Require(changes.size() <= rows, "there are no more changes than rows");
}

GuidSet StoredIdentities(const PlainPanel::Texts& stored) {
  GuidSet identities;
  for (const std::string_view element : SplitPersistedList(FindText(stored, kAllSeenItemsKey))) {
    identities.emplace(element);
  }
  return identities;
}

void RequireWrittenOnce(const FeatureListData& list, unsigned options, const GuidSet& seen,
                        const PanelOutcome& panel) {
  const RunCounts expected = CountRunsOfShown(
      list, DisplayOptions(static_cast<unsigned char>(options)), seen, VersionsOf(panel));
  RequireEqual(CountRuns(panel, StyleID::kStyleFeatureTitle), expected.titles,
               "each visible item is written once, and no other item");
  RequireEqual(CountRuns(panel, StyleID::kStyleChangeText), expected.changeTexts,
               "each visible change is written once, and no other change");
  RequireEqual(panel.ratingItems.size(), expected.titles, "each written item has a rating record");
}

void RequireRunsInside(const PanelOutcome& panel) {
  const auto textBytes = static_cast<long long>(test_support::PlainUTF16to8(panel.text).size());
  for (const auto& [style, runs] : panel.runs) {
    int lastStart = 0;
    for (const auto& run : runs) {
      RequireRunInside(style, run, textBytes);
      Require(run.first.first >= lastStart, "the runs of a style start in ascending order");
      lastStart = run.first.first;
    }
  }
}

void RequireNoFeatureWritten(const PanelOutcome& panel) {
  RequireEqual(CountRuns(panel, StyleID::kStyleFeatureTitle), std::size_t{0}, "no item is written");
  Require(panel.ratingItems.empty(), "there is no rating record");
}

}  // namespace fuzz
