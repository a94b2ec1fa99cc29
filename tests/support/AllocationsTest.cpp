#include <atomic>
#include <new>
#include <thread>

#include <gtest/gtest.h>

#include "tests/support/Allocations.h"

namespace test_support {
namespace {

class Allocations : public testing::Test {
 protected:
  void SetUp() override {
    if (!AreAllocationsReplaced()) GTEST_SKIP() << "another allocator is in use";
  }

  /// Allocates and frees a block. Returns whether the allocation threw `std::bad_alloc`.
  static bool NextFails() {
    try {
      ::operator delete(::operator new(8));
      return false;
    } catch (const std::bad_alloc&) {
      return true;
    }
  }
};

TEST_F(Allocations, AreCountedForEachThread) {
  EXPECT_EQ(CountAllocations([] { ::operator delete(::operator new(8)); }), 1U);
  const std::size_t before = AllocationsSoFar();
  std::thread([] { ::operator delete(::operator new(8)); }).join();
  EXPECT_LE(AllocationsSoFar() - before, 1U) << "only the start of the thread may allocate";
}

// Sanitizers define every form of `operator new` and `operator delete`, but the program must use
// the replacement functions.
TEST_F(Allocations, AreCountedInEveryForm) {
  EXPECT_EQ(CountAllocations([] { ::operator delete[](::operator new[](8)); }), 1U);
  EXPECT_EQ(CountAllocations([] { ::operator delete(::operator new(8, std::nothrow)); }), 1U);
  EXPECT_EQ(CountAllocations([] { ::operator delete[](::operator new[](8, std::nothrow)); }), 1U);
  EXPECT_EQ(CountAllocations([] {
              const std::align_val_t alignment{8};
              ::operator delete(::operator new(8, alignment), alignment);
            }),
            1U);
}

TEST_F(Allocations, ReturnNullOnFailureWithNothrow) {
  AllocationFailure failure(1, FailureExtent::kAllFrom, FailureThreads::kThis);
  void* const block = ::operator new(8, std::nothrow);
  void* const blocks = ::operator new[](8, std::nothrow);
  failure.Stop();
  EXPECT_EQ(block, nullptr);
  EXPECT_EQ(blocks, nullptr);
}

TEST_F(Allocations, AreLiveUntilTheyAreFreed) {
  const std::ptrdiff_t before = LiveAllocations();
  void* const block = ::operator new(8);
  const std::ptrdiff_t between = LiveAllocations();
  ::operator delete(block);
  EXPECT_EQ(between, before + 1);
  EXPECT_EQ(LiveAllocations(), before);
}

TEST_F(Allocations, FailAtTheGivenNumber) {
  AllocationFailure failure(2, FailureExtent::kOne, FailureThreads::kThis);
  const bool first = NextFails();
  const bool early = failure.HasHappened();
  const bool second = NextFails();
  const bool third = NextFails();
  failure.Stop();
  EXPECT_FALSE(first || early);
  EXPECT_TRUE(second && failure.HasHappened());
  EXPECT_FALSE(third);
}

TEST_F(Allocations, FailFromTheGivenNumberOn) {
  AllocationFailure failure(2, FailureExtent::kAllFrom, FailureThreads::kThis);
  const bool first = NextFails();
  const bool second = NextFails();
  const bool third = NextFails();
  failure.Stop();
  EXPECT_FALSE(first);
  EXPECT_TRUE(second && third);
  EXPECT_FALSE(NextFails());
}

TEST_F(Allocations, FailForOtherThreadsOnlyOnRequest) {
  for (const FailureThreads threads : {FailureThreads::kThis, FailureThreads::kAll}) {
    bool fails = false;
    std::atomic<bool> isReady = false;
    std::thread other([&] {
      isReady.wait(false);
      fails = NextFails();
    });
    AllocationFailure failure(1, FailureExtent::kOne, threads);
    isReady = true;
    isReady.notify_one();
    other.join();
    failure.Stop();
    EXPECT_EQ(fails, threads == FailureThreads::kAll);
  }
}

using AllocationsDeathTest = Allocations;

TEST_F(AllocationsDeathTest, FreeingABlockTwiceEndsTheProgram) {
  // Call `operator delete` through a volatile function pointer, because the compiler would reject a
  // second direct call.
  void (*volatile freeBlock)(void*) = ::operator delete;
  EXPECT_DEATH(
      {
        void* const block = ::operator new(8);
        freeBlock(block);
        freeBlock(block);
      },
      "freed twice|heap-use-after-free");
}

// Some compilers, such as clang 14, declare the sized form of `operator delete` only if an option
// is set.
#ifdef __cpp_sized_deallocation
TEST_F(AllocationsDeathTest, FreeingABlockWithTheWrongSizeEndsTheProgram) {
  EXPECT_DEATH(::operator delete (::operator new(8), std::size_t{9}), "wrong size");
}
#endif

}  // namespace
}  // namespace test_support
