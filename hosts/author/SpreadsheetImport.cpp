#include "hosts/author/SpreadsheetImport.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <optional>
#include <utility>

#include <ornwhatsnew/DataColumn.h>
#include <ornwhatsnew/DataFileReader.h>

#include "hosts/author/CellText.h"
#include "hosts/author/ColumnNames.h"
#include "hosts/author/DataFileWriter.h"
#include "hosts/common/MessageText.h"

namespace hosts::author {
namespace {

using ornwhatsnew::ColumnIndex;
using ornwhatsnew::DataColumn;
using ornwhatsnew::DataRowKind;

/// For each column of a table, the column of the data file. Contains `std::nullopt` for a
/// column without a name or with an unknown name.
using TableColumns = std::vector<std::optional<DataColumn>>;

class Importer {
 public:
  ImportResult Import(const Spreadsheet& table) {
    // A spreadsheet can have empty rows above its header.
    const auto header = std::ranges::find_if(table.rows, HasValues);
    if (header == table.rows.end()) {
      AddError(1, "the table is empty; its first row must name the columns");
      return result_;
    }
    ReadHeader(*header);
    if (!result_.errors.empty()) return result_;
    result_.dataFile = HeaderRow() + "\n";
    for (auto row = std::next(header); row != table.rows.end(); ++row) {
      if (HasValues(*row)) ImportRow(*row);
    }
    return result_;
  }

 private:
  void AddError(std::size_t line, const std::string& message) {
    constexpr std::size_t kMaximumErrors = 1000;
    ++result_.errorCount;
    if (result_.errors.size() < kMaximumErrors) result_.errors.push_back({line, message});
  }

  void ReadHeader(const SpreadsheetRow& header) {
    for (const SpreadsheetCell& cell : header) {
      const std::optional<DataColumn> column = FindColumn(cell.text);
      if (!column && !cell.text.empty()) {
        AddError(cell.line, "the column '" + common::WithoutMiddle(cell.text) +
                                "' is unknown; remove it, or rename it to a column that "
                                "ornwhatsnew(5) lists");
      } else if (column && HasColumn(*column)) {
        AddError(cell.line,
                 "there are two columns named " + QuotedHeader(*column) + "; remove one");
      }
      if (column) hasColumn_[ColumnIndex(*column)] = true;
      columns_.push_back(column);
    }
    for (const DataColumn required : {DataColumn::kGroupingID, DataColumn::kDescription}) {
      if (HasColumn(required)) continue;
      AddError(header.front().line, "the first row does not name the column " +
                                        QuotedHeader(required) +
                                        "; add a row with the column names above the changes");
    }
  }

  bool HasColumn(DataColumn column) const { return hasColumn_[ColumnIndex(column)]; }

  void ImportRow(const SpreadsheetRow& row) {
    const std::size_t errorCount = result_.errorCount;
    DataFields fields;
    for (std::size_t i = 0; i < row.size(); ++i) {
      const std::optional<DataColumn> column = i < columns_.size() ? columns_[i] : std::nullopt;
      if (column) {
        fields[ColumnIndex(*column)] = ImportCell(*column, row[i]);
      } else if (!row[i].text.empty()) {
        AddError(row[i].line, "the value '" + common::WithoutMiddle(row[i].text) +
                                  "' is in column " + std::to_string(i + 1) +
                                  ", which has no name in the first row; name the column or "
                                  "remove the value");
      }
    }
    if (result_.errorCount > errorCount) return;
    CheckRow(row.front().line, fields);
    result_.dataFile += FormatRow(fields) + "\n";
  }

  std::string ImportCell(DataColumn column, const SpreadsheetCell& cell) {
    std::string value = cell.text;
    if (IsTextColumn(column)) {
      ConvertedText converted = ConvertText(cell.text);
      const std::string replacements = DescribeReplacements(converted);
      if (!replacements.empty()) {
        result_.changes.push_back(
            {cell.line, "in the column " + QuotedHeader(column) + ", replaced " + replacements});
      }
      value = std::move(converted.text);
    }
    if (const auto problem = ProblemWith(value)) {
      AddError(cell.line, "the value in the column " + QuotedHeader(column) + " " + *problem);
    }
    return value;
  }

  /// Adds an error if the library would skip the row. For a Changes-Since row, adds an error for
  /// each value that the library would ignore.
  void CheckRow(std::size_t line, const DataFields& fields) {
    const std::optional<DataRowKind> kind = KindOfRow(fields);
    if (kind == DataRowKind::kChange) return;
    if (kind != DataRowKind::kChangesSince) {
      AddError(line,
               "the row has no value in the column " + QuotedHeader(DataColumn::kGroupingID) +
                   ", so the library would skip the row; add the key of a feature or section");
      return;
    }
    for (std::size_t i = 0; i < fields.size(); ++i) {
      const auto column = static_cast<DataColumn>(i);
      const bool isUsed = column == DataColumn::kVersion || column == DataColumn::kGroupingID;
      if (isUsed || fields[i].empty()) continue;
      AddError(line, "the library ignores the value in the column " + QuotedHeader(column) +
                         " of a Changes-Since row; remove the value");
    }
  }

  TableColumns columns_;
  std::array<bool, ornwhatsnew::kDataColumnCount> hasColumn_{};
  ImportResult result_;
};

}  // namespace

ImportResult ImportSpreadsheet(const Spreadsheet& table) {
  return Importer().Import(table);
}

}  // namespace hosts::author
