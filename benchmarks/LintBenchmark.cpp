// Checks a data file in which `lint` finds nothing. The baseline loads the same file into a list.
#include <map>
#include <memory>
#include <string>
#include <string_view>

#include <benchmark/benchmark.h>

#include <ornwhatsnew/FeatureListData.h>

#include "benchmarks/support/Rows.h"
#include "benchmarks/support/SampleFile.h"
#include "benchmarks/support/SampleHost.h"
#include "hosts/author/lint/Lint.h"

namespace benchmarks {
namespace {

using hosts::author::LintHost;
using hosts::author::LintReport;

/// Returns a row without mistakes. The average length of the rows and their average number of empty
/// fields are similar to those in `SampleFile`. One row in eight contains characters outside ASCII.
std::string CleanRow(std::size_t number) {
  constexpr std::string_view kText =
      "finds the route between two pins when dragging the map, and keeps every label of the legend";
  const bool isBugfix = number % 11 == 0;
  std::string row = "24." + std::to_string(number % 12) + ".0.0,";
  row += isBugfix ? "BUGFIX" : "EPIC-" + std::to_string(kFirstEpic + number % kEpicCount);
  row += ",STORY-" + std::to_string(10'000 + number) + ",";
  row += number % 3 == 0 ? "Detail,," : ",,";
  row += number % 4 == 0 ? "23.1.0.0," : ",";
  row += number % 5 == 0 ? "Mac,," : ",,";
  row += "0123456789abcdef0123456789abcdef01234567,";
  row += "\"" + std::string(kText) + (number % 8 == 0 ? ", d\u00E9j\u00E0 vu " : " ");
  return row + std::to_string(number) + "\"\n";
}

const std::string& CleanFile(std::size_t rows) {
  static std::map<std::size_t, std::string> files;
  const auto [file, isNew] = files.try_emplace(rows);
  if (!isNew) return file->second;
  file->second =
      "App Version,Grouping ID,Story ID,Salience,Ask For Rating,Earliest Version,Only Platform,"
      "URL,Changelist ID,Message\n24.0,Changes-Since\n";
  for (std::size_t row = 0; row < rows; ++row) file->second += CleanRow(row);
  return file->second;
}

LintHost CleanHost() {
  LintHost host;
  host.file = "host.json";
  for (std::size_t epic = kFirstEpic; epic < kFirstEpic + kEpicCount; ++epic) {
    const std::string number = std::to_string(epic);
    host.description.betaFeatures.push_back(
        {"sample.feature" + number, "EPIC-" + number, "Feature " + number, "", 0, true, true});
  }
  hosts::common::InstallHost(host.description);
  return host;
}

void Lint(benchmark::State& state) {
  const LintHost host = CleanHost();
  const std::string& file = CleanFile(Rows(state));
  for (auto _ : state) {
    const LintReport report = hosts::author::LintDataFile("data.csv", file, &host);
    if (!report.findings.empty()) {
      state.SkipWithError(report.findings.front().message.c_str());
      return;
    }
  }
  SetRows(state, Rows(state));
}
BENCHMARK(Lint)->RangeMultiplier(10)->Range(1'000, 10'000);

void LoadClean(benchmark::State& state) {
  CleanHost();
  SampleStore store;
  const std::string& file = CleanFile(Rows(state));
  for (auto _ : state) {
    auto list = std::make_unique<ornwhatsnew::FeatureListData>(store.Getter(), store.Setter());
    list->InitWithData(file);
  }
  SetRows(state, Rows(state));
}
BENCHMARK(LoadClean)->Name("Baseline.Lint")->RangeMultiplier(10)->Range(1'000, 10'000);

}  // namespace
}  // namespace benchmarks
