// Determines the badge of a list whose changes are all seen, so that every change is checked. The
// baseline only computes the necessary hashes.
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include <ornwhatsnew/FeatureListData.h>

#include "benchmarks/support/OneShotHash.h"
#include "benchmarks/support/Rows.h"
#include "benchmarks/support/SampleHost.h"

namespace benchmarks {
namespace {

void IsAnythingNew(benchmark::State& state) {
  SampleList list(Rows(state));
  ornwhatsnew::StyleRunMap runs;
  list.Display(runs);
  list->RefreshInternalSeenState();
  for (auto _ : state) {
    if (list->IsAnythingNew(ornwhatsnew::kShowOnlyNew)) state.SkipWithError("something is new");
  }
  SetRows(state, Rows(state));
}
BENCHMARK(IsAnythingNew)->Name("News")->RangeMultiplier(10)->Range(100, 100'000);

// One hash for each change, and one for each item over its own texts and those of its changes.
std::vector<std::string> BytesToHash(SampleList& list) {
  std::vector<std::string> texts;
  for (const auto& [key, item] : list->GetFeatureItems()) {
    std::string ofItem = "FeatureItemSeenList" + key + item->BetaFeatureInternalKey();
    ofItem += item->GetFeatureName();
    ofItem += item->GetFeatureDescription();
    ofItem += item->GetFeatureViewMoreURL();
    for (const auto& change : item->GetAllChanges()) {
      texts.push_back(HashedBytes(*change));
      ofItem.append(ornwhatsnew::Guid::kByteLength, '\x5A');
    }
    texts.push_back(ofItem);
  }
  return texts;
}

void Hashes(benchmark::State& state) {
  SampleList list(Rows(state));
  const std::vector<std::string> texts = BytesToHash(list);
  for (auto _ : state) {
    for (const std::string& text : texts) benchmark::DoNotOptimize(HashOnce(text));
  }
  SetRows(state, Rows(state));
}
BENCHMARK(Hashes)->Name("Baseline.News")->RangeMultiplier(10)->Range(100, 100'000);

}  // namespace
}  // namespace benchmarks
