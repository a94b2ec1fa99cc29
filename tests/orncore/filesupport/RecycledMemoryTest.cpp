#include <orncore/filesupport/RecycledMemory.h>

#include <algorithm>
#include <limits>
#include <new>
#include <stdexcept>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

namespace orncore::filesupport {
namespace {

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

TEST(RecycledMemory, RecyclesASmallBuffer) {
  const std::byte* first = nullptr;
  {
    const RecycledMemory memory(100'000);
    first = memory.Bytes().data();
  }
  // One of the few buffers in the pool is the one just given back.
  std::vector<std::unique_ptr<RecycledMemory>> taken;
  bool found = false;
  for (int i = 0; i < 8; ++i) {
    taken.push_back(std::make_unique<RecycledMemory>(100'000));
    found = found || taken.back()->Bytes().data() == first;
  }
  EXPECT_TRUE(found);
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
