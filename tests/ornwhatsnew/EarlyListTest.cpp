// Tests that static objects of the host can create a list and merge persisted values. If the
// library is linked statically, the host's static objects can be constructed before the static
// objects of the library.
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include <ornwhatsnew/FeatureListData.h>
#include <ornwhatsnew/utility/PersistedList.h>

namespace {

using ornwhatsnew::DisplayOptions;
using ornwhatsnew::FeatureListData;
using ornwhatsnew::MergePersistedValue;
using ornwhatsnew::UTF8String;

struct EarlyList {
  std::vector<std::string> queriedKeys;
  FeatureListData list{
      "h,h,h,h,h,h,h,h,h,h\n"
      "2,MISC,,Headline,,,,,,Text\n"
      "1.9,Changes-Since\n",
      [this](const UTF8String& key) {
        queriedKeys.push_back(key);
        return UTF8String();
      },
      [](const UTF8String&, const UTF8String&) {}};
};

const EarlyList kEarly;

TEST(EarlyList, ReadsTheThreePersistedValues) {
  EXPECT_THAT(kEarly.queriedKeys,
              testing::ElementsAre("WhatsNew.LastVersionSeenWhatsNew",
                                   "WhatsNew.AllVersionSeenWhatsNew", "WhatsNew.AllSeenItems"));
}

TEST(EarlyList, HasSectionsAndChanges) {
  EXPECT_THAT(kEarly.list.GetOrderedFeatureKeys(),
              testing::ElementsAre("UNREVIEWED", "MISC", "BUGFIX", "INTERNAL"));
  EXPECT_TRUE(kEarly.list.IsAnythingNew(ornwhatsnew::kShowOnlyNew));
  const auto& change = kEarly.list.GetFeatureItems().at("MISC")->GetAllChanges().front();
  EXPECT_FALSE(change->HasMalformedSalience());
}

// These static objects use literal keys, because the exported constants of the library might not be
// initialised yet.
const std::string kMergedItems = MergePersistedValue("WhatsNew.AllSeenItems", "a", "", "b");
const std::string kMergedVersions =
    MergePersistedValue("WhatsNew.AllVersionSeenWhatsNew", "4.1", "", "4.2");

TEST(EarlyMerge, KeepsTheStoredElementsOfThePersistedLists) {
  EXPECT_EQ(kMergedItems, "a b");
  EXPECT_EQ(kMergedVersions, "4.1 4.2");
}

}  // namespace
