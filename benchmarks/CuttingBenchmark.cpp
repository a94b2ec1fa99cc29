// Cutting a data file into rows and fields.
#include <string>
#include <string_view>

#include <benchmark/benchmark.h>
#include <boost/tokenizer.hpp>

#include "benchmarks/support/HandCut.h"
#include "benchmarks/support/Rows.h"
#include "benchmarks/support/SampleFile.h"
#include "ornwhatsnew/src/datafile/DataFileCutter.h"

namespace benchmarks {
namespace {

void Cutting(benchmark::State& state) {
  const std::string& file = SampleFile(Rows(state));
  std::string buffer;
  for (auto _ : state) {
    CountingSink sink;
    ornwhatsnew::DataFileCutter cutter(file);
    for (std::string_view row; cutter.NextRow(row);) {
      std::size_t column = 0;
      cutter.CutRow(row, [&](const ornwhatsnew::SpanToken& field, const char*) {
        sink.Field(column++, field.Text(buffer));
      });
      sink.Row(column);
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
BENCHMARK(HandCutting)->Name("Floor.Cutting")->RangeMultiplier(10)->Range(100, 100'000);

// The tokenizer as it comes: texts in, texts out, byte by byte.
void StockCutting(benchmark::State& state) {
  using Separator = boost::escaped_list_separator<char>;
  using Tokenizer = boost::tokenizer<Separator>;
  const std::string& file = SampleFile(Rows(state));
  for (auto _ : state) {
    CountingSink sink;
    const Tokenizer rows(file, Separator("", "\n", ""));
    for (const std::string& row : rows) {
      std::size_t column = 0;
      const Tokenizer fields(row, Separator("", ",", "\""));
      for (const std::string& field : fields) sink.Field(column++, field);
      sink.Row(column);
    }
    benchmark::DoNotOptimize(sink);
  }
  SetRows(state, Rows(state));
}
BENCHMARK(StockCutting)->Name("Stock.Cutting")->RangeMultiplier(10)->Range(100, 100'000);

}  // namespace
}  // namespace benchmarks
