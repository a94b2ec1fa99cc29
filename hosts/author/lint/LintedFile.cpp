#include "hosts/author/lint/LintedFile.h"

#include <algorithm>
#include <functional>
#include <utility>

#include <orncore/string/Conversion.h>
#include <ornwhatsnew/ChangePlacement.h>

#include "hosts/common/TextFile.h"

namespace hosts::author {
namespace {

using ornwhatsnew::DataColumn;
using ornwhatsnew::DataRow;
using ornwhatsnew::DataRowKind;
using ornwhatsnew::DataRowSkipReason;

std::size_t CountCodePoints(std::string_view text) {
  const std::u16string units = orncore::string::UTF8to16(text);
  return static_cast<std::size_t>(
      std::ranges::count_if(units, [](char16_t unit) { return unit < 0xDC00 || unit > 0xDFFF; }));
}

}  // namespace

LintedFile::LintedFile(std::string name, std::string text)
    : name_(std::move(name)), text_(std::move(text)), list_(nullptr, nullptr) {
  list_.ParseBetaFeatures();
  ornwhatsnew::ChangeMaker maker;
  ornwhatsnew::DataFileReader reader(text_);
  while (const DataRow* row = reader.Next()) {
    if (row->skipReason == DataRowSkipReason::kBlank || row->fieldCount == 0) continue;
    Add(*row);
    if (row->kind != DataRowKind::kChange) continue;
    LintRow& added = rows_.back();
    auto change = maker.Make(*row);
    const ornwhatsnew::ChangePlacement placement = ornwhatsnew::PlaceChange(
        Items(), row->Value(DataColumn::kGroupingID), row->Value(DataColumn::kStoryID),
        change->DetailInternalOverrideUnreviewed());
    change->SetCouldNotMatchBetaFeature(placement.unmatched);
    placement.item->AddFeatureDetail(change);
    added.item = placement.item;
    added.isUnmatched = placement.unmatched;
    added.change = std::move(change);
    ++changeCount_;
  }
  const auto header = std::ranges::find(rows_, DataRowKind::kHeader,
                                        [](const LintRow& row) { return row.data.kind; });
  headerIndex_ = static_cast<std::size_t>(header - rows_.begin());
}

RowsByKey LintedFile::ChangesByKey() const {
  RowsByKey changes;
  for (const LintRow& row : rows_) {
    if (row.change != nullptr) changes[row.item->FeatureJiraIDKey()].push_back(&row);
  }
  return changes;
}

// A row inherits missing values from the reader's buffers. Do not copy them: many short rows after
// a long one would need the memory of the long row many times.
void LintedFile::Add(const DataRow& row) {
  rows_.emplace_back();
  DataRow& added = rows_.back().data;
  added = row;
  for (std::size_t i = 0; i < added.values.size(); ++i) {
    added.values[i] = i < row.fieldCount ? Keep(row.values[i]) : std::string_view();
  }
}

std::string_view LintedFile::Keep(std::string_view value) {
  const std::less<const char*> isBefore;
  const char* const begin = text_.data();
  const char* const end = begin + text_.size();
  if (!isBefore(value.data(), begin) && !isBefore(end, value.data() + value.size())) return value;
  return cleanedValues_.emplace_back(value);
}

std::string LintedFile::ColumnName(std::size_t index) const {
  if (index >= ornwhatsnew::kDataColumnCount) return "";
  const bool hasHeader = usesHeaderNames_ && headerIndex_ < rows_.size();
  const std::string_view name =
      hasHeader ? rows_[headerIndex_].data.values[index] : std::string_view();
  return std::string(name.empty() ? ornwhatsnew::kDataColumns[index].header : name);
}

std::size_t LintedFile::OffsetOf(const LintRow& row) const {
  return static_cast<std::size_t>(row.data.text.data() - text_.data());
}

Place LintedFile::PlaceOf(const LintRow& row, std::size_t begin, std::size_t end) const {
  std::string_view text = row.data.text;
  while (text.ends_with('\r')) text.remove_suffix(1);
  begin = std::min(begin, text.size());
  end = std::clamp(end, begin, text.size());
  const std::size_t mark =
      OffsetOf(row) == 0 ? text.size() - common::WithoutByteOrderMark(text).size() : 0;
  begin = std::max(begin, mark);
  end = std::max(end, mark);
  const std::size_t column = 1 + CountCodePoints(text.substr(mark, begin - mark));
  const std::size_t line = row.data.lineNumber;
  return {line, column, line, column + CountCodePoints(text.substr(begin, end - begin))};
}

}  // namespace hosts::author
