#include <ornwhatsnew/ChangePlacement.h>

#include <string>

#include <gtest/gtest.h>

#include "tests/support/Builders.h"

namespace ornwhatsnew {
namespace {

// A list's items, by the keys that a placement names.
class Placement : public testing::Test {
 protected:
  Placement() {
    for (const char* key : {"EPIC-1", "EPIC-2", "STORY-9", "BUGFIX", "INTERNAL", "UNREVIEWED"}) {
      items_[key] = test_support::MakeItem({.groupingKey = key});
    }
  }

  // The key of the item that takes the change, "-" for none, and "?" behind it when unmatched.
  std::string Place(std::string_view groupingID, std::string_view storyID,
                    bool unreviewed = false) const {
    const ChangePlacement placement = PlaceChange(items_, groupingID, storyID, unreviewed);
    const std::string key =
        placement.item == nullptr ? "-" : std::string(placement.item->FeatureJiraIDKey());
    return placement.unmatched ? key + "?" : key;
  }

  FeatureMap items_;
};

TEST_F(Placement, GroupingIDNamesTheItem) {
  EXPECT_EQ(Place("EPIC-1", ""), "EPIC-1");
  EXPECT_EQ(Place("BUGFIX", "none"), "BUGFIX");
}

TEST_F(Placement, StoryIDComesBeforeTheGroupingID) {
  EXPECT_EQ(Place("EPIC-1", "EPIC-2"), "EPIC-2");
  EXPECT_EQ(Place("EPIC-1", "STORY-9"), "STORY-9");
  EXPECT_EQ(Place("none", "STORY-9"), "STORY-9");
}

TEST_F(Placement, IDsAreComparedExactly) {
  EXPECT_EQ(Place("epic-1", ""), "INTERNAL?");
  EXPECT_EQ(Place("EPIC-1 ", ""), "INTERNAL?");
  EXPECT_EQ(Place("EPIC-1", "epic-2"), "EPIC-1");
}

TEST_F(Placement, SectionKeyInLowerCaseIsUnmatched) {
  EXPECT_EQ(Place("bugfix", ""), "INTERNAL?");
  EXPECT_EQ(Place("unreviewed", ""), "INTERNAL?");
}

TEST_F(Placement, InternalInAnyLetterCaseIsFoundWithoutLookingAtTheStoryID) {
  for (const char* groupingID : {"INTERNAL", "internal", "Internal"}) {
    EXPECT_EQ(Place(groupingID, "EPIC-1"), "INTERNAL") << groupingID;
  }
}

TEST_F(Placement, UnmatchedChangeGoesToTheInternalSection) {
  EXPECT_EQ(Place("none", "none"), "INTERNAL?");
}

TEST_F(Placement, UnreviewedChangeGoesToTheUnreviewedSection) {
  EXPECT_EQ(Place("EPIC-1", "", true), "UNREVIEWED");
  EXPECT_EQ(Place("internal", "", true), "UNREVIEWED");
  EXPECT_EQ(Place("none", "", true), "UNREVIEWED?");
}

TEST_F(Placement, EmptyStoryIDIsLookedUpLikeAnyOther) {
  items_[""] = test_support::MakeItem({.groupingKey = ""});
  EXPECT_EQ(Place("EPIC-1", ""), "");
}

TEST_F(Placement, ChangeIsDroppedWhenItsSectionIsMissing) {
  items_.erase("INTERNAL");
  EXPECT_EQ(Place("none", ""), "-?");
  EXPECT_EQ(Place("internal", ""), "-?");
  items_.erase("UNREVIEWED");
  EXPECT_EQ(Place("EPIC-1", "", true), "-");
}

TEST_F(Placement, EmptyEntryIsNoItem) {
  items_["EPIC-2"] = nullptr;
  EXPECT_EQ(Place("EPIC-1", "EPIC-2"), "EPIC-1");
  EXPECT_EQ(Place("EPIC-2", ""), "INTERNAL?");
  items_["INTERNAL"] = nullptr;
  EXPECT_EQ(Place("INTERNAL", ""), "-?");
}

}  // namespace
}  // namespace ornwhatsnew
