// Tests that the library's type names are aliases of certain standard types. Hosts can use the
// standard types directly, so the aliases must never change.
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

namespace {

using orncore::utility::Flags;
using orncore::utility::Guid;
using ornwhatsnew::FeatureListDetail;
using ornwhatsnew::FeatureListItem;
using ornwhatsnew::StyleID;

TEST(SharedTypes, TextsAreStandardStrings) {
  EXPECT_TRUE((std::is_same_v<ornwhatsnew::UTF8String, std::string>));
  EXPECT_TRUE((std::is_same_v<ornwhatsnew::UTF16String, std::u16string>));
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
  EXPECT_TRUE((std::is_same_v<ornwhatsnew::StyleRunMap, Runs>));
  EXPECT_TRUE((std::is_same_v<ornwhatsnew::RatingMap, Items>));
  EXPECT_TRUE((std::is_same_v<ornwhatsnew::FeatureMap, Items>));
}

}  // namespace
