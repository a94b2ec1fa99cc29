// Names the columns of a data file for authors.
#ifndef HOSTS_AUTHOR_COLUMNNAMES_H_
#define HOSTS_AUTHOR_COLUMNNAMES_H_

#include <array>
#include <optional>
#include <string>
#include <string_view>

#include <ornwhatsnew/DataColumn.h>

namespace hosts::author {

/// The short names of the columns, indexed by `ColumnIndex`. The examples of the manual use them.
inline constexpr std::array<std::string_view, ornwhatsnew::kDataColumnCount> kShortColumnNames = {
    "App Version",   "Grouping ID", "Jira ID", "Salience", "Rating",
    "First Version", "Platform",    "URL",     "Commit",   "Message"};

/// Returns the header text of a column in single quotes, for messages.
std::string QuotedHeader(ornwhatsnew::DataColumn column);

/// Returns the column whose header text or short name is `header`. Ignores the letter case, and
/// treats each sequence of white space as one space. Returns `std::nullopt` if there is none.
std::optional<ornwhatsnew::DataColumn> FindColumn(std::string_view header);

/// Returns whether users read the column as text: the message and the rating question.
bool IsTextColumn(ornwhatsnew::DataColumn column);

}  // namespace hosts::author

#endif  // HOSTS_AUTHOR_COLUMNNAMES_H_
