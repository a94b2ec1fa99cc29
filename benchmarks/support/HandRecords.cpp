#include "benchmarks/support/HandRecords.h"

#include <algorithm>

#include "benchmarks/support/HandCut.h"
#include "benchmarks/support/HandText.h"

namespace benchmarks {
namespace {

constexpr std::array<bool, kColumns> kLowered = {false, true, true,  true,  false,
                                                 true,  true, false, false, false};

class RecordSink {
 public:
  explicit RecordSink(std::vector<HandRecord>& records) : records_(records) {
    records_.emplace_back();
  }

  void Field(std::size_t column, std::string_view text) {
    if (column >= kColumns) return;
    std::string& field = records_.back()[column];
    const bool isAscii = IsAsciiByHand(text);
    if (isAscii || !kLowered[column]) {
      field = isAscii ? text : icu_.RoundTrip(text);
      if (kLowered[column]) LowerAsciiByHand(field);
    } else {
      field = icu_.LowerCase(text);
    }
  }
  void Row(std::size_t columns) {
    if (columns != kColumns) return;
    if (isHeader_) {
      isHeader_ = false;
    } else {
      records_.emplace_back();
    }
  }

 private:
  std::vector<HandRecord>& records_;
  IcuByHand icu_;
  bool isHeader_ = true;
};

}  // namespace

std::vector<HandRecord> LoadByHand(std::string_view file) {
  std::vector<HandRecord> records;
  records.reserve(static_cast<std::size_t>(std::ranges::count(file, '\n')) + 1);
  RecordSink sink(records);
  HandCutter(file, sink).Run();
  records.pop_back();
  return records;
}

}  // namespace benchmarks
