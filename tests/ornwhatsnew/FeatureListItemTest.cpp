#include <ornwhatsnew/FeatureListItem.h>

#include <memory>
#include <stdexcept>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/Builders.h"
#include "tests/support/FakeHost.h"
#include "tests/support/Matchers.h"

namespace ornwhatsnew {
namespace {

using test_support::ChangeRow;
using test_support::kURL;
using test_support::MakeDetail;
using test_support::MakeItem;
using testing::ElementsAre;
using testing::IsEmpty;
using Visibility = FeatureListItem::Visibility;

constexpr char kOtherURL[] = "https://a.example/2";

FeatureListItem Feature() {
  return {"EPIC-1", "export", "Export", "Exports files", Visibility::kInternal};
}

TEST(FeatureListItem, GettersReturnKeysTextsAndVisibility) {
  const FeatureListItem item = Feature();
  EXPECT_EQ(item.GetFeatureJiraIDKey(), "EPIC-1");
  EXPECT_EQ(item.FeatureJiraIDKey(), "EPIC-1");
  EXPECT_EQ(item.GetBetaFeatureInternalKey(), "export");
  EXPECT_EQ(item.BetaFeatureInternalKey(), "export");
  EXPECT_EQ(item.GetFeatureName(), "Export");
  EXPECT_EQ(item.GetFeatureDescription(), "Exports files");
  EXPECT_EQ(item.GetVisibility(), Visibility::kInternal);
}

TEST(FeatureListItem, StartsWithoutOverrideURLPreferencesRatingTextAndChanges) {
  const FeatureListItem item = Feature();
  EXPECT_FALSE(item.IsItemInternalOverride());
  EXPECT_EQ(item.GetFeatureViewMoreURL(), "");
  EXPECT_EQ(item.GetFeaturePrefsUI(), "");
  EXPECT_EQ(item.GetCustomRatingStr(), "");
  EXPECT_THAT(item.GetAllChanges(), IsEmpty());
}

TEST(FeatureListItem, FieldKeysNeverChange) {
  EXPECT_EQ(FeatureListItem::kKeyFeatureName, "kFeatureName");
  EXPECT_EQ(FeatureListItem::kKeyFeatureDescription, "kFeatureDescription");
  EXPECT_EQ(FeatureListItem::kKeyFeatureViewMoreURL, "kFeatureViewMoreURL");
  EXPECT_EQ(FeatureListItem::kKeyFeaturePrefsUI, "kFeaturePrefsUI");
  EXPECT_EQ(FeatureListItem::kKeyCustomRatingRequestStr, "kCustomRatingRequestStr");
}

TEST(FeatureListItem, GetFieldReturnsTheFieldOfEachKey) {
  FeatureListItem item = Feature();
  item.SetCustomRatingStr("How was it?");
  item.AddFeatureDetail(MakeDetail({.url = kURL}));
  EXPECT_EQ(item.GetField(FeatureListItem::kKeyFeatureName), "Export");
  EXPECT_EQ(item.GetField(FeatureListItem::kKeyFeatureDescription), "Exports files");
  EXPECT_EQ(item.GetField(FeatureListItem::kKeyFeatureViewMoreURL), kURL);
  EXPECT_EQ(item.GetField(FeatureListItem::kKeyFeaturePrefsUI), "");
  EXPECT_EQ(item.GetField(FeatureListItem::kKeyCustomRatingRequestStr), "How was it?");
}

TEST(FeatureListItem, ThrowsOutOfRangeForAnUnknownKey) {
  try {
    Feature().GetField("kDescription");
    FAIL() << "GetField did not throw";
  } catch (const std::out_of_range& error) {
    EXPECT_STREQ(error.what(), "unordered_map::at: key not found");
  }
}

TEST(FeatureListItem, CustomRatingTextCanBeReplaced) {
  FeatureListItem item = Feature();
  item.SetCustomRatingStr("How was it?");
  EXPECT_EQ(item.GetCustomRatingStr(), "How was it?");
  item.SetCustomRatingStr("");
  EXPECT_EQ(item.GetCustomRatingStr(), "");
}

TEST(FeatureListItem, ReturnsTheAddedChangesInOrder) {
  FeatureListItem item = Feature();
  const auto first = MakeDetail({.description = "first"});
  const auto second = MakeDetail({.description = "second"});
  item.AddFeatureDetail(first);
  item.AddFeatureDetail(second);
  item.AddFeatureDetail(first);
  EXPECT_THAT(item.GetAllChanges(), ElementsAre(first, second, first));
}

TEST(FeatureListItem, KeepsTheFirstWellFormedURLAndMarksLaterOnesAsDuplicates) {
  for (const char* second : {kURL, kOtherURL, "http://a.example"}) {
    const auto item = MakeItem({.groupingKey = "EPIC-1"}, {{.url = kURL}, {.url = second}});
    EXPECT_EQ(item->GetFeatureViewMoreURL(), kURL) << second;
    EXPECT_FALSE(item->GetAllChanges()[0]->HasDuplicateURL()) << second;
    EXPECT_TRUE(item->GetAllChanges()[1]->HasDuplicateURL()) << second;
  }
}

TEST(FeatureListItem, SkipsAMalformedURLBeforeAWellFormedOne) {
  const auto item =
      MakeItem({.groupingKey = "EPIC-1"}, {{.url = "http://a.example"}, {.url = kURL}});
  EXPECT_EQ(item->GetFeatureViewMoreURL(), kURL);
  EXPECT_FALSE(item->GetAllChanges()[0]->HasDuplicateURL());
  EXPECT_FALSE(item->GetAllChanges()[1]->HasDuplicateURL());
}

TEST(FeatureListItem, ChangeWithoutURLIsNeverADuplicate) {
  const auto item = MakeItem({.groupingKey = "EPIC-1"}, {{.url = kURL}, {}});
  EXPECT_EQ(item->GetFeatureViewMoreURL(), kURL);
  EXPECT_FALSE(item->GetAllChanges()[1]->HasDuplicateURL());
}

TEST(FeatureListItem, HideFromExternalSalienceSetsTheInternalOverride) {
  const auto item = MakeItem({.groupingKey = "EPIC-1"},
                             {{.salience = "hidebetafeaturefromexternal"}, {.salience = "Detail"}});
  EXPECT_TRUE(item->IsItemInternalOverride());
}

TEST(FeatureListItem, HideFromExternalSalienceDoesNotAffectASection) {
  for (const char* section : {"BUGFIX", "misc", "INTERNAL", "UNREVIEWED"}) {
    const auto item =
        MakeItem({.groupingKey = section},
                 {{.salience = FeatureListDetail::kSalienceHideBetaFeatureFromExternal}});
    EXPECT_FALSE(item->IsItemInternalOverride()) << section;
  }
}

TEST(FeatureListItem, SeenAndRatedDependOnTheIdentities) {
  const auto item = MakeItem({.groupingKey = "EPIC-1"}, {{.ratingRequest = "RequestRating"}});
  const GuidSet none;
  const GuidSet seen = {item->GetItemSeenGuid()};
  const GuidSet rated = {item->GetItemRatedGuid()};
  const GuidSet both = {item->GetItemSeenGuid(), item->GetItemRatedGuid()};
  EXPECT_FALSE(item->ItemHasBeenSeen(none));
  EXPECT_TRUE(item->ItemHasBeenSeen(seen));
  EXPECT_FALSE(item->ItemHasBeenSeen(rated));
  EXPECT_FALSE(item->ItemHasBeenRated(seen));
  EXPECT_TRUE(item->ItemHasBeenRated(rated));
  EXPECT_FALSE(item->ShowForRating(none));
  EXPECT_TRUE(item->ShowForRating(seen));
  EXPECT_FALSE(item->ShowForRating(rated));
  EXPECT_FALSE(item->ShowForRating(both));
}

class AnalyticsDisabled : public test_support::FakeHostTest {};

TEST_F(AnalyticsDisabled, IsTrueOnlyWithoutLoggingAndPermission) {
  EXPECT_FALSE(FeatureListItem::AnalyticsDisabled());
  host_.SetUsageLogging(false);
  EXPECT_TRUE(FeatureListItem::AnalyticsDisabled());
  host_.SetInternalFeaturesAllowed(true);
  EXPECT_FALSE(FeatureListItem::AnalyticsDisabled());
  host_.SetUsageLogging(true);
  EXPECT_FALSE(FeatureListItem::AnalyticsDisabled());
}

}  // namespace
}  // namespace ornwhatsnew
