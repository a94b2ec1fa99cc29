// Tests which edits between two releases of a data file make a seen change or feature new again.
// docs/host-guide.md documents these rules for hosts.
#include <functional>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <ornwhatsnew/FeatureListData.h>

#include "tests/support/Builders.h"
#include "tests/support/FakeHost.h"
#include "tests/support/Matchers.h"

namespace ornwhatsnew {
namespace {

using test_support::ChangeRow;
using test_support::DataFileText;
using test_support::FakeFeature;
using test_support::Format;
using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

const ChangeRow kZoom = {.version = "4.3",
                         .groupingID = "EPIC-1",
                         .salience = "Detail",
                         .firstVersion = "4.0",
                         .platform = "Mac",
                         .url = "https://forum.example/1",
                         .sha = "aa01",
                         .description = "Zooms"};
const ChangeRow kDrag = {.version = "4.3", .groupingID = "EPIC-1", .description = "Drags"};
const ChangeRow kSync = {.version = "4.3", .groupingID = "EPIC-2", .description = "Syncs"};

/// Applies `edit` to `row` and returns the edited row.
template <class Edit>
ChangeRow Edited(ChangeRow row, Edit edit) {
  edit(row);
  return row;
}

class NewAgain : public test_support::FakeHostTest {
 protected:
  NewAgain() {
    host_.AddFeature(kMap);
    host_.AddFeature({.internalKey = "sync", .epicKey = "EPIC-2", .name = "Sync"});
  }

  /// Creates a list from `data`, as an application does when it starts, and displays only new
  /// features and changes. Returns the displayed text. The list stores the displayed features and
  /// changes as seen.
  std::string Open(const std::string& data) {
    FeatureListData list(data, host_.Getter(), host_.Setter());
    return Format(list, kShowOnlyNew).text;
  }
  bool IsAnythingNew(const std::string& data) {
    return FeatureListData(data, host_.Getter(), host_.Setter()).IsAnythingNew(kShowOnlyNew);
  }

  const FakeFeature kMap = {
      .internalKey = "map", .epicKey = "EPIC-1", .name = "Map", .description = "Of finds"};
};

TEST_F(NewAgain, NothingIsNewAfterAnUpdateWithTheSameFile) {
  const std::string data = DataFileText({kZoom, kDrag, kSync});
  Open(data);
  EXPECT_FALSE(IsAnythingNew(data));
  host_.SetClientVersion("26.0");
  EXPECT_FALSE(IsAnythingNew(data));
}

TEST_F(NewAgain, ChangeIsNewIfOneOfNineColumnsIsEdited) {
  const std::function<void(ChangeRow&)> edits[] = {
      [](ChangeRow& row) { row.version = "4.4"; },
      [](ChangeRow& row) { row.groupingID = "EPIC-2"; },
      [](ChangeRow& row) { row.storyID = "STORY-1"; },
      [](ChangeRow& row) { row.salience = "Headline"; },
      [](ChangeRow& row) { row.firstVersion = "4.1"; },
      [](ChangeRow& row) { row.platform = "Win"; },
      [](ChangeRow& row) { row.url = "https://forum.example/2"; },
      [](ChangeRow& row) { row.sha = "aa02"; },
      [](ChangeRow& row) { row.description = "Zooms in and out"; },
  };
  for (const auto& edit : edits) {
    Open(DataFileText({kZoom, kDrag, kSync}));
    EXPECT_THAT(Open(DataFileText({Edited(kZoom, edit), kDrag, kSync})),
                AllOf(HasSubstr("Zooms"), Not(HasSubstr("Drags")), Not(HasSubstr("Syncs"))))
        << "edit " << &edit - edits;
  }
}

TEST_F(NewAgain, FeatureIsNewButNotItsSeenChangesIfTheListOfChangesDiffers) {
  Open(DataFileText({kZoom, kDrag, kSync}));
  EXPECT_THAT(Open(DataFileText({kDrag, kSync})),
              AllOf(HasSubstr("Map"), Not(HasSubstr("Drags")), Not(HasSubstr("Sync"))));
  EXPECT_THAT(Open(DataFileText({kDrag, kZoom, kSync})),
              AllOf(HasSubstr("Map"), Not(HasSubstr("Drags")), Not(HasSubstr("Zooms"))));
  const ChangeRow added = Edited(kDrag, [](ChangeRow& row) { row.description = "Turns"; });
  EXPECT_THAT(Open(DataFileText({kDrag, kZoom, added, kSync})),
              AllOf(HasSubstr("Map"), HasSubstr("Turns"), Not(HasSubstr("Drags"))));
}

TEST_F(NewAgain, FeatureIsNewIfItsNameDescriptionOrInternalKeyChanges) {
  const std::string data = DataFileText({kZoom, kSync});
  Open(data);
  FakeFeature feature = kMap;
  feature.name = "Map of finds";
  host_.AddFeature(feature);
  EXPECT_THAT(Open(data), AllOf(HasSubstr("Map of finds"), Not(HasSubstr("Zooms"))));
  feature.description = "Where each was found";
  host_.AddFeature(feature);
  EXPECT_THAT(Open(data), AllOf(HasSubstr("Where each was found"), Not(HasSubstr("Zooms"))));
  host_.RemoveFeature("map");
  feature.internalKey = "map.second";
  host_.AddFeature(feature);
  EXPECT_THAT(Open(data), AllOf(HasSubstr("Map of finds"), Not(HasSubstr("Zooms"))));
  EXPECT_FALSE(IsAnythingNew(data));
}

TEST_F(NewAgain, SwitchingAFeatureOffAndOnDoesNotMakeItNew) {
  const std::string data = DataFileText({kZoom, kSync});
  Open(data);
  host_.SetFeatureEnabled("map", false);
  EXPECT_FALSE(IsAnythingNew(data));
  Open(data);
  host_.SetFeatureEnabled("map", true);
  EXPECT_FALSE(IsAnythingNew(data));
  host_.SetFeatureAvailableForUser("map", true);
  FakeFeature feature = kMap;
  feature.visibility = 2;
  host_.AddFeature(feature);
  EXPECT_FALSE(IsAnythingNew(data));
}

TEST_F(NewAgain, NewRatingRequestMakesAFeatureRateableButNotNew) {
  Open(DataFileText({kZoom, kSync}));
  for (const char* request : {"RequestRating", "How do you like the zoom?"}) {
    const std::string data = DataFileText(
        {Edited(kZoom, [request](ChangeRow& row) { row.ratingRequest = request; }), kSync});
    EXPECT_FALSE(IsAnythingNew(data)) << request;
    FeatureListData list(data, host_.Getter(), host_.Setter());
    EXPECT_TRUE(list.IsAnythingNew(kRatingView)) << request;
    list.MarkItemHasBeenRated("EPIC-1");
    EXPECT_FALSE(list.IsAnythingNew(kRatingView)) << request;
  }
}

TEST_F(NewAgain, LocalisedTextIsNewOnlyIfItsKeyChanges) {
  const auto dataWith = [](const char* text) {
    return DataFileText({Edited(kZoom, [text](ChangeRow& row) { row.description = text; }), kSync});
  };
  Open(dataWith("$$$/private/app/zoom=Zooms"));
  EXPECT_FALSE(IsAnythingNew(dataWith("$$$/private/app/zoom=Zooms in and out")));
  EXPECT_FALSE(IsAnythingNew(dataWith("$$$/app/zoom=Zooms")));
  host_.AddTranslation("$$$/app/zoom", "Vergrößert");
  EXPECT_FALSE(IsAnythingNew(dataWith("$$$/app/zoom=Zooms")));
  EXPECT_TRUE(IsAnythingNew(dataWith("$$$/app/zooming=Zooms")));
}

TEST_F(NewAgain, FormattingOfTheFileDoesNotMakeAnythingNew) {
  const std::string data = DataFileText({kZoom, kDrag, kSync});
  Open(data);
  // The row of EPIC-2 now precedes the rows of EPIC-1. The rows of EPIC-1 keep their order.
  EXPECT_FALSE(IsAnythingNew(DataFileText({kSync, kZoom, kDrag})));
  EXPECT_FALSE(IsAnythingNew("\xEF\xBB\xBF" + data));
  std::string crlf;
  for (const char unit : data) crlf += unit == '\n' ? std::string("\r\n") : std::string(1, unit);
  EXPECT_FALSE(IsAnythingNew(crlf));
  std::string quoted = data;
  quoted.replace(quoted.find("Zooms"), 5, "\"Zooms\"");
  EXPECT_FALSE(IsAnythingNew(quoted));
  const ChangeRow lower = Edited(kZoom, [](ChangeRow& row) {
    row.salience = "detail";
    row.platform = "mac";
  });
  EXPECT_FALSE(IsAnythingNew(DataFileText({lower, kDrag, kSync})));
}

TEST_F(NewAgain, ChangeForAnotherPlatformRemainsNewUntilItIsShown) {
  const std::string data = DataFileText({kZoom, kDrag, kSync});
  host_.SetPlatform("Win");
  FeatureListData list(data, host_.Getter(), host_.Setter());
  EXPECT_THAT(Format(list, kShowOnlyNew | kFilterRelevantPlatform).text, Not(HasSubstr("Zooms")));
  host_.SetPlatform("Mac");
  EXPECT_THAT(Open(data), AllOf(HasSubstr("Zooms"), Not(HasSubstr("Drags"))));
}

}  // namespace
}  // namespace ornwhatsnew
