#include <ornwhatsnew/DataFileReader.h>

#include <algorithm>

#include <orncore/string/Conversion.h>
#include <ornwhatsnew/utility/TextHelpers.h>

#include "ornwhatsnew/src/datafile/DataFileCutter.h"
#include "ornwhatsnew/src/datafile/FieldCleaner.h"

namespace ornwhatsnew {
namespace {

// A file with CR LF line ends must read like one with LF, blank rows included.
bool IsBlank(std::string_view row) {
  return std::ranges::all_of(row, [](char c) { return c == '\r'; });
}

}  // namespace

class DataFileReader::Impl {
 public:
  explicit Impl(std::string_view text)
      : hasCarriageReturns_(text.find('\r') != std::string_view::npos), cutter_(text) {}

  const DataRow* Next() {
    if (!cutter_.NextRow(row_.text)) return nullptr;
    ++row_.lineNumber;
    TakeFields();
    Classify();
    return &row_;
  }

 private:
  void TakeFields() {
    row_.fieldCount = 0;
    if (IsBlank(row_.text)) return;

    // Mostly whole rows are clean, and then their fields are, since they are cut at ASCII bytes.
    const bool isClean = !hasCarriageReturns_ && orncore::string::IsWellFormedUTF8(row_.text);
    cutter_.CutRow(row_.text, [this, isClean](const SpanToken& field, const char* begin) {
      if (row_.fieldCount < kDataColumnCount) TakeField(field, begin, isClean);
      ++row_.fieldCount;
    });
  }

  void TakeField(const SpanToken& field, const char* begin, bool isClean) {
    const std::size_t column = row_.fieldCount;
    UTF8String& buffer = buffers_[column];
    row_.fieldOffsets[column] = static_cast<std::size_t>(begin - row_.text.data());
    const std::string_view value = field.Text(buffer);
    row_.values[column] = isClean ? value : cleaner_.Clean(value, buffer);
  }

  void Classify() {
    const std::string_view groupingID = row_.Value(DataColumn::kGroupingID);
    const bool isChangesSince = CaseInsensitiveEqual(groupingID, kChangesSinceKey);
    row_.skipReason = DataRowSkipReason::kNone;
    if (!isChangesSince) row_.skipReason = ReasonToSkip(groupingID);

    if (row_.skipReason != DataRowSkipReason::kNone) {
      row_.kind = DataRowKind::kSkipped;
    } else if (!headerRead_) {
      row_.kind = DataRowKind::kHeader;
      headerRead_ = true;
      RemoveByteOrderMark();
    } else {
      row_.kind = isChangesSince ? DataRowKind::kChangesSince : DataRowKind::kChange;
    }
  }

  DataRowSkipReason ReasonToSkip(std::string_view groupingID) const {
    if (row_.fieldCount == 0) return DataRowSkipReason::kBlank;
    if (row_.fieldCount != kDataColumnCount) return DataRowSkipReason::kFieldCount;
    return groupingID.empty() ? DataRowSkipReason::kNoGroupingID : DataRowSkipReason::kNone;
  }

  // From the current value, so that a shorter row behind the header cannot bring it back.
  void RemoveByteOrderMark() {
    std::string_view& version = row_.values[static_cast<std::size_t>(DataColumn::kVersion)];
    UTF8String& buffer = buffers_[static_cast<std::size_t>(DataColumn::kVersion)];
    if (version.data() != buffer.data()) buffer.assign(version);
    orncore::string::RemoveUTF8BOM_IfPresent(buffer);
    version = buffer;
  }

  const bool hasCarriageReturns_;
  DataFileCutter cutter_;
  FieldCleaner cleaner_;
  /// The values that are not views into the file, one buffer a column.
  std::array<UTF8String, kDataColumnCount> buffers_;
  bool headerRead_ = false;
  DataRow row_;
};

DataFileReader::DataFileReader(std::string_view text) : impl_(std::make_unique<Impl>(text)) {}

DataFileReader::~DataFileReader() = default;

const DataRow* DataFileReader::Next() {
  return impl_->Next();
}

}  // namespace ornwhatsnew
