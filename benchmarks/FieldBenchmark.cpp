// Making a field of the data file the value that the list keeps: well-formed, and in lower case.
#include <string>
#include <string_view>
#include <vector>

#include <benchmark/benchmark.h>

#include "benchmarks/support/HandCut.h"
#include "benchmarks/support/HandText.h"
#include "benchmarks/support/Rows.h"
#include "benchmarks/support/SampleFile.h"
#include "ornwhatsnew/src/datafile/FieldCleaner.h"

namespace benchmarks {
namespace {

// The sample file's fields that are ASCII, or those that are not.
struct Fields {
  explicit Fields(bool ascii) : ascii_(ascii) { HandCutter(SampleFile(1'000), *this).Run(); }

  void Field(std::size_t, std::string_view text) {
    if (IsAsciiByHand(text) == ascii_) texts.emplace_back(text);
  }
  void Row(std::size_t) {}

  std::vector<std::string> texts;

 private:
  bool ascii_;
};

void Lowering(benchmark::State& state, bool ascii) {
  const Fields fields(ascii);
  ornwhatsnew::FieldCleaner cleaner;
  std::string buffer;
  std::string lowered;
  for (auto _ : state) {
    for (const std::string& field : fields.texts) {
      benchmark::DoNotOptimize(ornwhatsnew::LowerField(cleaner.Clean(field, buffer), lowered));
    }
  }
  SetRows(state, fields.texts.size());
}
BENCHMARK_CAPTURE(Lowering, ascii, true)->Name("Fields.Ascii");
BENCHMARK_CAPTURE(Lowering, foreign, false)->Name("Fields.Foreign");

void HandLowering(benchmark::State& state) {
  const Fields fields(true);
  std::string lowered;
  for (auto _ : state) {
    for (const std::string& field : fields.texts) {
      benchmark::DoNotOptimize(IsAsciiByHand(field));
      lowered = field;
      LowerAsciiByHand(lowered);
      benchmark::DoNotOptimize(lowered.data());
    }
  }
  SetRows(state, fields.texts.size());
}
BENCHMARK(HandLowering)->Name("Floor.Fields.Ascii");

void IcuLowering(benchmark::State& state) {
  const Fields fields(false);
  IcuByHand icu;
  for (auto _ : state) {
    for (const std::string& field : fields.texts) {
      benchmark::DoNotOptimize(icu.LowerCase(field));
    }
  }
  SetRows(state, fields.texts.size());
}
BENCHMARK(IcuLowering)->Name("Floor.Fields.Foreign");

}  // namespace
}  // namespace benchmarks
