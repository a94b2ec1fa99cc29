// Defines the column names that authors use, the columns that contain text for users, and the
// columns that the panel localises.
#ifndef HOSTS_AUTHOR_COLUMNNAMES_H_
#define HOSTS_AUTHOR_COLUMNNAMES_H_

#include <array>
#include <optional>
#include <string>
#include <string_view>

#include <ornwhatsnew/DataColumn.h>

namespace hosts::author {

/// The short names of the columns, indexed by `ColumnIndex`. The examples in docs/data-file.md use
/// them.
inline constexpr std::array<std::string_view, ornwhatsnew::kDataColumnCount> kShortColumnNames = {
    "App Version",   "Grouping ID", "Jira ID", "Salience", "Rating",
    "First Version", "Platform",    "URL",     "Commit",   "Message"};

/// Returns the header text of a column in single quotes, for messages.
std::string QuotedHeader(ornwhatsnew::DataColumn column);

/// Returns the column whose header text or short name is `header`. Ignores the letter case and the
/// white space at both ends, and treats any other sequence of white space as one space. Returns
/// `std::nullopt` if there is no such column.
std::optional<ornwhatsnew::DataColumn> FindColumn(std::string_view header);

/// Returns whether users read the fields of `column` as text. This is true for the message and the
/// rating request.
bool IsTextColumn(ornwhatsnew::DataColumn column);

/// The columns that the panel localises. Their fields can be key texts.
inline constexpr ornwhatsnew::DataColumn kLocalizedColumns[] = {
    ornwhatsnew::DataColumn::kVersion, ornwhatsnew::DataColumn::kRatingRequest,
    ornwhatsnew::DataColumn::kFirstVersion, ornwhatsnew::DataColumn::kDescription};

/// Returns the string that the panel localises for `field` in `column`: `field` itself, or `field`
/// in lower case if the library converts this column to lower case.
std::string LocalizedText(ornwhatsnew::DataColumn column, std::string_view field);

}  // namespace hosts::author

#endif  // HOSTS_AUTHOR_COLUMNNAMES_H_
