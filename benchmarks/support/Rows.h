// Reads and reports the number of rows of a benchmark.
#ifndef BENCHMARKS_SUPPORT_ROWS_H_
#define BENCHMARKS_SUPPORT_ROWS_H_

#include <cstddef>

#include <benchmark/benchmark.h>

namespace benchmarks {

/// Returns the size argument of the benchmark, which is the number of rows or other elements.
inline std::size_t Rows(const benchmark::State& state) {
  return static_cast<std::size_t>(state.range(0));
}

/// Reports that each iteration processed `rows` rows or other elements.
inline void SetRows(benchmark::State& state, std::size_t rows) {
  state.SetItemsProcessed(state.iterations() * static_cast<benchmark::IterationCount>(rows));
}

}  // namespace benchmarks

#endif  // BENCHMARKS_SUPPORT_ROWS_H_
