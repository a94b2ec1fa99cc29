#include <ornwhatsnew/DataFileReader.h>

#include <algorithm>
#include <utility>

#include <orncore/string/Conversion.h>
#include <ornwhatsnew/utility/TextHelpers.h>

#include "ornwhatsnew/src/datafile/FieldCleaner.h"

namespace ornwhatsnew {
namespace {

// In a file with CR LF line endings, an empty line contains a carriage return.
bool IsBlank(std::string_view row) {
  return std::ranges::all_of(row, [](char c) { return c == '\r'; });
}

// Calls `visit(begin, end)` with the byte offsets of each field of `row`. A blank row has no
// fields.
template <class Visit>
void VisitFields(std::string_view row, Visit visit) {
  if (IsBlank(row)) return;
  std::size_t begin = 0;
  while (begin <= row.size()) {
    const std::size_t end = FindFieldEnd(row, begin);
    visit(begin, end);
    begin = end + 1;
  }
}

}  // namespace

std::vector<DataField> FindDataFields(std::string_view row) {
  std::vector<DataField> fields;
  VisitFields(row, [&](std::size_t begin, std::size_t end) {
    fields.push_back({begin, end, std::nullopt});
    const std::string_view field = row.substr(begin, end - begin);
    if (std::ranges::count(field, '"') % 2 != 0) fields.back().openQuote = row.rfind('"');
  });
  return fields;
}

DataFileReader::DataFileReader(std::string_view text) : rest_(text), atEnd_(text.empty()) {}

const DataRow* DataFileReader::Next() {
  if (atEnd_) return nullptr;
  const std::size_t lineFeed = rest_.find('\n');
  row_.text = rest_.substr(0, lineFeed);
  ++row_.lineNumber;
  atEnd_ = lineFeed == rest_.npos;
  if (!atEnd_) rest_.remove_prefix(lineFeed + 1);

  ReadFields();
  Classify();
  return &row_;
}

// Compatibility: a row with fewer than ten fields inherits the missing values from the previous
// row, so the values are never cleared (docs/compatibility.md).
void DataFileReader::ReadFields() {
  row_.fieldCount = 0;
  // Most rows need no cleaning. Checking the row once is faster than checking each field.
  const bool isClean = IsClean(row_.text);
  VisitFields(row_.text, [&](std::size_t begin, std::size_t end) {
    const std::size_t column = row_.fieldCount++;
    if (column >= kDataColumnCount) return;
    const std::string_view field = row_.text.substr(begin, end - begin);
    row_.values[column] = isClean ? field : CleanField(field, buffers_[column]);
  });
}

void DataFileReader::Classify() {
  // A row without a second field inherits the grouping ID. Do not compare it again, because a file
  // with a long grouping ID and many short rows would take quadratic time.
  if (row_.fieldCount > ColumnIndex(DataColumn::kGroupingID)) {
    isChangesSince_ = CaseInsensitiveEqual(row_.Value(DataColumn::kGroupingID), kChangesSinceKey);
  }
  row_.skipReason = isChangesSince_ ? DataRowSkipReason::kNone : ReasonToSkip();

  if (row_.skipReason != DataRowSkipReason::kNone) {
    row_.kind = DataRowKind::kSkipped;
  } else if (!headerRead_) {
    // Compatibility: the first row that is not skipped is the header, regardless of its content
    // (docs/compatibility.md).
    row_.kind = DataRowKind::kHeader;
    headerRead_ = true;
    RemoveByteOrderMark();
  } else {
    row_.kind = isChangesSince_ ? DataRowKind::kChangesSince : DataRowKind::kChange;
  }
}

DataRowSkipReason DataFileReader::ReasonToSkip() const {
  if (row_.fieldCount == 0) return DataRowSkipReason::kBlank;
  if (row_.fieldCount != kDataColumnCount) return DataRowSkipReason::kFieldCount;
  return row_.Value(DataColumn::kGroupingID).empty() ? DataRowSkipReason::kNoGroupingID
                                                     : DataRowSkipReason::kNone;
}

// Removes a byte order mark from the current value of column 1. A list ignores the header row, but
// a blank row can inherit this value as the changes-since version.
void DataFileReader::RemoveByteOrderMark() {
  constexpr auto kColumn = static_cast<std::size_t>(DataColumn::kVersion);
  UTF8String version(row_.values[kColumn]);
  orncore::string::RemoveUTF8BOM_IfPresent(version);
  buffers_[kColumn] = std::move(version);
  row_.values[kColumn] = buffers_[kColumn];
}

}  // namespace ornwhatsnew
