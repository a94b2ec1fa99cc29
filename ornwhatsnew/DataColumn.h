// The ten columns of a What's New data file: their order, their header texts, and under which key a
// change keeps each of them.
#ifndef ORNWHATSNEW_DATACOLUMN_H_
#define ORNWHATSNEW_DATACOLUMN_H_

#include <array>
#include <cstddef>
#include <string_view>

namespace ornwhatsnew {

/// The columns in file order. The reader finds a column by its index, never by the header row.
enum class DataColumn : std::size_t {
  kVersion,        ///< version in which the change was added, or the changes-since version
  kGroupingID,     ///< epic ID or section key, or "Changes-Since"
  kStoryID,        ///< story, task or bug ID, or empty
  kSalience,       ///< a salience keyword, or empty
  kRatingRequest,  ///< "RequestRating", a question, or empty
  kFirstVersion,   ///< earliest version to which the change is relevant, or empty
  kPlatform,       ///< "Mac", "Win", or empty
  kURL,            ///< link to a discussion, or empty
  kSHA,            ///< changelist or commit ID, or empty
  kDescription,    ///< the text that users read
};

/// The number of columns.
inline constexpr std::size_t kDataColumnCount = 10;

/// The index of a column in `kDataColumns` and in the values of a row.
constexpr std::size_t ColumnIndex(DataColumn column) {
  return static_cast<std::size_t>(column);
}

/// What is fixed about a column.
struct DataColumnInfo {
  /// The text in the header row as authors write it. The reader does not compare it.
  std::string_view header;
  /// The key for `FeatureListDetail::GetField`.
  std::string_view fieldKey;
  /// Whether the parser stores the values of the column in lower case.
  bool isLowerCased;
};

/// The columns, by `ColumnIndex`.
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
