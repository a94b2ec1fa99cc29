// Counts allocations, makes them fail, and checks every freed block. Tests use this to check that
// code allocates nothing, or that a failed allocation loses no data. Linking `test_allocations`
// replaces the allocation functions of a program. A program can have only one replacement, so all
// tests share this one.
#ifndef TESTS_SUPPORT_ALLOCATIONS_H_
#define TESTS_SUPPORT_ALLOCATIONS_H_

#include <cstddef>

namespace test_support {

/// Returns whether the program uses the replaced functions. It does not under valgrind, which
/// installs its own allocator. Then no allocation is counted and none fails.
bool AreAllocationsReplaced() noexcept;

/// Returns the number of allocations of the calling thread since the program started. Under
/// valgrind the result is 0, so tests must expect only an upper limit.
std::size_t AllocationsSoFar() noexcept;

/// Returns the number of allocations that `work` makes on the calling thread.
template <class Work>
std::size_t CountAllocations(Work work) {
  const std::size_t before = AllocationsSoFar();
  work();
  return AllocationsSoFar() - before;
}

/// Returns the number of blocks that any thread has allocated and no thread has freed.
///
/// The replaced functions abort the program if a block is freed twice, with a wrong size, or if
/// another allocator allocated it.
std::ptrdiff_t LiveAllocations() noexcept;

/// How many allocations fail.
enum class FailureExtent {
  kOne,      ///< only the n-th allocation
  kAllFrom,  ///< the n-th allocation and all later ones
};

/// On which threads allocations are counted and fail.
enum class FailureThreads {
  kThis,  ///< only on the thread that creates the `AllocationFailure`
  kAll,   ///< on all threads
};

/// Makes allocations throw `std::bad_alloc` while it exists. `n` counts from the construction: 1 is
/// the next allocation, 0 lets none fail. Only one object may exist at a time. Use it from one
/// thread.
class AllocationFailure {
 public:
  AllocationFailure(std::size_t n, FailureExtent extent, FailureThreads threads) noexcept;
  ~AllocationFailure() { Stop(); }
  AllocationFailure(const AllocationFailure&) = delete;
  AllocationFailure& operator=(const AllocationFailure&) = delete;

  /// Stops the failures early. Later allocations succeed.
  void Stop() noexcept;

  /// Returns whether an allocation has failed.
  bool HasHappened() const noexcept;
};

}  // namespace test_support

#endif  // TESTS_SUPPORT_ALLOCATIONS_H_
