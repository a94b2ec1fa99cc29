// The badge: whether anything is new, asked of a list of which everything is seen, so that every
// change has to be looked at. The floor makes the hashes that this takes, and nothing else.
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include <ornwhatsnew/FeatureListData.h>

#include "benchmarks/support/OneShotHash.h"
#include "benchmarks/support/Rows.h"
#include "benchmarks/support/SampleHost.h"

namespace benchmarks {
namespace {

using ornwhatsnew::kFilterRelevantPlatform;
using ornwhatsnew::kFilterRelevantVersion;
using ornwhatsnew::kShowOnlyNew;

void IsAnythingNew(benchmark::State& state, ornwhatsnew::DisplayOptions options) {
  SampleList list(Rows(state));
  ornwhatsnew::StyleRunMap runs;
  list.Display(runs);
  list->RefreshInternalSeenState();
  for (auto _ : state) {
    if (list->IsAnythingNew(options)) state.SkipWithError("something is new");
  }
  SetRows(state, Rows(state));
}
BENCHMARK_CAPTURE(IsAnythingNew, all, kShowOnlyNew)
    ->Name("News")
    ->RangeMultiplier(10)
    ->Range(100, 100'000);
BENCHMARK_CAPTURE(IsAnythingNew, filtered,
                  kShowOnlyNew | kFilterRelevantPlatform | kFilterRelevantVersion)
    ->Name("News.Filtered")
    ->RangeMultiplier(10)
    ->Range(100, 100'000);

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
BENCHMARK(Hashes)->Name("Floor.News")->RangeMultiplier(10)->Range(100, 100'000);
BENCHMARK(Hashes)->Name("Floor.News.Filtered")->RangeMultiplier(10)->Range(100, 100'000);

}  // namespace
}  // namespace benchmarks
