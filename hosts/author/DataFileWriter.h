// Formats the rows of a data file, and appends changes to a data file.
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

/// Returns the header row of a data file, without a line ending.
std::string HeaderRow();

/// Returns a row with `fields`, without a line ending. Puts quotes around a field that contains
/// a comma.
std::string FormatRow(const DataFields& fields);

/// Returns the kind of the row `FormatRow(fields)` in a file that begins with a header row. Returns
/// `std::nullopt` if the library would read other fields from the row, for example because a field
/// contains a quote.
std::optional<ornwhatsnew::DataRowKind> KindOfRow(const DataFields& fields);

/// Returns `dataFile`, the content of a data file, with a row for the change `fields` at its end.
/// The new row has the line ending of the first row, or a newline if the first row has none. If the
/// last row has no line ending, adds one first. If the file is empty, adds a header row first.
/// Keeps a byte order mark.
///
/// Throws `OptionError` if `ProblemWith` rejects a field, or if the library would not read the new
/// row as a change. Throws `InputError` if the file is not valid UTF-8 or has rows but no header
/// row.
std::string AppendChange(std::string_view dataFile, const DataFields& fields);

}  // namespace hosts::author

#endif  // HOSTS_AUTHOR_DATAFILEWRITER_H_
