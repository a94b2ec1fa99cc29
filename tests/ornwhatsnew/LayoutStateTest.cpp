#include <ornwhatsnew/PanelLayout.h>

#include <string>
#include <utility>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <ornwhatsnew/FeatureListData.h>

#include "tests/support/Builders.h"
#include "tests/support/FakeHost.h"
#include "tests/support/FakeStateStore.h"

namespace ornwhatsnew {
namespace {

using test_support::DataFile;
using test_support::FakeStateStore;
using testing::IsEmpty;

class LayoutState : public test_support::FakeHostTest {
 protected:
  LayoutState() {
    host_.AddFeature({.internalKey = "export", .epicKey = "EPIC-7", .name = "Export"});
    list_.InitWithData(file_);
  }

  // The last change has no description, so only the rating view shows it.
  const std::string file_ =
      DataFile()
          .Row({.groupingID = "EPIC-7", .description = "One"})
          .Row({.groupingID = "EPIC-7", .platform = "Win", .description = "Two"})
          .Row({.groupingID = "MISC", .description = "Three"})
          .Row({.groupingID = "EPIC-7", .ratingRequest = "How?"})
          .Text();
  FeatureListData list_{host_.Getter(), host_.Setter()};
};

TEST_F(LayoutState, LayoutStoresTheSameStateAsTheText) {
  const FakeStateStore::Texts newUser;
  list_.MarkAllSeen();
  const FakeStateStore::Texts seen = host_.State().AllTexts();
  const std::pair<DisplayOptions, FakeStateStore::Texts> cases[] = {
      {{}, newUser}, {kFilterRelevantPlatform, newUser}, {kRatingView, seen}};
  for (const auto& [options, state] : cases) {
    host_.State().Replace(state);
    FeatureListData other(file_, host_.Getter(), host_.Setter());
    StyleRunMap runs;
    host_.State().TakeWrites();
    other.GetFormattedTextForDisplay(options, {}, runs, nullptr);
    const auto expected = host_.State().TakeWrites();
    EXPECT_EQ(expected.size(), 3U);

    host_.State().Replace(state);
    FeatureListData list(file_, host_.Getter(), host_.Setter());
    EXPECT_TRUE(list.GetLayoutForDisplay(options).hasItems);
    EXPECT_EQ(host_.State().TakeWrites(), expected);
  }
}

TEST_F(LayoutState, DisplayedLayoutIsNewUntilTheStateIsRead) {
  const PanelLayout shown = list_.GetLayoutForDisplay(kShowOnlyNew);
  EXPECT_TRUE(list_.IsAnythingNew(kShowOnlyNew));
  EXPECT_EQ(list_.PreviewLayout(kShowOnlyNew), shown);
  list_.RefreshInternalSeenState();
  EXPECT_FALSE(list_.IsAnythingNew(kShowOnlyNew));
  EXPECT_FALSE(list_.PreviewLayout(kShowOnlyNew).hasItems);
}

TEST_F(LayoutState, PreviewMarksNothingAsSeen) {
  const PanelLayout preview = list_.PreviewLayout({});
  EXPECT_EQ(host_.State().SetterCalls(), 0);
  EXPECT_EQ(list_.GetNewSeenState(), "");
  EXPECT_EQ(preview, list_.GetLayoutForDisplay({}));
}

TEST_F(LayoutState, CountsItemsAndChangesOfTheDisplay) {
  EXPECT_EQ(list_.CountNew(kShowOnlyNew), (NewCount{2, 3}));
  EXPECT_EQ(list_.CountNew(kShowOnlyNew | kFilterRelevantPlatform), (NewCount{2, 2}));
  EXPECT_EQ(list_.CountNew(kRatingView), NewCount());
  list_.MarkAllSeen();
  EXPECT_EQ(list_.CountNew(kShowOnlyNew), (NewCount{2, 3}));
  list_.RefreshInternalSeenState();
  EXPECT_EQ(list_.CountNew(kShowOnlyNew), NewCount());
  EXPECT_EQ(list_.CountNew({}), (NewCount{2, 3}));
  EXPECT_EQ(host_.State().SetterCalls(), 3);
}

TEST_F(LayoutState, ItemCanBeNewWithoutANewChange) {
  list_.MarkAllSeen();
  list_.InitWithData(DataFile().Row({.groupingID = "EPIC-7", .description = "One"}).Text());
  EXPECT_EQ(list_.CountNew(kShowOnlyNew), (NewCount{1, 0}));
  EXPECT_TRUE(list_.IsAnythingNew(kShowOnlyNew));
}

TEST_F(LayoutState, MarkAllSeenCallsTheSetterLikeADisplayWithoutOptions) {
  list_.MarkAllSeen();
  const auto writes = host_.State().TakeWrites();
  host_.State().Replace({});
  FeatureListData list(file_, host_.Getter(), host_.Setter());
  StyleRunMap runs;
  list.GetFormattedTextForDisplay({}, {}, runs, nullptr);
  EXPECT_EQ(writes, host_.State().TakeWrites());
  EXPECT_THAT(writes.at(0).second, testing::Not(IsEmpty()));
}

TEST_F(LayoutState, MarkAllSeenTakesEffectWhenTheStateIsRead) {
  list_.MarkAllSeen();
  EXPECT_TRUE(list_.IsAnythingNew(kShowOnlyNew));
  list_.RefreshInternalSeenState();
  EXPECT_FALSE(list_.IsAnythingNew(kShowOnlyNew));
}

TEST_F(LayoutState, FeatureThatTheUserGetsAfterMarkAllSeenIsNew) {
  host_.AddFeature({.internalKey = "map", .epicKey = "EPIC-8", .name = "Map", .enabled = false});
  list_.InitWithData(file_);
  list_.MarkAllSeen();
  list_.RefreshInternalSeenState();
  EXPECT_FALSE(list_.IsAnythingNew(kShowOnlyNew));
  host_.SetFeatureEnabled("map", true);
  EXPECT_EQ(list_.CountNew(kShowOnlyNew), (NewCount{1, 0}));
}

}  // namespace
}  // namespace ornwhatsnew
