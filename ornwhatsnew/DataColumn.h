// Describes the ten columns of a data file. `DataColumn` defines their order. `kDataColumns`
// contains the header of each column, and the key under which a change stores the field.
#ifndef ORNWHATSNEW_DATACOLUMN_H_
#define ORNWHATSNEW_DATACOLUMN_H_

#include <array>
#include <cstddef>
#include <string_view>

#include <orncore/Export.h>  // reports a compiler that is not in C++20 mode

namespace ornwhatsnew {

/// The columns in file order. The reader identifies a column by its index and ignores the text of
/// the header row. Every field except the grouping ID can be empty.
enum class DataColumn : std::size_t {
  /// The version that added the change. In a changes-since row, this column contains the
  /// changes-since version.
  kVersion,
  /// The grouping ID: the epic key of a feature, a section key, or "Changes-Since".
  kGroupingID,
  /// The story ID: the key of a story, task, bug, feature or section.
  kStoryID,
  /// The salience, which is a keyword; see `FeatureListDetail::Salience`.
  kSalience,
  /// A request for a rating: "RequestRating" or a custom question.
  kRatingRequest,
  /// The earliest version to which the change is relevant. If the field is empty, the change is
  /// relevant to all versions.
  kFirstVersion,
  /// The only platform on which the change is relevant, "Mac" or "Win". If the field is empty, the
  /// change is relevant on all platforms.
  kPlatform,
  /// The URL of a discussion of the change.
  kURL,
  /// The ID of the changelist or commit that contains the change.
  kSHA,
  /// The text that users read. It is empty in a row that only requests a rating.
  kDescription,
};

/// The number of columns in a data file.
inline constexpr std::size_t kDataColumnCount = 10;

/// Returns the zero-based index of a column. It is an index into `kDataColumns`, `DataRow::values`
/// and `FeatureListDetail::Fields`.
constexpr std::size_t ColumnIndex(DataColumn column) {
  return static_cast<std::size_t>(column);
}

/// The header of a column, and how a change stores the field in this column.
struct DataColumnInfo {
  /// The text of this column in the header row of a data file. The reader ignores this text.
  std::string_view header;
  /// The key for `FeatureListDetail::GetField`.
  std::string_view fieldKey;
  /// Whether `ChangeMaker`, and therefore the list, converts the field to lower case.
  /// `DataFileReader` does not change the letter case of the field.
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
