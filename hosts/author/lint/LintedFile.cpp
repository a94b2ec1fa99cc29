#include "hosts/author/lint/LintedFile.h"

#include <algorithm>
#include <functional>
#include <utility>

#include <orncore/string/Conversion.h>
#include <ornwhatsnew/ChangePlacement.h>

#include "hosts/common/MessageText.h"
#include "hosts/common/TextFile.h"

namespace hosts::author {
namespace {

using ornwhatsnew::DataColumn;
using ornwhatsnew::DataRow;
using ornwhatsnew::DataRowKind;
using ornwhatsnew::DataRowSkipReason;

/// Returns whether `part` is a view of bytes of `text`.
bool IsPartOf(std::string_view text, std::string_view part) {
  const std::less<const char*> isBefore;
  return !isBefore(part.data(), text.data()) &&
         !isBefore(text.data() + text.size(), part.data() + part.size());
}

std::size_t CountCodePoints(std::string_view text) {
  const std::u16string units = orncore::string::UTF8to16(text);
  return static_cast<std::size_t>(
      std::ranges::count_if(units, [](char16_t unit) { return unit < 0xDC00 || unit > 0xDFFF; }));
}

}  // namespace

LintedFile::LintedFile(std::string name, std::string_view text)
    : name_(std::move(name)), text_(text), list_(nullptr, nullptr) {
  list_.ParseBetaFeatures();
  ornwhatsnew::ChangeMaker maker;
  ornwhatsnew::DataFileReader reader(text_);
  while (const DataRow* row = reader.Next()) {
    if (row->skipReason == DataRowSkipReason::kBlank || row->fieldCount == 0) continue;
    LintRow& added = rows_.emplace_back();
    added.data = *row;
    if (row->kind == DataRowKind::kChange) AddChange(maker.Make(*row), added);
    // Clear the inherited values. They can be views of the reader's buffers, which are valid only
    // until the reader reads the next row. Copies would need too much memory if many short rows
    // followed a long row.
    for (std::size_t i = 0; i < added.data.values.size(); ++i) {
      std::string_view& value = added.data.values[i];
      if (i >= row->fieldCount) {
        value = {};
      } else if (!IsPartOf(text_, value)) {
        value = Keep(added, static_cast<DataColumn>(i));
      }
    }
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

void LintedFile::AddChange(std::shared_ptr<ornwhatsnew::FeatureListDetail> change, LintRow& row) {
  const ornwhatsnew::ChangePlacement placement =
      ornwhatsnew::PlaceChange(Items(), row.data, *change);
  change->SetCouldNotMatchBetaFeature(placement.unmatched);
  // Compute the identity while the fields are in the processor cache. The identity does not depend
  // on the item.
  row.identity = change->GetItemSeenGuid();
  row.change = change.get();
  row.item = placement.item;
  placement.item->AddFeatureDetail(std::move(change));
  ++changeCount_;
}

std::string_view LintedFile::Keep(const LintRow& row, DataColumn column) {
  if (row.change != nullptr && column == DataColumn::kDescription) {
    return row.change->GetDescription();
  }
  return cleanedValues_.emplace_back(row.Value(column));
}

std::string LintedFile::ColumnName(std::size_t index) const {
  if (index >= ornwhatsnew::kDataColumnCount) return "";
  const bool hasHeader = usesHeaderNames_ && headerIndex_ < rows_.size();
  const std::string_view name =
      hasHeader ? rows_[headerIndex_].data.values[index] : std::string_view();
  // Shorten the column name. Every finding on a field contains the name, so long names would use
  // too much memory.
  return common::WithoutMiddle(name.empty() ? ornwhatsnew::kDataColumns[index].header : name);
}

std::size_t LintedFile::OffsetOf(const LintRow& row) const {
  return static_cast<std::size_t>(row.data.text.data() - text_.data());
}

Place LintedFile::PlaceOf(const LintRow& row, std::size_t begin, std::size_t end) const {
  std::string_view text = row.data.text;
  while (text.ends_with('\r')) text.remove_suffix(1);
  const std::size_t mark =
      OffsetOf(row) == 0 ? text.size() - common::WithoutByteOrderMark(text).size() : 0;
  begin = std::clamp(begin, mark, text.size());
  end = std::clamp(end, begin, text.size());
  const std::size_t column = 1 + CountCodePoints(text.substr(mark, begin - mark));
  const std::size_t line = row.data.lineNumber;
  return {line, column, line, column + CountCodePoints(text.substr(begin, end - begin))};
}

}  // namespace hosts::author
