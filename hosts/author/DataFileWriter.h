// Writes the rows of a data file.
#ifndef HOSTS_AUTHOR_DATAFILEWRITER_H_
#define HOSTS_AUTHOR_DATAFILEWRITER_H_

#include <array>
#include <optional>
#include <string>
#include <string_view>

#include <ornwhatsnew/DataColumn.h>
#include <ornwhatsnew/DataFileReader.h>

namespace hosts::author {

/// The ten fields of a row in UTF-8, indexed by `ornwhatsnew::ColumnIndex`.
using DataFields = std::array<std::string, ornwhatsnew::kDataColumnCount>;

/// Returns the header row of a data file, without a line end.
std::string HeaderRow();

/// Returns a row with `fields`, without a line end. Puts quotes around a field that contains a
/// comma.
std::string FormatRow(const DataFields& fields);

/// Returns how the library uses the row that `FormatRow` returns for `fields`. Returns
/// `std::nullopt` if the library would read other fields, for example because one contains a quote.
std::optional<ornwhatsnew::DataRowKind> KindOfRow(const DataFields& fields);

/// Returns `dataFile`, the content of a data file, with a row for the change `fields` at its end.
/// The new row ends with the line end of the first row. If the last row has no line end, adds one
/// first. If the file has no rows, adds a header row first. Keeps a byte order mark. Throws
/// `InputError` if the library would not read the result as the old rows and exactly one new
/// change.
std::string AppendChange(std::string_view dataFile, const DataFields& fields);

}  // namespace hosts::author

#endif  // HOSTS_AUTHOR_DATAFILEWRITER_H_
