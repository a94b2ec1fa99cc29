#include "hosts/author/DataFileWriter.h"

#include <algorithm>
#include <cstddef>

#include <orncore/string/Conversion.h>

#include "hosts/author/CellText.h"
#include "hosts/author/ColumnNames.h"
#include "hosts/author/InputError.h"
#include "hosts/common/TextFile.h"

namespace hosts::author {
namespace {

using ornwhatsnew::ColumnIndex;
using ornwhatsnew::DataColumn;
using ornwhatsnew::DataFileReader;
using ornwhatsnew::DataRow;
using ornwhatsnew::DataRowKind;
using ornwhatsnew::kDataColumnCount;

bool HasFields(const DataRow& row, const DataFields& fields) {
  return row.fieldCount == kDataColumnCount && std::ranges::equal(row.values, fields);
}

/// Returns whether a data file has rows, but no header row. `content` is the file without its byte
/// order mark.
bool HasRowsWithoutHeader(std::string_view content) {
  DataFileReader reader(content);
  bool hasRows = false;
  while (const DataRow* const row = reader.Next()) {
    if (row->kind == DataRowKind::kHeader) return false;
    hasRows = true;
  }
  return hasRows;
}

/// Throws `OptionError` if `ProblemWith` rejects one of `fields`, or if a row with these fields
/// would not be a change.
void RequireChange(const DataFields& fields) {
  for (std::size_t column = 0; column < fields.size(); ++column) {
    if (const auto problem = ProblemWith(fields[column])) {
      throw OptionError("the value of " + QuotedHeader(static_cast<DataColumn>(column)) + " " +
                        *problem);
    }
  }
  const std::optional<DataRowKind> kind = KindOfRow(fields);
  if (kind == DataRowKind::kChange) return;
  if (kind == DataRowKind::kChangesSince) {
    throw OptionError("the grouping ID '" + fields[ColumnIndex(DataColumn::kGroupingID)] +
                      "' sets the version in the heading and adds no change; edit the existing row "
                      "instead");
  }
  throw OptionError(
      "the library skips a row without a grouping ID; specify the key of a feature or section");
}

/// Throws `InputError` if a data file is not valid UTF-8, or if it has rows but no header row.
/// `content` is the file without its byte order mark.
void RequireExtensible(std::string_view content) {
  if (!orncore::string::IsWellFormedUTF8(content)) {
    throw InputError(0, "the file is not valid UTF-8; convert it with 'ornwhatsnew import'");
  }
  if (HasRowsWithoutHeader(content)) {
    throw InputError(0,
                     "the file has no header row with ten columns, so the library would use the "
                     "new row as the header; add a header row as the first line");
  }
}

/// Returns the line ending of the first row. Returns a newline if the row has no line ending.
std::string_view LineEndOf(std::string_view dataFile) {
  const std::size_t newline = dataFile.find('\n');
  const bool isAfterCR =
      newline != std::string_view::npos && newline > 0 && dataFile[newline - 1] == '\r';
  return isAfterCR ? "\r\n" : "\n";
}

}  // namespace

std::string HeaderRow() {
  DataFields headers;
  std::ranges::transform(ornwhatsnew::kDataColumns, headers.begin(),
                         [](const auto& column) { return std::string(column.header); });
  return FormatRow(headers);
}

std::string FormatRow(const DataFields& fields) {
  std::string row;
  for (const std::string& field : fields) {
    if (&field != &fields.front()) row += ',';
    const bool needsQuotes = field.find(',') != std::string::npos;
    row += needsQuotes ? '"' + field + '"' : field;
  }
  return row;
}

std::optional<DataRowKind> KindOfRow(const DataFields& fields) {
  const std::string file = HeaderRow() + "\n" + FormatRow(fields);
  DataFileReader reader(file);
  reader.Next();
  const DataRow* const row = reader.Next();
  if (row == nullptr || !HasFields(*row, fields)) return std::nullopt;
  const DataRowKind kind = row->kind;
  if (reader.Next() != nullptr) return std::nullopt;
  return kind;
}

std::string AppendChange(std::string_view dataFile, const DataFields& fields) {
  RequireChange(fields);
  const std::string_view content = common::WithoutByteOrderMark(dataFile);
  RequireExtensible(content);
  const std::string_view lineEnd = LineEndOf(dataFile);
  std::string extended(dataFile);
  if (content.empty()) extended += HeaderRow();
  if (!extended.ends_with('\n')) extended += lineEnd;
  extended += FormatRow(fields);
  extended += lineEnd;
  return extended;
}

}  // namespace hosts::author
