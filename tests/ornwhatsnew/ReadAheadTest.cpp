#include "ornwhatsnew/src/rules/ReadAhead.h"

#include <vector>

#include <gtest/gtest.h>

#include "tests/support/Builders.h"

namespace ornwhatsnew {
namespace {

TEST(ReadAhead, AsksForChangesThatAreStillToComeAndNoneBehindTheLast) {
  const auto change = test_support::MakeDetail({.description = std::string(200, 'x')});
  for (std::size_t count = 0; count < 20; ++count) {
    for (std::size_t at = 0; at < count; ++at) {
      ReadAhead(at, count, [&](std::size_t place) -> const FeatureListDetail& {
        EXPECT_GT(place, at);
        EXPECT_LT(place, count);
        return *change;
      });
    }
  }
}

TEST(ReadAhead, AsksForEveryChangeOfALongWalkButTheFirst) {
  constexpr std::size_t kCount = 100;
  const auto change = test_support::MakeDetail({});
  std::vector<int> asked(kCount);
  for (std::size_t at = 0; at < kCount; ++at) {
    ReadAhead(at, kCount, [&](std::size_t place) -> const FeatureListDetail& {
      ++asked[place];
      return *change;
    });
  }
  // Once for the change and once for its texts.
  EXPECT_EQ(std::vector<int>(asked.begin() + 8, asked.end()), std::vector<int>(kCount - 8, 2));
}

}  // namespace
}  // namespace ornwhatsnew
