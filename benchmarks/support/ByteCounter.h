// The allocation functions of a program, counting. A file of its own, since compilers that see both
// functions together take each for the other's mistake.
#ifndef BENCHMARKS_SUPPORT_BYTECOUNTER_H_
#define BENCHMARKS_SUPPORT_BYTECOUNTER_H_

#include <cstddef>

namespace benchmarks {

/// The bytes of all blocks that are allocated and not yet given back, as the allocator cuts them:
/// rounded up, and with what it keeps before each.
std::size_t LiveBytes();

/// The allocations since the program started. One thread only, like the other one.
std::size_t AllocationCount();

}  // namespace benchmarks

#endif  // BENCHMARKS_SUPPORT_BYTECOUNTER_H_
