// Reads the rows of a data file, for `FeatureListData` and for tools that check a file.
//
//     DataFileReader reader(text);
//     while (const DataRow* row = reader.Next()) {
//       if (row->kind == DataRowKind::kChange) Print(row->Value(DataColumn::kDescription));
//     }
//
// Every line feed ends a row, even inside quotes. A comma outside quotes ends a field. A double
// quote starts or ends quoting and is removed. There is no escape character. Spaces are unchanged.
// The reader removes carriage returns from every field and replaces ill-formed UTF-8 with U+FFFD.
// It removes a byte order mark from the first field of the header row.
#ifndef ORNWHATSNEW_DATAFILEREADER_H_
#define ORNWHATSNEW_DATAFILEREADER_H_

#include <array>
#include <cstddef>
#include <optional>
#include <string_view>
#include <vector>

#include <orncore/Export.h>
#include <ornwhatsnew/DataColumn.h>
#include <ornwhatsnew/utility/SharedTypes.h>

namespace ornwhatsnew {

/// The grouping ID of a row that sets the changes-since version. Its letter case does not matter.
inline constexpr std::string_view kChangesSinceKey = "Changes-Since";

/// The kind of a row, which determines how a list uses the row.
enum class DataRowKind {
  /// The row is the first row that is not skipped. A list ignores it, regardless of its content.
  kHeader,
  /// The row sets the changes-since version to the value of its version column.
  kChangesSince,
  /// The row is a change.
  kChange,
  /// A list ignores the row. `DataRow::skipReason` contains the reason.
  kSkipped,
};

/// The reason why a list skips a row. If several reasons apply, the reader reports the first reason
/// in this order. A row whose current grouping ID is "Changes-Since" is never skipped.
enum class DataRowSkipReason {
  /// The row is not skipped.
  kNone,
  /// The row is empty or contains only carriage returns.
  kBlank,
  /// The row does not have exactly ten fields.
  kFieldCount,
  /// The grouping ID is empty.
  kNoGroupingID,
};

/// One row of a data file. All views are valid until the reader reads the next row or is destroyed.
struct DataRow {
  /// The kind of the row, which determines how a list uses the row.
  DataRowKind kind = DataRowKind::kSkipped;
  /// The reason why a list skips the row, or `kNone` if a list does not skip it.
  DataRowSkipReason skipReason = DataRowSkipReason::kNone;
  /// The line number of the row. The first row of the file has the number 1.
  std::size_t lineNumber = 0;
  /// The bytes of the row, without its line feed.
  std::string_view text;
  /// The number of fields, which can be greater than ten. A blank row has no fields.
  std::size_t fieldCount = 0;
  /// The ten current values, indexed by `ColumnIndex`. They are well-formed UTF-8 without quotes
  /// or carriage returns. A row with fewer than ten fields inherits the missing values from the
  /// previous row, even if that row was skipped.
  std::array<std::string_view, kDataColumnCount> values{};

  /// Returns the current value of a column.
  std::string_view Value(DataColumn column) const { return values[ColumnIndex(column)]; }
};

/// The position of a field in its row, including quotes. Tools need positions for messages to
/// authors.
struct DataField {
  /// The byte offset in the row of the first byte of the field, which can be a quote.
  std::size_t begin = 0;
  /// The byte offset in the row after the last byte of the field.
  std::size_t end = 0;
  /// The byte offset in the row of an opening quote without a closing quote. Has no value if all
  /// quotes are closed. Only the last field of a row can have an unclosed quote.
  std::optional<std::size_t> openQuote;
};

/// Returns the position of each field of `row`, which is the `text` of a `DataRow`. The number of
/// positions is `DataRow::fieldCount`, so the result for a blank row is empty. This function is
/// separate from `DataFileReader`, because a list does not need positions. Takes time linear in the
/// length of the row.
ORN_EXPORT std::vector<DataField> FindDataFields(std::string_view row);

/// Reads the rows of a data file in file order. No input is an error. The reader returns every row,
/// including the rows that a list skips.
///
/// A reader is not copyable, because its row contains views into its buffers. It is not
/// thread-safe: use one reader from one thread at a time.
class DataFileReader {
 public:
  /// Creates a reader at the start of `text`, which can contain any bytes. The reader does not copy
  /// `text`, so its bytes must outlive the reader.
  ORN_EXPORT explicit DataFileReader(std::string_view text);
  DataFileReader(const DataFileReader&) = delete;
  DataFileReader& operator=(const DataFileReader&) = delete;

  /// Reads the next row and returns it. Returns null after the last row. An empty file has no rows.
  /// If the file ends with a line feed, the last row is blank.
  ///
  /// The reader owns the row and overwrites it in the next call. If an allocation fails, the method
  /// throws `std::bad_alloc`, and the reader must not be used again.
  ORN_EXPORT const DataRow* Next();

 private:
  void ReadFields();
  void Classify();
  DataRowSkipReason ReasonToSkip() const;
  void RemoveByteOrderMark();

  std::string_view rest_;
  bool atEnd_;
  bool headerRead_ = false;
  /// Whether the current grouping ID is "Changes-Since".
  bool isChangesSince_ = false;
  /// Buffers for the current values that differ from the bytes of the file.
  std::array<UTF8String, kDataColumnCount> buffers_;
  DataRow row_;
};

}  // namespace ornwhatsnew

#endif  // ORNWHATSNEW_DATAFILEREADER_H_
