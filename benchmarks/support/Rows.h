// How the benchmarks take their sizes and say how much they did.
#ifndef BENCHMARKS_SUPPORT_ROWS_H_
#define BENCHMARKS_SUPPORT_ROWS_H_

#include <cstddef>

#include <benchmark/benchmark.h>

namespace benchmarks {

/// The size that the benchmark was asked for.
inline std::size_t Rows(const benchmark::State& state) {
  return static_cast<std::size_t>(state.range(0));
}

/// Tells that each iteration did so many rows, or whatever is counted; times are given for one.
inline void SetRows(benchmark::State& state, std::size_t rows) {
  state.SetItemsProcessed(state.iterations() * static_cast<benchmark::IterationCount>(rows));
}

}  // namespace benchmarks

#endif  // BENCHMARKS_SUPPORT_ROWS_H_
