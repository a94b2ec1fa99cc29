// Converts the table of a spreadsheet to a data file.
#ifndef HOSTS_AUTHOR_SPREADSHEETIMPORT_H_
#define HOSTS_AUTHOR_SPREADSHEETIMPORT_H_

#include <string>
#include <vector>

#include "hosts/author/InputError.h"
#include "hosts/author/SpreadsheetReader.h"

namespace hosts::author {

/// The result of a conversion. If there are errors, `dataFile` is incomplete and must not be used.
struct ImportResult {
  std::string dataFile;         ///< UTF-8, with a header row; each row ends with a newline
  std::vector<Remark> changes;  ///< the replacements in cells, by line
  std::vector<Remark> errors;   ///< what a data file cannot contain, by line
};

/// Converts a table to a data file that the library reads with the same fields.
///
/// The first row that has values names the columns, in any order (`FindColumn`). Every column must
/// be known, except columns without a name and without values. The columns of the grouping ID and
/// of the message are required. A missing cell is empty, and rows without values are omitted.
///
/// `ConvertText` converts the cells of text columns. All other cells are unchanged, and it is an
/// error if a data file cannot contain them. So are rows that the library would skip.
ImportResult ImportSpreadsheet(const Spreadsheet& table);

}  // namespace hosts::author

#endif  // HOSTS_AUTHOR_SPREADSHEETIMPORT_H_
