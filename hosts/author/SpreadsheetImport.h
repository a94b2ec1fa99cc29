// Converts the table of a spreadsheet to a data file.
#ifndef HOSTS_AUTHOR_SPREADSHEETIMPORT_H_
#define HOSTS_AUTHOR_SPREADSHEETIMPORT_H_

#include <cstddef>
#include <string>
#include <vector>

#include "hosts/author/InputError.h"
#include "hosts/author/SpreadsheetReader.h"

namespace hosts::author {

/// The result of a conversion. If there are errors, `dataFile` is incomplete and must not be used.
struct ImportResult {
  std::string dataFile;         ///< UTF-8, with a header row; each row ends with a newline
  std::vector<Remark> changes;  ///< one remark for each cell with replacements
  std::vector<Remark> errors;   ///< the first 1,000 problems that prevent the conversion
  std::size_t errorCount = 0;   ///< the number of all problems
};

/// Converts a table to a data file.
///
/// The first row that has values must contain the column names, in any order; see `FindColumn`.
/// Each name must be known and must not occur twice. A column without a name must not contain
/// values. The columns of the grouping ID and of the message are required. A missing cell counts as
/// empty, and rows without values are omitted.
///
/// `ConvertText` converts the cells of text columns. Other cells are not changed. It is an error if
/// the table has no values or if `ProblemWith` rejects a cell. It is also an error if the library
/// would skip a row, or ignore a value in a Changes-Since row.
ImportResult ImportSpreadsheet(const Spreadsheet& table);

}  // namespace hosts::author

#endif  // HOSTS_AUTHOR_SPREADSHEETIMPORT_H_
