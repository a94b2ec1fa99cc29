// Computes the seen identity of each change. The baseline hashes the same bytes, which were joined
// before the measurement.
#include <cstddef>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include <ornwhatsnew/FeatureListData.h>

#include "benchmarks/support/OneShotHash.h"
#include "benchmarks/support/Rows.h"
#include "benchmarks/support/SampleHost.h"

namespace benchmarks {
namespace {

constexpr std::size_t kRows = 1'000;

std::vector<const ornwhatsnew::FeatureListDetail*> Changes(SampleList& list) {
  std::vector<const ornwhatsnew::FeatureListDetail*> changes;
  for (const auto& [key, item] : list->GetFeatureItems()) {
    for (const auto& change : item->GetAllChanges()) changes.push_back(change.get());
  }
  return changes;
}

void Identity(benchmark::State& state) {
  SampleList list(kRows);
  const auto changes = Changes(list);
  for (auto _ : state) {
    for (const auto* change : changes) benchmark::DoNotOptimize(change->GetItemSeenGuid());
  }
  SetRows(state, changes.size());
}
BENCHMARK(Identity);

void OneShotHash(benchmark::State& state) {
  SampleList list(kRows);
  std::vector<std::string> texts;
  for (const auto* change : Changes(list)) texts.push_back(HashedBytes(*change));
  for (auto _ : state) {
    for (const std::string& text : texts) benchmark::DoNotOptimize(HashOnce(text));
  }
  SetRows(state, texts.size());
}
BENCHMARK(OneShotHash)->Name("Baseline.Identity");

}  // namespace
}  // namespace benchmarks
