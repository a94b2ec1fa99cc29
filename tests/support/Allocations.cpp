#include "tests/support/Allocations.h"

#include <array>
#include <atomic>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <mutex>
#include <new>
#include <utility>

#include "tests/support/Sanitizers.h"

namespace test_support {
namespace {

/// The header that is in memory directly before each allocated block.
struct alignas(std::max_align_t) BlockHead {
  std::uint64_t state;
  std::size_t size;
};

constexpr std::uint64_t kLive = 0x6576696C61206C6C;
constexpr std::uint64_t kFreed = 0x6B63616220657667;

thread_local std::size_t allocations = 0;
thread_local bool isFailingThread = false;
std::atomic<std::ptrdiff_t> liveAllocations = 0;

/// The failure that the current `AllocationFailure` requests. The allocation that decreases `left`
/// from 1 to 0 is the first one that fails. If `left` is 0 at first, no allocation fails.
struct {
  std::atomic<bool> isOn = false;
  std::atomic<bool> hasHappened = false;
  std::atomic<std::size_t> left = 0;
  FailureExtent extent = FailureExtent::kOne;
  FailureThreads threads = FailureThreads::kThis;
} failure;

bool ShouldFail() noexcept {
  if (!failure.isOn) return false;
  if (failure.threads == FailureThreads::kThis && !isFailingThread) return false;
  if (failure.hasHappened) return failure.extent == FailureExtent::kAllFrom;
  if (failure.left.fetch_sub(1) != 1) return false;
  failure.hasHappened = true;
  return true;
}

[[noreturn]] void Die(const char* reason) {
  static_cast<void>(std::fputs(reason, stderr));
  std::abort();
}

#if !defined(TESTS_HAS_ADDRESS_SANITIZER)
/// Frees a large block immediately, but a small block only after 1024 more small blocks have been
/// released. Until then, the header of the block contains `kFreed`, so `HeadOf` detects a second
/// free. AddressSanitizer detects a second free itself, but only if blocks are freed immediately.
void Release(BlockHead* head) noexcept {
  constexpr std::size_t kLargestKept = 4096;
  static constinit std::mutex mutex;
  static constinit std::array<void*, 1024> kept{};
  static constinit std::size_t next = 0;
  if (head->size > kLargestKept) return std::free(head);
  void* oldest = nullptr;
  {
    const std::lock_guard lock(mutex);
    oldest = std::exchange(kept[next], head);
    next = (next + 1) % kept.size();
  }
  std::free(oldest);
}
#else
void Release(BlockHead* head) noexcept {
  std::free(head);
}
#endif

BlockHead* HeadOf(void* block) noexcept {
  BlockHead* const head = static_cast<BlockHead*>(block) - 1;
  if (head->state == kFreed) Die("a block was freed twice\n");
  if (head->state != kLive) Die("a block was freed that another allocator allocated\n");
  return head;
}

void* Allocate(std::size_t size) {
  ++allocations;
  if (ShouldFail() || size > SIZE_MAX - sizeof(BlockHead)) throw std::bad_alloc();
  void* const memory = std::malloc(sizeof(BlockHead) + size);
  if (memory == nullptr) throw std::bad_alloc();
  ++liveAllocations;
  return ::new (memory) BlockHead{kLive, size} + 1;
}

void Free(void* block) noexcept {
  if (block == nullptr) return;
  BlockHead* const head = HeadOf(block);
  head->state = kFreed;
  --liveAllocations;
  Release(head);
}

}  // namespace

bool AreAllocationsReplaced() noexcept {
  const std::size_t before = allocations;
  ::operator delete(::operator new(1));
  return allocations != before;
}

std::size_t AllocationsSoFar() noexcept {
  return allocations;
}

std::ptrdiff_t LiveAllocations() noexcept {
  return liveAllocations;
}

AllocationFailure::AllocationFailure(std::size_t n, FailureExtent extent,
                                     FailureThreads threads) noexcept {
  isFailingThread = true;
  failure.left = n;
  failure.hasHappened = false;
  failure.extent = extent;
  failure.threads = threads;
  failure.isOn = true;
}

void AllocationFailure::Stop() noexcept {
  failure.isOn = false;
  isFailingThread = false;
}

bool AllocationFailure::HasHappened() const noexcept {
  return failure.hasHappened;
}

}  // namespace test_support

// By default, the other forms of `operator new` and `operator delete`, such as `operator new[]`,
// call `operator new(std::size_t)` or `operator delete(void*)`. Sanitizers replace each form
// separately, so this file defines each form that the tests use. The forms with an alignment do not
// accept over-aligned types. This file does not define `operator delete` with `std::nothrow`.
void* operator new(std::size_t size) {
  return test_support::Allocate(size);
}

void* operator new[](std::size_t size) {
  return test_support::Allocate(size);
}

void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  try {
    return test_support::Allocate(size);
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
}

void* operator new[](std::size_t size, const std::nothrow_t& tag) noexcept {
  return ::operator new(size, tag);
}

// `std::pmr::new_delete_resource` uses this form for every alignment.
void* operator new(std::size_t size, std::align_val_t alignment) {
  if (static_cast<std::size_t>(alignment) > alignof(std::max_align_t)) {
    test_support::Die("an over-aligned block was allocated\n");
  }
  return test_support::Allocate(size);
}

void operator delete(void* block) noexcept {
  test_support::Free(block);
}

void operator delete[](void* block) noexcept {
  test_support::Free(block);
}

void operator delete(void* block, std::size_t size) noexcept {
  if (block != nullptr && test_support::HeadOf(block)->size != size) {
    test_support::Die("a block was freed with the wrong size\n");
  }
  test_support::Free(block);
}

void operator delete[](void* block, std::size_t size) noexcept {
  ::operator delete(block, size);
}

void operator delete(void* block, std::align_val_t) noexcept {
  ::operator delete(block);
}

void operator delete(void* block, std::size_t size, std::align_val_t) noexcept {
  ::operator delete(block, size);
}
