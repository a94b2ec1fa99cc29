// Measures the memory of a loaded list, minus the size of the data file, and the number of
// allocations during the load. Divides both by the number of rows.
#include <memory>
#include <string>

#include <benchmark/benchmark.h>

#include <ornwhatsnew/FeatureListData.h>

#include "benchmarks/support/ByteCounter.h"
#include "benchmarks/support/Rows.h"
#include "benchmarks/support/SampleFile.h"
#include "benchmarks/support/SampleHost.h"

namespace benchmarks {
namespace {

void Memory(benchmark::State& state) {
  UseSampleHost();
  const std::string& file = SampleFile(Rows(state));
  SampleStore store;
  const auto rows = static_cast<double>(Rows(state));
  for (auto _ : state) {
    const std::size_t bytesBefore = LiveBytes();
    const std::size_t allocationsBefore = AllocationCount();
    const auto list =
        std::make_unique<ornwhatsnew::FeatureListData>(file, store.Getter(), store.Setter());
    const std::size_t bytes = LiveBytes() - bytesBefore - file.size();
    state.counters["bytes"] = static_cast<double>(bytes) / rows;
    state.counters["allocations"] =
        static_cast<double>(AllocationCount() - allocationsBefore) / rows;
  }
}
BENCHMARK(Memory)->RangeMultiplier(10)->Range(1'000, 1'000'000)->Iterations(1);

}  // namespace
}  // namespace benchmarks
