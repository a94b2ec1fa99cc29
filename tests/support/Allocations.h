// Counts allocations, makes them fail, and checks what is freed. For tests that nothing is
// allocated, or that nothing is lost when an allocation fails. Linking `test_allocations` replaces
// the allocation functions of a program. A program can have only one replacement, so all tests
// share it.
#ifndef TESTS_SUPPORT_ALLOCATIONS_H_
#define TESTS_SUPPORT_ALLOCATIONS_H_

#include <cstddef>

namespace test_support {

/// Returns whether the replaced functions are in use. Valgrind uses its own allocator; nothing is
/// counted and nothing fails then.
bool AreAllocationsReplaced() noexcept;

/// Returns the allocations of the calling thread since the program started. Under valgrind this is
/// 0, so tests must only expect an upper limit.
std::size_t AllocationsSoFar() noexcept;

/// Returns the number of allocations that `work` makes on the calling thread.
template <class Work>
std::size_t CountAllocations(Work work) {
  const std::size_t before = AllocationsSoFar();
  work();
  return AllocationsSoFar() - before;
}

/// Returns the number of blocks of all threads that are allocated and not freed. Freeing a block
/// twice, with a wrong size, or from another allocator ends the program.
std::ptrdiff_t LiveAllocations() noexcept;

/// Which allocations fail.
enum class FailureExtent {
  kOne,      ///< only the n-th
  kAllFrom,  ///< the n-th and all later ones
};
enum class FailureThreads {
  kThis,  ///< the allocations of the calling thread count and fail
  kAll,   ///< those of all threads
};

/// While this object exists, the n-th allocation after its construction (1: the next one) throws
/// `std::bad_alloc`. Only one object may exist. Use it from one thread.
class AllocationFailure {
 public:
  AllocationFailure(std::size_t n, FailureExtent extent, FailureThreads threads) noexcept;
  ~AllocationFailure() { Stop(); }
  AllocationFailure(const AllocationFailure&) = delete;
  AllocationFailure& operator=(const AllocationFailure&) = delete;

  /// Lets no more allocations fail.
  void Stop() noexcept;

  /// Returns whether an allocation has failed.
  bool HasHappened() const noexcept;
};

}  // namespace test_support

#endif  // TESTS_SUPPORT_ALLOCATIONS_H_
