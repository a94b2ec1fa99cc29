#include <ornwhatsnew/FeatureListData.h>

#include <memory>
#include <string>
#include <type_traits>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/Builders.h"
#include "tests/support/FakeHost.h"
#include "tests/support/Matchers.h"

namespace ornwhatsnew {
namespace {

using test_support::Format;
using test_support::InjectedFailure;
using test_support::IsText;
using test_support::ItemOf;
using test_support::KeyOrder;
using test_support::MakeItem;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr char kStoredVersionKey[] = "WhatsNew.LastVersionSeenWhatsNew";

static_assert(!std::is_copy_constructible_v<FeatureListData>);
static_assert(!std::is_polymorphic_v<FeatureListData>);

class FeatureList : public test_support::FakeHostTest {
 protected:
  FeatureListData list_{host_.Getter(), host_.Setter()};
};

TEST_F(FeatureList, StartsEmptyAndDoesNotReadTheState) {
  EXPECT_THAT(list_.GetFeatureItems(), IsEmpty());
  EXPECT_THAT(list_.GetOrderedFeatureKeys(), IsEmpty());
  EXPECT_EQ(list_.GetNewSeenState(), "");
  EXPECT_EQ(host_.State().GetterCalls(), 0);
  EXPECT_EQ(host_.State().SetterCalls(), 0);
}

TEST_F(FeatureList, ReadsTheRunningVersionInTheConstructor) {
  host_.SetClientVersion("30.0");
  Format(list_);
  EXPECT_EQ(host_.State().Text(kStoredVersionKey), "25.1.0.42");
}

TEST_F(FeatureList, UsesTheGivenCallbacks) {
  host_.SetDebugEntry(kStoredVersionKey, "debug");
  list_.RefreshInternalSeenState();
  Format(list_);
  EXPECT_EQ(host_.State().GetterCalls(), 3);
  EXPECT_EQ(host_.State().SetterCalls(), 3);
  EXPECT_EQ(host_.DebugEntry(kStoredVersionKey), "debug");
}

// Loads and displays a list with the callbacks `getter` and `setter`. Expects that the list uses
// the debug database as its state store and calls neither callback.
void ExpectStateInDebugDatabase(test_support::FakeHost& host, StateGetter getter,
                                StateSetter setter) {
  host.SetDebugEntry(kStoredVersionKey, "24.0.0.1");
  FeatureListData list("", std::move(getter), std::move(setter));
  EXPECT_THAT(Format(list, kShowOnlyNew).text, testing::HasSubstr("opened in v24.0.0.1"));
  EXPECT_EQ(host.DebugEntry(kStoredVersionKey), "25.1.0.42");
  EXPECT_EQ(host.State().GetterCalls(), 0);
  EXPECT_EQ(host.State().SetterCalls(), 0);
}

TEST_F(FeatureList, KeepsStateInTheDebugDatabaseWithoutCallbacks) {
  ExpectStateInDebugDatabase(host_, {}, {});
}

TEST_F(FeatureList, IgnoresTheSetterIfTheGetterIsMissing) {
  ExpectStateInDebugDatabase(host_, {}, host_.Setter());
}

TEST_F(FeatureList, IgnoresTheGetterIfTheSetterIsMissing) {
  ExpectStateInDebugDatabase(host_, host_.Getter(), {});
}

TEST_F(FeatureList, InsertsAnItemUnderItsGroupingKey) {
  const auto item = MakeItem({.groupingKey = "EPIC-1"});
  list_.InsertFeatureListItem(item);
  EXPECT_EQ(list_.GetFeatureItems().at("EPIC-1"), item);
  EXPECT_THAT(KeyOrder(list_), ElementsAre("EPIC-1"));
}

TEST_F(FeatureList, InsertingAnItemWithAnExistingKeyOnlyRepeatsTheKey) {
  const auto first = MakeItem({.groupingKey = "EPIC-1", .name = "First"});
  list_.InsertFeatureListItem(first);
  list_.InsertFeatureListItem(MakeItem({.groupingKey = "EPIC-1", .name = "Second"}));
  EXPECT_EQ(list_.GetFeatureItems().size(), 1U);
  EXPECT_EQ(list_.GetFeatureItems().at("EPIC-1"), first);
  EXPECT_THAT(KeyOrder(list_), ElementsAre("EPIC-1", "EPIC-1"));
}

TEST_F(FeatureList, KeysAreCaseSensitive) {
  list_.InsertFeatureListItem(MakeItem({.groupingKey = "EPIC-1"}));
  list_.InsertFeatureListItem(MakeItem({.groupingKey = "epic-1"}));
  EXPECT_EQ(list_.GetFeatureItems().size(), 2U);
}

TEST_F(FeatureList, CreatesASectionItem) {
  list_.EnsureSpecialCaseItemExists("BUGFIX", u"Bug f\u00EFxes", u"All of \u65E5");
  const FeatureListItem& item = ItemOf(list_, "BUGFIX");
  EXPECT_EQ(item.GetFeatureJiraIDKey(), "BUGFIX");
  EXPECT_EQ(item.GetBetaFeatureInternalKey(), "");
  EXPECT_EQ(item.GetFeatureName(), "Bug f\xC3\xAFxes");
  EXPECT_EQ(item.GetFeatureDescription(), "All of \xE6\x97\xA5");
  EXPECT_EQ(item.GetVisibility(), FeatureListItem::Visibility::kPublic);
  EXPECT_THAT(KeyOrder(list_), ElementsAre("BUGFIX"));
}

TEST_F(FeatureList, DoesNotReplaceAnExistingSection) {
  list_.EnsureSpecialCaseItemExists("BUGFIX", u"First", u"One");
  list_.EnsureSpecialCaseItemExists("MISC", u"Miscellaneous", u"");
  list_.EnsureSpecialCaseItemExists("BUGFIX", u"Second", u"Two");
  EXPECT_EQ(ItemOf(list_, "BUGFIX").GetFeatureName(), "First");
  EXPECT_EQ(ItemOf(list_, "BUGFIX").GetFeatureDescription(), "One");
  EXPECT_THAT(KeyOrder(list_), ElementsAre("BUGFIX", "MISC"));
}

TEST_F(FeatureList, LocalizingDoesNotChangePlainText) {
  EXPECT_THAT(list_.LocalizeIfNecessary("plain #{endl} ^B @0"), IsText("plain #{endl} ^B @0"));
  EXPECT_THAT(list_.LocalizeIfNecessary("\xE6\x97\xA5\xFF"), IsText("\xE6\x97\xA5\xEF\xBF\xBD"));
  EXPECT_THAT(list_.LocalizeIfNecessary(""), IsText(""));
}

TEST_F(FeatureList, LocalizesAKeyThroughTheHost) {
  EXPECT_THAT(list_.LocalizeIfNecessary("$$$/a/b=De^}fault"), IsText("De\u2019fault"));
  EXPECT_THAT(list_.LocalizeIfNecessary("$$$/a/b"), IsText("$$$/a/b"));
  host_.AddTranslation("$$$/a/b",
                       "\xC3\x9C"
                       "bersetzt#{mdash}");
  EXPECT_THAT(list_.LocalizeIfNecessary("$$$/a/b=Default"), IsText("\u00DC"
                                                                   "bersetzt\u2014"));
  EXPECT_THAT(list_.LocalizeIfNecessary("$$$/a/b"), IsText("\u00DC"
                                                           "bersetzt\u2014"));
}

TEST_F(FeatureList, ReturnsReferencesToTheCurrentItemsAndKeys) {
  const auto& items = list_.GetFeatureItems();
  const auto& keys = list_.GetOrderedFeatureKeys();
  list_.EnsureSpecialCaseItemExists("MISC", u"Miscellaneous", u"");
  EXPECT_EQ(items.size(), 1U);
  EXPECT_THAT(keys, ElementsAre("MISC"));
}

TEST_F(FeatureList, DestructorReleasesTheItems) {
  std::weak_ptr<FeatureListItem> item;
  {
    FeatureListData list(host_.Getter(), host_.Setter());
    list.EnsureSpecialCaseItemExists("MISC", u"Miscellaneous", u"");
    item = list.GetFeatureItems().at("MISC");
    EXPECT_FALSE(item.expired());
  }
  EXPECT_TRUE(item.expired());
}

// A list with an empty entry in its items. `BubbleUnlockedItemsToTheTop` adds an empty entry for
// each ordered key without an item. An inserted item does not replace an empty entry. The parser,
// queries and displays ignore empty entries.
class EmptyEntry : public FeatureList {
 protected:
  EmptyEntry() {
    list_.ParseWhatsNewData("");  // adds the key "UNREVIEWED" but no item
    list_.BubbleUnlockedItemsToTheTop();
  }
};

TEST_F(EmptyEntry, IsCreatedForAKeyWithoutAnItem) {
  EXPECT_THAT(KeyOrder(list_), ElementsAre("UNREVIEWED"));
  ASSERT_TRUE(list_.GetFeatureItems().contains("UNREVIEWED"));
  EXPECT_EQ(list_.GetFeatureItems().at("UNREVIEWED"), nullptr);
}

TEST_F(EmptyEntry, IsNotReplacedByAnInsertedItem) {
  list_.EnsureSpecialCaseItemExists("UNREVIEWED", u"Unreviewed", u"");
  EXPECT_THAT(KeyOrder(list_), ElementsAre("UNREVIEWED"));
  list_.InsertFeatureListItem(MakeItem({.groupingKey = "UNREVIEWED"}));
  EXPECT_THAT(KeyOrder(list_), ElementsAre("UNREVIEWED", "UNREVIEWED"));
  EXPECT_EQ(list_.GetFeatureItems().at("UNREVIEWED"), nullptr);
}

TEST_F(EmptyEntry, IsIgnoredByParserQueriesAndDisplay) {
  const std::string data = test_support::DataFileText(
      {{.groupingID = "UNREVIEWED", .description = "To the section"},
       {.groupingID = "MISC", .salience = "Unreviewed", .description = "By its salience"}});
  list_.ParseWhatsNewData(data);
  list_.BubbleUnlockedItemsToTheTop();
  EXPECT_EQ(list_.GetFeatureItems().at("UNREVIEWED"), nullptr);
  EXPECT_FALSE(list_.IsAnythingNew({}));
  EXPECT_FALSE(list_.IsAnythingNeedingRating());
  list_.MarkItemHasBeenRated("UNREVIEWED");
  EXPECT_EQ(host_.State().SetterCalls(), 0);
  EXPECT_THAT(Format(list_).text, testing::HasSubstr("all caught up"));
}

// An item whose destructor reads the list.
class ItemThatReadsTheList final : public FeatureListItem {
 public:
  ItemThatReadsTheList(const std::string& key, const FeatureListData& list, std::size_t& itemCount)
      : FeatureListItem(key, "", "Name", "", Visibility::kPublic),
        list_(list),
        itemCount_(itemCount) {}
  ~ItemThatReadsTheList() {
    itemCount_ = list_.GetFeatureItems().size();
    for (const auto& [key, item] : list_.GetFeatureItems()) EXPECT_FALSE(key.empty());
  }

 private:
  const FeatureListData& list_;
  std::size_t& itemCount_;
};

TEST_F(FeatureList, OldItemsAreDestroyedAfterAReload) {
  std::size_t itemCount = 0;
  for (const char* const key : {"A", "B", "C"}) {
    list_.InsertFeatureListItem(std::make_shared<ItemThatReadsTheList>(key, list_, itemCount));
  }
  list_.InitWithData("");
  EXPECT_EQ(itemCount, 4U);  // the four sections
}

}  // namespace
}  // namespace ornwhatsnew
