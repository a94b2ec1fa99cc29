// Tests which items a list creates from the host's beta features, how it orders them, and which
// unlock labels they have.
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <ornwhatsnew/FeatureListData.h>
#include <ornwhatsnew/WhatsNewTypes.h>

#include "ornwhatsnew/src/panel/UnlockState.h"
#include "ornwhatsnew/src/rules/DebugSwitches.h"
#include "tests/support/Builders.h"
#include "tests/support/FakeHost.h"
#include "tests/support/Matchers.h"

namespace ornwhatsnew {
namespace {

using test_support::ItemOf;
using test_support::KeyOrder;
using test_support::MakeItem;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::UnorderedElementsAre;

class BetaFeatures : public test_support::FakeHostTest {
 protected:
  std::vector<std::string> OrderAfterParsing() {
    list_.ParseBetaFeatures();
    return KeyOrder(list_);
  }
  std::vector<std::string> OrderAfterBubbling() {
    list_.BubbleUnlockedItemsToTheTop();
    return KeyOrder(list_);
  }
  // Returns the unlock state of an item with these keys and no changes.
  ItemUnlockState UnlockState(const std::string& internalKey,
                              const std::string& groupingKey = "E") {
    return GetItemUnlockState(*MakeItem({groupingKey, internalKey}));
  }

  FeatureListData list_{host_.Getter(), host_.Setter()};
};

TEST_F(BetaFeatures, EmptyTableGivesTheFourSections) {
  EXPECT_THAT(OrderAfterParsing(), ElementsAre("MISC", "BUGFIX", "INTERNAL", "UNREVIEWED"));
  EXPECT_THAT(OrderAfterBubbling(), ElementsAre("UNREVIEWED", "MISC", "BUGFIX", "INTERNAL"));
}

TEST_F(BetaFeatures, SectionsHaveOnlyAName) {
  list_.ParseBetaFeatures();
  const struct {
    const char* key;
    const char* name;
  } sections[] = {
      {"MISC", "$$$/ornwhatsnew/SectionKey/Miscellaneous=Miscellaneous"},
      {"BUGFIX", "$$$/ornwhatsnew/SectionKey/BugFixes=Bug fixes"},
      {"INTERNAL", "$$$/ornwhatsnew/SectionKey/Internal=Internal notes"},
      {"UNREVIEWED", "$$$/ornwhatsnew/SectionKey/Unreviewed=Unreviewed"},
  };
  for (const auto& [key, name] : sections) {
    const FeatureListItem& item = ItemOf(list_, key);
    EXPECT_EQ(item.GetFeatureName(), name);
    EXPECT_EQ(item.GetFeatureDescription(), "") << key;
    EXPECT_EQ(item.GetBetaFeatureInternalKey(), "") << key;
    EXPECT_EQ(static_cast<int>(item.GetVisibility()), 0) << key;
  }
}

TEST_F(BetaFeatures, BecomeItems) {
  host_.AddFeature({.internalKey = "export",
                    .epicKey = "EPIC-7",
                    .name = "Exp\xC3\xB6rt",
                    .description = "\xE6\x97\xA5",
                    .visibility = 2});
  list_.ParseBetaFeatures();
  const FeatureListItem& item = ItemOf(list_, "EPIC-7");
  EXPECT_EQ(item.GetFeatureJiraIDKey(), "EPIC-7");
  EXPECT_EQ(item.GetBetaFeatureInternalKey(), "export");
  EXPECT_EQ(item.GetFeatureName(), "Exp\xC3\xB6rt");
  EXPECT_EQ(item.GetFeatureDescription(), "\xE6\x97\xA5");
  EXPECT_EQ(static_cast<int>(item.GetVisibility()), 2);
  EXPECT_FALSE(item.IsItemInternalOverride());
}

TEST_F(BetaFeatures, AreOrderedByNameWithUpperCaseFirst) {
  host_.AddFeature({.internalKey = "1", .epicKey = "E-beta", .name = "beta"});
  host_.AddFeature({.internalKey = "2", .epicKey = "E-Alpha", .name = "Alpha"});
  host_.AddFeature({.internalKey = "3", .epicKey = "E-alpha", .name = "alpha"});
  EXPECT_THAT(OrderAfterParsing(), ElementsAre("E-Alpha", "E-alpha", "E-beta", "MISC", "BUGFIX",
                                               "INTERNAL", "UNREVIEWED"));
}

TEST_F(BetaFeatures, NamesCompareAsUnsignedBytesAndPrefixesSortFirst) {
  host_.AddFeature({.internalKey = "1", .epicKey = "E-1", .name = "\xC3\x84"});
  host_.AddFeature({.internalKey = "2", .epicKey = "E-2", .name = "Zoo"});
  host_.AddFeature({.internalKey = "3", .epicKey = "E-3", .name = "Z"});
  host_.AddFeature({.internalKey = "4", .epicKey = "E-4", .name = "a"});
  EXPECT_THAT(OrderAfterParsing(),
              ElementsAre("E-3", "E-2", "E-4", "E-1", "MISC", "BUGFIX", "INTERNAL", "UNREVIEWED"));
}

TEST_F(BetaFeatures, WithTheSameNameAreOrderedByEpicKey) {
  host_.AddFeature({.internalKey = "1", .epicKey = "E-2", .name = "Same"});
  host_.AddFeature({.internalKey = "2", .epicKey = "E-1", .name = "Same"});
  EXPECT_THAT(OrderAfterParsing(),
              ElementsAre("E-1", "E-2", "MISC", "BUGFIX", "INTERNAL", "UNREVIEWED"));
}

TEST_F(BetaFeatures, WithTheSameEpicKeyBecomeOneItem) {
  host_.AddFeature({.internalKey = "b", .epicKey = "E-1", .name = "Aardvark"});
  host_.AddFeature({.internalKey = "a", .epicKey = "E-1", .name = "Zebra"});
  host_.AddFeature({.internalKey = "c", .epicKey = "E-2", .name = "Middle"});
  // The features "a" and "b" become one item. The list creates this item from "a", because "a"
  // sorts before "b". The name "Aardvark" determines the item's position, because this name sorts
  // before "Zebra".
  EXPECT_THAT(OrderAfterParsing(),
              ElementsAre("E-1", "E-2", "MISC", "BUGFIX", "INTERNAL", "UNREVIEWED"));
  EXPECT_EQ(ItemOf(list_, "E-1").GetBetaFeatureInternalKey(), "a");
}

TEST_F(BetaFeatures, WithoutAnEpicKeyShareTheEmptyKey) {
  host_.AddFeature({.internalKey = "a", .name = "First"});
  host_.AddFeature({.internalKey = "b", .name = "Second"});
  EXPECT_THAT(OrderAfterParsing(), ElementsAre("", "MISC", "BUGFIX", "INTERNAL", "UNREVIEWED"));
  EXPECT_EQ(ItemOf(list_, "").GetFeatureName(), "First");
}

TEST_F(BetaFeatures, WithASectionKeyReplaceTheSection) {
  host_.AddFeature({.internalKey = "a", .epicKey = "BUGFIX", .name = "Feature"});
  EXPECT_THAT(OrderAfterParsing(), ElementsAre("BUGFIX", "MISC", "INTERNAL", "UNREVIEWED"));
  EXPECT_EQ(ItemOf(list_, "BUGFIX").GetFeatureName(), "Feature");
}

TEST_F(BetaFeatures, ParsingAgainKeepsItemsAndAddsNoKeys) {
  host_.AddFeature({.internalKey = "a", .epicKey = "E-1", .name = "A"});
  list_.ParseBetaFeatures();
  const auto item = list_.GetFeatureItems().at("E-1");
  EXPECT_THAT(OrderAfterParsing(), ElementsAre("E-1", "MISC", "BUGFIX", "INTERNAL", "UNREVIEWED"));
  EXPECT_EQ(list_.GetFeatureItems().at("E-1"), item);
}

TEST_F(BetaFeatures, EnabledPublicFeaturesFollowUnreviewed) {
  host_.AddFeature({.internalKey = "1", .epicKey = "E-1", .name = "A", .enabled = false});
  host_.AddFeature({.internalKey = "2", .epicKey = "E-2", .name = "B"});
  host_.AddFeature({.internalKey = "3", .epicKey = "E-3", .name = "C", .enabled = false});
  host_.AddFeature({.internalKey = "4", .epicKey = "E-4", .name = "D"});
  list_.ParseBetaFeatures();
  EXPECT_THAT(OrderAfterBubbling(),
              ElementsAre("UNREVIEWED", "E-2", "E-4", "E-1", "E-3", "MISC", "BUGFIX", "INTERNAL"));
}

TEST_F(BetaFeatures, EnabledInternalFeatureMovesUpForExternalUsersOnly) {
  host_.AddFeature({.internalKey = "1", .epicKey = "E-1", .name = "A", .enabled = false});
  host_.AddFeature({.internalKey = "2", .epicKey = "E-2", .name = "B", .visibility = 1});
  list_.ParseBetaFeatures();
  host_.SetInternalFeaturesAllowed(true);
  EXPECT_THAT(OrderAfterBubbling(),
              ElementsAre("UNREVIEWED", "E-1", "E-2", "MISC", "BUGFIX", "INTERNAL"));
  host_.SetInternalFeaturesAllowed(false);
  EXPECT_THAT(OrderAfterBubbling(),
              ElementsAre("UNREVIEWED", "E-2", "E-1", "MISC", "BUGFIX", "INTERNAL"));
}

TEST_F(BetaFeatures, DisabledPublicFeatureDoesNotMoveButIsLabelledUnlocked) {
  host_.AddFeature({.internalKey = "1", .epicKey = "E-1", .name = "A", .visibility = 3});
  host_.AddFeature({.internalKey = "2", .epicKey = "E-2", .name = "B", .enabled = false});
  list_.ParseBetaFeatures();
  EXPECT_THAT(OrderAfterBubbling(),
              ElementsAre("UNREVIEWED", "E-1", "E-2", "MISC", "BUGFIX", "INTERNAL"));
  EXPECT_EQ(UnlockState("2"), ItemUnlockState::Unlocked);
  host_.ShowAllOffFeatures(true);
  EXPECT_EQ(UnlockState("2"), ItemUnlockState::Unlocked);
  host_.SetInternalFeaturesAllowed(true);
  EXPECT_EQ(UnlockState("2"), ItemUnlockState::Off);
  host_.SetFeatureEnabled("2", true);
  EXPECT_EQ(UnlockState("2"), ItemUnlockState::Unlocked);
}

TEST_F(BetaFeatures, InDevelopmentAndUnlabelledFeaturesNeverMoveUp) {
  host_.AddFeature({.internalKey = "1", .epicKey = "E-1", .name = "A", .enabled = false});
  host_.AddFeature({.internalKey = "2", .epicKey = "E-2", .name = "B", .visibility = 2});
  host_.AddFeature({.internalKey = "3", .epicKey = "E-3", .name = "C", .visibility = 3});
  host_.AddFeature({.internalKey = "4", .epicKey = "E-4", .name = "D", .visibility = 4});
  list_.ParseBetaFeatures();
  EXPECT_THAT(OrderAfterBubbling(),
              ElementsAre("UNREVIEWED", "E-1", "E-2", "E-3", "E-4", "MISC", "BUGFIX", "INTERNAL"));
}

TEST_F(BetaFeatures, BubblingTwiceHasNoFurtherEffect) {
  for (const char* key : {"1", "2", "3", "4"}) {
    host_.AddFeature({.internalKey = key,
                      .epicKey = std::string("E-") + key,
                      .name = key,
                      .enabled = std::string(key) > "2"});
  }
  list_.ParseBetaFeatures();
  const auto once = OrderAfterBubbling();
  EXPECT_THAT(OrderAfterBubbling(), ElementsAreArray(once));
}

TEST_F(BetaFeatures, BubblingPutsUnreviewedFirstEvenWithoutAnItem) {
  list_.InsertFeatureListItem(MakeItem({.groupingKey = "E-1"}));
  EXPECT_THAT(OrderAfterBubbling(), ElementsAre("UNREVIEWED", "E-1"));
}

TEST_F(BetaFeatures, OrderDependsOnTheCurrentFeatureTable) {
  host_.AddFeature({.internalKey = "1", .epicKey = "E-1", .name = "A", .enabled = false});
  host_.AddFeature({.internalKey = "2", .epicKey = "E-2", .name = "B", .visibility = 2});
  list_.ParseBetaFeatures();
  host_.AddFeature({.internalKey = "2", .epicKey = "other", .name = "Z", .visibility = 0});
  EXPECT_THAT(OrderAfterBubbling(),
              ElementsAre("UNREVIEWED", "E-2", "E-1", "MISC", "BUGFIX", "INTERNAL"));
  host_.RemoveFeature("2");
  list_.ParseBetaFeatures();
  EXPECT_THAT(OrderAfterBubbling(),
              ElementsAre("UNREVIEWED", "E-1", "E-2", "MISC", "BUGFIX", "INTERNAL"));
}

TEST_F(BetaFeatures, OnlyInternalSectionsAreLabelled) {
  EXPECT_EQ(UnlockState("", "INTERNAL"), ItemUnlockState::TarsaOnly);
  EXPECT_EQ(UnlockState("", "UNREVIEWED"), ItemUnlockState::TarsaOnly);
  EXPECT_EQ(UnlockState("", "MISC"), ItemUnlockState::Unlabelled);
  EXPECT_EQ(UnlockState("", "BUGFIX"), ItemUnlockState::Unlabelled);
}

TEST_F(BetaFeatures, UnlockStateDependsOnVisibilityAndPermission) {
  const struct {
    std::int32_t visibility;
    ItemUnlockState external;
    ItemUnlockState internal;
  } cases[] = {
      {0, ItemUnlockState::Unlocked, ItemUnlockState::Unlocked},
      {1, ItemUnlockState::Unlocked, ItemUnlockState::TarsaOnly},
      {2, ItemUnlockState::InDevelopment, ItemUnlockState::InDevelopment},
      {3, ItemUnlockState::Unlabelled, ItemUnlockState::Unlabelled},
      {4, ItemUnlockState::Unlabelled, ItemUnlockState::Unlabelled},
      {-1, ItemUnlockState::Unlabelled, ItemUnlockState::Unlabelled},
  };
  for (const auto& [visibility, external, internal] : cases) {
    host_.AddFeature({.internalKey = "1", .visibility = visibility});
    host_.SetInternalFeaturesAllowed(false);
    EXPECT_EQ(UnlockState("1"), external) << visibility;
    host_.SetInternalFeaturesAllowed(true);
    EXPECT_EQ(UnlockState("1"), internal) << visibility;
  }
}

TEST_F(BetaFeatures, OverrideLabelsNonPublicFeaturesAsInternal) {
  const auto item = MakeItem({"E", "1"}, {{.salience = "HideBetaFeatureFromExternal"}});
  for (const std::int32_t visibility : {1, 2, 3, 4}) {
    host_.AddFeature({.internalKey = "1", .visibility = visibility});
    host_.SetInternalFeaturesAllowed(true);
    EXPECT_EQ(GetItemUnlockState(*item), ItemUnlockState::TarsaOnly) << visibility;
    host_.SetInternalFeaturesAllowed(false);
    EXPECT_EQ(GetItemUnlockState(*item), ItemUnlockState::Unlocked) << visibility;
  }
  host_.AddFeature({.internalKey = "1", .visibility = 0});
  host_.SetInternalFeaturesAllowed(true);
  EXPECT_EQ(GetItemUnlockState(*item), ItemUnlockState::Unlocked);
}

TEST_F(BetaFeatures, FeatureMissingFromTheTableIsUnlabelled) {
  EXPECT_EQ(UnlockState("gone"), ItemUnlockState::Unlabelled);
}

TEST_F(BetaFeatures, LabelUsesTheVisibilityInTheTable) {
  host_.AddFeature({.internalKey = "1", .visibility = 2});
  EXPECT_EQ(
      GetItemUnlockState(*MakeItem({.groupingKey = "E", .internalKey = "1", .visibility = 0})),
      ItemUnlockState::InDevelopment);
}

TEST_F(BetaFeatures, DebugSwitchRequiresTheExactWordTrueAndPermission) {
  host_.SetInternalFeaturesAllowed(true);
  EXPECT_FALSE(ShowingAllOffFeaturesInternally());
  for (const char* text : {"True", "TRUE", "1", "", "yes", " true", "false"}) {
    host_.SetDebugEntry("ornappsupport.betafeature.SimulateShowingAllOffFeaturesInWhatsNew", text);
    host_.SetDebugEntry("ornappsupport.betafeature.SimulateShowingAllUnlockCodesInWhatsNew", text);
    EXPECT_FALSE(ShowingAllOffFeaturesInternally()) << text;
    EXPECT_FALSE(IsInternalDebugSwitchOn(kShowAllUnlockCodes)) << text;
  }
  host_.ShowAllOffFeatures(true);
  EXPECT_TRUE(ShowingAllOffFeaturesInternally());
  EXPECT_FALSE(IsInternalDebugSwitchOn(kShowAllUnlockCodes));
  host_.ShowAllUnlockCodes(true);
  EXPECT_TRUE(IsInternalDebugSwitchOn(kShowAllUnlockCodes));
  host_.SetInternalFeaturesAllowed(false);
  EXPECT_FALSE(ShowingAllOffFeaturesInternally());
  EXPECT_FALSE(IsInternalDebugSwitchOn(kShowAllUnlockCodes));
}

}  // namespace
}  // namespace ornwhatsnew
