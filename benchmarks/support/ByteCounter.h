// Counts the allocations of a program. ByteCounter.cpp replaces `operator new` and `operator
// delete`. The operators are in a separate file, because compilers that inline them report
// mismatched allocation functions.
#ifndef BENCHMARKS_SUPPORT_BYTECOUNTER_H_
#define BENCHMARKS_SUPPORT_BYTECOUNTER_H_

#include <cstddef>

namespace benchmarks {

/// Returns the number of bytes in all allocated blocks, including the allocator's rounding and
/// block headers. Requires that the program has only one thread.
std::size_t LiveBytes();

/// Returns the maximum of `LiveBytes` since the program started or since the last `RestartPeak`.
/// Requires that the program has only one thread.
std::size_t PeakBytes();

/// Sets `PeakBytes` to `LiveBytes`. Requires that the program has only one thread.
void RestartPeak();

/// Returns the number of allocations since the program started. Requires that the program has only
/// one thread.
std::size_t AllocationCount();

}  // namespace benchmarks

#endif  // BENCHMARKS_SUPPORT_BYTECOUNTER_H_
