// Tests which state a list reads from the host and which state it writes.
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
using test_support::DataFileText;
using test_support::FakeStateStore;
using test_support::Format;
using test_support::InjectedFailure;
using test_support::ItemOf;
using test_support::SortedPieces;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

constexpr char kSeenKey[] = "WhatsNew.AllSeenItems";
constexpr char kLastVersionKey[] = "WhatsNew.LastVersionSeenWhatsNew";
constexpr char kVersionsKey[] = "WhatsNew.AllVersionSeenWhatsNew";
constexpr char kNil[] = "00000000-0000-0000-0000-000000000000";
constexpr char kSomeGuid[] = "01234567-89ab-cdef-0123-456789abcdef";

class SeenState : public test_support::FakeHostTest {
 protected:
  SeenState() {
    host_.AddFeature({.internalKey = "export", .epicKey = "EPIC-1", .name = "Export"});
  }

  // Creates a new list with these changes, as the application does when it starts.
  FeatureListData& Load(std::initializer_list<ChangeRow> rows = {}) {
    list_ = std::make_unique<FeatureListData>(DataFileText(rows), host_.Getter(), host_.Setter());
    return *list_;
  }
  FakeStateStore& State() { return host_.State(); }
  std::string SeenOf(const char* key) const {
    return ItemOf(*list_, key).GetItemSeenGuid().AsUTF8String();
  }
  std::string RatedOf(const char* key) const {
    return ItemOf(*list_, key).GetItemRatedGuid().AsUTF8String();
  }
  std::vector<std::string> StoredSeen() { return SortedPieces(State().Text(kSeenKey)); }

  std::unique_ptr<FeatureListData> list_;
};

TEST_F(SeenState, FirstRunHasOnlyTheRunningVersionAndANewFeature) {
  FeatureListData& list = Load();
  EXPECT_EQ(list.GetNewSeenState(), "");
  EXPECT_TRUE(list.IsAnythingNew(kShowOnlyNew));
  Format(list);
  EXPECT_EQ(State().Text(kVersionsKey), "25.1.0.42");
}

TEST_F(SeenState, ReadsTheThreeValuesOnceInAFixedOrder) {
  std::vector<std::string> queriedKeys;
  const FeatureListData list(
      "",
      [&queriedKeys](const UTF8String& key) {
        queriedKeys.push_back(key);
        return UTF8String();
      },
      [](const UTF8String&, const UTF8String&) {});
  EXPECT_THAT(queriedKeys, ElementsAre(kLastVersionKey, kVersionsKey, kSeenKey));
}

TEST_F(SeenState, DisplayWritesTheThreeValuesInAFixedOrder) {
  State().Put(kVersionsKey, "26.0.0.1 24.0.0.1");
  FeatureListData& list = Load();
  Format(list);
  EXPECT_THAT(State().Writes(),
              ElementsAre(FakeStateStore::Write(kSeenKey, SeenOf("EPIC-1")),
                          FakeStateStore::Write(kLastVersionKey, "25.1.0.42"),
                          FakeStateStore::Write(kVersionsKey, "24.0.0.1 25.1.0.42 26.0.0.1")));
}

TEST_F(SeenState, DisplayOfAnEmptyPanelWritesTheState) {
  host_.SetFeatureEnabled("export", false);
  FeatureListData& list = Load();
  Format(list);
  Format(list, kRatingView);
  EXPECT_THAT(State().Writes(), ElementsAre(FakeStateStore::Write(kSeenKey, ""),
                                            FakeStateStore::Write(kLastVersionKey, "25.1.0.42"),
                                            FakeStateStore::Write(kVersionsKey, "25.1.0.42"),
                                            FakeStateStore::Write(kSeenKey, ""),
                                            FakeStateStore::Write(kLastVersionKey, "25.1.0.42"),
                                            FakeStateStore::Write(kVersionsKey, "25.1.0.42")));
}

TEST_F(SeenState, DisplayStoresTheItemsAndChangesThatItShowed) {
  host_.AddFeature({.internalKey = "off", .epicKey = "EPIC-2", .enabled = false});
  FeatureListData& list = Load({{.groupingID = "EPIC-1", .description = "Shown"},
                                {.groupingID = "EPIC-1", .platform = "Win", .description = "Not"},
                                {.groupingID = "EPIC-2", .description = "Off"}});
  Format(list, kFilterRelevantPlatform);
  std::vector<std::string> expected = {
      SeenOf("EPIC-1"),
      ItemOf(list, "EPIC-1").GetAllChanges()[0]->GetItemSeenGuid().AsUTF8String()};
  std::ranges::sort(expected);
  EXPECT_EQ(StoredSeen(), expected);
}

TEST_F(SeenState, KeepsIdentitiesOfChangesThatAreNotInTheFile) {
  State().Put(kSeenKey, kSomeGuid);
  Format(Load());
  EXPECT_THAT(StoredSeen(), testing::Contains(kSomeGuid));
}

TEST_F(SeenState, TwoSpacesBetweenIdentitiesAddTheNilIdentity) {
  State().Put(kSeenKey, std::string(kSomeGuid) + "  ffffffff-ffff-ffff-ffff-ffffffffffff");
  EXPECT_EQ(Load().GetNewSeenState(),
            std::string(kNil) + " " + kSomeGuid + " ffffffff-ffff-ffff-ffff-ffffffffffff");
}

TEST_F(SeenState, MalformedIdentityBecomesTheNilIdentity) {
  State().Put(kSeenKey, "rubbish");
  EXPECT_EQ(Load().GetNewSeenState(), kNil);
}

TEST_F(SeenState, EmptyVersionIsKeptInMemoryButNotWritten) {
  State().Put(kVersionsKey, "24.0.0.1  25.0.0.1");
  // The two adjacent spaces in the stored value give an empty version, whose `VersionNumber` is 0.
  // The change is relevant only to versions with this number.
  FeatureListData& list =
      Load({{.version = "1", .groupingID = "MISC", .firstVersion = "0", .description = "Text"}});
  EXPECT_THAT(Format(list, kFilterRelevantVersion).text, HasSubstr("Text"));
  EXPECT_EQ(State().Text(kVersionsKey), "24.0.0.1 25.0.0.1 25.1.0.42");
  list.RefreshInternalSeenState();
  EXPECT_THAT(Format(list, kFilterRelevantVersion).text, Not(HasSubstr("Text")));
}

TEST_F(SeenState, RunningVersionCountsAsAVersionTheUserRan) {
  FeatureListData& list = Load({{.version = "25.1.0.43",
                                 .groupingID = "MISC",
                                 .firstVersion = "25.1.0.42",
                                 .description = "Text"}});
  EXPECT_THAT(Format(list, kFilterRelevantVersion).text, HasSubstr("Text"));
}

TEST_F(SeenState, ShownItemsRemainNewUntilTheStateIsReadAgain) {
  FeatureListData& list = Load({{.groupingID = "EPIC-1", .description = "Text"}});
  Format(list);
  EXPECT_TRUE(list.IsAnythingNew(kShowOnlyNew));
  list.RefreshInternalSeenState();
  EXPECT_FALSE(list.IsAnythingNew(kShowOnlyNew));
}

TEST_F(SeenState, RefreshDropsStateThatTheHostDidNotStore) {
  FeatureListData& list = Load();
  Format(list);
  State().Replace({});
  list.RefreshInternalSeenState();
  EXPECT_EQ(list.GetNewSeenState(), "");
}

TEST_F(SeenState, EditedChangeIsNewAgain) {
  Format(Load({{.groupingID = "EPIC-1", .description = "Text"}}));
  EXPECT_FALSE(Load({{.groupingID = "EPIC-1", .description = "Text"}}).IsAnythingNew(kShowOnlyNew));
  EXPECT_TRUE(Load({{.groupingID = "EPIC-1", .description = "Edit"}}).IsAnythingNew(kShowOnlyNew));
}

TEST_F(SeenState, NothingIsNewInAListWithoutItems) {
  const FeatureListData list(host_.Getter(), host_.Setter());
  EXPECT_FALSE(list.IsAnythingNew({}));
  EXPECT_FALSE(list.IsAnythingNeedingRating());
}

// Provides a list whose feature has a rating request. An earlier list has already displayed the
// feature.
class Rating : public SeenState {
 protected:
  Rating() {
    Format(Load({kRequest}));
    Load({kRequest});
    State().TakeWrites();
  }

  const ChangeRow kRequest = {.groupingID = "EPIC-1", .ratingRequest = "RequestRating"};
};

TEST_F(Rating, SeenFeatureWithARequestNeedsRating) {
  EXPECT_TRUE(list_->IsAnythingNeedingRating());
}

TEST_F(Rating, RequestMustMatchThePlatformAndTheUsersVersions) {
  const ChangeRow win = {
      .groupingID = "EPIC-1", .ratingRequest = "RequestRating", .platform = "Win"};
  EXPECT_FALSE(Load({win}).IsAnythingNeedingRating());
  const ChangeRow old = {.version = "24.0.0.0",
                         .groupingID = "EPIC-1",
                         .ratingRequest = "RequestRating",
                         .firstVersion = "23.0.0.0"};
  EXPECT_FALSE(Load({old}).IsAnythingNeedingRating());
}

TEST_F(Rating, TakesEffectAndIsStoredImmediately) {
  list_->MarkItemHasBeenRated("EPIC-1");
  EXPECT_FALSE(list_->IsAnythingNeedingRating());
  ASSERT_EQ(State().Writes().size(), 1U);
  EXPECT_EQ(State().Writes()[0].first, kSeenKey);
  EXPECT_THAT(StoredSeen(), testing::Contains(RatedOf("EPIC-1")));
}

TEST_F(Rating, AlsoStoresItemsThatAFailedDisplayShowed) {
  State().Replace({});
  list_->RefreshInternalSeenState();
  State().FailSetterCall(1);
  EXPECT_THROW(Format(*list_), InjectedFailure);
  list_->MarkItemHasBeenRated("EPIC-1");
  EXPECT_THAT(StoredSeen(), testing::UnorderedElementsAre(SeenOf("EPIC-1"), RatedOf("EPIC-1")));
}

TEST_F(Rating, HasNoEffectOnASection) {
  const std::string before = list_->GetNewSeenState();
  for (const char* key : {"BUGFIX", "bugfix", "MISC", "INTERNAL", "UNREVIEWED"}) {
    list_->MarkItemHasBeenRated(key);
  }
  EXPECT_EQ(list_->GetNewSeenState(), before);
  EXPECT_THAT(State().Writes(), IsEmpty());
}

TEST_F(Rating, HasNoEffectOnAnUnknownKey) {
  const std::string before = list_->GetNewSeenState();
  for (const char* key : {"", "EPIC-2", "epic-1"}) list_->MarkItemHasBeenRated(key);
  EXPECT_EQ(list_->GetNewSeenState(), before);
  EXPECT_THAT(State().Writes(), IsEmpty());
}

TEST_F(Rating, RepeatedRatingStoresTheIdentityOnce) {
  list_->MarkItemHasBeenRated("EPIC-1");
  const std::string once = State().Text(kSeenKey);
  list_->MarkItemHasBeenRated("EPIC-1");
  EXPECT_EQ(State().Text(kSeenKey), once);
  EXPECT_EQ(State().Writes().size(), 2U);
}

TEST_F(Rating, RatedFeatureWithANewRequestNeedsRating) {
  list_->MarkItemHasBeenRated("EPIC-1");
  EXPECT_FALSE(Load({kRequest}).IsAnythingNeedingRating());
  const ChangeRow another = {.groupingID = "EPIC-1", .ratingRequest = "And how now?"};
  EXPECT_TRUE(Load({kRequest, another}).IsAnythingNeedingRating());
}

TEST_F(Rating, RatingViewDoesNotMarkChangesAsSeen) {
  const ChangeRow described = {
      .groupingID = "EPIC-2", .ratingRequest = "RequestRating", .description = "Text"};
  host_.AddFeature({.internalKey = "b", .epicKey = "EPIC-2", .name = "B"});
  Format(Load({kRequest, described}));
  Load({kRequest, described});
  const auto before = StoredSeen();
  const std::string change =
      ItemOf(*list_, "EPIC-1").GetAllChanges()[0]->GetItemSeenGuid().AsUTF8String();
  EXPECT_THAT(Format(*list_, kRatingView).text, HasSubstr("Export"));
  EXPECT_EQ(StoredSeen(), before);
  EXPECT_THAT(StoredSeen(), Not(testing::Contains(change)));
}

// The following tests use callbacks that throw or that call the list.

TEST_F(SeenState, FailedRefreshChangesNothing) {
  State().Put(kSeenKey, kSomeGuid);
  FeatureListData& list = Load();
  State().Put(kSeenKey, kNil);
  for (const int call : {1, 2, 3}) {
    State().FailGetterCall(call);
    EXPECT_THROW(list.RefreshInternalSeenState(), InjectedFailure) << call;
    EXPECT_EQ(list.GetNewSeenState(), kSomeGuid) << call;
  }
  list.RefreshInternalSeenState();
  EXPECT_EQ(list.GetNewSeenState(), kNil);
}

TEST_F(SeenState, FailedDisplayHasItsFullEffectWhenRepeated) {
  FeatureListData& list = Load({{.groupingID = "EPIC-1", .description = "Text"}});
  const std::string expected = Format(list).text;
  const auto stored = State().AllTexts();
  for (const int call : {1, 2, 3}) {
    State().Replace({});
    list.RefreshInternalSeenState();
    State().FailSetterCall(call);
    EXPECT_THROW(Format(list), InjectedFailure) << call;
    EXPECT_EQ(Format(list).text, expected) << call;
    EXPECT_EQ(State().AllTexts(), stored) << call;
  }
}

TEST_F(SeenState, FailedRatingIsStoredByTheNextWrite) {
  FeatureListData& list = Load();
  State().FailSetterCall(1);
  EXPECT_THROW(list.MarkItemHasBeenRated("EPIC-1"), InjectedFailure);
  list.MarkItemHasBeenRated("EPIC-1");
  EXPECT_THAT(StoredSeen(), ElementsAre(RatedOf("EPIC-1")));
}

TEST_F(SeenState, CallbacksMayCallTheirList) {
  FeatureListData* calling = nullptr;
  int calls = 0;
  const auto useList = [&] {
    if (calling == nullptr || ++calls > 20) return;
    calling->IsAnythingNew(kShowOnlyNew);
    calling->GetNewSeenState();
    calling->InitWithData(DataFileText({{.groupingID = "EPIC-1", .description = "Again"}}));
  };
  FeatureListData list(
      DataFileText({{.groupingID = "EPIC-1", .description = "Text"}}),
      [&](const UTF8String& key) {
        useList();
        return State().Text(key);
      },
      [&](const UTF8String& key, const UTF8String& value) {
        State().Put(key, value);
        useList();
      });
  calling = &list;
  EXPECT_THAT(Format(list).text, HasSubstr("Text"));
  EXPECT_EQ(State().Text(kLastVersionKey), "25.1.0.42");
}

}  // namespace
}  // namespace ornwhatsnew
