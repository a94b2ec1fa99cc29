// Tests which hiding rules `ExplainVisibility` returns for hidden items and changes.
// PlainPanelTest.cpp tests that an item or a change has a hiding rule if and only if it is hidden.
#include <initializer_list>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <ornwhatsnew/FeatureListData.h>

#include "tests/support/Builders.h"
#include "tests/support/FakeHost.h"
#include "tests/support/Matchers.h"

namespace ornwhatsnew {
namespace {

using test_support::ChangeRow;
using test_support::FakeFeature;
using testing::ElementsAre;
using testing::IsEmpty;

class VisibilityExplanation : public test_support::FakeHostTest {
 protected:
  VisibilityExplanation() { Add({.internalKey = "export", .epicKey = "EPIC-1"}); }

  void Add(const FakeFeature& feature) { host_.AddFeature(feature); }

  void Load(std::initializer_list<ChangeRow> rows) {
    list_ = std::make_unique<FeatureListData>(test_support::DataFileText(rows), host_.Getter(),
                                              host_.Setter());
  }

  /// Displays the list, so that the user has seen its content.
  void Show() {
    test_support::Format(*list_);
    list_->RefreshInternalSeenState();
  }

  /// Returns the visibility of the item with the key `key`.
  ItemVisibility Explain(std::string_view key, DisplayOptions options) const {
    for (ItemVisibility& item : list_->ExplainVisibility(options)) {
      if (item.item->FeatureJiraIDKey() == key) return std::move(item);
    }
    throw std::logic_error("no item");
  }

  std::vector<HidingRule> RulesOfItem(std::string_view key, DisplayOptions options) const {
    return Explain(key, options).hidingRules;
  }
  /// Returns the hiding rules of the first change of the feature "EPIC-1".
  std::vector<HidingRule> RulesOfChange(DisplayOptions options) const {
    return Explain("EPIC-1", options).changes.at(0).hidingRules;
  }

  std::unique_ptr<FeatureListData> list_;
};

TEST_F(VisibilityExplanation, ContainsTheItemsInDisplayOrderWithTheirChangesInFileOrder) {
  Add({.internalKey = "map", .epicKey = "EPIC-2"});
  Load({{.groupingID = "EPIC-2", .description = "Two"},
        {.groupingID = "EPIC-1", .description = "One"},
        {.groupingID = "EPIC-2", .description = "Three"}});
  list_->InsertFeatureListItem(test_support::MakeItem({.groupingKey = "EPIC-3"}));
  std::vector<std::string> keys;
  std::vector<std::string> texts;
  for (const ItemVisibility& item : list_->ExplainVisibility({})) {
    keys.push_back(item.item->FeatureJiraIDKey());
    for (const ChangeVisibility& change : item.changes) {
      texts.push_back(change.change->GetDescription());
    }
  }
  EXPECT_EQ(keys, test_support::KeyOrder(*list_));
  EXPECT_THAT(texts, ElementsAre("Two", "Three", "One"));
}

TEST_F(VisibilityExplanation, ShownItemsAndChangesHaveNoRule) {
  Load({{.groupingID = "EPIC-1", .description = "Text"}});
  EXPECT_THAT(RulesOfItem("EPIC-1", kShowOnlyNew | kFilterRelevantPlatform), IsEmpty());
  EXPECT_THAT(RulesOfChange(kShowOnlyNew | kFilterRelevantPlatform), IsEmpty());
}

TEST_F(VisibilityExplanation, ListsEveryRuleOfAChangeInTheOrderOfTheRules) {
  Load({{.version = "26.0.0.0",
         .groupingID = "EPIC-1",
         .salience = "Detail",
         .firstVersion = "25.2.0.0",
         .platform = "Win",
         .description = "Text"}});
  Show();
  EXPECT_THAT(RulesOfChange(kFilterRelevantPlatform | kFilterHeadlinesOnly |
                            kFilterRelevantVersion | kShowOnlyNew),
              ElementsAre(HidingRule::kOtherPlatform, HidingRule::kHeadlinesOnly,
                          HidingRule::kOtherVersion, HidingRule::kSeen));
  EXPECT_THAT(RulesOfChange(kFilterRelevantVersion), ElementsAre(HidingRule::kOtherVersion));
}

TEST_F(VisibilityExplanation, ListsTheRulesOfAChangeInTheRatingView) {
  Load({{.groupingID = "EPIC-1", .description = "Text"}});
  EXPECT_THAT(RulesOfChange(kRatingView),
              ElementsAre(HidingRule::kNoRatingRequest, HidingRule::kNotSeen));
  Show();
  EXPECT_THAT(RulesOfChange(kRatingView), ElementsAre(HidingRule::kNoRatingRequest));
}

TEST_F(VisibilityExplanation, ChangeThatOnlyRequestsARatingHasNoText) {
  Load({{.groupingID = "EPIC-1", .ratingRequest = "RequestRating"}});
  EXPECT_THAT(RulesOfChange({}), ElementsAre(HidingRule::kNoText));
  EXPECT_THAT(RulesOfChange(kRatingView), IsEmpty());
}

TEST_F(VisibilityExplanation, ListsEveryRuleOfAFeatureInTheOrderOfTheRules) {
  Add({.internalKey = "secret", .epicKey = "EPIC-2", .visibility = 1, .enabled = false});
  host_.SetTerminating(true);
  host_.SetUsageLogging(false);
  Load({{.groupingID = "EPIC-2", .salience = "HideBetaFeatureFromExternal", .description = "A"},
        {.groupingID = "EPIC-2", .salience = "HideBetaFeature", .description = "B"},
        {.groupingID = "EPIC-2", .salience = "HideBetaFeature", .description = "C"}});
  EXPECT_THAT(RulesOfItem("EPIC-2", kRatingView),
              ElementsAre(HidingRule::kTerminating, HidingRule::kUsageLoggingOff,
                          HidingRule::kUnavailable, HidingRule::kInternalUsersOnly,
                          HidingRule::kHideBetaFeature, HidingRule::kInternalVisibility,
                          HidingRule::kNotSeen, HidingRule::kNoShownChange));
  EXPECT_THAT(RulesOfItem("EPIC-2", {}),
              ElementsAre(HidingRule::kUnavailable, HidingRule::kInternalUsersOnly,
                          HidingRule::kHideBetaFeature, HidingRule::kInternalVisibility));
}

TEST_F(VisibilityExplanation, ChangesOfAHiddenFeatureHaveOnlyTheirOwnRules) {
  host_.SetFeatureEnabled("export", false);
  Load({{.groupingID = "EPIC-1", .platform = "Win", .description = "Text"}});
  EXPECT_THAT(RulesOfItem("EPIC-1", {}), ElementsAre(HidingRule::kUnavailable));
  EXPECT_THAT(RulesOfChange({}), IsEmpty());
  EXPECT_THAT(RulesOfChange(kFilterRelevantPlatform), ElementsAre(HidingRule::kOtherPlatform));
}

TEST_F(VisibilityExplanation, ListsTheRulesOfSections) {
  Load({{.groupingID = "INTERNAL", .description = "Text"}});
  EXPECT_THAT(RulesOfItem("INTERNAL", {}), ElementsAre(HidingRule::kInternalUsersOnly));
  EXPECT_THAT(RulesOfItem("MISC", {}), ElementsAre(HidingRule::kNoShownChange));
  EXPECT_THAT(RulesOfItem("MISC", kRatingView),
              ElementsAre(HidingRule::kNoShownChange, HidingRule::kSectionInRatingView));
}

TEST_F(VisibilityExplanation, FeatureWithoutNewChangesIsSeen) {
  Load({{.groupingID = "EPIC-1", .description = "Text"}});
  EXPECT_THAT(RulesOfItem("EPIC-1", kShowOnlyNew), IsEmpty());
  Show();
  EXPECT_THAT(RulesOfItem("EPIC-1", kShowOnlyNew), ElementsAre(HidingRule::kSeen));
  EXPECT_THAT(RulesOfItem("EPIC-1", {}), IsEmpty());
}

TEST_F(VisibilityExplanation, RatedFeatureIsHiddenInTheRatingView) {
  Load({{.groupingID = "EPIC-1", .ratingRequest = "RequestRating", .description = "Text"}});
  Show();
  EXPECT_THAT(RulesOfItem("EPIC-1", kRatingView), IsEmpty());
  list_->MarkItemHasBeenRated("EPIC-1");
  EXPECT_THAT(RulesOfItem("EPIC-1", kRatingView), ElementsAre(HidingRule::kRated));
}

TEST_F(VisibilityExplanation, RatedFeatureCanAlsoBeNewAndWithoutShownChanges) {
  const ChangeRow rated = {.groupingID = "EPIC-1", .ratingRequest = "How?", .description = "Text"};
  Load({rated});
  Show();
  list_->MarkItemHasBeenRated("EPIC-1");
  EXPECT_THAT(RulesOfItem("EPIC-1", kRatingView | kFilterHeadlinesOnly),
              ElementsAre(HidingRule::kRated, HidingRule::kNoShownChange));
  // The rated identity does not depend on the text of a change. The feature therefore remains rated
  // if this text is edited.
  ChangeRow edited = rated;
  edited.description = "Another text";
  Load({edited});
  EXPECT_THAT(RulesOfItem("EPIC-1", kRatingView),
              ElementsAre(HidingRule::kRated, HidingRule::kNotSeen, HidingRule::kNoShownChange));
}

TEST_F(VisibilityExplanation, MarksNothingAsSeen) {
  Load({{.groupingID = "EPIC-1", .description = "Text"}});
  list_->ExplainVisibility({});
  EXPECT_EQ(host_.State().SetterCalls(), 0);
  EXPECT_EQ(list_->GetNewSeenState(), "");
}

}  // namespace
}  // namespace ornwhatsnew
