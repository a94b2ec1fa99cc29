#include <ornwhatsnew/WhatsNew.h>

#include <functional>
#include <list>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <ornui/utility/ResourceManager.h>
#include <ornwhatsnew/FeatureListData.h>

#include "tests/support/Builders.h"
#include "tests/support/FakeHost.h"
#include "tests/support/Matchers.h"
#include "tests/support/MemoryResourceManager.h"
#include "tests/support/Threads.h"

namespace ornwhatsnew {
namespace {

using test_support::ChangeDescriptions;
using test_support::DataFile;
using test_support::Format;
using test_support::ItemOf;
using test_support::KeyOrder;
using testing::ElementsAre;
using testing::HasSubstr;

// A resource manager that records each request. `LoadResource` sets `bytes` to `content`, but
// returns false as if it had failed.
class RecordingResources : public ornui::utility::ResourceManager {
 public:
  bool LoadResource(const UTF16String& name, const UTF16String& type,
                    std::vector<unsigned char>& bytes) const override {
    requests.emplace_back(name, type);
    EXPECT_TRUE(bytes.empty());
    bytes.assign(content.begin(), content.end());
    return false;
  }

  std::string content;
  mutable std::vector<std::pair<UTF16String, UTF16String>> requests;
};

class EntryPoint : public test_support::FakeHostTest {
 protected:
  EntryPoint() {
    host_.AddFeature({.internalKey = "a", .epicKey = "EPIC-1", .name = "A", .enabled = false});
    host_.AddFeature({.internalKey = "b", .epicKey = "EPIC-2", .name = "B"});
    host_.AddFeature({.internalKey = "c", .epicKey = "EPIC-3", .name = "C"});
  }

  std::shared_ptr<FeatureListData> Load(const std::string& content) {
    resources_.content = content;
    return GetWhatsNew(u"WhatsNew", &resources_, host_.Getter(), host_.Setter());
  }

  const std::string data_ = DataFile()
                                .ChangesSince("24.0")
                                .Row({.groupingID = "EPIC-3", .description = "Three"})
                                .Row({.groupingID = "EPIC-1", .description = "One"})
                                .Row({.groupingID = "MISC", .description = "Other"})
                                .Text();
  RecordingResources resources_;
};

TEST_F(EntryPoint, RequestsTheResourceOfTypeCsvOnce) {
  Load("");
  EXPECT_THAT(resources_.requests,
              ElementsAre(std::pair(UTF16String(u"WhatsNew"), UTF16String(u"csv"))));
}

TEST_F(EntryPoint, UsesTheBytesEvenIfTheManagerReturnsFalse) {
  EXPECT_THAT(ChangeDescriptions(ItemOf(*Load(data_), "EPIC-1")), ElementsAre("One"));
}

TEST_F(EntryPoint, CreatesAListWithoutChangesForAnUnknownResource) {
  const test_support::MemoryResourceManager nothing;
  const auto list = GetWhatsNew(u"unknown", &nothing, host_.Getter(), host_.Setter());
  EXPECT_THAT(KeyOrder(*list), ElementsAre("UNREVIEWED", "EPIC-2", "EPIC-3", "EPIC-1", "MISC",
                                           "BUGFIX", "INTERNAL"));
  for (const auto& [key, item] : list->GetFeatureItems()) {
    EXPECT_TRUE(item->GetAllChanges().empty()) << key;
  }
}

TEST_F(EntryPoint, LoadsFromResourcesInMemory) {
  test_support::MemoryResourceManager resources;
  resources.Add(u"WhatsNew", u"csv", {data_.begin(), data_.end()});
  resources.Add(u"WhatsNew", u"txt", {'x'});
  const auto list = GetWhatsNew(u"WhatsNew", &resources, host_.Getter(), host_.Setter());
  EXPECT_THAT(ChangeDescriptions(ItemOf(*list, "EPIC-1")), ElementsAre("One"));
}

TEST_F(EntryPoint, OrdersUnreviewedThenUnlockedThenTheOthers) {
  EXPECT_THAT(KeyOrder(*Load(data_)), ElementsAre("UNREVIEWED", "EPIC-2", "EPIC-3", "MISC",
                                                  "BUGFIX", "INTERNAL", "EPIC-1"));
}

TEST_F(EntryPoint, TextAndResourceGiveTheSameList) {
  const auto list = Load(data_);
  const FeatureListData fromText(data_, host_.Getter(), host_.Setter());
  EXPECT_EQ(KeyOrder(*list), KeyOrder(fromText));
  ASSERT_EQ(list->GetFeatureItems().size(), fromText.GetFeatureItems().size());
  for (const auto& [key, item] : list->GetFeatureItems()) {
    EXPECT_EQ(item->GetItemSeenGuid(), ItemOf(fromText, key).GetItemSeenGuid()) << key;
  }
}

TEST_F(EntryPoint, InitializingTwiceGivesTheSameList) {
  const auto list = Load(data_);
  const auto order = KeyOrder(*list);
  const Guid seen = ItemOf(*list, "EPIC-1").GetItemSeenGuid();
  list->InitWithData(data_);
  EXPECT_EQ(KeyOrder(*list), order);
  EXPECT_EQ(list->GetFeatureItems().size(), 7U);
  EXPECT_EQ(ItemOf(*list, "EPIC-1").GetItemSeenGuid(), seen);
  EXPECT_THAT(ChangeDescriptions(ItemOf(*list, "EPIC-1")), ElementsAre("One"));
}

TEST_F(EntryPoint, InitializingAgainReadsTheHostsCurrentFeatures) {
  const auto list = Load(data_);
  host_.RemoveFeature("a");
  host_.AddFeature({.internalKey = "d", .epicKey = "EPIC-4", .name = "D"});
  list->InitWithData("");
  EXPECT_THAT(KeyOrder(*list), ElementsAre("UNREVIEWED", "EPIC-2", "EPIC-3", "EPIC-4", "MISC",
                                           "BUGFIX", "INTERNAL"));
  EXPECT_FALSE(list->GetFeatureItems().contains("EPIC-1"));
}

TEST_F(EntryPoint, InitializingAgainKeepsTheChangesSinceVersion) {
  const auto list = Load(data_);
  list->InitWithData(DataFile().Text());
  EXPECT_THAT(Format(*list).text, HasSubstr("Changes since v24.0\n"));
  list->InitWithData(DataFile().ChangesSince("25.0").Text());
  EXPECT_THAT(Format(*list).text, HasSubstr("Changes since v25.0\n"));
}

// Provides a getter that returns empty strings. After `ActOnce`, the next getter call runs the
// action before it returns.
class ActingGetter {
 public:
  StateGetter Getter() {
    return [this](const UTF8String&) {
      if (const auto action = std::exchange(action_, {})) action();
      return UTF8String();
    };
  }
  void ActOnce(std::function<void()> action) { action_ = std::move(action); }

 private:
  std::function<void()> action_;
};

TEST_F(EntryPoint, ReloadKeepsAChangesSinceVersionThatAGetterSets) {
  ActingGetter getter;
  FeatureListData list(data_, getter.Getter(), host_.Setter());
  getter.ActOnce([&list] { list.ParseWhatsNewData(DataFile().ChangesSince("25.0").Text()); });
  list.InitWithData(DataFile().Text());
  EXPECT_THAT(Format(list).text, HasSubstr("Changes since v25.0\n"));
}

TEST_F(EntryPoint, ChangesSinceVersionInTheTextOverridesTheOneThatAGetterSets) {
  ActingGetter getter;
  FeatureListData list(data_, getter.Getter(), host_.Setter());
  getter.ActOnce([&list] { list.InitWithData(DataFile().ChangesSince("25.0").Text()); });
  list.InitWithData(DataFile().ChangesSince("").Text());
  EXPECT_THAT(Format(list).text, HasSubstr("Changes since v\n"));
}

TEST_F(EntryPoint, ReferencesToItemsAndKeysStayValidAfterAReload) {
  FeatureListData list(data_, host_.Getter(), host_.Setter());
  const FeatureMap& items = list.GetFeatureItems();
  const std::list<std::string>& keys = list.GetOrderedFeatureKeys();
  host_.AddFeature({.internalKey = "d", .epicKey = "EPIC-4", .name = "D"});
  list.InitWithData(data_);
  EXPECT_EQ(&items, &list.GetFeatureItems());
  EXPECT_EQ(&keys, &list.GetOrderedFeatureKeys());
  EXPECT_EQ(items.size(), 8U);
  EXPECT_EQ(keys.size(), 8U);
}

TEST_F(EntryPoint, LoadingReadsTheStateAndWritesNothing) {
  Load(data_);
  EXPECT_EQ(host_.State().GetterCalls(), 3);
  EXPECT_EQ(host_.State().SetterCalls(), 0);
}

TEST_F(EntryPoint, SummaryStatesWhetherTheResourceWasFound) {
  const test_support::MemoryResourceManager nothing;
  const auto missing = GetWhatsNew(u"unknown", &nothing, host_.Getter(), host_.Setter());
  EXPECT_EQ(missing->GetDataFileSummary(), (DataFileSummary{.isFound = false}));

  test_support::MemoryResourceManager resources;
  resources.Add(u"WhatsNew", u"csv", {data_.begin(), data_.end()});
  const auto found = GetWhatsNew(u"WhatsNew", &resources, host_.Getter(), host_.Setter());
  EXPECT_EQ(found->GetDataFileSummary(), (DataFileSummary{.isFound = true, .changes = 3}));
}

TEST_F(EntryPoint, SummaryReportsTheResultOfTheManagerEvenIfItLoadedBytes) {
  EXPECT_EQ(Load(data_)->GetDataFileSummary(), (DataFileSummary{.isFound = false, .changes = 3}));
}

TEST_F(EntryPoint, SummaryDescribesTheLastReload) {
  const auto list = Load(data_);
  const std::string text = DataFile().Row({.groupingID = "EPIC-1", .description = "One"}).Text();
  list->InitWithData(text);
  EXPECT_EQ(list->GetDataFileSummary(), (DataFileSummary{.isFound = {}, .changes = 1}));
  list->ParseWhatsNewData(data_);
  EXPECT_EQ(list->GetDataFileSummary(), (DataFileSummary{.isFound = {}, .changes = 1}));
}

TEST_F(EntryPoint, SummaryOfAListThatIsNotLoadedIsEmpty) {
  const FeatureListData list(host_.Getter(), host_.Setter());
  EXPECT_EQ(list.GetDataFileSummary(), DataFileSummary());
}

TEST_F(EntryPoint, SummaryCountsUnmatchedChangesAndSkippedRows) {
  const std::string text = DataFile()
                               .Row({.groupingID = "EPIC-1", .description = "Matched"})
                               .Row({.groupingID = "none", .description = "Unmatched"})
                               .Line("")
                               .Line("too,short")
                               .Line("25.1,,,,,,,,,No grouping ID")
                               .Line("\r")
                               .ChangesSince("24.0")
                               .Text();
  const FeatureListData list(text, host_.Getter(), host_.Setter());
  EXPECT_EQ(list.GetDataFileSummary(),
            (DataFileSummary{.isFound = {}, .changes = 2, .unmatched = 1, .skippedRows = 2}));
}

TEST_F(EntryPoint, AcceptsArbitraryBytes) {
  using namespace std::string_literals;
  const auto list = Load("\xEF\xBB\xBFv,g,,,,,,,,\r\n1,EPIC-1,,,,,,,,a\0b\xFF\r\n"s);
  EXPECT_THAT(ChangeDescriptions(ItemOf(*list, "EPIC-1")), ElementsAre("a\0b\xEF\xBF\xBD"s));
}

TEST_F(EntryPoint, ReturnsTheOnlyReferenceToTheList) {
  const std::weak_ptr<FeatureListData> list = Load(data_);
  EXPECT_TRUE(list.expired());
}

TEST_F(EntryPoint, PropagatesExceptionsOfTheGetter) {
  host_.State().FailGetterCall(2);
  EXPECT_THROW(Load(data_), test_support::InjectedFailure);
}

TEST_F(EntryPoint, ListsOnSeveralThreadsMayShareTheDebugStore) {
  constexpr int kDisplays = 20;
  host_.SetInternalFeaturesAllowed(true);  // the lists of such a user also read debug switches
  const auto display = [this] {
    FeatureListData list(data_, {}, {});
    return Format(list).text;
  };
  display();  // stores the version, which the header of all later displays contains
  const std::string expected = display();
  test_support::ThreadCounter equalTexts;
  test_support::RunOnThreads(
      [&] {
        for (int count = 0; count < kDisplays; ++count)
          equalTexts.Add(display() == expected ? 1 : 0);
      },
      display);
  EXPECT_EQ(equalTexts.Value(), test_support::kThreadCount * kDisplays);
}

}  // namespace
}  // namespace ornwhatsnew
