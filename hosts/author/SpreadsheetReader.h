// Reads the tables that spreadsheet programs export as CSV.
//
// Unlike a data file, such a table can have quoted fields over several lines, in which a doubled
// quote stands for a quote (RFC 4180). Its fields are separated by commas, semicolons or tabs.
#ifndef HOSTS_AUTHOR_SPREADSHEETREADER_H_
#define HOSTS_AUTHOR_SPREADSHEETREADER_H_

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace hosts::author {

/// A cell of a table.
struct SpreadsheetCell {
  std::string text;      ///< UTF-8, without the quotes around the field
  std::size_t line = 0;  ///< the line on which the cell begins; the first one has the number 1
};

/// A row of a table. It has at least one cell.
using SpreadsheetRow = std::vector<SpreadsheetCell>;

/// Returns whether a cell of `row` is not empty. A spreadsheet exports rows without values, too.
bool HasValues(const SpreadsheetRow& row);

/// A table. Empty lines are no rows.
struct Spreadsheet {
  char separator = ',';
  std::vector<SpreadsheetRow> rows;
};

/// Reads a table from `text` (UTF-8). The separator is the one of comma, semicolon and tab with
/// which the first row that has values has the most column names of a data file. If the first line
/// is "sep=" and a character, which spreadsheet programs write for each other, this character is
/// the separator. Throws `InputError` if a quote is missing or misplaced.
Spreadsheet ReadSpreadsheet(std::string_view text);

}  // namespace hosts::author

#endif  // HOSTS_AUTHOR_SPREADSHEETREADER_H_
