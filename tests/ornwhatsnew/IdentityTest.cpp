// Tests on which fields each identity depends. Identities must never change, because users' state
// stores contain them. Expected hashes are literals or results of the plain implementation.
#include <memory>
#include <string>

#include <gtest/gtest.h>

#include <ornwhatsnew/FeatureListItem.h>

#include "tests/support/Builders.h"
#include "tests/support/PlainRecords.h"
#include "tests/support/PlainText.h"
#include "tests/support/RandomSource.h"

namespace ornwhatsnew {
namespace {

using test_support::ChangeRow;
using test_support::kSeed;
using test_support::MakeDetail;
using test_support::MakeItem;
using test_support::PlainHash;
using test_support::RandomSource;

const ChangeRow kFullRow = {.version = "25.1",
                            .groupingID = "epic-7",
                            .storyID = "story-9",
                            .salience = "headline",
                            .ratingRequest = "RequestRating",
                            .firstVersion = "24.0",
                            .platform = "mac",
                            .url = "https://a.example/1",
                            .sha = "abc123",
                            .description = "Faster export"};

std::string Bytes(const Guid& guid) {
  return {guid.GuidToBytes().begin(), guid.GuidToBytes().end()};
}

Guid Seen(const ChangeRow& row) {
  return MakeDetail(row)->GetItemSeenGuid();
}
Guid Rated(const ChangeRow& row) {
  return MakeDetail(row)->GetItemRatedGuid();
}

TEST(Identity, SeenIdentityOfAChangeHashesTagAndNineFields) {
  EXPECT_EQ(Seen(kFullRow),
            PlainHash("FeatureChangeListFaster export25.1epic-7story-9headline24.0mac"
                      "https://a.example/1abc123"));
}

TEST(Identity, SeenIdentityOfAnEmptyChangeHashesOnlyTheTag) {
  EXPECT_EQ(Seen({}), PlainHash("FeatureChangeList"));
}

TEST(Identity, RatedIdentityOfAChangeHashesOnlyTagAndRequest) {
  EXPECT_EQ(Rated(kFullRow), PlainHash("FeatureChangeRatedListRequestRating"));
  EXPECT_EQ(Rated({.ratingRequest = "RequestRating"}), Rated(kFullRow));
  EXPECT_EQ(Rated({}), PlainHash("FeatureChangeRatedList"));
}

TEST(Identity, RatedIdentityHashesTheKeyOfALocalisedRequest) {
  EXPECT_EQ(Rated({.ratingRequest = "$$$/private/ask=How was it?"}),
            PlainHash("FeatureChangeRatedList$$$/ask"));
}

TEST(Identity, RatingRequestAffectsOnlyTheRatedIdentity) {
  ChangeRow other = kFullRow;
  other.ratingRequest = "How was it?";
  EXPECT_EQ(Seen(other), Seen(kFullRow));
  EXPECT_NE(Rated(other), Rated(kFullRow));
}

TEST(Identity, EveryOtherFieldAffectsTheSeenIdentity) {
  for (std::string ChangeRow::*text :
       {&ChangeRow::version, &ChangeRow::groupingID, &ChangeRow::storyID, &ChangeRow::salience,
        &ChangeRow::firstVersion, &ChangeRow::platform, &ChangeRow::url, &ChangeRow::sha,
        &ChangeRow::description}) {
    ChangeRow other = kFullRow;
    other.*text += "x";
    EXPECT_NE(Seen(other), Seen(kFullRow)) << other.*text;
  }
}

TEST(Identity, DefaultTextOfALocalisedDescriptionIsNotHashed) {
  EXPECT_EQ(Seen({.description = "$$$/a/b=Old words"}), Seen({.description = "$$$/a/b=New words"}));
}

TEST(Identity, KeyOfALocalisedDescriptionIsHashed) {
  EXPECT_NE(Seen({.description = "$$$/a/b=Words"}), Seen({.description = "$$$/a/c=Words"}));
}

TEST(Identity, PrivatePrefixOfALocalisationKeyIsNotHashed) {
  EXPECT_EQ(Seen({.description = "$$$/private/a=x"}), Seen({.description = "$$$/a=y"}));
}

TEST(Identity, EveryLocalisedFieldIsReducedToItsKey) {
  EXPECT_EQ(Seen({.version = "$$$/v=1",
                  .groupingID = "$$$/private/e=1",
                  .storyID = "$$$/s=1",
                  .salience = "$$$/l=1",
                  .firstVersion = "$$$/f=1",
                  .platform = "$$$/p=1",
                  .url = "$$$/u=1",
                  .sha = "$$$/h=1",
                  .description = "$$$/d=1"}),
            PlainHash("FeatureChangeList$$$/d$$$/v$$$/e$$$/s$$$/l$$$/f$$$/p$$$/u$$$/h"));
}

TEST(Identity, ItemWithoutChangesHasBothIdentities) {
  const auto item = MakeItem({"EPIC-7", "export", "Export", "Exports files"});
  EXPECT_EQ(item->GetItemSeenGuid(),
            PlainHash("FeatureItemSeenListEPIC-7exportExportExports files"));
  EXPECT_EQ(item->GetItemRatedGuid(), PlainHash("FeatureItemRatedListexport"));
}

TEST(Identity, SeenIdentityOfAnItemHashesItsURLAndDescribedChanges) {
  const auto item =
      MakeItem({"EPIC-7", "export", "Export", "Exports files"},
               {kFullRow, {.ratingRequest = "RequestRating"}, {.description = "More"}});
  EXPECT_EQ(item->GetItemSeenGuid(),
            PlainHash("FeatureItemSeenListEPIC-7exportExportExports fileshttps://a.example/1" +
                      Bytes(Seen(kFullRow)) + Bytes(Seen({.description = "More"}))));
}

TEST(Identity, RatedIdentityOfAnItemHashesItsRatingRequestsInOrder) {
  const auto item =
      MakeItem({"EPIC-7", "export", "Export", "Exports files"},
               {{.ratingRequest = "first"}, {.description = "x"}, {.ratingRequest = "second"}});
  EXPECT_EQ(item->GetItemRatedGuid(),
            PlainHash("FeatureItemRatedListexport" + Bytes(Rated({.ratingRequest = "first"})) +
                      Bytes(Rated({.ratingRequest = "second"}))));
}

TEST(Identity, ItemHashesWholeKeysAndReducedTexts) {
  const auto item = MakeItem({"$$$/k=1", "$$$/private/i=1", "$$$/n=1", "$$$/private/d=1"});
  EXPECT_EQ(item->GetItemSeenGuid(),
            PlainHash("FeatureItemSeenList$$$/k=1$$$/private/i=1$$$/n$$$/d"));
  EXPECT_EQ(item->GetItemRatedGuid(), PlainHash("FeatureItemRatedList$$$/private/i=1"));
}

TEST(Identity, CustomRatingTextIsNotHashed) {
  const auto item = MakeItem({"EPIC-7", "export", "Export", "Exports files"});
  const Guid seen = item->GetItemSeenGuid();
  const Guid rated = item->GetItemRatedGuid();
  item->SetCustomRatingStr("How was it?");
  EXPECT_EQ(item->GetItemSeenGuid(), seen);
  EXPECT_EQ(item->GetItemRatedGuid(), rated);
}

TEST(Identity, ReorderingDescribedChangesAffectsOnlyTheItem) {
  const ChangeRow one = {.description = "One"};
  const ChangeRow two = {.description = "Two"};
  const auto item = MakeItem({.groupingKey = "EPIC-7"}, {one, two});
  const auto reordered = MakeItem({.groupingKey = "EPIC-7"}, {two, one});
  EXPECT_NE(item->GetItemSeenGuid(), reordered->GetItemSeenGuid());
  EXPECT_EQ(item->GetAllChanges()[0]->GetItemSeenGuid(),
            reordered->GetAllChanges()[1]->GetItemSeenGuid());
  EXPECT_EQ(item->GetAllChanges()[1]->GetItemSeenGuid(),
            reordered->GetAllChanges()[0]->GetItemSeenGuid());
}

TEST(Identity, ChangeWithoutDescriptionDoesNotAffectTheItemsSeenIdentity) {
  EXPECT_EQ(
      MakeItem({.groupingKey = "EPIC-7"}, {{.ratingRequest = "RequestRating"}})->GetItemSeenGuid(),
      MakeItem({.groupingKey = "EPIC-7"})->GetItemSeenGuid());
}

TEST(Identity, KeysWithTheSameConcatenationGiveTheSameIdentity) {
  const auto one = MakeItem({"AB", "C", "Name", "Text"});
  const auto other = MakeItem({"A", "BC", "Name", "Text"});
  EXPECT_EQ(one->GetItemSeenGuid(), other->GetItemSeenGuid());
}

// Users' state stores contain identities from every release. Each release must therefore compute
// the same identities.
TEST(Identity, StoredIdentitiesNeverChange) {
  const auto item = MakeItem({"EPIC-7", "export", "Export", "Exports files"}, {kFullRow});
  EXPECT_EQ(Seen({}).AsUTF8String(), "38f2e02d-6114-bd02-08f4-00fbcaf073d5");
  EXPECT_EQ(Seen(kFullRow).AsUTF8String(), "9d29b31b-d514-0303-7926-eb082557e5e5");
  EXPECT_EQ(Rated(kFullRow).AsUTF8String(), "e353e048-1928-0b3e-02df-c276fd47c88e");
  EXPECT_EQ(item->GetItemSeenGuid().AsUTF8String(), "a7174684-5de6-9522-4051-c3fe79eecf1d");
  EXPECT_EQ(item->GetItemRatedGuid().AsUTF8String(), "96d51aba-3c59-2c69-f8a5-c7a8621048cd");
  EXPECT_EQ(Seen({.description = "\xE6\x97\xA5\xFF"}).AsUTF8String(),
            "70348520-21eb-a87f-28a3-d27128f313d9");
}

TEST(Identity, IdentitiesOfRandomRecordsMatchThePlainImplementation) {
  RandomSource random(kSeed);
  for (int i = 0; i < 500; ++i) {
    const auto text = [&random] { return random.HostileText(random.OneIn(8) ? 40 : 4); };
    const auto item = MakeItem({text(), text(), text(), text()});
    for (std::size_t changes = random.Below(5); changes > 0; --changes) {
      item->AddFeatureDetail(MakeDetail(
          {text(), text(), text(), text(), text(), text(), text(), text(), text(), text()}));
    }
    const auto plain = test_support::PlainCopy(*item);
    ASSERT_EQ(item->GetItemSeenGuid(), plain.Seen()) << "round " << i;
    ASSERT_EQ(item->GetItemRatedGuid(), plain.Rated()) << "round " << i;
    for (std::size_t c = 0; c < plain.changes.size(); ++c) {
      ASSERT_EQ(item->GetAllChanges()[c]->GetItemSeenGuid(), plain.changes[c].Seen());
      ASSERT_EQ(item->GetAllChanges()[c]->GetItemRatedGuid(), plain.changes[c].Rated());
    }
  }
}

}  // namespace
}  // namespace ornwhatsnew
