// Counts the allocations of a program. The functions are in a .cpp file of their own, because
// compilers warn about a mismatch if they see a replaced new and delete together.
#ifndef BENCHMARKS_SUPPORT_BYTECOUNTER_H_
#define BENCHMARKS_SUPPORT_BYTECOUNTER_H_

#include <cstddef>

namespace benchmarks {

/// Returns the bytes of all allocated blocks, including the allocator's rounding and block header.
std::size_t LiveBytes();

/// Returns the number of allocations since the program started. Both functions are for programs
/// with one thread.
std::size_t AllocationCount();

}  // namespace benchmarks

#endif  // BENCHMARKS_SUPPORT_BYTECOUNTER_H_
