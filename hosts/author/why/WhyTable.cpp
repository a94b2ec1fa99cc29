#include "hosts/author/why/WhyTable.h"

#include <algorithm>
#include <cstddef>
#include <string_view>
#include <utility>
#include <vector>

#include <orncore/string/Conversion.h>
#include <orncore/string/DisplayWidth.h>
#include <orncore/string/SafeText.h>

#include "hosts/common/MessageText.h"

namespace hosts::author {
namespace {

using ornwhatsnew::FeatureListDetail;

constexpr std::size_t kLineColumns = 6;
constexpr std::size_t kVisibilityColumns = 6;
constexpr std::size_t kMinimumKeyColumns = 7;
constexpr std::size_t kMaximumKeyColumns = 24;
constexpr std::size_t kTextColumns = 32;
constexpr std::string_view kColumnGap = "  ";

std::size_t Columns(std::string_view text) {
  return orncore::string::DisplayWidth(orncore::string::UTF8to16(text));
}

/// Returns `text` on one line, with escapes for invisible characters. If the result does not fit
/// into `columns` columns, returns its start and "...".
std::string Shortened(std::string_view text, std::size_t columns) {
  constexpr std::string_view kEllipsis = "...";
  constexpr std::size_t kBytesPerColumn = 4;  // of most characters outside of ASCII
  const std::string_view start = common::Prefix(text, kBytesPerColumn * columns);
  std::string escaped = orncore::string::EscapeInvisible(start);
  if (start.size() == text.size() && Columns(escaped) <= columns) return escaped;
  std::string_view shown = common::Prefix(escaped, kBytesPerColumn * columns);
  while (Columns(shown) + kEllipsis.size() > columns) {
    shown = common::Prefix(shown, shown.size() - 1);
  }
  return std::string(shown) += kEllipsis;
}

/// Returns the width of the key column, in terminal columns.
std::size_t KeyColumns(std::span<const ExplainedItem* const> items) {
  std::size_t columns = kMinimumKeyColumns;
  for (const ExplainedItem* const item : items) {
    const std::string& key = item->visibility.item->FeatureJiraIDKey();
    columns = std::max(columns, Columns(Shortened(key, kMaximumKeyColumns)));
  }
  return columns;
}

class Table {
 public:
  explicit Table(std::size_t keyColumns) : keyColumns_(keyColumns) {
    AddLine("LINE", "STATUS", "FEATURE", "TEXT", "REASON");
  }

  /// Adds a row with a line for each reason. If there is no reason, the row has one line with the
  /// status "shown".
  void AddRow(std::string_view line, std::string_view key, std::string_view text,
              std::span<const std::string> reasons) {
    if (reasons.empty()) return AddLine(line, "shown", key, text, "");
    AddLine(line, "hidden", key, text, reasons.front());
    for (const std::string& reason : reasons.subspan(1)) AddLine("", "", "", "", reason);
  }

  std::string TakeText() { return std::move(text_); }

 private:
  void AddLine(std::string_view line, std::string_view visibility, std::string_view key,
               std::string_view text, std::string_view reason) {
    AddPadding(line, kLineColumns);
    text_ += line;
    AddCell(visibility, kVisibilityColumns);
    AddCell(Shortened(key, keyColumns_), keyColumns_);
    AddCell(Shortened(text, kTextColumns), kTextColumns);
    AddCell(reason, 0);
    text_.erase(text_.find_last_not_of(' ') + 1);
    text_ += '\n';
  }

  void AddCell(std::string_view cell, std::size_t columns) {
    text_ += kColumnGap;
    text_ += cell;
    AddPadding(cell, columns);
  }

  void AddPadding(std::string_view cell, std::size_t columns) {
    const std::size_t used = columns == 0 ? 0 : Columns(cell);
    if (used < columns) text_.append(columns - used, ' ');
  }

  const std::size_t keyColumns_;
  std::string text_;
};

std::string DisplayText(const ornwhatsnew::FeatureListData& list, const std::string& text) {
  return orncore::string::UTF16to8(list.LocalizeIfNecessary(text));
}

void AddItem(const ornwhatsnew::FeatureListData& list, const ExplainedItem& item, Table& table) {
  const ornwhatsnew::FeatureListItem& data = *item.visibility.item;
  table.AddRow("", data.FeatureJiraIDKey(), DisplayText(list, data.GetFeatureName()),
               ItemReasons(item));
}

/// Returns a clause that states that `change` is hidden together with `item`. For an unreviewed or
/// unmatched change, the clause also states why the change belongs to `item`.
std::string HiddenWithItem(const ExplainedItem& item, const FeatureListDetail& change) {
  const std::string placement = PlacementReason(change);
  return (placement.empty() ? "" : placement + ", so it is ") + "hidden with its " + Noun(item);
}

void AddChanges(const ornwhatsnew::FeatureListData& list, std::span<const std::string> userVersions,
                const ExplainedItem& item, Table& table) {
  const bool isHidden = !ItemReasonsForChanges(item).empty();
  for (std::size_t i = 0; i < item.lines.size(); ++i) {
    const FeatureListDetail& change = *item.visibility.changes[i].change;
    std::vector<std::string> reasons = ChangeReasons(item, i, userVersions);
    if (isHidden) reasons.insert(reasons.begin(), HiddenWithItem(item, change));
    table.AddRow(std::to_string(item.lines[i]), item.visibility.item->FeatureJiraIDKey(),
                 DisplayText(list, change.GetDescription()), reasons);
  }
}

}  // namespace

std::string WhyTable(const ornwhatsnew::FeatureListData& list,
                     std::span<const std::string> userVersions,
                     std::span<const ExplainedItem* const> items) {
  Table table(KeyColumns(items));
  for (const ExplainedItem* const item : items) {
    AddItem(list, *item, table);
    AddChanges(list, userVersions, *item, table);
  }
  return table.TakeText();
}

std::string ChangeTable(const ornwhatsnew::FeatureListData& list,
                        std::span<const std::string> userVersions, const ExplainedItem& item) {
  const ExplainedItem* const items[] = {&item};
  Table table(KeyColumns(items));
  AddChanges(list, userVersions, item, table);
  return table.TakeText();
}

}  // namespace hosts::author
