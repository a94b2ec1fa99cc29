// Tests that the library's type names are aliases of certain standard types. Hosts can use the
// standard types directly, so the aliases must never change. The numeric values of styles and
// options must never change, either.
#include <ornwhatsnew/utility/SharedTypes.h>

#include <memory>
#include <string>
#include <type_traits>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include <ornwhatsnew/FeatureListData.h>

namespace ornwhatsnew {
namespace {

using orncore::utility::Flags;

TEST(SharedTypes, TextsAreStandardStrings) {
  EXPECT_TRUE((std::is_same_v<UTF8String, std::string>));
  EXPECT_TRUE((std::is_same_v<UTF16String, std::u16string>));
}

TEST(SharedTypes, VisibilityQueriesAcceptStandardSets) {
  const std::unordered_set<Guid> seen;
  const std::unordered_set<std::string> versions;
  const Flags<unsigned char> options;
  const FeatureListDetail change("text", "1", "", "", "", "", "", "", "", "");
  EXPECT_TRUE(change.ShouldShowItemToUser(options, seen, versions));
  EXPECT_FALSE(change.ShowForRating(seen));
  const FeatureListItem item("MISC", "", "", "", FeatureListItem::Visibility::kPublic);
  EXPECT_FALSE(item.ShouldShowItemToUser(options, seen, versions));
  EXPECT_FALSE(item.ItemHasBeenSeen(seen));
}

TEST(SharedTypes, RunsAndItemsAreStandardMaps) {
  using Runs =
      std::unordered_map<StyleID, std::vector<std::pair<std::pair<int, int>, std::u16string>>>;
  using Items = std::unordered_map<std::string, std::shared_ptr<FeatureListItem>>;
  EXPECT_TRUE((std::is_same_v<StyleRunMap, Runs>));
  EXPECT_TRUE((std::is_same_v<RatingMap, Items>));
  EXPECT_TRUE((std::is_same_v<FeatureMap, Items>));
}

TEST(SharedTypes, StyleNumbersNeverChange) {
  EXPECT_EQ(static_cast<int>(kStyleFeatureTitle), 0);
  EXPECT_EQ(static_cast<int>(kStyleFeatureDescription), 1);
  EXPECT_EQ(static_cast<int>(kStyleChangeText), 2);
  EXPECT_EQ(static_cast<int>(kStyleHeader), 3);
  EXPECT_EQ(static_cast<int>(kStyleInternalCode), 4);
  EXPECT_EQ(static_cast<int>(kStyleCommitLink), 5);
  EXPECT_EQ(static_cast<int>(kStyleHotSpot), 6);
  EXPECT_EQ(static_cast<int>(kStyleIssueLink), 7);
  EXPECT_EQ(static_cast<int>(kStyleUnlockLabel), 9);
  EXPECT_EQ(static_cast<int>(kStyleInternalWarning), 10);
  EXPECT_EQ(static_cast<int>(kStyleUnlockLabelBox), 11);
  EXPECT_EQ(static_cast<int>(kStyleRatingPlaceholder), 13);
}

TEST(SharedTypes, DisplayOptionBitsNeverChange) {
  EXPECT_EQ(kShowOnlyNew, DisplayOptions(0x01));
  EXPECT_EQ(kFilterRelevantPlatform, DisplayOptions(0x02));
  EXPECT_EQ(kFilterRelevantVersion, DisplayOptions(0x04));
  EXPECT_EQ(kFilterHeadlinesOnly, DisplayOptions(0x08));
  EXPECT_EQ(kRatingView, DisplayOptions(0x10));
}

}  // namespace
}  // namespace ornwhatsnew
