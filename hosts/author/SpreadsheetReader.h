// Reads the tables that spreadsheet programs export as CSV.
//
// Unlike in a data file, a quoted field can span several lines. Two double quotes in a quoted field
// represent one double quote (RFC 4180). Commas, semicolons, tabs, or the character of a "sep="
// line separate the fields.
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

/// Returns whether at least one cell of `row` is not empty. Spreadsheet programs also export empty
/// rows.
bool HasValues(const SpreadsheetRow& row);

/// The rows of a table, and the character that separates its cells. An empty line is not a row.
struct Spreadsheet {
  char separator = ',';
  std::vector<SpreadsheetRow> rows;
};

/// Reads a table from `text` (UTF-8). Throws `InputError` if a quote is missing or misplaced.
///
/// If the first line is "sep=" followed by one ASCII character other than a double quote, this
/// character is the separator. Some spreadsheet programs write such a line. Otherwise, the
/// separator is a comma, a semicolon or a tab. The header is the first row that has values. The
/// function splits it with each of these separators, and selects the separator that yields the most
/// column names of a data file. If several separators yield the same number, it selects the first
/// of them.
Spreadsheet ReadSpreadsheet(std::string_view text);

}  // namespace hosts::author

#endif  // HOSTS_AUTHOR_SPREADSHEETREADER_H_
