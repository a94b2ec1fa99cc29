// What a user gets to see: one test for each rule, for changes and for items.
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <ornwhatsnew/FeatureListItem.h>

#include "tests/support/Builders.h"
#include "tests/support/FakeHost.h"

namespace ornwhatsnew {
namespace {

using test_support::ChangeRow;
using test_support::MakeDetail;
using test_support::MakeItem;

constexpr DisplayOptions kEverything{};

const VersionSet kNoVersions;

class ChangeVisibility : public test_support::FakeHostTest {
 protected:
  bool IsShown(const ChangeRow& row, DisplayOptions options,
               const VersionSet& versions = {}) const {
    return MakeDetail(row)->ShouldShowItemToUser(options, seen_, versions);
  }
  void SetSeen(const ChangeRow& row) { seen_.insert(MakeDetail(row)->GetItemSeenGuid()); }

  GuidSet seen_;
};

TEST_F(ChangeVisibility, DescribedChangeIsShown) {
  EXPECT_TRUE(IsShown({.description = "Text"}, kEverything));
}

TEST_F(ChangeVisibility, ChangeWithoutDescriptionIsNot) {
  EXPECT_FALSE(IsShown({}, kEverything));
}

TEST_F(ChangeVisibility, ChangeForAnotherPlatformIsDroppedByThePlatformFilter) {
  const ChangeRow row = {.platform = "Win", .description = "Text"};
  EXPECT_TRUE(IsShown(row, kEverything));
  EXPECT_FALSE(IsShown(row, kFilterRelevantPlatform));
}

TEST_F(ChangeVisibility, ChangeForThisPlatformPassesInAnyLetterCase) {
  EXPECT_TRUE(IsShown({.platform = "mac", .description = "Text"}, kFilterRelevantPlatform));
  EXPECT_TRUE(IsShown({.platform = "MAC", .description = "Text"}, kFilterRelevantPlatform));
}

TEST_F(ChangeVisibility, MalformedPlatformDoesNotFilter) {
  EXPECT_TRUE(IsShown({.platform = "Linux", .description = "Text"}, kFilterRelevantPlatform));
}

TEST_F(ChangeVisibility, PlatformFilterKeepsThePlatformThatTheHostNames) {
  host_.SetPlatform("win");
  EXPECT_TRUE(IsShown({.platform = "Win", .description = "Text"}, kFilterRelevantPlatform));
  EXPECT_FALSE(IsShown({.platform = "Mac", .description = "Text"}, kFilterRelevantPlatform));
}

TEST_F(ChangeVisibility, PlatformFilterKeepsOnlyUnmarkedAndMalformedOnAnotherHostPlatform) {
  for (const char* hostPlatform : {"Linux", ""}) {
    host_.SetPlatform(hostPlatform);
    EXPECT_FALSE(IsShown({.platform = "Win", .description = "Text"}, kFilterRelevantPlatform));
    EXPECT_FALSE(IsShown({.platform = "Mac", .description = "Text"}, kFilterRelevantPlatform));
    EXPECT_TRUE(IsShown({.platform = "Linux", .description = "Text"}, kFilterRelevantPlatform));
    EXPECT_TRUE(IsShown({.description = "Text"}, kFilterRelevantPlatform));
  }
}

TEST_F(ChangeVisibility, HeadlineFilterDropsEveryWellFormedSalience) {
  for (const char* salience : {"", "Headline", "Detail", "Unreviewed"}) {
    EXPECT_FALSE(IsShown({.salience = salience, .description = "Text"}, kFilterHeadlinesOnly))
        << salience;
  }
}

TEST_F(ChangeVisibility, HeadlineFilterPassesMalformedSaliences) {
  for (const char* salience : {"Loud", "UnhideBetaFeature"}) {
    EXPECT_TRUE(IsShown({.salience = salience, .description = "Text"}, kFilterHeadlinesOnly))
        << salience;
  }
}

TEST_F(ChangeVisibility, VersionFilterPassesAChangeToWhatTheUserRan) {
  const ChangeRow row = {.version = "25.0", .firstVersion = "24.0", .description = "Text"};
  EXPECT_TRUE(IsShown(row, kFilterRelevantVersion, {"24.5", "25.1"}));
  EXPECT_FALSE(IsShown(row, kFilterRelevantVersion, {"25.1"}));
  EXPECT_TRUE(IsShown(row, kEverything, {"25.1"}));
}

TEST_F(ChangeVisibility, VersionRangeIncludesItsFirstAndNotItsEnd) {
  const ChangeRow row = {.version = "25.0", .firstVersion = "24.0", .description = "Text"};
  EXPECT_TRUE(IsShown(row, kFilterRelevantVersion, {"24.0"}));
  EXPECT_FALSE(IsShown(row, kFilterRelevantVersion, {"25.0"}));
  EXPECT_FALSE(IsShown(row, kFilterRelevantVersion, {"23.999"}));
}

TEST_F(ChangeVisibility, VersionsOfOtherLengthsCompareByTheirNumbers) {
  const ChangeRow row = {.version = "25.0", .firstVersion = "24.0", .description = "Text"};
  EXPECT_FALSE(IsShown(row, kFilterRelevantVersion, {"24.5.0"}));
  EXPECT_TRUE(IsShown(row, kFilterRelevantVersion, {"24500"}));
}

TEST_F(ChangeVisibility, VersionFilterNeedsAVersionThatWasRun) {
  const ChangeRow row = {.version = "25.0", .firstVersion = "24.0", .description = "Text"};
  EXPECT_FALSE(IsShown(row, kFilterRelevantVersion, kNoVersions));
}

TEST_F(ChangeVisibility, VersionFilterPassesAChangeWithoutFirstVersion) {
  EXPECT_TRUE(
      IsShown({.version = "25.0", .description = "Text"}, kFilterRelevantVersion, kNoVersions));
}

TEST_F(ChangeVisibility, SeenChangeIsNotNew) {
  const ChangeRow row = {.description = "Text"};
  EXPECT_TRUE(IsShown(row, kShowOnlyNew));
  SetSeen(row);
  EXPECT_FALSE(IsShown(row, kShowOnlyNew));
  EXPECT_TRUE(IsShown(row, kEverything));
}

TEST_F(ChangeVisibility, RatingOnlyChangeIsNeverShownOutsideTheRatingView) {
  const ChangeRow row = {.ratingRequest = "RequestRating"};
  EXPECT_FALSE(IsShown(row, kEverything));
  EXPECT_FALSE(IsShown(row, kShowOnlyNew));
  SetSeen(row);
  EXPECT_FALSE(IsShown(row, kEverything));
}

TEST_F(ChangeVisibility, RatingOnlyChangeIsShownInTheRatingViewEvenBeforeItWasSeen) {
  const ChangeRow row = {.ratingRequest = "RequestRating"};
  EXPECT_TRUE(IsShown(row, kRatingView));
  SetSeen(row);
  EXPECT_TRUE(IsShown(row, kRatingView));
}

TEST_F(ChangeVisibility, DescribedChangeIsShownInTheRatingViewOnceSeen) {
  const ChangeRow row = {.ratingRequest = "RequestRating", .description = "Text"};
  EXPECT_FALSE(IsShown(row, kRatingView));
  SetSeen(row);
  EXPECT_TRUE(IsShown(row, kRatingView));
  EXPECT_TRUE(IsShown(row, kRatingView | kShowOnlyNew));
}

TEST_F(ChangeVisibility, ChangeWithoutRequestIsNotShownInTheRatingView) {
  const ChangeRow row = {.description = "Text"};
  SetSeen(row);
  EXPECT_FALSE(IsShown(row, kRatingView));
}

TEST_F(ChangeVisibility, ShowForRatingNeedsARequest) {
  EXPECT_FALSE(MakeDetail({})->ShowForRating(seen_));
  EXPECT_FALSE(MakeDetail({.description = "Text"})->ShowForRating(seen_));
  EXPECT_TRUE(MakeDetail({.ratingRequest = "x"})->ShowForRating(seen_));
  const ChangeRow described = {.ratingRequest = "x", .description = "Text"};
  EXPECT_FALSE(MakeDetail(described)->ShowForRating(seen_));
  SetSeen(described);
  EXPECT_TRUE(MakeDetail(described)->ShowForRating(seen_));
}

// One item, "EPIC-1" unless told otherwise, whose feature is enabled.
class ItemVisibility : public test_support::FakeHostTest {
 protected:
  ItemVisibility() { host_.AddFeature({.internalKey = "feature"}); }

  void Make(const std::vector<ChangeRow>& changes, std::int32_t visibility = 0,
            const std::string& key = "EPIC-1") {
    const bool isFeature = key == "EPIC-1";
    item_ = MakeItem({.groupingKey = key,
                      .internalKey = isFeature ? "feature" : "",
                      .name = "Name",
                      .visibility = visibility},
                     changes);
  }
  void MakeSection(const std::string& key, const std::vector<ChangeRow>& changes) {
    Make(changes, 0, key);
  }

  bool IsShown(DisplayOptions options = kEverything) const {
    return item_->ShouldShowItemToUser(options, seen_, kNoVersions);
  }
  void SetItemSeen() { seen_.insert(item_->GetItemSeenGuid()); }
  void SetChangesSeen() {
    for (const auto& change : item_->GetAllChanges()) seen_.insert(change->GetItemSeenGuid());
  }
  void SetRated() { seen_.insert(item_->GetItemRatedGuid()); }

  std::shared_ptr<FeatureListItem> item_;
  GuidSet seen_;
};

TEST_F(ItemVisibility, EnabledFeatureIsListedEvenWithoutChanges) {
  Make({});
  EXPECT_TRUE(IsShown());
}

TEST_F(ItemVisibility, EnabledFeatureIsListedWhenNoChangePassesTheFilters) {
  Make({{.platform = "Win", .description = "Text"}});
  EXPECT_TRUE(IsShown(kFilterRelevantPlatform));
  EXPECT_TRUE(IsShown(kFilterHeadlinesOnly));
}

TEST_F(ItemVisibility, FeatureOutOfReachIsNotListed) {
  Make({{.description = "Text"}});
  host_.SetFeatureEnabled("feature", false);
  EXPECT_FALSE(IsShown());
}

TEST_F(ItemVisibility, FeatureThatTheUserMayEnableIsListed) {
  Make({});
  host_.SetFeatureEnabled("feature", false);
  host_.SetFeatureAvailableForUser("feature", true);
  EXPECT_TRUE(IsShown());
}

TEST_F(ItemVisibility, DebugSwitchListsFeaturesThatAreOffForInternalUsers) {
  Make({});
  host_.SetFeatureEnabled("feature", false);
  host_.ShowAllOffFeatures(true);
  EXPECT_FALSE(IsShown());
  host_.SetInternalFeaturesAllowed(true);
  EXPECT_TRUE(IsShown());
}

TEST_F(ItemVisibility, FeatureThatLeftTheTableIsOutOfReach) {
  Make({});
  host_.RemoveFeature("feature");
  EXPECT_FALSE(IsShown());
}

TEST_F(ItemVisibility, EnablingAFeatureShowsItAtTheNextQuestion) {
  Make({});
  host_.SetFeatureEnabled("feature", false);
  EXPECT_FALSE(IsShown());
  host_.SetFeatureEnabled("feature", true);
  EXPECT_TRUE(IsShown());
}

TEST_F(ItemVisibility, InternalSectionsNeedThePermission) {
  for (const char* key : {"INTERNAL", "UNREVIEWED", "internal"}) {
    MakeSection(key, {{.description = "Text"}});
    host_.SetInternalFeaturesAllowed(false);
    EXPECT_FALSE(IsShown()) << key;
    host_.SetInternalFeaturesAllowed(true);
    EXPECT_TRUE(IsShown()) << key;
  }
}

TEST_F(ItemVisibility, OtherSectionsDoNot) {
  for (const char* key : {"MISC", "BUGFIX"}) {
    MakeSection(key, {{.description = "Text"}});
    EXPECT_TRUE(IsShown()) << key;
  }
}

TEST_F(ItemVisibility, FeatureHiddenFromExternalUsersNeedsThePermission) {
  Make({{.salience = "HideBetaFeatureFromExternal", .description = "Text"}});
  EXPECT_FALSE(IsShown());
  host_.SetInternalFeaturesAllowed(true);
  EXPECT_TRUE(IsShown());
}

TEST_F(ItemVisibility, SectionWithoutChangesIsNotListed) {
  MakeSection("BUGFIX", {});
  EXPECT_FALSE(IsShown());
}

TEST_F(ItemVisibility, SectionOfWhichNoChangePassesIsNotListed) {
  MakeSection("BUGFIX", {{.platform = "Win", .description = "Text"}});
  EXPECT_TRUE(IsShown());
  EXPECT_FALSE(IsShown(kFilterRelevantPlatform));
}

TEST_F(ItemVisibility, FeatureOfVisibilityOneIsHidden) {
  Make({{.description = "Text"}}, 1);
  EXPECT_FALSE(IsShown());
  host_.SetInternalFeaturesAllowed(true);
  EXPECT_FALSE(IsShown());
}

TEST_F(ItemVisibility, UnhideChangeAnywhereShowsAFeatureOfVisibilityOne) {
  Make({{.description = "One"}, {.salience = "UnhideBetaFeature"}, {.description = "Two"}}, 1);
  EXPECT_TRUE(IsShown());
  Make({{.salience = "unhidebetafeature"}}, 1);
  EXPECT_TRUE(IsShown());
}

TEST_F(ItemVisibility, UnhideChangeBehindANewOneStillCounts) {
  Make({{.description = "New"}, {.salience = "UnhideBetaFeature", .description = "Unhide"}}, 1);
  EXPECT_TRUE(IsShown(kShowOnlyNew));
}

TEST_F(ItemVisibility, HiddenTestGoesByTheItemsOwnVisibility) {
  host_.AddFeature({.internalKey = "feature", .visibility = 1});
  Make({}, 0);
  EXPECT_TRUE(IsShown());
}

TEST_F(ItemVisibility, HideChangeHidesAFeatureEvenBehindAnUnhideChange) {
  Make({{.salience = "UnhideBetaFeature"}, {.salience = "HideBetaFeature"}}, 1);
  EXPECT_FALSE(IsShown());
  Make(
      {{.salience = "UnhideBetaFeature"}, {.description = "New"}, {.salience = "hidebetafeature"}});
  EXPECT_FALSE(IsShown());
  EXPECT_FALSE(IsShown(kShowOnlyNew));
}

TEST_F(ItemVisibility, HideChangeHidesNothingInASection) {
  MakeSection("BUGFIX", {{.salience = "HideBetaFeature"}, {.description = "Text"}});
  EXPECT_TRUE(IsShown());
}

TEST_F(ItemVisibility, SeenChangeLeavesItsItemNewWhileTheItemIsNew) {
  Make({{.description = "Text"}});
  SetChangesSeen();
  EXPECT_TRUE(IsShown(kShowOnlyNew));
  SetItemSeen();
  EXPECT_FALSE(IsShown(kShowOnlyNew));
  EXPECT_TRUE(IsShown());
}

TEST_F(ItemVisibility, NewChangeMakesASeenItemNew) {
  Make({{.description = "Text"}});
  SetItemSeen();
  EXPECT_TRUE(IsShown(kShowOnlyNew));
}

TEST_F(ItemVisibility, RatingViewListsASeenFeatureThatAsks) {
  Make({{.ratingRequest = "RequestRating"}});
  EXPECT_FALSE(IsShown(kRatingView));
  SetItemSeen();
  EXPECT_TRUE(IsShown(kRatingView));
  EXPECT_TRUE(IsShown(kRatingView | kShowOnlyNew));
}

TEST_F(ItemVisibility, RatingViewListsNoFeatureWithoutARequest) {
  Make({{.description = "Text"}});
  SetItemSeen();
  SetChangesSeen();
  EXPECT_FALSE(IsShown(kRatingView));
}

TEST_F(ItemVisibility, RatingViewListsNoRatedFeature) {
  Make({{.ratingRequest = "RequestRating"}});
  SetItemSeen();
  SetRated();
  EXPECT_FALSE(IsShown(kRatingView));
}

TEST_F(ItemVisibility, RatingViewListsNoSection) {
  MakeSection("BUGFIX", {{.ratingRequest = "RequestRating"}});
  SetItemSeen();
  EXPECT_FALSE(IsShown(kRatingView));
}

TEST_F(ItemVisibility, RatingViewListsNothingWhileTheApplicationTerminates) {
  Make({{.ratingRequest = "RequestRating"}});
  SetItemSeen();
  host_.SetTerminating(true);
  EXPECT_FALSE(IsShown(kRatingView));
  EXPECT_TRUE(IsShown());
}

TEST_F(ItemVisibility, RatingViewNeedsUsageLoggingOrThePermission) {
  Make({{.ratingRequest = "RequestRating"}});
  SetItemSeen();
  host_.SetUsageLogging(false);
  EXPECT_FALSE(IsShown(kRatingView));
  EXPECT_TRUE(IsShown());
  host_.SetInternalFeaturesAllowed(true);
  EXPECT_TRUE(IsShown(kRatingView));
}

}  // namespace
}  // namespace ornwhatsnew
