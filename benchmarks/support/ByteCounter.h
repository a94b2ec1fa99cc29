// Counts the allocations of a program. ByteCounter.cpp replaces new and delete. It is a separate
// file, because compilers report a mismatch of new and delete if they inline both.
#ifndef BENCHMARKS_SUPPORT_BYTECOUNTER_H_
#define BENCHMARKS_SUPPORT_BYTECOUNTER_H_

#include <cstddef>

namespace benchmarks {

/// Returns the bytes of all allocated blocks, including the allocator's rounding and block header.
std::size_t LiveBytes();

/// Returns the number of allocations since the program started. Both functions require that the
/// program has only one thread.
std::size_t AllocationCount();

}  // namespace benchmarks

#endif  // BENCHMARKS_SUPPORT_BYTECOUNTER_H_
