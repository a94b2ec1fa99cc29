// Splits a data file into rows and fields, and removes the quotes. The baseline is `HandCutter`.
#include <algorithm>
#include <string>
#include <string_view>

#include <benchmark/benchmark.h>

#include "benchmarks/support/HandCut.h"
#include "benchmarks/support/Rows.h"
#include "benchmarks/support/SampleFile.h"
#include "ornwhatsnew/src/datafile/FieldCleaner.h"

namespace benchmarks {
namespace {

void Cutting(benchmark::State& state) {
  const std::string& file = SampleFile(Rows(state));
  std::string buffer;
  for (auto _ : state) {
    CountingSink sink;
    std::string_view rest = file;
    while (!rest.empty()) {
      const std::string_view row = rest.substr(0, rest.find('\n'));
      std::size_t columns = 0;
      for (std::size_t begin = 0; begin <= row.size();) {
        const std::size_t end = ornwhatsnew::FindFieldEnd(row, begin);
        std::string_view field = row.substr(begin, end - begin);
        if (field.find('"') != field.npos) {
          buffer.assign(field);
          std::erase(buffer, '"');
          field = buffer;
        }
        sink.Field(columns++, field);
        begin = end + 1;
      }
      sink.Row(columns);
      rest.remove_prefix(std::min(row.size() + 1, rest.size()));
    }
    benchmark::DoNotOptimize(sink);
  }
  SetRows(state, Rows(state));
}
BENCHMARK(Cutting)->RangeMultiplier(10)->Range(100, 100'000);

void HandCutting(benchmark::State& state) {
  const std::string& file = SampleFile(Rows(state));
  for (auto _ : state) {
    CountingSink sink;
    HandCutter(file, sink).Run();
    benchmark::DoNotOptimize(sink);
  }
  SetRows(state, Rows(state));
}
BENCHMARK(HandCutting)->Name("Baseline.Cutting")->RangeMultiplier(10)->Range(100, 100'000);

}  // namespace
}  // namespace benchmarks
