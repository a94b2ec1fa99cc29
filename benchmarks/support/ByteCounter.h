// Counts the allocations and the allocated bytes of a program. ByteCounter.cpp replaces `operator
// new` and `operator delete`. The operators are not in this header, because compilers would
// inline them and then report mismatched allocation functions.
#ifndef BENCHMARKS_SUPPORT_BYTECOUNTER_H_
#define BENCHMARKS_SUPPORT_BYTECOUNTER_H_

#include <cstddef>

namespace benchmarks {

/// Returns the size in bytes of all blocks from `operator new` that are still allocated. The size
/// includes the rounding and the block headers of the allocator. REQUIRES: the program has only one
/// thread.
std::size_t LiveBytes();

/// Returns the maximum of `LiveBytes` since the program started or since the last `RestartPeak`.
/// REQUIRES: the program has only one thread.
std::size_t PeakBytes();

/// Sets `PeakBytes` to `LiveBytes`. REQUIRES: the program has only one thread.
void RestartPeak();

/// Returns the number of blocks that `operator new` has allocated since the program started.
/// REQUIRES: the program has only one thread.
std::size_t AllocationCount();

}  // namespace benchmarks

#endif  // BENCHMARKS_SUPPORT_BYTECOUNTER_H_
