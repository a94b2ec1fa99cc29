#include "benchmarks/support/ByteCounter.h"

#include <algorithm>
#include <cstdlib>
#include <new>

#include <malloc.h>

namespace benchmarks {
namespace {

// The size of the header that the allocator stores before each block.
constexpr std::size_t kBlockHeader = sizeof(std::size_t);

std::size_t liveBytes = 0;
std::size_t peakBytes = 0;
std::size_t allocationCount = 0;

}  // namespace

std::size_t LiveBytes() {
  return liveBytes;
}

std::size_t PeakBytes() {
  return peakBytes;
}

void RestartPeak() {
  peakBytes = liveBytes;
}

std::size_t AllocationCount() {
  return allocationCount;
}

}  // namespace benchmarks

// Replace only these operators, because the standard library's operators for arrays and for
// `std::nothrow` call them.
void* operator new(std::size_t size) {
  void* const block = std::malloc(size);
  if (block == nullptr) throw std::bad_alloc();
  benchmarks::liveBytes += malloc_usable_size(block) + benchmarks::kBlockHeader;
  benchmarks::peakBytes = std::max(benchmarks::peakBytes, benchmarks::liveBytes);
  ++benchmarks::allocationCount;
  return block;
}

void operator delete(void* block) noexcept {
  if (block == nullptr) return;
  benchmarks::liveBytes -= malloc_usable_size(block) + benchmarks::kBlockHeader;
  std::free(block);
}

void operator delete(void* block, std::size_t) noexcept {
  operator delete(block);
}
