// Checks whether a list has anything new for a user who has seen everything. The list must
// therefore check all items and changes. The baseline only computes the hashes of the changes and
// items.
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
    if (list->IsAnythingNew(ornwhatsnew::kShowOnlyNew)) state.SkipWithError("an item is new");
  }
  SetRows(state, Rows(state));
}
BENCHMARK(IsAnythingNew)->Name("News")->RangeMultiplier(10)->Range(100, 100'000);

// Returns the bytes to hash: one string for each change, and one for each item. The string of an
// item consists of its tag, keys and fields, and of a placeholder for the identity of each change.
std::vector<std::string> BytesToHash(SampleList& list) {
  std::vector<std::string> texts;
  for (const auto& [key, item] : list->GetFeatureItems()) {
    std::string itemBytes = "FeatureItemSeenList" + key + item->BetaFeatureInternalKey();
    itemBytes += item->GetFeatureName();
    itemBytes += item->GetFeatureDescription();
    itemBytes += item->GetFeatureViewMoreURL();
    for (const auto& change : item->GetAllChanges()) {
      texts.push_back(HashedBytes(*change));
      itemBytes.append(ornwhatsnew::Guid::kByteLength, '\x5A');
    }
    texts.push_back(itemBytes);
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
