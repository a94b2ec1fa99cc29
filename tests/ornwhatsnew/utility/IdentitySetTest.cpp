#include <ornwhatsnew/utility/IdentitySet.h>

#include <algorithm>
#include <array>
#include <set>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <ornwhatsnew/utility/SharedTypes.h>

#include "tests/support/RandomSource.h"

namespace ornwhatsnew {
namespace {

using test_support::RandomSource;
using testing::ElementsAre;

constexpr std::uint64_t kSeed = 20251120;

using Bytes = std::array<std::uint8_t, Guid::kByteLength>;

// An identity of the first byte and the last.
Guid MakeGuid(unsigned first, unsigned last) {
  Bytes bytes{};
  bytes.front() = static_cast<std::uint8_t>(first);
  bytes.back() = static_cast<std::uint8_t>(last);
  return Guid(bytes);
}

// Identities whose bytes behind the first `alike` are random, each one of `choices` values: from
// evenly spread, as hashes are, to nearly all the same.
std::vector<Guid> RandomGuids(RandomSource& random, std::size_t count, std::size_t alike,
                              std::size_t choices) {
  std::vector<Guid> guids;
  for (std::size_t i = 0; i < count; ++i) {
    Bytes bytes{};
    for (std::size_t place = alike; place < bytes.size(); ++place) {
      bytes[place] = static_cast<std::uint8_t>(random.Below(choices) * 255 / choices);
    }
    guids.emplace_back(bytes);
  }
  return guids;
}

void ExpectSame(const IdentitySet& guids, const std::set<Guid>& expected) {
  EXPECT_EQ(guids.size(), expected.size());
  EXPECT_TRUE(std::ranges::equal(guids, expected));
}

TEST(IdentitySet, IsEmptyAtFirst) {
  const IdentitySet guids;
  EXPECT_TRUE(guids.empty());
  EXPECT_FALSE(guids.contains(Guid()));
  EXPECT_EQ(guids.begin(), guids.end());
}

TEST(IdentitySet, HoldsTheNilIdentityLikeAnyOther) {
  IdentitySet guids = {MakeGuid(1, 1)};
  EXPECT_FALSE(guids.contains(Guid()));
  guids.insert(Guid());
  EXPECT_TRUE(guids.contains(Guid()));
  EXPECT_THAT(guids, ElementsAre(Guid(), MakeGuid(1, 1)));
}

TEST(IdentitySet, OrdersByAllBytesAsUnsignedNumbers) {
  const IdentitySet guids = {MakeGuid(0x80, 0), MakeGuid(0x7F, 0xFF), MakeGuid(0x7F, 0x80),
                             MakeGuid(0xFF, 0), MakeGuid(0, 1)};
  EXPECT_THAT(guids, ElementsAre(MakeGuid(0, 1), MakeGuid(0x7F, 0x80), MakeGuid(0x7F, 0xFF),
                                 MakeGuid(0x80, 0), MakeGuid(0xFF, 0)));
}

TEST(IdentitySet, InsertsAnotherSetAndItself) {
  IdentitySet guids = {MakeGuid(1, 0), MakeGuid(3, 0)};
  guids.insert(IdentitySet{MakeGuid(2, 0), MakeGuid(3, 0)});
  EXPECT_THAT(guids, ElementsAre(MakeGuid(1, 0), MakeGuid(2, 0), MakeGuid(3, 0)));
  const IdentitySet before = guids;
  guids.insert(guids);
  EXPECT_EQ(guids, before);
}

TEST(IdentitySet, FindsNothingOnceItIsCleared) {
  IdentitySet guids = {MakeGuid(1, 0)};
  guids.clear();
  EXPECT_TRUE(guids.empty());
  EXPECT_FALSE(guids.contains(MakeGuid(1, 0)));
  guids.insert(MakeGuid(2, 0));
  EXPECT_TRUE(guids.contains(MakeGuid(2, 0)));
}

TEST(IdentitySet, SwapsWithASetOfAnotherSize) {
  RandomSource random(kSeed);
  const std::vector<Guid> many = RandomGuids(random, 1000, 0, 255);
  IdentitySet a(many);
  IdentitySet b = {MakeGuid(1, 0)};
  a.swap(b);
  EXPECT_THAT(a, ElementsAre(MakeGuid(1, 0)));
  for (const Guid& guid : many) EXPECT_TRUE(b.contains(guid));
  EXPECT_FALSE(a.contains(many.front()));
}

struct Shape {
  std::size_t alike;
  std::size_t choices;
};

// Spread evenly, in steps, in a few clumps, all in one place of the table, and all but the same.
class IdentitySetShapes : public testing::TestWithParam<Shape> {};

TEST_P(IdentitySetShapes, AgreesWithAnOrderedSet) {
  RandomSource random(kSeed);
  for (const std::size_t count : {1U, 2U, 3U, 4U, 5U, 7U, 8U, 31U, 64U, 1000U, 5000U}) {
    SCOPED_TRACE(testing::Message() << count << " identities, seed " << kSeed);
    const std::vector<Guid> guids =
        RandomGuids(random, count, GetParam().alike, GetParam().choices);
    const std::set<Guid> expected(guids.begin(), guids.end());
    const IdentitySet set(guids);
    ExpectSame(set, expected);
    for (const Guid& guid : RandomGuids(random, 500, GetParam().alike, GetParam().choices)) {
      EXPECT_EQ(set.contains(guid), expected.contains(guid));
    }
    for (const Guid& guid : RandomGuids(random, 100, 0, 255)) {
      EXPECT_EQ(set.contains(guid), expected.contains(guid));
    }
  }
}

TEST_P(IdentitySetShapes, InsertsLikeAnOrderedSet) {
  RandomSource random(kSeed);
  IdentitySet set;
  std::set<Guid> expected;
  for (int round = 0; round < 50; ++round) {
    const std::vector<Guid> guids =
        RandomGuids(random, random.Below(20), GetParam().alike, GetParam().choices);
    if (round % 2 == 0) {
      set.insert(IdentitySet(guids));
    } else {
      for (const Guid& guid : guids) set.insert(guid);
    }
    expected.insert(guids.begin(), guids.end());
    ExpectSame(set, expected);
  }
}

INSTANTIATE_TEST_SUITE_P(, IdentitySetShapes,
                         testing::Values(Shape{0, 255}, Shape{0, 16}, Shape{0, 2}, Shape{8, 255},
                                         Shape{15, 255}, Shape{16, 1}));

}  // namespace
}  // namespace ornwhatsnew
