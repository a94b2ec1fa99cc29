// Tests how a list parses a data file: which item receives each change, how the keys are ordered,
// and which changes-since version is set.
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <ornwhatsnew/FeatureListData.h>

#include "tests/support/Builders.h"
#include "tests/support/FakeHost.h"
#include "tests/support/Matchers.h"

namespace ornwhatsnew {
namespace {

using test_support::ChangeDescriptions;
using test_support::DataFile;
using test_support::DataFileText;
using test_support::Format;
using test_support::ItemOf;
using test_support::KeyOrder;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

// Provides a list with the four sections and three features. The epic key of the third feature
// looks like a story ID.
class DataFileParse : public test_support::FakeHostTest {
 protected:
  DataFileParse() {
    AddFeature("EPIC-1");
    AddFeature("EPIC-2");
    AddFeature("STORY-9");
    list_.ParseBetaFeatures();
  }

  void AddFeature(const std::string& key) {
    host_.AddFeature({.internalKey = "of " + key, .epicKey = key, .name = key});
  }

  std::vector<std::string> ChangesOf(std::string_view key) const {
    return ChangeDescriptions(ItemOf(list_, key));
  }
  const FeatureListDetail& OnlyChangeOf(std::string_view key) const {
    return *ItemOf(list_, key).GetAllChanges().at(0);
  }
  bool HasNoChanges() const {
    return std::ranges::all_of(list_.GetFeatureItems(), [](const auto& entry) {
      return entry.second->GetAllChanges().empty();
    });
  }
  // Returns the panel's heading, which contains the changes-since version.
  std::string Header() { return Format(list_).Pieces(kStyleHeader).at(0); }

  FeatureListData list_{host_.Getter(), host_.Setter()};
};

TEST_F(DataFileParse, EmptyTextAddsNoChangesAndLeavesUnreviewedLast) {
  list_.ParseWhatsNewData("");
  EXPECT_TRUE(HasNoChanges());
  EXPECT_THAT(KeyOrder(list_), ElementsAre("EPIC-1", "EPIC-2", "STORY-9", "MISC", "BUGFIX",
                                           "INTERNAL", "UNREVIEWED"));
}

TEST_F(DataFileParse, SectionsThatReceiveChangesAreNotMoved) {
  list_.ParseWhatsNewData(DataFileText({{.groupingID = "INTERNAL", .description = "Internal"},
                                        {.groupingID = "MISC", .description = "Other"},
                                        {.groupingID = "EPIC-1", .description = "One"},
                                        {.groupingID = "BUGFIX", .description = "Fixed"}}));
  EXPECT_THAT(ChangesOf("INTERNAL"), ElementsAre("Internal"));
  EXPECT_THAT(KeyOrder(list_), ElementsAre("EPIC-2", "STORY-9", "MISC", "BUGFIX", "INTERNAL",
                                           "EPIC-1", "UNREVIEWED"));
}

TEST_F(DataFileParse, HeaderAloneAddsNoChangesAndLeavesUnreviewedLast) {
  list_.ParseWhatsNewData(DataFile().Text());
  EXPECT_TRUE(HasNoChanges());
  EXPECT_THAT(KeyOrder(list_), ElementsAre("EPIC-1", "EPIC-2", "STORY-9", "MISC", "BUGFIX",
                                           "INTERNAL", "UNREVIEWED"));
}

TEST_F(DataFileParse, AppendsUnreviewedEvenToAnEmptyList) {
  FeatureListData list(host_.Getter(), host_.Setter());
  list.ParseWhatsNewData("");
  EXPECT_THAT(KeyOrder(list), ElementsAre("UNREVIEWED"));
  EXPECT_THAT(list.GetFeatureItems(), IsEmpty());
}

TEST_F(DataFileParse, ChangeInTheFirstRowIsLost) {
  list_.ParseWhatsNewData(",EPIC-1,,,,,,,,Lost\n,EPIC-1,,,,,,,,Kept\n");
  EXPECT_THAT(ChangesOf("EPIC-1"), ElementsAre("Kept"));
}

TEST_F(DataFileParse, FirstRowIsTheHeaderEvenIfItIsAChangesSinceRow) {
  list_.ParseWhatsNewData("2.1,Changes-Since,,,,,,,,\n,EPIC-1,,,,,,,,Kept\n");
  EXPECT_THAT(ChangesOf("EPIC-1"), ElementsAre("Kept"));
  EXPECT_EQ(Header(), "\n\tChanges since v\n\n");
}

TEST_F(DataFileParse, HeaderMayBeginWithAByteOrderMark) {
  list_.ParseWhatsNewData("\xEF\xBB\xBF" +
                          DataFileText({{.groupingID = "EPIC-1", .description = "Kept"}}));
  EXPECT_THAT(ChangesOf("EPIC-1"), ElementsAre("Kept"));
}

TEST_F(DataFileParse, FirstChangeIsLostIfTheHeaderHasAnotherFieldCount) {
  list_.ParseWhatsNewData("What's new\n,EPIC-1,,,,,,,,Lost\n,EPIC-1,,,,,,,,Kept\n");
  EXPECT_THAT(ChangesOf("EPIC-1"), ElementsAre("Kept"));
}

TEST_F(DataFileParse, RowWithoutAGroupingIDIsSkippedEvenIfItsStoryIDIsKnown) {
  list_.ParseWhatsNewData(DataFileText({{.storyID = "EPIC-1", .description = "Lost"}}));
  EXPECT_TRUE(HasNoChanges());
}

TEST_F(DataFileParse, RowsWithNineOrElevenFieldsAreSkipped) {
  list_.ParseWhatsNewData(
      DataFile().Line(",EPIC-1,,,,,,,Lost").Line(",EPIC-1,,,,,,,,Lost,").Text());
  EXPECT_TRUE(HasNoChanges());
}

TEST_F(DataFileParse, ChangesSinceRowMayHaveAnyFieldCount) {
  list_.ParseWhatsNewData(DataFile().Line("2.1,Changes-Since").Text());
  EXPECT_EQ(Header(), "\n\tChanges since v2.1\n\n");
  list_.ParseWhatsNewData(DataFile().Line("2.2,changes-since,,,,,,,,").Text());
  EXPECT_EQ(Header(), "\n\tChanges since v2.2\n\n");
}

TEST_F(DataFileParse, LastChangesSinceRowWins) {
  list_.ParseWhatsNewData(DataFile().ChangesSince("2.1").ChangesSince("2.0").Text());
  EXPECT_EQ(Header(), "\n\tChanges since v2.0\n\n");
}

TEST_F(DataFileParse, FileWithoutChangesSinceRowKeepsTheVersion) {
  list_.ParseWhatsNewData(DataFile().ChangesSince("2.1").Text());
  list_.ParseWhatsNewData(DataFile().Text());
  EXPECT_EQ(Header(), "\n\tChanges since v2.1\n\n");
}

TEST_F(DataFileParse, ShortRowAfterAChangesSinceRowInheritsItsKeyword) {
  list_.ParseWhatsNewData(DataFile().Line("2.1,Changes-Since").Line("").Text());
  EXPECT_EQ(Header(), "\n\tChanges since v2.1\n\n");
  list_.ParseWhatsNewData(DataFile().Line("2.1,Changes-Since").Line("3.0").Text());
  EXPECT_EQ(Header(), "\n\tChanges since v3.0\n\n");
}

TEST_F(DataFileParse, BlankRowAfterAChangeIsSkipped) {
  list_.ParseWhatsNewData(
      DataFile().Row({.groupingID = "EPIC-1", .description = "One"}).Line("").Text());
  EXPECT_THAT(ChangesOf("EPIC-1"), ElementsAre("One"));
}

TEST_F(DataFileParse, QuotedDescriptionKeepsItsCommas) {
  list_.ParseWhatsNewData(DataFile().Line(",EPIC-1,,,,,,,,\"One, two, three\"").Text());
  EXPECT_THAT(ChangesOf("EPIC-1"), ElementsAre("One, two, three"));
}

TEST_F(DataFileParse, ColumnsBecomeTheFieldsOfTheChange) {
  list_.ParseWhatsNewData(
      DataFile().Line("V1,EPIC-1,STORY-1,HeadLine,Ask Me,F1,MAC,HTTPS://U,SHA,Text").Text());
  const FeatureListDetail& change = OnlyChangeOf("EPIC-1");
  EXPECT_EQ(change.GetChangeAddedVersion(), "V1");
  EXPECT_EQ(change.GetJIRAEpicID(), "epic-1");
  EXPECT_EQ(change.GetJIRAStoryBugTaskID(), "story-1");
  EXPECT_EQ(change.GetSalienceOptional(), "headline");
  EXPECT_EQ(change.GetRatingRequestOptional(), "Ask Me");
  EXPECT_EQ(change.GetRelevantFirstVersionOptional(), "f1");
  EXPECT_EQ(change.GetRelevantPlatformOptional(), "mac");
  EXPECT_EQ(change.GetViewMoreURLOptional(), "HTTPS://U");
  EXPECT_EQ(change.GetSHAOptional(), "SHA");
  EXPECT_EQ(change.GetDescription(), "Text");
}

TEST_F(DataFileParse, NonAsciiLettersOfStoryIDsAreLowerCased) {
  list_.ParseWhatsNewData(DataFile().Line(",EPIC-1,\xC3\x89\xE2\x84\xAA,,,,,,,\xC3\x89").Text());
  EXPECT_EQ(OnlyChangeOf("EPIC-1").GetJIRAStoryBugTaskID(), "\xC3\xA9k");
  EXPECT_EQ(OnlyChangeOf("EPIC-1").GetDescription(), "\xC3\x89");
}

TEST_F(DataFileParse, InternalGroupingIDMatchesInAnyLetterCaseAndOverridesTheStoryID) {
  list_.ParseWhatsNewData(
      DataFileText({{.groupingID = "internal", .storyID = "EPIC-1", .description = "lower"},
                    {.groupingID = "InterNal", .storyID = "EPIC-1", .description = "mixed"}}));
  EXPECT_THAT(ChangesOf("INTERNAL"), ElementsAre("lower", "mixed"));
  EXPECT_FALSE(OnlyChangeOf("INTERNAL").DetailInternalCouldNotMatchBetaFeature());
}

TEST_F(DataFileParse, BugfixGroupingIDIsCaseSensitive) {
  list_.ParseWhatsNewData(DataFileText({{.groupingID = "BUGFIX", .description = "found"},
                                        {.groupingID = "bugfix", .description = "not found"}}));
  EXPECT_THAT(ChangesOf("BUGFIX"), ElementsAre("found"));
  EXPECT_THAT(ChangesOf("INTERNAL"), ElementsAre("not found"));
  EXPECT_FALSE(OnlyChangeOf("BUGFIX").DetailInternalCouldNotMatchBetaFeature());
  EXPECT_TRUE(OnlyChangeOf("INTERNAL").DetailInternalCouldNotMatchBetaFeature());
}

TEST_F(DataFileParse, StoryIDHasPriorityOverTheGroupingID) {
  list_.ParseWhatsNewData(
      DataFileText({{.groupingID = "EPIC-1", .storyID = "STORY-9", .description = "Story"}}));
  EXPECT_THAT(ChangesOf("STORY-9"), ElementsAre("Story"));
  EXPECT_THAT(ChangesOf("EPIC-1"), IsEmpty());
}

TEST_F(DataFileParse, UnreviewedChangeIsUnmatchedOnlyIfItMatchesNoItem) {
  list_.ParseWhatsNewData(DataFileText(
      {{.groupingID = "EPIC-1", .salience = "UNREVIEWED", .description = "matched"},
       {.groupingID = "none", .salience = "Unreviewed", .description = "not matched"}}));
  EXPECT_THAT(ChangesOf("UNREVIEWED"), ElementsAre("matched", "not matched"));
  EXPECT_FALSE(OnlyChangeOf("UNREVIEWED").DetailInternalCouldNotMatchBetaFeature());
  EXPECT_TRUE(
      ItemOf(list_, "UNREVIEWED").GetAllChanges()[1]->DetailInternalCouldNotMatchBetaFeature());
}

TEST_F(DataFileParse, UnmatchedChangeIsDroppedIfThereIsNoInternalSection) {
  FeatureListData list(host_.Getter(), host_.Setter());
  list.ParseWhatsNewData(DataFileText({{.groupingID = "none", .description = "Lost"}}));
  EXPECT_THAT(list.GetFeatureItems(), IsEmpty());
}

TEST_F(DataFileParse, EmptyEntryReceivesNoChange) {
  FeatureListData list(host_.Getter(), host_.Setter());
  list.ParseWhatsNewData("");
  list.BubbleUnlockedItemsToTheTop();  // adds an empty entry for a key without an item
  ASSERT_EQ(list.GetFeatureItems().at("UNREVIEWED"), nullptr);
  list.InsertFeatureListItem(test_support::MakeItem({.groupingKey = "EPIC-1"}));
  list.ParseWhatsNewData(DataFileText(
      {{.groupingID = "EPIC-1", .storyID = "UNREVIEWED", .description = "Found by the epic"},
       {.groupingID = "EPIC-1", .salience = "Unreviewed", .description = "Dropped"}}));
  EXPECT_THAT(ChangeDescriptions(ItemOf(list, "EPIC-1")), ElementsAre("Found by the epic"));
  EXPECT_EQ(list.GetFeatureItems().at("UNREVIEWED"), nullptr);
}

TEST_F(DataFileParse, EmptyStoryIDMatchesAFeatureWithoutAnEpicKey) {
  host_.AddFeature({.internalKey = "no epic", .name = "No epic"});
  list_.ParseBetaFeatures();
  list_.ParseWhatsNewData(DataFileText({{.groupingID = "EPIC-1", .description = "Change"}}));
  EXPECT_THAT(ChangesOf(""), ElementsAre("Change"));
}

TEST_F(DataFileParse, IDsAreLookedUpAfterCleaningAndBeforeLowerCasing) {
  AddFeature("Mixed-\xEF\xBF\xBD");
  list_.ParseBetaFeatures();
  list_.ParseWhatsNewData(DataFile().Line(",Mi\rxed-\xFF,,,,,,,,Change").Text());
  EXPECT_THAT(ChangesOf("Mixed-\xEF\xBF\xBD"), ElementsAre("Change"));
}

TEST_F(DataFileParse, TouchedFeaturesMoveToTheEndInTheOrderOfTheirFirstChange) {
  list_.ParseWhatsNewData(DataFileText({{.groupingID = "STORY-9"},
                                        {.groupingID = "BUGFIX"},
                                        {.groupingID = "EPIC-1"},
                                        {.groupingID = "STORY-9"},
                                        {.groupingID = "MISC"}}));
  EXPECT_THAT(KeyOrder(list_), ElementsAre("EPIC-2", "MISC", "BUGFIX", "INTERNAL", "STORY-9",
                                           "EPIC-1", "UNREVIEWED"));
}

TEST_F(DataFileParse, FeatureOfAnUnreviewedChangeIsNotTouched) {
  list_.ParseWhatsNewData(DataFileText({{.groupingID = "EPIC-1", .salience = "Unreviewed"}}));
  EXPECT_THAT(KeyOrder(list_), ElementsAre("EPIC-1", "EPIC-2", "STORY-9", "MISC", "BUGFIX",
                                           "INTERNAL", "UNREVIEWED"));
}

TEST_F(DataFileParse, RepeatedKeyOfATouchedFeatureIsKeptOnce) {
  list_.InsertFeatureListItem(test_support::MakeItem({.groupingKey = "EPIC-1"}));
  list_.ParseWhatsNewData(DataFileText({{.groupingID = "EPIC-1"}}));
  EXPECT_THAT(KeyOrder(list_), ElementsAre("EPIC-2", "STORY-9", "MISC", "BUGFIX", "INTERNAL",
                                           "EPIC-1", "UNREVIEWED"));
}

TEST_F(DataFileParse, RepeatedUnreviewedKeyIsKeptOnceAtTheEnd) {
  list_.InsertFeatureListItem(test_support::MakeItem({.groupingKey = "UNREVIEWED"}));
  list_.InsertFeatureListItem(test_support::MakeItem({.groupingKey = "UNREVIEWED"}));
  list_.ParseWhatsNewData("");
  EXPECT_THAT(KeyOrder(list_), ElementsAre("EPIC-1", "EPIC-2", "STORY-9", "MISC", "BUGFIX",
                                           "INTERNAL", "UNREVIEWED"));
}

TEST_F(DataFileParse, ParsingTwiceAddsTheChangesTwice) {
  const std::string data = DataFileText({{.groupingID = "EPIC-1", .description = "One"}});
  list_.ParseWhatsNewData(data);
  list_.ParseWhatsNewData(data);
  EXPECT_THAT(ChangesOf("EPIC-1"), ElementsAre("One", "One"));
}

TEST_F(DataFileParse, CarriageReturnsDoNotAffectTheChanges) {
  std::string data =
      DataFile().ChangesSince("2.1").Row({.groupingID = "EPIC-1", .description = "One"}).Text();
  for (std::size_t at = 0; (at = data.find('\n', at)) != std::string::npos; at += 2) {
    data.insert(at, 1, '\r');
  }
  list_.ParseWhatsNewData(data);
  EXPECT_THAT(ChangesOf("EPIC-1"), ElementsAre("One"));
  EXPECT_THAT(Header(), HasSubstr("v2.1\n"));
}

TEST_F(DataFileParse, NewlineInsideQuotesEndsTheRow) {
  list_.ParseWhatsNewData(DataFile().Line(",EPIC-1,,,,,,,,\"One\ntwo\"").Text());
  EXPECT_THAT(ChangesOf("EPIC-1"), ElementsAre("One"));
}

}  // namespace
}  // namespace ornwhatsnew
