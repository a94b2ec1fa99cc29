#include "hosts/author/why/WhyReport.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <span>
#include <utility>

#include <ornappsupport/feature/FeatureService.h>
#include <orncore/string/Conversion.h>
#include <orncore/string/SafeText.h>
#include <ornwhatsnew/DataFileReader.h>
#include <ornwhatsnew/utility/TextHelpers.h>

#include "hosts/author/InputError.h"
#include "hosts/author/lint/LintedFile.h"
#include "hosts/author/lint/NearestWord.h"
#include "hosts/author/lint/Rules.h"
#include "hosts/author/why/WhyTable.h"
#include "hosts/common/MessageText.h"

namespace hosts::author {
namespace {

using common::Counted;
using common::Quoted;
using ornwhatsnew::CaseInsensitiveEqual;
using ornwhatsnew::DataColumn;
using ornwhatsnew::DataRow;
using ornwhatsnew::DataRowKind;
using ornwhatsnew::DataRowSkipReason;
using ornwhatsnew::FeatureListItem;

std::string NameOf(const ExplainedItem& item) {
  return "the " + Noun(item) + " " + Quoted(item.visibility.item->FeatureJiraIDKey());
}

/// `row` is the row that the library uses as the header. If this row looks like a change or a
/// Changes-Since row, returns a clause that states what is lost and how to fix the file. Otherwise,
/// returns an empty string.
std::string LossByHeader(const DataRow& row, const ornwhatsnew::FeatureMap& items) {
  if (!LooksLikeHeader(row) &&
      CaseInsensitiveEqual(row.Value(DataColumn::kGroupingID), ornwhatsnew::kChangesSinceKey)) {
    return "used as the header row, so its version is lost; add a header row before it";
  }
  return IsChangeUsedAsHeader(row, items)
             ? "used as the header row, so its change is lost; add a header row before it"
             : "";
}

/// Describes a row that does not contain a change. `items` are the items of the list.
std::string KindOf(const DataRow& row, const ornwhatsnew::FeatureMap& items) {
  if (row.kind == DataRowKind::kHeader) {
    const std::string loss = LossByHeader(row, items);
    return loss.empty() ? "the header row, which is never a change" : loss;
  }
  if (row.kind == DataRowKind::kChangesSince) {
    const std::string what = row.fieldCount == 0 ? "an empty row that repeats the Changes-Since row"
                                                 : "a Changes-Since row";
    return what + ", which sets the version of the heading to " +
           Quoted(row.Value(DataColumn::kVersion));
  }
  if (row.skipReason == DataRowSkipReason::kBlank) return "an empty row";
  if (row.skipReason == DataRowSkipReason::kNoGroupingID) {
    return "skipped, because its grouping ID is empty";
  }
  const std::string what = row.text.starts_with('#') ? "a comment, which is skipped" : "skipped";
  return what + ", because it has " + Counted(row.fieldCount, "field") + " instead of ten";
}

std::size_t CountShown(std::span<const ornwhatsnew::ChangeVisibility> changes) {
  return static_cast<std::size_t>(std::ranges::count_if(
      changes, [](const auto& change) { return change.hidingRules.empty(); }));
}

std::string Verdict(std::span<const std::string> reasons) {
  if (reasons.empty()) return "shown\n";
  std::string text;
  for (const std::string& reason : reasons) text += "not shown: " + reason + "\n";
  return text;
}

/// If the grouping ID of `change` does not explain why the change belongs to `item`, returns a
/// clause that states the reason. Otherwise, returns an empty string. In the output, the clause
/// follows the name of the item.
std::string BelongingReason(const FeatureListItem& item,
                            const ornwhatsnew::FeatureListDetail& change) {
  const std::string placement = PlacementReason(change);
  if (!placement.empty()) return ", because " + placement;
  const std::string& key = item.FeatureJiraIDKey();
  const bool isByStoryID = CaseInsensitiveEqual(change.GetJIRAStoryBugTaskID(), key) &&
                           !CaseInsensitiveEqual(change.GetJIRAEpicID(), key);
  return isByStoryID ? ", because its story ID is that key" : "";
}

/// Returns advice for the author about `key`, which is not the key of an item.
std::string UnknownKeyRemedy(std::string_view key, std::span<const ExplainedItem> items) {
  // Search the feature table instead of the items. If several features have the same epic key, they
  // share one item, which has only one of their internal keys.
  const ornappsupport::feature::BetaFeatureMap& features =
      ornappsupport::feature::GetConstBetaFeatureMap();
  const auto feature = features.find(key);
  if (feature != features.end() && !feature->second.GetJiraEpicKey().empty()) {
    return "it is the internal key of a feature, so use its epic key " +
           Quoted(feature->second.GetJiraEpicKey());
  }
  std::vector<std::string_view> keys;
  for (const ExplainedItem& item : items) {
    keys.push_back(item.visibility.item->FeatureJiraIDKey());
  }
  const std::optional<std::string> nearest = NearestWord(key, keys);
  return nearest ? "the most similar key is " + Quoted(*nearest)
                 : "omit --key to list all features and sections";
}

}  // namespace

WhyReport::WhyReport(const ornwhatsnew::FeatureListData& list, std::string fileName,
                     std::string_view text, const ornwhatsnew::DisplayOptions& options,
                     std::vector<std::string> userVersions)
    : list_(list),
      fileName_(std::move(fileName)),
      text_(text),
      userVersions_(std::move(userVersions)) {
  for (ornwhatsnew::ItemVisibility& visibility : list.ExplainVisibility(options)) {
    items_.push_back({std::move(visibility), {}});
  }
  ReadDataFile();
}

// A list does not store line numbers. It adds the changes of a file to their items in file order.
// The n-th row that belongs to an item is therefore the n-th change of this item.
void WhyReport::ReadDataFile() {
  const LintedFile file(fileName_, text_);
  const auto changes = file.ChangesByKey();
  for (ExplainedItem& item : items_) {
    const auto rows = changes.find(item.visibility.item->FeatureJiraIDKey());
    if (rows == changes.end()) continue;
    for (const LintRow* const row : rows->second) item.lines.push_back(row->data.lineNumber);
  }
  if (file.HeaderIndex() == file.Rows().size()) return;
  const DataRow& header = file.Rows()[file.HeaderIndex()].data;
  const std::string loss = LossByHeader(header, file.Items());
  if (!loss.empty()) lostRow_ = PlaceOf(header.lineNumber) + loss + "\n";
}

std::string WhyReport::ExplainAll() const {
  std::vector<const ExplainedItem*> listed;
  std::size_t shownItems = 0;
  std::size_t changes = 0;
  std::size_t shownChanges = 0;
  for (const ExplainedItem& item : items_) {
    if (item.visibility.item->IsSection() && item.lines.empty()) continue;
    listed.push_back(&item);
    changes += item.lines.size();
    if (!item.visibility.hidingRules.empty()) continue;
    ++shownItems;
    shownChanges += CountShown(item.visibility.changes);
  }
  std::string text =
      WhyTable(list_, userVersions_, listed) + "\nshown: " + std::to_string(shownItems) + " of " +
      std::to_string(listed.size()) + " features and sections, " + std::to_string(shownChanges) +
      " of " + std::to_string(changes) + " changes\n" + lostRow_;
  const std::size_t skipped = list_.GetDataFileSummary().skippedRows;
  if (skipped == 0) return text;
  return text + "skipped: " + Counted(skipped, "row") + "; run 'ornwhatsnew lint' for details\n";
}

std::string WhyReport::ExplainLine(std::size_t line) const {
  for (const ExplainedItem& item : items_) {
    const auto found = std::ranges::lower_bound(item.lines, line);
    if (found == item.lines.end() || *found != line) continue;
    return ExplainChange(item, static_cast<std::size_t>(found - item.lines.begin()));
  }
  return ExplainOtherRow(line);
}

std::string WhyReport::ExplainChange(const ExplainedItem& item, std::size_t index) const {
  const ornwhatsnew::FeatureListDetail& change = *item.visibility.changes[index].change;
  std::vector<std::string> reasons;
  for (const std::string& reason : ItemReasonsForChanges(item)) {
    reasons.push_back("the " + Noun(item) + " is hidden: " + reason);
  }
  std::ranges::move(ChangeReasons(item, index, userVersions_), std::back_inserter(reasons));
  return PlaceOf(item.lines[index]) + "a change of " + NameOf(item) +
         BelongingReason(*item.visibility.item, change) +
         (change.GetDescription().empty() ? "" : ": " + QuotedText(change.GetDescription())) +
         "\n" + Verdict(reasons);
}

std::string WhyReport::ExplainOtherRow(std::size_t line) const {
  // If the file ends with a newline, `DataFileReader` returns a blank row after this newline.
  // Authors do not count this row as a line.
  const bool isLastOpen = !text_.empty() && !text_.ends_with('\n');
  const std::size_t lines =
      static_cast<std::size_t>(std::ranges::count(text_, '\n')) + (isLastOpen ? 1 : 0);
  ornwhatsnew::DataFileReader reader(text_);
  while (const DataRow* row = line <= lines ? reader.Next() : nullptr) {
    if (row->lineNumber != line) continue;
    return PlaceOf(line) + KindOf(*row, list_.GetFeatureItems()) + "\n";
  }
  Fail("it has no line " + std::to_string(line) + "; " +
       (lines == 0   ? "the file is empty"
        : lines == 1 ? "it has only one line"
                     : "use a number from 1 to " + std::to_string(lines)));
}

std::string WhyReport::ExplainKey(const std::string& key) const {
  const auto found = std::ranges::find(items_, key, [](const ExplainedItem& item) {
    return item.visibility.item->FeatureJiraIDKey();
  });
  if (found == items_.end()) {
    Fail("no feature or section has the key " + Quoted(key) + "; " + UnknownKeyRemedy(key, items_));
  }
  const std::string name = QuotedText(found->visibility.item->GetFeatureName());
  const std::string head = NameOf(*found) + ": " + name + "\n" + Verdict(ItemReasons(*found));
  if (found->lines.empty()) return head + "it has no changes\n";
  return head + "\n" + ChangeTable(list_, userVersions_, *found);
}

void WhyReport::Fail(const std::string& reason) const {
  throw OptionError("cannot explain '" + fileName_ + "': " + reason);
}

std::string WhyReport::PlaceOf(std::size_t line) const {
  return orncore::string::EscapeInvisible(fileName_) + ":" + std::to_string(line) + ": ";
}

std::string WhyReport::QuotedText(const std::string& text) const {
  return Quoted(orncore::string::UTF16to8(list_.LocalizeIfNecessary(text)));
}

}  // namespace hosts::author
