#include <algorithm>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "ornwhatsnew/src/rules/KeyOrder.h"
#include "tests/support/RandomSource.h"

namespace ornwhatsnew {
namespace {

using Order = std::list<std::string>;
using test_support::kSeed;
using test_support::RandomSource;

constexpr const char* kKeys[] = {"", "A", "B", "C", "D", "E", "F", "a", "UNREVIEWED"};

Order RandomOrder(RandomSource& random) {
  Order order;
  for (std::size_t count = random.Below(12); count > 0; --count) {
    order.emplace_back(random.Pick(kKeys));
  }
  return order;
}

// Returns up to seven different random keys to move. Some of them may be missing from the key order
// of the test.
MovingKeys RandomKeys(RandomSource& random) {
  MovingKeys keys;
  for (std::size_t count = random.Below(8); count > 0; --count) {
    const std::string_view key = random.Pick(kKeys);
    if (std::ranges::find(keys, key) == keys.end()) keys.push_back(key);
  }
  return keys;
}

TEST(KeyOrder, MovesKeysToTheFrontInTheGivenOrder) {
  Order order = {"A", "B", "C", "D"};
  MoveKeysToFront(order, {"D", "B"});
  EXPECT_EQ(order, (Order{"D", "B", "A", "C"}));
}

TEST(KeyOrder, MovesKeysToTheBackInTheGivenOrder) {
  Order order = {"A", "B", "C", "D"};
  MoveKeysToBack(order, {"C", "A"});
  EXPECT_EQ(order, (Order{"B", "D", "C", "A"}));
}

TEST(KeyOrder, MovesARepeatedKeyOnce) {
  Order order = {"A", "B", "A", "C", "A"};
  MoveKeysToFront(order, {"A"});
  EXPECT_EQ(order, (Order{"A", "B", "C"}));

  order = {"A", "B", "A", "C", "A"};
  MoveKeysToBack(order, {"A"});
  EXPECT_EQ(order, (Order{"B", "C", "A"}));
}

TEST(KeyOrder, KeepsRepeatsOfOtherKeys) {
  Order order = {"A", "B", "A"};
  MoveKeysToFront(order, {"B"});
  EXPECT_EQ(order, (Order{"B", "A", "A"}));
}

TEST(KeyOrder, InsertsKeysThatAreNotInTheOrder) {
  Order order = {"A"};
  MoveKeysToFront(order, {"X"});
  MoveKeysToBack(order, {"Y"});
  EXPECT_EQ(order, (Order{"X", "A", "Y"}));
}

TEST(KeyOrder, IgnoresRepeatsInTheKeysToMove) {
  Order order = {"A", "B", "C"};
  MoveKeysToFront(order, {"C", "B", "C"});
  EXPECT_EQ(order, (Order{"C", "B", "A"}));
}

TEST(KeyOrder, MovesNothingWithoutKeys) {
  Order order = {"A", "A", "B"};
  MoveKeysToFront(order, {});
  MoveKeysToBack(order, {});
  EXPECT_EQ(order, (Order{"A", "A", "B"}));
}

TEST(KeyOrder, MovesToTheFrontLikeSuccessiveRemovalsAndInsertions) {
  RandomSource random(kSeed);
  for (int i = 0; i < 2000; ++i) {
    Order order = RandomOrder(random);
    const MovingKeys keys = RandomKeys(random);
    Order expected = order;
    for (auto key = keys.rbegin(); key != keys.rend(); ++key) {
      expected.remove(std::string(*key));
      expected.emplace_front(*key);
    }
    MoveKeysToFront(order, keys);
    ASSERT_EQ(order, expected) << "round " << i << ", seed " << kSeed;
  }
}

TEST(KeyOrder, MovesToTheBackLikeSuccessiveRemovalsAndInsertions) {
  RandomSource random(kSeed);
  for (int i = 0; i < 2000; ++i) {
    Order order = RandomOrder(random);
    const MovingKeys keys = RandomKeys(random);
    Order expected = order;
    for (const std::string_view key : keys) {
      expected.remove(std::string(key));
      expected.emplace_back(key);
    }
    MoveKeysToBack(order, keys);
    ASSERT_EQ(order, expected) << "round " << i << ", seed " << kSeed;
  }
}

}  // namespace
}  // namespace ornwhatsnew
