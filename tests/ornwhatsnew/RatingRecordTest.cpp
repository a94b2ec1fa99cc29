// Tests the rating records. A host uses them to find the feature that belongs to each rating
// control.
#include <memory>
#include <string>
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
using test_support::DataFile;
using test_support::Display;
using test_support::Format;
using testing::Key;
using testing::UnorderedElementsAre;

constexpr char kHidesDescription[] = "RatingHidesBetaFeatureDescription";

class RatingRecord : public test_support::FakeHostTest {
 protected:
  RatingRecord() {
    host_.AddFeature({.internalKey = "export",
                      .epicKey = "EPIC-7",
                      .name = "Export",
                      .description = "Exports files",
                      .visibility = 3});
  }

  Display Show(const std::vector<ChangeRow>& rows, DisplayOptions options = {}) {
    DataFile file;
    for (const ChangeRow& row : rows) file.Row(row);
    FeatureListData list(file.Text(), host_.Getter(), host_.Setter());
    return Format(list, options);
  }
  // Assigns each row to the feature and sets the description of the row to "Text". Displays a list
  // with `rows` and returns the rating record of the feature.
  std::shared_ptr<FeatureListItem> Record(std::vector<ChangeRow> rows = {}) {
    for (ChangeRow& row : rows) {
      row.groupingID = "EPIC-7";
      row.description = "Text";
    }
    return Show(rows).ratingItems.at("EPIC-7");
  }
};

TEST_F(RatingRecord, HasKeysTitleDescriptionAndVisibility) {
  const auto record = Record();
  EXPECT_EQ(record->GetFeatureJiraIDKey(), "EPIC-7");
  EXPECT_EQ(record->GetBetaFeatureInternalKey(), "export");
  EXPECT_EQ(record->GetFeatureName(), "Export");
  EXPECT_EQ(record->GetFeatureDescription(), "Exports files");
  EXPECT_EQ(record->GetVisibility(), FeatureListItem::Visibility::kUnlabelled);
  EXPECT_EQ(record->GetCustomRatingStr(), "");
  EXPECT_TRUE(record->GetAllChanges().empty());
}

TEST_F(RatingRecord, IsCreatedForEachShownItem) {
  host_.AddFeature({.internalKey = "off", .epicKey = "EPIC-8", .enabled = false});
  EXPECT_THAT(Show({{.groupingID = "MISC", .description = "Text"}}).ratingItems,
              UnorderedElementsAre(Key("EPIC-7"), Key("MISC")));
}

TEST_F(RatingRecord, HasTheDescriptionInTheRatingView) {
  const ChangeRow row = {.groupingID = "EPIC-7", .ratingRequest = "RequestRating"};
  Show({row});
  const Display display = Show({row}, kRatingView);
  EXPECT_THAT(display.ratingItems, UnorderedElementsAre(Key("EPIC-7")));
  EXPECT_EQ(display.ratingItems.at("EPIC-7")->GetFeatureDescription(), "Exports files");
}

TEST_F(RatingRecord, IsLocalised) {
  host_.AddFeature({.internalKey = "export",
                    .epicKey = "EPIC-7",
                    .name = "$$$/name=Ex^}port",
                    .description = "$$$/text=Text"});
  host_.AddTranslation("$$$/text", "Texte");
  EXPECT_EQ(Record()->GetFeatureName(), "Ex\u2019port");
  EXPECT_EQ(Record()->GetFeatureDescription(), "Texte");
}

TEST_F(RatingRecord, HasTheKeyAsNameIfTheNameIsEmpty) {
  host_.AddFeature({.internalKey = "export", .epicKey = "EPIC-7"});
  EXPECT_EQ(Record()->GetFeatureName(), "EPIC-7");
}

TEST_F(RatingRecord, HasTheVisibilityOfTheItemInsteadOfTheTable) {
  FeatureListData list("", host_.Getter(), host_.Setter());
  host_.AddFeature({.internalKey = "export", .epicKey = "EPIC-7", .visibility = 2});
  EXPECT_EQ(Format(list).ratingItems.at("EPIC-7")->GetVisibility(),
            FeatureListItem::Visibility::kUnlabelled);
}

TEST_F(RatingRecord, CustomTextIsTheLastShownRequest) {
  const struct {
    std::vector<const char*> requests;
    const char* text;
  } cases[] = {
      {{}, ""},
      {{""}, ""},
      {{"How?"}, "How?"},
      {{"How?", "Why?"}, "Why?"},
      {{"How?", ""}, "How?"},
      {{"How?", "RequestRating"}, ""},
      {{"How?", "REQUESTRATING"}, ""},
      {{"RequestRating", "How?"}, "How?"},
      {{"$$$/ask=How?"}, "$$$/ask=How?"},  // not localised
  };
  for (const auto& [requests, text] : cases) {
    std::vector<ChangeRow> rows;
    for (const char* request : requests) rows.push_back({.ratingRequest = request});
    EXPECT_EQ(Record(rows)->GetCustomRatingStr(), text) << testing::PrintToString(requests);
  }
}

TEST_F(RatingRecord, IgnoresRequestsOfHiddenChanges) {
  const Display display = Show(
      {{.groupingID = "EPIC-7", .ratingRequest = "How?", .description = "Text"},
       {.groupingID = "EPIC-7", .ratingRequest = "Only rating"},
       {.groupingID = "EPIC-7", .ratingRequest = "Win?", .platform = "Win", .description = "W"}},
      kFilterRelevantPlatform);
  EXPECT_EQ(display.ratingItems.at("EPIC-7")->GetCustomRatingStr(), "How?");
}

TEST_F(RatingRecord, CustomTextStartsEmptyForEachFeature) {
  host_.AddFeature({.internalKey = "z", .epicKey = "EPIC-9", .name = "Z"});
  const Display display =
      Show({{.groupingID = "EPIC-7", .ratingRequest = "How?", .description = "A"},
            {.groupingID = "EPIC-9", .description = "B"}});
  EXPECT_EQ(display.ratingItems.at("EPIC-7")->GetCustomRatingStr(), "How?");
  EXPECT_EQ(display.ratingItems.at("EPIC-9")->GetCustomRatingStr(), "");
}

TEST_F(RatingRecord, RequestRatingWithTheSalienceHidesTheDescription) {
  EXPECT_EQ(Record({{.salience = kHidesDescription, .ratingRequest = "requestrating"}})
                ->GetFeatureDescription(),
            "");
  EXPECT_EQ(Record({{.salience = kHidesDescription, .ratingRequest = "RequestRating"},
                    {.ratingRequest = "How?"}})
                ->GetFeatureDescription(),
            "");
}

TEST_F(RatingRecord, SalienceOrRequestAloneDoesNotHideTheDescription) {
  EXPECT_EQ(Record({{.salience = kHidesDescription}})->GetFeatureDescription(), "Exports files");
  EXPECT_EQ(
      Record({{.salience = kHidesDescription, .ratingRequest = "How?"}})->GetFeatureDescription(),
      "Exports files");
  EXPECT_EQ(Record({{.ratingRequest = "RequestRating"}, {.salience = kHidesDescription}})
                ->GetFeatureDescription(),
            "Exports files");
}

TEST_F(RatingRecord, HiddenDescriptionIsStillShownInThePanel) {
  const Display display = Show({{.groupingID = "EPIC-7",
                                 .salience = kHidesDescription,
                                 .ratingRequest = "RequestRating",
                                 .description = "Text"}});
  EXPECT_THAT(display.Pieces(kStyleFeatureDescription), testing::ElementsAre("Exports files"));
}

TEST_F(RatingRecord, IsACopyOfTheItem) {
  FeatureListData list("", host_.Getter(), host_.Setter());
  const Display display = Format(list);
  EXPECT_NE(display.ratingItems.at("EPIC-7"), list.GetFeatureItems().at("EPIC-7"));
}

TEST_F(RatingRecord, DisplayClearsTheMap) {
  FeatureListData list("", host_.Getter(), host_.Setter());
  const auto records = std::make_shared<RatingMap>();
  (*records)["left over"] = nullptr;
  StyleRunMap runs;
  list.GetFormattedTextForDisplay({}, u"", runs, records);
  EXPECT_THAT(*records, UnorderedElementsAre(Key("EPIC-7")));
}

TEST_F(RatingRecord, PlaceholderIsShownWithoutAMap) {
  FeatureListData list("", host_.Getter(), host_.Setter());
  StyleRunMap runs;
  list.GetFormattedTextForDisplay({}, u"RATE", runs, nullptr);
  EXPECT_EQ(runs.at(kStyleRatingPlaceholder).size(), 1U);
}

}  // namespace
}  // namespace ornwhatsnew
