// Tests each visibility rule of changes and of items.
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <orncore/config/ClientInfo.h>
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

TEST_F(ChangeVisibility, ChangeWithoutDescriptionIsHidden) {
  EXPECT_FALSE(IsShown({}, kEverything));
}

TEST_F(ChangeVisibility, PlatformFilterHidesAChangeForAnotherPlatform) {
  const ChangeRow row = {.platform = "Win", .description = "Text"};
  EXPECT_TRUE(IsShown(row, kEverything));
  EXPECT_FALSE(IsShown(row, kFilterRelevantPlatform));
}

class ThrowingPlatform final : public orncore::config::ClientInfo {
 public:
  UTF16String GetClientVersion() const override { return u"25.1"; }
  UTF16String GetClientBuildNumber() const override { return u"42"; }
  UTF8String GetClientPlatform() const override { throw std::runtime_error("platform"); }
};

TEST_F(ChangeVisibility, PlatformIsQueriedOnlyForAChangeThatNamesOne) {
  orncore::config::SetClientInfo(std::make_shared<ThrowingPlatform>());
  EXPECT_TRUE(IsShown({.description = "Text"}, kFilterRelevantPlatform));
  EXPECT_TRUE(IsShown({.platform = "Linux", .description = "Text"}, kFilterRelevantPlatform));
  EXPECT_THROW(IsShown({.platform = "Mac", .description = "Text"}, kFilterRelevantPlatform),
               std::runtime_error);
}

TEST_F(ChangeVisibility, PlatformFilterIgnoresLetterCase) {
  EXPECT_TRUE(IsShown({.platform = "mac", .description = "Text"}, kFilterRelevantPlatform));
  EXPECT_TRUE(IsShown({.platform = "MAC", .description = "Text"}, kFilterRelevantPlatform));
}

TEST_F(ChangeVisibility, PlatformFilterIgnoresAMalformedPlatform) {
  EXPECT_TRUE(IsShown({.platform = "Linux", .description = "Text"}, kFilterRelevantPlatform));
}

TEST_F(ChangeVisibility, PlatformFilterUsesThePlatformOfTheHost) {
  host_.SetPlatform("win");
  EXPECT_TRUE(IsShown({.platform = "Win", .description = "Text"}, kFilterRelevantPlatform));
  EXPECT_FALSE(IsShown({.platform = "Mac", .description = "Text"}, kFilterRelevantPlatform));
}

TEST_F(ChangeVisibility, PlatformFilterHidesMacAndWinChangesOnOtherHostPlatforms) {
  for (const char* hostPlatform : {"Linux", ""}) {
    host_.SetPlatform(hostPlatform);
    EXPECT_FALSE(IsShown({.platform = "Win", .description = "Text"}, kFilterRelevantPlatform));
    EXPECT_FALSE(IsShown({.platform = "Mac", .description = "Text"}, kFilterRelevantPlatform));
    EXPECT_TRUE(IsShown({.platform = "Linux", .description = "Text"}, kFilterRelevantPlatform));
    EXPECT_TRUE(IsShown({.description = "Text"}, kFilterRelevantPlatform));
  }
}

TEST_F(ChangeVisibility, HeadlineFilterHidesEveryWellFormedSalience) {
  for (const char* salience : {"", "Headline", "Detail", "Unreviewed"}) {
    EXPECT_FALSE(IsShown({.salience = salience, .description = "Text"}, kFilterHeadlinesOnly))
        << salience;
  }
}

TEST_F(ChangeVisibility, HeadlineFilterShowsMalformedSaliences) {
  for (const char* salience : {"Loud", "UnhideBetaFeature"}) {
    EXPECT_TRUE(IsShown({.salience = salience, .description = "Text"}, kFilterHeadlinesOnly))
        << salience;
  }
}

TEST_F(ChangeVisibility, VersionFilterShowsAChangeToAVersionTheUserRan) {
  const ChangeRow row = {.version = "25.0", .firstVersion = "24.0", .description = "Text"};
  EXPECT_TRUE(IsShown(row, kFilterRelevantVersion, {"24.5", "25.1"}));
  EXPECT_FALSE(IsShown(row, kFilterRelevantVersion, {"25.1"}));
  EXPECT_TRUE(IsShown(row, kEverything, {"25.1"}));
}

TEST_F(ChangeVisibility, VersionRangeIncludesItsStartButNotItsEnd) {
  const ChangeRow row = {.version = "25.0", .firstVersion = "24.0", .description = "Text"};
  EXPECT_TRUE(IsShown(row, kFilterRelevantVersion, {"24.0"}));
  EXPECT_FALSE(IsShown(row, kFilterRelevantVersion, {"25.0"}));
  EXPECT_FALSE(IsShown(row, kFilterRelevantVersion, {"23.999"}));
}

TEST_F(ChangeVisibility, VersionsOfDifferentLengthsCompareByTheirNumbers) {
  const ChangeRow row = {.version = "25.0", .firstVersion = "24.0", .description = "Text"};
  EXPECT_FALSE(IsShown(row, kFilterRelevantVersion, {"24.5.0"}));
  EXPECT_TRUE(IsShown(row, kFilterRelevantVersion, {"24500"}));
}

TEST_F(ChangeVisibility, VersionFilterHidesAVersionRangeIfNoVersionWasRun) {
  const ChangeRow row = {.version = "25.0", .firstVersion = "24.0", .description = "Text"};
  EXPECT_FALSE(IsShown(row, kFilterRelevantVersion, kNoVersions));
}

TEST_F(ChangeVisibility, VersionFilterShowsAChangeWithoutFirstVersion) {
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

TEST_F(ChangeVisibility, RatingOnlyChangeIsShownInTheRatingViewEvenIfUnseen) {
  const ChangeRow row = {.ratingRequest = "RequestRating"};
  EXPECT_TRUE(IsShown(row, kRatingView));
  SetSeen(row);
  EXPECT_TRUE(IsShown(row, kRatingView));
}

TEST_F(ChangeVisibility, DescribedChangeIsShownInTheRatingViewIfSeen) {
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

TEST_F(ChangeVisibility, ShowForRatingRequiresARequest) {
  EXPECT_FALSE(MakeDetail({})->ShowForRating(seen_));
  EXPECT_FALSE(MakeDetail({.description = "Text"})->ShowForRating(seen_));
  EXPECT_TRUE(MakeDetail({.ratingRequest = "x"})->ShowForRating(seen_));
  const ChangeRow described = {.ratingRequest = "x", .description = "Text"};
  EXPECT_FALSE(MakeDetail(described)->ShowForRating(seen_));
  SetSeen(described);
  EXPECT_TRUE(MakeDetail(described)->ShowForRating(seen_));
}

// Provides an item. By default, the item has the key "EPIC-1" and belongs to an enabled feature.
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

TEST_F(ItemVisibility, EnabledFeatureIsShownEvenWithoutChanges) {
  Make({});
  EXPECT_TRUE(IsShown());
}

TEST_F(ItemVisibility, EnabledFeatureIsShownEvenIfTheFiltersHideItsChanges) {
  Make({{.platform = "Win", .description = "Text"}});
  EXPECT_TRUE(IsShown(kFilterRelevantPlatform));
  EXPECT_TRUE(IsShown(kFilterHeadlinesOnly));
}

TEST_F(ItemVisibility, DisabledFeatureIsHidden) {
  Make({{.description = "Text"}});
  host_.SetFeatureEnabled("feature", false);
  EXPECT_FALSE(IsShown());
}

TEST_F(ItemVisibility, DisabledFeatureIsShownIfTheUserMayEnableIt) {
  Make({});
  host_.SetFeatureEnabled("feature", false);
  host_.SetFeatureAvailableForUser("feature", true);
  EXPECT_TRUE(IsShown());
}

TEST_F(ItemVisibility, DebugSwitchShowsDisabledFeaturesToInternalUsers) {
  Make({});
  host_.SetFeatureEnabled("feature", false);
  host_.ShowAllOffFeatures(true);
  EXPECT_FALSE(IsShown());
  host_.SetInternalFeaturesAllowed(true);
  EXPECT_TRUE(IsShown());
}

TEST_F(ItemVisibility, FeatureMissingFromTheTableIsHidden) {
  Make({});
  host_.RemoveFeature("feature");
  EXPECT_FALSE(IsShown());
}

TEST_F(ItemVisibility, FeatureIsShownAtTheNextQueryAfterItIsEnabled) {
  Make({});
  host_.SetFeatureEnabled("feature", false);
  EXPECT_FALSE(IsShown());
  host_.SetFeatureEnabled("feature", true);
  EXPECT_TRUE(IsShown());
}

TEST_F(ItemVisibility, InternalSectionsRequireThePermission) {
  for (const char* key : {"INTERNAL", "UNREVIEWED", "internal"}) {
    MakeSection(key, {{.description = "Text"}});
    host_.SetInternalFeaturesAllowed(false);
    EXPECT_FALSE(IsShown()) << key;
    host_.SetInternalFeaturesAllowed(true);
    EXPECT_TRUE(IsShown()) << key;
  }
}

TEST_F(ItemVisibility, OtherSectionsDoNotRequireThePermission) {
  for (const char* key : {"MISC", "BUGFIX"}) {
    MakeSection(key, {{.description = "Text"}});
    EXPECT_TRUE(IsShown()) << key;
  }
}

TEST_F(ItemVisibility, FeatureHiddenFromExternalUsersRequiresThePermission) {
  Make({{.salience = "HideBetaFeatureFromExternal", .description = "Text"}});
  EXPECT_FALSE(IsShown());
  host_.SetInternalFeaturesAllowed(true);
  EXPECT_TRUE(IsShown());
}

TEST_F(ItemVisibility, SectionWithoutChangesIsHidden) {
  MakeSection("BUGFIX", {});
  EXPECT_FALSE(IsShown());
}

TEST_F(ItemVisibility, SectionIsHiddenIfTheFiltersHideItsChanges) {
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

TEST_F(ItemVisibility, UnhideChangeAfterANewChangeShowsTheFeature) {
  Make({{.description = "New"}, {.salience = "UnhideBetaFeature", .description = "Unhide"}}, 1);
  EXPECT_TRUE(IsShown(kShowOnlyNew));
}

TEST_F(ItemVisibility, ItemsVisibilityHasPriorityOverTheTable) {
  host_.AddFeature({.internalKey = "feature", .visibility = 1});
  Make({}, 0);
  EXPECT_TRUE(IsShown());
}

TEST_F(ItemVisibility, HideChangeHidesAFeatureEvenAfterAnUnhideChange) {
  Make({{.salience = "UnhideBetaFeature"}, {.salience = "HideBetaFeature"}}, 1);
  EXPECT_FALSE(IsShown());
  Make(
      {{.salience = "UnhideBetaFeature"}, {.description = "New"}, {.salience = "hidebetafeature"}});
  EXPECT_FALSE(IsShown());
  EXPECT_FALSE(IsShown(kShowOnlyNew));
}

TEST_F(ItemVisibility, HideChangeDoesNotHideASection) {
  MakeSection("BUGFIX", {{.salience = "HideBetaFeature"}, {.description = "Text"}});
  EXPECT_TRUE(IsShown());
}

TEST_F(ItemVisibility, ItemWithSeenChangesIsNewUntilItIsSeen) {
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

TEST_F(ItemVisibility, RatingViewShowsASeenFeatureWithARequest) {
  Make({{.ratingRequest = "RequestRating"}});
  EXPECT_FALSE(IsShown(kRatingView));
  SetItemSeen();
  EXPECT_TRUE(IsShown(kRatingView));
  EXPECT_TRUE(IsShown(kRatingView | kShowOnlyNew));
}

TEST_F(ItemVisibility, RatingViewHidesAFeatureWithoutARequest) {
  Make({{.description = "Text"}});
  SetItemSeen();
  SetChangesSeen();
  EXPECT_FALSE(IsShown(kRatingView));
}

TEST_F(ItemVisibility, RatingViewHidesARatedFeature) {
  Make({{.ratingRequest = "RequestRating"}});
  SetItemSeen();
  SetRated();
  EXPECT_FALSE(IsShown(kRatingView));
}

TEST_F(ItemVisibility, RatingViewHidesSections) {
  MakeSection("BUGFIX", {{.ratingRequest = "RequestRating"}});
  SetItemSeen();
  EXPECT_FALSE(IsShown(kRatingView));
}

TEST_F(ItemVisibility, RatingViewIsEmptyWhileTheApplicationTerminates) {
  Make({{.ratingRequest = "RequestRating"}});
  SetItemSeen();
  host_.SetTerminating(true);
  EXPECT_FALSE(IsShown(kRatingView));
  EXPECT_TRUE(IsShown());
}

TEST_F(ItemVisibility, RatingViewRequiresUsageLoggingOrThePermission) {
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
