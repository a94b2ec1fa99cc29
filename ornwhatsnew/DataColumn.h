// The ten columns of a data file. `DataColumn` defines their order, `kDataColumns` their headers
// and the key under which a change stores each field.
#ifndef ORNWHATSNEW_DATACOLUMN_H_
#define ORNWHATSNEW_DATACOLUMN_H_

#include <array>
#include <cstddef>
#include <string_view>

#include <orncore/Export.h>  // reports a compiler that is not in C++20 mode

namespace ornwhatsnew {

/// The columns in file order. The reader identifies a column by its index and never compares the
/// header row. Every field except the grouping ID can be empty.
enum class DataColumn : std::size_t {
  /// The version in which the change was added. In a changes-since row, the changes-since version.
  kVersion,
  /// The epic ID of a feature, a section key, or "Changes-Since".
  kGroupingID,
  /// The ID of a story, task or bug.
  kStoryID,
  /// A salience keyword.
  kSalience,
  /// "RequestRating" or a custom question.
  kRatingRequest,
  /// The earliest version to which the change is relevant; empty for all versions.
  kFirstVersion,
  /// The only platform to which the change is relevant, "Mac" or "Win"; empty for all platforms.
  kPlatform,
  /// A link to a discussion.
  kURL,
  /// A changelist ID or commit ID.
  kSHA,
  /// The text that users read. It is empty in a row that only requests a rating.
  kDescription,
};

/// The number of columns.
inline constexpr std::size_t kDataColumnCount = 10;

/// Returns the index of a column, from 0. It is the index in `kDataColumns`, in `DataRow::values`
/// and in `FeatureListDetail::Fields`.
constexpr std::size_t ColumnIndex(DataColumn column) {
  return static_cast<std::size_t>(column);
}

/// The properties of a column.
struct DataColumnInfo {
  /// The header that authors write in the first row. The reader does not compare it.
  std::string_view header;
  /// The key for `FeatureListDetail::GetField`.
  std::string_view fieldKey;
  /// Whether the parser converts the field to lower case. `DataFileReader` does not convert it.
  bool isLowerCased;
};

/// The properties of each column, indexed by `ColumnIndex`.
inline constexpr std::array<DataColumnInfo, kDataColumnCount> kDataColumns = {{
    {"App Version", "kVersionAdded", false},
    {"Grouping ID (Jira Epic / BUGFIX / INTERNAL / MISC)", "kJIRAEpicID", true},
    {"Jira ID (Story / Task / Bug)", "kJIRAStoryBugTaskID", true},
    {"Salience", "kSalienceOptional", true},
    {"Ask User For Rating", "kRequestFeedbackOptional", false},
    {"Earliest Relevant Change Version", "kRelevantFirstVersionOptional", true},
    {"Only Relevant Platform", "kRelevantPlatformOptional", true},
    {"URL To Discussion Thread", "kViewMoreURL", false},
    {"Changelist ID", "kSHANum", false},
    {"Public/Internal message", "kDescription", false},
}};

}  // namespace ornwhatsnew

#endif  // ORNWHATSNEW_DATACOLUMN_H_
