// Counts allocations, makes them fail, and checks every freed block. Tests use these functions to
// check that code allocates nothing, or that a failed allocation loses no data. Linking
// `test_allocations` replaces `operator new` and `operator delete` in a program. A program that
// allocates an over-aligned type then ends with an error. A program can have only one replacement,
// so all tests share this one.
#ifndef TESTS_SUPPORT_ALLOCATIONS_H_
#define TESTS_SUPPORT_ALLOCATIONS_H_

#include <cstddef>

namespace test_support {

/// Returns whether the program uses the replacement functions. Returns false under valgrind, which
/// installs its own allocator. In this case, no allocation is counted, and none is made to fail.
bool AreAllocationsReplaced() noexcept;

/// Returns the number of allocations that the calling thread has attempted. Under valgrind the
/// result is 0, so tests can check only upper limits.
std::size_t AllocationsSoFar() noexcept;

/// Calls `work` and returns the number of allocations that it attempts on the calling thread.
template <class Work>
std::size_t CountAllocations(Work work) {
  const std::size_t before = AllocationsSoFar();
  work();
  return AllocationsSoFar() - before;
}

/// Returns the number of blocks that any thread has allocated and no thread has freed.
///
/// The replacement functions abort the program if a freed block was allocated by another allocator,
/// is freed with the wrong size, or is freed twice. Without AddressSanitizer, they may miss a
/// second `delete` of a block with more than 4096 bytes. They may also miss the second `delete` of
/// a small block if 1024 small blocks were freed in between.
std::ptrdiff_t LiveAllocations() noexcept;

/// Selects how many allocations fail.
enum class FailureExtent {
  kOne,      ///< only the n-th allocation
  kAllFrom,  ///< the n-th allocation and all later ones
};

/// Selects the threads on which allocations are counted and fail.
enum class FailureThreads {
  kThis,  ///< only on the thread that creates the `AllocationFailure`
  kAll,   ///< on all threads
};

/// Makes the n-th allocation fail, counted from the construction of the object. The failing `new`
/// throws `std::bad_alloc`, or returns null if it has the argument `std::nothrow`. If `n` is 0, no
/// allocation fails. `extent` selects whether later allocations also fail, and `threads` selects
/// the threads whose allocations count. The failures end when the object is destroyed. Only one
/// object may exist at a time, and only one thread may use it.
class AllocationFailure {
 public:
  AllocationFailure(std::size_t n, FailureExtent extent, FailureThreads threads) noexcept;
  ~AllocationFailure() { Stop(); }
  AllocationFailure(const AllocationFailure&) = delete;
  AllocationFailure& operator=(const AllocationFailure&) = delete;

  /// Ends the failures before the object is destroyed. Later allocations succeed.
  void Stop() noexcept;

  /// Returns whether this object has made an allocation fail.
  bool HasHappened() const noexcept;
};

}  // namespace test_support

#endif  // TESTS_SUPPORT_ALLOCATIONS_H_
