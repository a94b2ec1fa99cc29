#include "ornwhatsnew/src/rules/IdentitySet.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <set>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/PlainText.h"
#include "tests/support/RandomSource.h"

namespace ornwhatsnew {
namespace {

using test_support::kSeed;
using test_support::PlainHash;
using test_support::RandomSource;
using testing::ElementsAre;

const Guid kFirst("01234567-89ab-cdef-0123-456789abcdef");
const Guid kSecond("7f000000-0000-0000-0000-000000000001");
const Guid kThird("80000000-0000-0000-0000-000000000000");

// Returns up to 39 random identities out of 60 possible ones. An identity can occur several times.
std::vector<Guid> RandomGuids(RandomSource& random) {
  std::vector<Guid> guids;
  for (std::size_t count = random.Below(40); count > 0; --count) {
    guids.push_back(PlainHash(std::to_string(random.Below(60))));
  }
  return guids;
}

std::vector<Guid> ElementsOf(const IdentitySet& set) {
  return {set.begin(), set.end()};
}

// Returns an identity whose last byte is `number`. All results have the same first eight bytes.
Guid GuidWithCommonStart(unsigned number) {
  std::array<std::uint8_t, Guid::kByteLength> bytes{};
  bytes.front() = 0x7F;
  bytes.back() = static_cast<std::uint8_t>(number);
  return Guid(bytes);
}

TEST(IdentitySet, StoresEachIdentityOnceInAscendingOrder) {
  EXPECT_THAT(ElementsOf(MakeIdentitySet({kThird, kFirst, kSecond, kThird})),
              ElementsAre(kFirst, kSecond, kThird));
  EXPECT_TRUE(MakeIdentitySet({}).empty());
}

TEST(IdentitySet, ContainsExactlyItsElements) {
  EXPECT_FALSE(IdentitySet().contains(Guid()));
  EXPECT_FALSE(MakeIdentitySet({}).contains(Guid()));
  RandomSource random(kSeed);
  for (int i = 0; i < 200; ++i) {
    const std::vector<Guid> guids = RandomGuids(random);
    const IdentitySet set = MakeIdentitySet(guids);
    for (int number = 0; number < 60; ++number) {
      const Guid guid = PlainHash(std::to_string(number));
      EXPECT_EQ(set.contains(guid), std::ranges::count(guids, guid) > 0) << "seed " << kSeed;
    }
  }
}

TEST(IdentitySet, FindsTheSmallestAndTheGreatestIdentity) {
  const Guid greatest("ffffffff-ffff-ffff-ffff-ffffffffffff");
  const IdentitySet set = MakeIdentitySet({greatest, kFirst, Guid()});
  EXPECT_TRUE(set.contains(Guid()));
  EXPECT_TRUE(set.contains(greatest));
  EXPECT_FALSE(MakeIdentitySet({kFirst}).contains(greatest));
}

TEST(IdentitySet, FindsIdentitiesThatBeginAlike) {
  std::vector<Guid> guids;
  for (unsigned number = 0; number < 200; number += 2) guids.push_back(GuidWithCommonStart(number));
  const IdentitySet set = MakeIdentitySet(guids);
  for (unsigned number = 0; number < 200; ++number) {
    EXPECT_EQ(set.contains(GuidWithCommonStart(number)), number % 2 == 0) << number;
  }
}

TEST(IdentitySet, UnionAgreesWithAStandardSet) {
  RandomSource random(kSeed);
  for (int i = 0; i < 200; ++i) {
    const std::vector<Guid> some = RandomGuids(random);
    const std::vector<Guid> others = RandomGuids(random);
    std::set<Guid> expected(some.begin(), some.end());
    expected.insert(others.begin(), others.end());
    const IdentitySet all = UnionOf(MakeIdentitySet(some), MakeIdentitySet(others));
    EXPECT_TRUE(std::ranges::equal(all, expected)) << "round " << i << ", seed " << kSeed;
  }
}

TEST(IdentitySet, ReadsAnEmptyElementAsTheNilIdentity) {
  EXPECT_THAT(ElementsOf(ParseIdentities(kSecond.AsUTF8String() + "  " + kFirst.AsUTF8String())),
              ElementsAre(Guid(), kFirst, kSecond));
}

TEST(IdentitySet, ReadsAMalformedElementAsTheNilIdentity) {
  EXPECT_THAT(ElementsOf(ParseIdentities("rubbish more")), ElementsAre(Guid()));
}

TEST(IdentitySet, ReadsNoIdentitiesFromAnEmptyList) {
  EXPECT_TRUE(ParseIdentities("").empty());
}

TEST(IdentitySet, ReadsBothLetterCases) {
  EXPECT_THAT(ElementsOf(ParseIdentities("01234567-89AB-CDEF-0123-456789ABCDEF")),
              ElementsAre(kFirst));
}

TEST(IdentitySet, WritesIdentitiesInAscendingOrder) {
  EXPECT_EQ(FormatIdentities(MakeIdentitySet({kThird, Guid(), kSecond})),
            "00000000-0000-0000-0000-000000000000 7f000000-0000-0000-0000-000000000001 "
            "80000000-0000-0000-0000-000000000000");
  EXPECT_EQ(FormatIdentities({}), "");
}

TEST(IdentitySet, ReadsBackWhatItWrites) {
  RandomSource random(kSeed);
  for (int i = 0; i < 100; ++i) {
    const IdentitySet identities = MakeIdentitySet(RandomGuids(random));
    EXPECT_EQ(ElementsOf(ParseIdentities(FormatIdentities(identities))), ElementsOf(identities));
  }
}

}  // namespace
}  // namespace ornwhatsnew
