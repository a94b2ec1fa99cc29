#include <orncore/filesupport/RecycledMemory.h>

#include <algorithm>
#include <limits>
#include <memory>
#include <new>
#include <stdexcept>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/Allocations.h"

namespace orncore::filesupport {
namespace {

using test_support::CountAllocations;

void Append(RecycledMemory& memory, std::string_view text) {
  memory.Reserve(text.size());
  std::ranges::copy(std::as_bytes(std::span(text)), memory.Spare().begin());
  memory.Commit(text.size());
}

std::string_view Text(const RecycledMemory& memory) {
  const auto bytes = memory.Bytes();
  return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

TEST(RecycledMemory, StartsEmptyWithRoom) {
  const RecycledMemory none(0);
  EXPECT_TRUE(none.Bytes().empty());
  RecycledMemory some(10'000);
  EXPECT_TRUE(some.Bytes().empty());
  EXPECT_GE(some.Spare().size(), 10'000U);
}

TEST(RecycledMemory, KeepsItsBytesWhileItGrows) {
  RecycledMemory memory(1);
  std::string expected;
  for (int i = 0; i < 2'000; ++i) {
    Append(memory, "some text, ");
    expected += "some text, ";
  }
  EXPECT_EQ(Text(memory), expected);
}

TEST(RecycledMemory, RefusesMoreThanThereCanBe) {
  RecycledMemory memory(1);
  Append(memory, "kept");
  EXPECT_THROW(memory.Reserve(std::numeric_limits<std::size_t>::max()), std::length_error);
  EXPECT_EQ(Text(memory), "kept");
}

// Whatever lies in the pool is in use meanwhile.
class RecycledMemoryPool : public testing::Test {
 protected:
  static constexpr int kMoreThanThePoolHolds = 32;

  void SetUp() override {
    if (!test_support::AreAllocationsReplaced()) GTEST_SKIP() << "nothing is counted";
  }

  static std::vector<std::unique_ptr<RecycledMemory>> Take(int count, std::size_t capacity) {
    std::vector<std::unique_ptr<RecycledMemory>> taken;
    for (int i = 0; i < count; ++i) taken.push_back(std::make_unique<RecycledMemory>(capacity));
    return taken;
  }

  static std::size_t AllocationsFor(std::size_t capacity) {
    return CountAllocations([capacity] { const RecycledMemory memory(capacity); });
  }

  const std::vector<std::unique_ptr<RecycledMemory>> inUse_ = Take(kMoreThanThePoolHolds, 1);
};

TEST_F(RecycledMemoryPool, RecyclesASmallBuffer) {
  for (const std::size_t capacity : {std::size_t{100'000}, std::size_t{1} << 20}) {
    EXPECT_EQ(AllocationsFor(capacity), 1U) << capacity;
    EXPECT_EQ(AllocationsFor(capacity), 0U) << capacity;
  }
}

TEST_F(RecycledMemoryPool, RecyclesOnlyBuffersThatAreLargeEnough) {
  AllocationsFor(100'000);
  EXPECT_EQ(AllocationsFor(100'001), 1U);
  EXPECT_EQ(AllocationsFor(99'999), 0U);
}

TEST_F(RecycledMemoryPool, FreesALargeBufferAtOnce) {
  AllocationsFor((std::size_t{1} << 20) + 1);
  EXPECT_EQ(AllocationsFor(1), 1U);
}

TEST_F(RecycledMemoryPool, KeepsAFewBuffersOnly) {
  Take(kMoreThanThePoolHolds, 100'000).clear();
  std::vector<std::unique_ptr<RecycledMemory>> taken(kMoreThanThePoolHolds);
  const std::size_t allocations = CountAllocations([&taken] {
    for (auto& memory : taken) memory = std::make_unique<RecycledMemory>(100'000);
  });
  const std::size_t buffers = allocations - taken.size();  // beside the objects themselves
  EXPECT_LT(buffers, taken.size());
  EXPECT_GT(buffers, taken.size() / 2);
}

TEST_F(RecycledMemoryPool, GrowsByDoubling) {
  RecycledMemory memory(1'000'000);
  memory.Commit(memory.Spare().size());
  memory.Reserve(1);
  EXPECT_GE(memory.Spare().size(), 1'000'000U);
  const std::size_t room = memory.Spare().size();
  EXPECT_EQ(CountAllocations([&] { memory.Reserve(room); }), 0U);
  EXPECT_EQ(CountAllocations([&] { memory.Reserve(room + 1); }), 1U);
}

TEST(RecycledMemory, HandsEachBufferToOne) {
  RecycledMemory a(1);
  RecycledMemory b(1);
  Append(a, "aaaa");
  Append(b, "bb");
  EXPECT_EQ(Text(a), "aaaa");
  EXPECT_EQ(Text(b), "bb");
}

}  // namespace
}  // namespace orncore::filesupport
