// Reads the rows of a What's New data file, for the parser and for tools that check a file.
//
//     text ──line feeds──> rows ──commas, quotes──> fields ──cleaned──> ten current values ──> kind
//
// A row ends at every line feed, inside quotes too. A double quote switches quoting on and off and
// is dropped; inside quotes a comma is text. There is no escape character, and nothing is trimmed.
// Carriage returns are removed from every field, and ill-formed UTF-8 becomes U+FFFD.
#ifndef ORNWHATSNEW_DATAFILEREADER_H_
#define ORNWHATSNEW_DATAFILEREADER_H_

#include <array>
#include <cstddef>
#include <string_view>

#include <orncore/Export.h>
#include <ornwhatsnew/DataColumn.h>
#include <ornwhatsnew/utility/SharedTypes.h>

namespace ornwhatsnew {

/// The grouping ID of the row that names the version from which changes are counted.
inline constexpr std::string_view kChangesSinceKey = "Changes-Since";

/// What a row is for the parser.
enum class DataRowKind {
  kHeader,        ///< the first row that is not skipped, whatever it holds
  kChangesSince,  ///< its version column holds the changes-since version
  kChange,        ///< a change
  kSkipped,       ///< changes nothing; `DataRow::skipReason` is the reason
};

/// Why a row is skipped. A row whose current grouping ID is "Changes-Since" is never skipped.
enum class DataRowSkipReason {
  kNone,          ///< the row is not skipped
  kBlank,         ///< the row is empty or holds only carriage returns
  kFieldCount,    ///< the row does not have ten fields
  kNoGroupingID,  ///< the grouping ID is empty
};

/// One row. All views are valid until the next row is read.
struct DataRow {
  /// What the row is.
  DataRowKind kind = DataRowKind::kSkipped;
  /// Why the row is skipped; `kNone` for every other kind.
  DataRowSkipReason skipReason = DataRowSkipReason::kNone;
  /// The number of the row's line, from 1.
  std::size_t lineNumber = 0;
  /// The bytes of the row, without its line feed.
  std::string_view text;
  /// The number of fields. A blank row has none.
  std::size_t fieldCount = 0;
  /// The index in `text` at which each of the row's first ten fields begins, quote included. The
  /// elements after the last field are unspecified.
  std::array<std::size_t, kDataColumnCount> fieldOffsets{};
  /// The ten current values, cleaned. A row with fewer fields inherits the other values from the
  /// rows before it; skipped rows change the values, too.
  std::array<std::string_view, kDataColumnCount> values{};

  /// Returns the current value of a column.
  std::string_view Value(DataColumn column) const { return values[ColumnIndex(column)]; }
};

/// Reads the rows of a text in file order. Reading never fails, whatever the bytes are, and no row
/// is left out. A reader is not copyable, because its row views its buffers. Use one reader from
/// one thread at a time.
class DataFileReader {
 public:
  /// Starts before the first row of `text`, which may hold any bytes. The reader views the text, so
  /// the text must outlive it.
  ORN_EXPORT explicit DataFileReader(std::string_view text);
  DataFileReader(const DataFileReader&) = delete;
  DataFileReader& operator=(const DataFileReader&) = delete;

  /// Reads the next row. Returns null after the last one. An empty text has no rows; a final line
  /// feed is followed by a blank row. The reader owns the row and overwrites it in the next call.
  /// If an allocation fails, do not use the reader any more.
  ORN_EXPORT const DataRow* Next();

 private:
  void ReadFields();
  void Classify();
  DataRowSkipReason ReasonToSkip() const;
  void RemoveByteOrderMark();

  std::string_view rest_;
  bool atEnd_;
  bool headerRead_ = false;
  /// The values that do not view the text.
  std::array<UTF8String, kDataColumnCount> buffers_;
  DataRow row_;
};

}  // namespace ornwhatsnew

#endif  // ORNWHATSNEW_DATAFILEREADER_H_
