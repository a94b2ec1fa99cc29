#include <ornwhatsnew/utility/PersistedList.h>

#include <set>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "ornwhatsnew/src/rules/JoinPersistedList.h"
#include "tests/support/PlainText.h"
#include "tests/support/RandomSource.h"

namespace ornwhatsnew {
namespace {

using test_support::kSeed;
using test_support::RandomSource;
using testing::ElementsAre;
using testing::IsEmpty;

TEST(PersistedList, EmptyTextHasNoElements) {
  EXPECT_THAT(SplitPersistedList(""), IsEmpty());
}

TEST(PersistedList, SplitsAtEachSpaceWithoutMerging) {
  EXPECT_THAT(SplitPersistedList("a"), ElementsAre("a"));
  EXPECT_THAT(SplitPersistedList("a b"), ElementsAre("a", "b"));
  EXPECT_THAT(SplitPersistedList("a  b"), ElementsAre("a", "", "b"));
  EXPECT_THAT(SplitPersistedList(" "), ElementsAre("", ""));
  EXPECT_THAT(SplitPersistedList(" a "), ElementsAre("", "a", ""));
}

TEST(PersistedList, SplitsOnlyAtSpaces) {
  EXPECT_THAT(SplitPersistedList("a\tb\nc\xC2\xA0"), ElementsAre("a\tb\nc\xC2\xA0"));
}

TEST(PersistedList, ElementsAreViewsOfTheText) {
  const std::string text = "first second";
  const auto elements = SplitPersistedList(text);
  ASSERT_EQ(elements.size(), 2U);
  EXPECT_EQ(elements[0].data(), text.data());
  EXPECT_EQ(elements[1].data(), text.data() + 6);
}

TEST(PersistedList, SplitsLikeThePlainImplementation) {
  RandomSource random(kSeed);
  for (int i = 0; i < 3000; ++i) {
    std::string text = random.HostileText(20);
    if (text.empty()) continue;
    const auto elements = SplitPersistedList(text);
    EXPECT_EQ(std::vector<std::string>(elements.begin(), elements.end()),
              test_support::PlainSplit(text, ' '))
        << text;
  }
}

TEST(PersistedList, JoinsInAscendingByteOrder) {
  EXPECT_EQ(JoinPersistedList({}), "");
  EXPECT_EQ(JoinPersistedList({"b", "B", "\xC3\xA9", "a", "10", "9"}), "10 9 B a b \xC3\xA9");
}

TEST(PersistedList, JoinsEachElementOnce) {
  EXPECT_EQ(JoinPersistedList({"b", "a", "b"}), "a b");
}

TEST(PersistedList, JoinDropsEmptyElements) {
  EXPECT_EQ(JoinPersistedList({"a", "", "b"}), "a b");
  EXPECT_EQ(JoinPersistedList({""}), "");
  EXPECT_THAT(SplitPersistedList(JoinPersistedList({"", "b", "a"})), ElementsAre("a", "b"));
}

TEST(PersistedList, SplitReturnsTheElementsOfAJoinedText) {
  RandomSource random(kSeed);
  for (int i = 0; i < 1000; ++i) {
    std::set<std::string> elements;
    for (int n = 0; n < 6; ++n) {
      std::string element = random.HostileText(3);
      std::erase(element, ' ');
      if (!element.empty()) elements.insert(element);
    }
    const std::string text = JoinPersistedList({elements.begin(), elements.end()});
    const auto read = SplitPersistedList(text);
    EXPECT_EQ(std::vector<std::string>(read.begin(), read.end()),
              std::vector<std::string>(elements.begin(), elements.end()));
  }
}

struct MergeCase {
  std::string stored;
  std::string read;
  std::string written;
  std::string merged;
};

class MergePersistedValueTest : public testing::TestWithParam<MergeCase> {};

TEST_P(MergePersistedValueTest, AddsTheNewElementsOfTheWriter) {
  const MergeCase& merge = GetParam();
  for (const UTF8String& key : {kAllSeenItemsKey, kAllVersionsSeenKey}) {
    EXPECT_EQ(merge.merged, MergePersistedValue(key, merge.stored, merge.read, merge.written));
  }
}

INSTANTIATE_TEST_SUITE_P(
    Cases, MergePersistedValueTest,
    testing::Values(MergeCase{"", "", "", ""}, MergeCase{"", "", "a", "a"},
                    MergeCase{"a", "a", "a", "a"}, MergeCase{"a", "a", "a b", "a b"},
                    // After the writer's read, another program has added c.
                    MergeCase{"a c", "a", "a b", "a b c"},
                    // The writer has removed b. The store must still contain it.
                    MergeCase{"a b", "a b", "a", "a b"},
                    // After the writer's read, another program has reset the store. The elements
                    // that the writer read are not added again, regardless of their order.
                    MergeCase{"", "a b", "a b c", "c"}, MergeCase{"", "b a", "c b a", "c"},
                    // Unsorted lists, and lists with duplicate elements or extra spaces, are
                    // accepted, although the library does not write them.
                    MergeCase{"b b  a", "", "a  c", "a b c"},
                    MergeCase{"2.0 10.0", "", "1.0", "1.0 10.0 2.0"}));

TEST(MergePersistedValue, ReplacesAValueThatIsNoList) {
  EXPECT_EQ("4.3 a", MergePersistedValue(kLastVersionSeenKey, "4.2", "4.1", "4.3 a"));
  EXPECT_EQ("b", MergePersistedValue("Another.Key", "a", "", "b"));
}

}  // namespace
}  // namespace ornwhatsnew
