// Reads the rows of a What's New data file: how the text is cut, what a row counts as and why, and
// where its fields stand. The library's own parser works on it, and so does every tool that speaks
// to authors about their file.
//
//     text ──line feeds──> rows ──commas, quotes──> fields ──cleaned──> ten current values ──> kind
//
// Rows end at every line feed, inside quotes too. A double quote switches quoting on and off and is
// dropped; inside quotes commas are text. There is no escape character and nothing is trimmed.
// Carriage returns are removed from every field, and ill-formed UTF-8 becomes U+FFFD.
#ifndef ORNWHATSNEW_DATAFILEREADER_H_
#define ORNWHATSNEW_DATAFILEREADER_H_

#include <array>
#include <cstddef>
#include <memory>
#include <string_view>

#include <orncore/Export.h>
#include <ornwhatsnew/utility/SharedTypes.h>

namespace ornwhatsnew {

/// The columns of the data file, found by position and never by the header row's words.
enum class DataColumn : std::size_t {
  kVersion,        ///< version in which the change was added, or the changes-since version
  kGroupingID,     ///< epic ID or section key, or "Changes-Since"
  kStoryID,        ///< story, task or bug ID
  kSalience,       ///< a salience keyword or empty
  kRatingRequest,  ///< "RequestRating", a question, or empty
  kFirstVersion,   ///< earliest version to which the change is relevant, or empty
  kPlatform,       ///< "Mac", "Win" or empty
  kURL,            ///< link to a discussion, or empty
  kSHA,            ///< changelist or commit identifier, or empty
  kDescription,    ///< the text that users read
};

/// How many columns a data file has.
inline constexpr std::size_t kDataColumnCount = 10;

/// The header texts that authors write, in column order. Documentation only: a header row with
/// other words is as good.
inline constexpr std::array<std::string_view, kDataColumnCount> kDataColumnHeaders = {
    "App Version",
    "Grouping ID (Jira Epic / BUGFIX / INTERNAL / MISC)",
    "Jira ID (Story / Task / Bug)",
    "Salience",
    "Ask User For Rating",
    "Earliest Relevant Change Version",
    "Only Relevant Platform",
    "URL To Discussion Thread",
    "Changelist ID",
    "Public/Internal message",
};

/// The grouping ID of the row that names the version from which changes are counted.
inline constexpr std::string_view kChangesSinceKey = "Changes-Since";

/// What a row counts as.
enum class DataRowKind {
  kHeader,        ///< the first row that counts, whatever it holds
  kChangesSince,  ///< its version column holds the changes-since version
  kChange,        ///< a change
  kSkipped,       ///< changes nothing; `DataRow::skipReason` says why
};

/// Why a row is skipped.
enum class DataRowSkipReason {
  kNone,          ///< it is not
  kBlank,         ///< nothing stands in it
  kFieldCount,    ///< it has another number of fields than ten
  kNoGroupingID,  ///< its grouping ID is empty
};

/// One row as it was read. All views stay valid until the next row is read.
struct DataRow {
  /// What the row counts as.
  DataRowKind kind = DataRowKind::kSkipped;
  /// Why it is skipped, if it is.
  DataRowSkipReason skipReason = DataRowSkipReason::kNone;
  /// Counts from 1.
  std::size_t lineNumber = 0;
  /// The bytes of the row, without its line feed.
  std::string_view text;
  /// How many fields the row has; a blank row has none.
  std::size_t fieldCount = 0;
  /// Where each of the row's first ten fields begins in `text`, in bytes from 0, quote included.
  /// Meaningless behind the row's last field.
  std::array<std::size_t, kDataColumnCount> fieldOffsets{};
  /// The ten current values, cleaned. A row with fewer fields leaves the values of the rows before
  /// in the columns behind it.
  std::array<std::string_view, kDataColumnCount> values{};

  /// The current value of a column.
  std::string_view Value(DataColumn column) const {
    return values[static_cast<std::size_t>(column)];
  }
};

/// Goes through the rows of a text in file order. Never fails: whatever the bytes are, every row is
/// reported. Views the text, which must outlive the reader. One thread at a time.
class ORN_EXPORT DataFileReader {
 public:
  /// Stands before the first row of `text`, UTF-8 or any other bytes.
  explicit DataFileReader(std::string_view text);
  ~DataFileReader();
  DataFileReader(const DataFileReader&) = delete;
  DataFileReader& operator=(const DataFileReader&) = delete;

  /// The next row, owned by the reader and valid until the next call; null behind the last one.
  const DataRow* Next();

 private:
  class Impl;
  std::unique_ptr<Impl> impl_;
};

}  // namespace ornwhatsnew

#endif  // ORNWHATSNEW_DATAFILEREADER_H_
