// Loads a list from the host's beta features and a data file. The baseline copies the fields of the
// file into records. Both benchmarks pause the timer while they destroy the result.
#include <memory>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include <ornwhatsnew/FeatureListData.h>

#include "benchmarks/support/HandRecords.h"
#include "benchmarks/support/Rows.h"
#include "benchmarks/support/SampleFile.h"
#include "benchmarks/support/SampleHost.h"

namespace benchmarks {
namespace {

void Load(benchmark::State& state) {
  UseSampleHost();
  SampleStore store;
  const std::string& file = SampleFile(Rows(state));
  for (auto _ : state) {
    auto list = std::make_unique<ornwhatsnew::FeatureListData>(store.Getter(), store.Setter());
    list->InitWithData(file);
    state.PauseTiming();
    list.reset();
    state.ResumeTiming();
  }
  SetRows(state, Rows(state));
}
BENCHMARK(Load)->RangeMultiplier(10)->Range(100, 1'000'000);

void HandLoad(benchmark::State& state) {
  const std::string& file = SampleFile(Rows(state));
  for (auto _ : state) {
    std::vector<HandRecord> records = LoadByHand(file);
    benchmark::DoNotOptimize(records.data());
    state.PauseTiming();
    std::vector<HandRecord>().swap(records);
    state.ResumeTiming();
  }
  SetRows(state, Rows(state));
}
BENCHMARK(HandLoad)->Name("Baseline.Load")->RangeMultiplier(10)->Range(100, 1'000'000);

}  // namespace
}  // namespace benchmarks
