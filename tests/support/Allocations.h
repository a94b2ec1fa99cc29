// Counts what goes through `operator new`, makes it fail, and keeps account of what comes back:
// for tests that promise that nothing is allocated, or that nothing is lost when nothing can be.
// Programs that link `test_allocations` have their allocation functions replaced; there is one
// replacement for all of them, since a program can have only one.
#ifndef TESTS_SUPPORT_ALLOCATIONS_H_
#define TESTS_SUPPORT_ALLOCATIONS_H_

#include <cstddef>

namespace test_support {

/// Whether the replaced functions are in use. Under valgrind, which puts an allocator of its own in
/// place, they are not: nothing is counted and nothing fails.
bool AreAllocationsReplaced() noexcept;

/// The allocations of the calling thread since the program started. Expect at most a number, never
/// exactly one, for the sake of valgrind.
std::size_t AllocationsSoFar() noexcept;

/// The allocations that `work` makes on the calling thread.
template <class Work>
std::size_t CountAllocations(Work work) {
  const std::size_t before = AllocationsSoFar();
  work();
  return AllocationsSoFar() - before;
}

/// The blocks of all threads that are allocated and not yet given back. A block that is given back
/// twice, with another size than its own, or that never came from here, ends the program.
std::ptrdiff_t LiveAllocations() noexcept;

/// Which allocations fail, and whose.
enum class FailureExtent {
  kOne,      ///< the n-th alone
  kAllFrom,  ///< the n-th and every one after it
};
enum class FailureThreads {
  kThis,  ///< the allocations of the calling thread count and fail
  kAll,   ///< those of all threads
};

/// While it lives, the n-th allocation from its making on (1: the next) throws `std::bad_alloc`.
/// One at a time; made, stopped and destroyed on one thread.
class AllocationFailure {
 public:
  AllocationFailure(std::size_t n, FailureExtent extent, FailureThreads threads) noexcept;
  ~AllocationFailure() { Stop(); }
  AllocationFailure(const AllocationFailure&) = delete;
  AllocationFailure& operator=(const AllocationFailure&) = delete;

  /// From here on nothing fails.
  void Stop() noexcept;

  /// Whether an allocation has failed.
  bool HasHappened() const noexcept;
};

}  // namespace test_support

#endif  // TESTS_SUPPORT_ALLOCATIONS_H_
