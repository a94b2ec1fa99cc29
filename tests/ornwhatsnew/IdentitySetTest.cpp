#include "ornwhatsnew/src/rules/IdentitySet.h"

#include <algorithm>
#include <set>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/PlainText.h"
#include "tests/support/RandomSource.h"

namespace ornwhatsnew {
namespace {

using test_support::PlainHash;
using test_support::RandomSource;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::uint64_t kSeed = 20251120;

const Guid kFirst("01234567-89ab-cdef-0123-456789abcdef");
const Guid kSecond("7f000000-0000-0000-0000-000000000001");
const Guid kThird("80000000-0000-0000-0000-000000000000");

// Identities from a small range, so that many are equal.
std::vector<Guid> RandomGuids(RandomSource& random) {
  std::vector<Guid> guids;
  for (std::size_t count = random.Below(40); count > 0; --count) {
    guids.push_back(PlainHash(std::to_string(random.Below(60))));
  }
  return guids;
}

TEST(IdentitySet, MadeSetHoldsEachIdentityOnceInAscendingOrder) {
  EXPECT_THAT(MakeIdentitySet({kThird, kFirst, kSecond, kThird}),
              ElementsAre(kFirst, kSecond, kThird));
  EXPECT_THAT(MakeIdentitySet({}), IsEmpty());
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
  EXPECT_THAT(ParseIdentities(kSecond.AsUTF8String() + "  " + kFirst.AsUTF8String()),
              ElementsAre(Guid(), kFirst, kSecond));
}

TEST(IdentitySet, ReadsAnElementThatIsNoIdentityAsTheNilIdentity) {
  EXPECT_THAT(ParseIdentities("rubbish more"), ElementsAre(Guid()));
}

TEST(IdentitySet, ReadsNoIdentitiesFromAnEmptyList) {
  EXPECT_THAT(ParseIdentities(""), IsEmpty());
}

TEST(IdentitySet, ReadsIdentitiesInEitherLetterCase) {
  EXPECT_THAT(ParseIdentities("01234567-89AB-CDEF-0123-456789ABCDEF"), ElementsAre(kFirst));
}

TEST(IdentitySet, WritesIdentitiesInTheOrderOfTheirTexts) {
  EXPECT_EQ(FormatIdentities({kThird, Guid(), kSecond}),
            "00000000-0000-0000-0000-000000000000 7f000000-0000-0000-0000-000000000001 "
            "80000000-0000-0000-0000-000000000000");
  EXPECT_EQ(FormatIdentities({}), "");
}

TEST(IdentitySet, ReadsBackWhatItWrites) {
  RandomSource random(kSeed);
  for (int i = 0; i < 100; ++i) {
    const IdentitySet identities = MakeIdentitySet(RandomGuids(random));
    EXPECT_EQ(ParseIdentities(FormatIdentities(identities)), identities);
  }
}

}  // namespace
}  // namespace ornwhatsnew
