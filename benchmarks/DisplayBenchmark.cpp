// Measures `GetFormattedTextForDisplay` (Display) and `GetLayoutForDisplay` (Layout) without
// display options. For each change, the baseline of Display computes one hash and writes one line
// with style runs. This baseline handles no features, options or translations. The baseline of
// Layout is Display.
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <benchmark/benchmark.h>

#include <ornwhatsnew/FeatureListData.h>

#include "benchmarks/support/HandRecords.h"
#include "benchmarks/support/HandText.h"
#include "benchmarks/support/OneShotHash.h"
#include "benchmarks/support/Rows.h"
#include "benchmarks/support/SampleFile.h"
#include "benchmarks/support/SampleHost.h"

namespace benchmarks {
namespace {

using ornwhatsnew::StyleID;
using ornwhatsnew::StyleRunMap;

// Returns a list with `rows` changes. `Display` and `Layout` share one list for each number of
// changes.
SampleList& ListOf(std::size_t rows) {
  static std::map<std::size_t, std::unique_ptr<SampleList>> lists;
  std::unique_ptr<SampleList>& list = lists[rows];
  if (list == nullptr) list = std::make_unique<SampleList>(rows);
  return *list;
}

void Display(benchmark::State& state) {
  SampleList& list = ListOf(Rows(state));
  for (auto _ : state) {
    StyleRunMap runs;
    std::u16string text = list.Display(runs);
    benchmark::DoNotOptimize(text.data());
    state.PauseTiming();
    std::u16string().swap(text);
    StyleRunMap().swap(runs);
    list.ResetState();
    state.ResumeTiming();
  }
  SetRows(state, Rows(state));
}
BENCHMARK(Display)->RangeMultiplier(10)->Range(100, 1'000'000);
BENCHMARK(Display)->Name("Baseline.Layout")->RangeMultiplier(10)->Range(100, 100'000);

void Layout(benchmark::State& state) {
  SampleList& list = ListOf(Rows(state));
  for (auto _ : state) {
    ornwhatsnew::PanelLayout layout = list->GetLayoutForDisplay({});
    benchmark::DoNotOptimize(layout.paragraphs.data());
    state.PauseTiming();
    layout = {};
    list.ResetState();
    state.ResumeTiming();
  }
  SetRows(state, Rows(state));
}
BENCHMARK(Layout)->RangeMultiplier(10)->Range(100, 100'000);

HashWords IdentityByHand(const HandRecord& record, std::string& bytes) {
  bytes.clear();
  for (const std::string& field : record) bytes += field;
  return HashOnce(bytes);
}

class HandWriter {
 public:
  HandWriter(std::size_t rows, std::size_t units, StyleRunMap& runs)
      : changes_(runs[StyleID::kStyleChangeText]), versions_(runs[StyleID::kStyleInternalCode]) {
    text_.reserve(units);
    changes_.reserve(3 * rows);
    versions_.reserve(rows);
  }

  void WriteRow(const HandRecord& record) {
    Append("\u2022 ", &changes_);
    Append(record[6].empty() ? "" : "(macOS only) ", &changes_);
    Append(record[9], &changes_);
    version_.assign(" (v").append(record[0]).append(")");
    Append(version_, &versions_);
    Append("\n", nullptr);
  }

  std::u16string TakeText() { return std::move(text_); }

 private:
  void Append(std::string_view text, std::vector<ornwhatsnew::StyleRun>* runs) {
    if (runs != nullptr) {
      runs->emplace_back(std::pair(bytes_, static_cast<int>(text.size())), std::u16string());
    }
    AppendByHand(text, text_);
    bytes_ += static_cast<int>(text.size());
  }

  std::vector<ornwhatsnew::StyleRun>& changes_;
  std::vector<ornwhatsnew::StyleRun>& versions_;
  std::u16string text_;
  std::string version_;
  int bytes_ = 0;
};

void HandDisplay(benchmark::State& state) {
  static std::map<std::size_t, std::vector<HandRecord>> loaded;
  std::vector<HandRecord>& records = loaded[Rows(state)];
  if (records.empty()) records = LoadByHand(SampleFile(Rows(state)));
  std::string bytes;
  for (auto _ : state) {
    StyleRunMap runs;
    std::size_t units = 0;
    for (const HandRecord& record : records) {
      benchmark::DoNotOptimize(IdentityByHand(record, bytes));
      units += record[9].size() + record[0].size() + 24;
    }
    HandWriter writer(records.size(), units, runs);
    for (const HandRecord& record : records) writer.WriteRow(record);
    std::u16string text = writer.TakeText();
    benchmark::DoNotOptimize(text.data());
    state.PauseTiming();
    std::u16string().swap(text);
    StyleRunMap().swap(runs);
    state.ResumeTiming();
  }
  SetRows(state, Rows(state));
}
BENCHMARK(HandDisplay)->Name("Baseline.Display")->RangeMultiplier(10)->Range(100, 1'000'000);

}  // namespace
}  // namespace benchmarks
