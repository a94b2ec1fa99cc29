// Makes every allocation of an operation fail in turn, from the first to the last. Each allocation
// fails twice: once alone, and once together with all later allocations.
#include <algorithm>
#include <functional>
#include <iostream>
#include <memory>
#include <new>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include <ornui/utility/ResourceManager.h>
#include <ornwhatsnew/WhatsNew.h>

#include "tests/faults/FaultWorld.h"
#include "tests/support/Allocations.h"
#include "tests/support/Builders.h"
#include "tests/support/Matchers.h"
#include "tests/support/MemoryResourceManager.h"
#include "tests/support/TemporaryFolder.h"

namespace faults {
namespace {

using namespace ornwhatsnew;
using test_support::AllocationFailure;
using test_support::FailureExtent;
using test_support::FailureThreads;
using test_support::LiveAllocations;

bool RunsOutOfMemory(const std::function<void()>& work) {
  try {
    work();
    return false;
  } catch (const std::bad_alloc&) {
    return true;
  }
}

class MemoryTest : public FaultTest {
 protected:
  using Operation = std::function<void(World&)>;
  /// A function that checks the `World` after a failure.
  using Check = std::function<void(World&)>;

  void SetUp() override {
    if (!test_support::AreAllocationsReplaced()) GTEST_SKIP() << "another allocator is in use";
  }

  /// Makes every allocation of the operation fail in turn, each time in a new `World`. In a second
  /// pass, all later allocations also fail. Calls `check` after each failure.
  void FailEach(const Operation& operation, const Check& check) const {
    WarmUp(operation, check);
    for (const FailureExtent extent : {FailureExtent::kOne, FailureExtent::kAllFrom}) {
      std::size_t n = 1;
      while (FailOneWithoutLeak(n, extent, operation, check) && !HasFailure()) ++n;
      std::cout << n - 1 << " allocations failed in turn\n";
    }
  }

  /// Expects that a failed operation has its full effect when it is repeated. If the failed
  /// operation did not call the setter, expects that it changed nothing.
  void ExpectAllOrNothing(const Operation& operation) const {
    const std::string untouched = MakeWorld().Snapshot();
    World other = MakeWorld();
    operation(other);
    const std::string expected = other.SnapshotsWhileUsed();
    FailEach(operation, [&](World& world) {
      const bool isWritten = world.store.SetterCalls() > 0;
      if (!isWritten) {
        EXPECT_EQ(world.Snapshot(), untouched);
      }
      operation(world);
      EXPECT_EQ(world.SnapshotsWhileUsed(), expected);
    });
  }

  /// Expects that a failed query changes nothing, and that the repeated query returns the same
  /// value as a query without a failure.
  template <class Query>
  void ExpectQueryCanBeRepeated(const Query& query) const {
    const World other = MakeWorld();
    const auto expected = query(*other.list);
    const std::string untouched = other.Snapshot();
    FailEach([&](World& world) { query(*world.list); },
             [&](World& world) {
               EXPECT_TRUE(query(*world.list) == expected);
               EXPECT_EQ(world.Snapshot(), untouched);
             });
  }

 private:
  /// Runs the check and the operation once without failures. The first run can create objects that
  /// exist until the program ends. If `FailEach` created them later, they would count as leaks.
  void WarmUp(const Operation& operation, const Check& check) const {
    World checked = MakeWorld();
    check(checked);
    World operated = MakeWorld();
    operation(operated);
  }

  /// Makes the n-th allocation of the operation fail. With `kAllFrom`, all later allocations also
  /// fail. Calls `check` after the failure, and expects that no memory is leaked. Returns false if
  /// the operation makes fewer than `n` allocations.
  bool FailOneWithoutLeak(std::size_t n, FailureExtent extent, const Operation& operation,
                          const Check& check) const {
    SCOPED_TRACE(testing::Message()
                 << "allocation " << n
                 << (extent == FailureExtent::kOne ? "" : " and all later ones"));
    const std::ptrdiff_t before = LiveAllocations();
    const bool hasFailed = FailOne(n, extent, operation, check);
    EXPECT_EQ(LiveAllocations(), before) << "memory leaked";
    return hasFailed;
  }

  bool FailOne(std::size_t n, FailureExtent extent, const Operation& operation,
               const Check& check) const {
    World world = MakeWorld();
    AllocationFailure failure(n, extent, FailureThreads::kThis);
    const bool ranOut = RunsOutOfMemory([&] { operation(world); });
    failure.Stop();
    EXPECT_EQ(ranOut, failure.HasHappened()) << "the exception must reach the caller";
    if (ranOut) check(world);
    return failure.HasHappened();
  }
};

TEST_F(MemoryTest, ConstructionCanBeRepeated) {
  const std::string text = LoadedData();
  const std::string expected = MakeWorld().Snapshot();
  FailEach(
      [&](World& world) { FeatureListData list(text, world.store.Getter(), world.store.Setter()); },
      [&](World& world) {
        world.list =
            std::make_unique<FeatureListData>(text, world.store.Getter(), world.store.Setter());
        EXPECT_EQ(world.Snapshot(), expected);
      });
}

TEST_F(MemoryTest, GetWhatsNewCanBeRepeated) {
  const std::string text = LoadedData();
  const UTF16String path = u"a path that is too long for the small-string optimization";
  test_support::MemoryResourceManager resources;
  resources.Add(path, u"csv", {text.begin(), text.end()});
  const std::string expected = MakeWorld().Snapshot();
  FailEach(
      [&](World& world) {
        GetWhatsNew(path, &resources, world.store.Getter(), world.store.Setter());
      },
      [&](World& world) {
        const auto list = GetWhatsNew(path, &resources, world.store.Getter(), world.store.Setter());
        world.list->InitWithData(text);
        EXPECT_EQ(list->GetOrderedFeatureKeys(), world.list->GetOrderedFeatureKeys());
        EXPECT_EQ(world.Snapshot(), expected);
      });
}

TEST_F(MemoryTest, GetWhatsNewFromAFolderCanBeRepeated) {
  const test_support::TemporaryFolder folder;
  folder.Write("a data file whose name is long.csv", LoadedData());
  const ornui::utility::FolderResourceManager resources(folder.Path());
  const UTF16String path = u"a data file whose name is long.csv";
  const auto load = [&](World& world) {
    return GetWhatsNew(path, &resources, world.store.Getter(), world.store.Setter());
  };
  FailEach([&](World& world) { load(world); },
           [&](World& world) {
             EXPECT_EQ(load(world)->GetOrderedFeatureKeys(), world.list->GetOrderedFeatureKeys());
           });
}

TEST_F(MemoryTest, ConstructionWithStateInTheDebugDatabaseCanBeRepeated) {
  const std::string text = LoadedData();
  FailEach([&](World&) { FeatureListData list(text, {}, {}); },
           [&](World& world) {
             const FeatureListData list(text, {}, {});
             EXPECT_EQ(list.GetOrderedFeatureKeys(), world.list->GetOrderedFeatureKeys());
           });
}

TEST_F(MemoryTest, InitWithDataSucceedsOrChangesNothing) {
  const std::string text = LaterData();
  ExpectAllOrNothing([&](World& world) { world.list->InitWithData(text); });
}

TEST_F(MemoryTest, RefreshSucceedsOrChangesNothing) {
  ExpectAllOrNothing([](World& world) { world.list->RefreshInternalSeenState(); });
}

TEST_F(MemoryTest, CreatingASectionSucceedsOrChangesNothing) {
  ExpectAllOrNothing([](World& world) {
    world.list->EnsureSpecialCaseItemExists("A section of the host, with a long key",
                                            u"A section of the host, with a long name",
                                            u"A section of the host, with a long description");
  });
}

TEST_F(MemoryTest, InsertingAnItemSucceedsOrChangesNothing) {
  ExpectAllOrNothing([](World& world) {
    world.list->InsertFeatureListItem(std::make_shared<FeatureListItem>(
        "An item of the host, with a long key", "feature.export.for.everybody",
        "An item of the host, with a long name", "", FeatureListItem::Visibility::kPublic));
  });
}

TEST_F(MemoryTest, AddingAChangeToAnItemSucceedsOrChangesNothing) {
  const auto change = test_support::MakeDetail({.version = "25.3",
                                                .salience = "HideBetaFeatureFromExternal",
                                                .url = "https://help.tarsa.example/added",
                                                .description = "A change that the host adds"});
  // The item "EPIC-7" already has a URL. The other item receives its URL from the change.
  for (const char* const key : {"EPIC-7", "ORN-1000000000000000"}) {
    SCOPED_TRACE(key);
    ExpectAllOrNothing([&](World& world) {
      change->SetHasDuplicateURL(false);
      world.list->GetFeatureItems().at(key)->AddFeatureDetail(change);
    });
  }
}

TEST_F(MemoryTest, AChangeThatWasNotAddedIsNoDuplicate) {
  const auto change = test_support::MakeDetail({.url = "https://help.tarsa.example/added"});
  FailEach(
      [&](World& world) {
        change->SetHasDuplicateURL(false);
        world.list->GetFeatureItems().at("EPIC-7")->AddFeatureDetail(change);
      },
      [&](World&) { EXPECT_FALSE(change->HasDuplicateURL()); });
}

TEST_F(MemoryTest, BubblingUnlockedItemsSucceedsOrChangesNothing) {
  ExpectAllOrNothing([](World& world) { world.list->BubbleUnlockedItemsToTheTop(); });
}

TEST_F(MemoryTest, AReloadRepairsAFailedParse) {
  // A failed parse may have added some of its changes. A reload must remove them.
  const std::string text = LaterData();
  World other = MakeWorld();
  other.list->InitWithData(text);
  const std::string expected = other.SnapshotsWhileUsed();
  const auto reload = [&](World& world) {
    world.list->InitWithData(text);
    EXPECT_EQ(world.SnapshotsWhileUsed(), expected);
  };
  FailEach([&](World& world) { world.list->ParseWhatsNewData(text); }, reload);
  FailEach([&](World& world) { world.list->ParseBetaFeatures(); }, reload);
}

TEST_F(MemoryTest, IsAnythingNewCanBeRepeatedWithAllOptions) {
  for (unsigned bits = 0; bits < 32; ++bits) {
    SCOPED_TRACE(bits);
    const DisplayOptions options(static_cast<unsigned char>(bits));
    ExpectQueryCanBeRepeated(
        [&](const FeatureListData& list) { return list.IsAnythingNew(options); });
  }
}

TEST_F(MemoryTest, IsAnythingNeedingRatingCanBeRepeated) {
  ExpectQueryCanBeRepeated(
      [](const FeatureListData& list) { return list.IsAnythingNeedingRating(); });
}

TEST_F(MemoryTest, GetNewSeenStateCanBeRepeated) {
  ExpectQueryCanBeRepeated([](const FeatureListData& list) { return list.GetNewSeenState(); });
}

TEST_F(MemoryTest, LocalizingCanBeRepeated) {
  ExpectQueryCanBeRepeated([](const FeatureListData& list) {
    return list.LocalizeIfNecessary("$$$/ornwhatsnew/Feature/Translated=x") +
           list.LocalizeIfNecessary("no key, but too long for the small-string optimization");
  });
}

TEST_F(MemoryTest, CapturingAStyleCanBeRepeated) {
  const UTF16String text = u"the text so far";
  const UTF16String url = u"https://help.tarsa.example/export";
  ExpectQueryCanBeRepeated([&](const FeatureListData& list) {
    StyleRunMap runs;
    for (int i = 0; i < 3; ++i) list.CaptureStyle(kStyleHotSpot, text, u"link", 1, -1, url, runs);
    return runs;
  });
}

TEST_F(MemoryTest, AFailedCaptureKeepsTheEarlierRuns) {
  const UTF16String url = u"https://help.tarsa.example/export";
  std::optional<StyleRunMap> runs;
  std::size_t captured = 0;
  std::size_t mostKept = 0;
  FailEach(
      [&](World& world) {
        captured = 0;
        runs.emplace();
        for (int i = 0; i < 3; ++i) {
          world.list->CaptureStyle(kStyleHotSpot, {}, {}, i, 0, url, *runs);
          ++captured;
        }
        runs.reset();
      },
      [&](World&) {
        if (!runs) return;
        const std::vector<StyleRun>& kept = (*runs)[kStyleHotSpot];
        EXPECT_EQ(kept.size(), captured);
        for (std::size_t i = 0; i < kept.size(); ++i) {
          EXPECT_EQ(kept[i], StyleRun({static_cast<int>(i), 0}, url));
        }
        mostKept = std::max(mostKept, kept.size());
        runs.reset();
      });
  EXPECT_EQ(mostKept, 2U) << "no allocation of the third call failed";
}

/// The arguments of a display call, and the name of the test.
struct Panel {
  const char* name;
  DisplayOptions options;
  bool hasRatingMap;
};

class MemoryOfPanelTest : public MemoryTest, public testing::WithParamInterface<Panel> {};

TEST_P(MemoryOfPanelTest, DisplaySucceedsOrCanBeRepeated) {
  const UTF16String placeholder = u"	A placeholder for the rating control";
  ExpectAllOrNothing([&](World& world) {
    StyleRunMap runs;
    const auto ratingItems = GetParam().hasRatingMap ? std::make_shared<RatingMap>() : nullptr;
    world.list->GetFormattedTextForDisplay(GetParam().options, placeholder, runs, ratingItems);
  });
}

TEST_P(MemoryOfPanelTest, LayoutSucceedsOrCanBeRepeated) {
  ExpectAllOrNothing([](World& world) { world.list->GetLayoutForDisplay(GetParam().options); });
}

TEST_P(MemoryOfPanelTest, PreviewAndCountCanBeRepeated) {
  ExpectQueryCanBeRepeated([](const FeatureListData& list) {
    return ConvertToUTF8(list.PreviewLayout(GetParam().options));
  });
  ExpectQueryCanBeRepeated(
      [](const FeatureListData& list) { return list.CountNew(GetParam().options); });
}

TEST_P(MemoryOfPanelTest, ExplanationCanBeRepeated) {
  ExpectQueryCanBeRepeated([](const FeatureListData& list) {
    std::size_t rules = 0;
    for (const ItemVisibility& item : list.ExplainVisibility(GetParam().options)) {
      rules += item.hidingRules.size();
      for (const ChangeVisibility& change : item.changes) rules += change.hidingRules.size();
    }
    return rules;
  });
}

INSTANTIATE_TEST_SUITE_P(
    Panels, MemoryOfPanelTest,
    testing::Values(Panel{"Everything", {}, true}, Panel{"Everything", {}, false},
                    Panel{"OnlyNew", kShowOnlyNew, true},
                    Panel{"OnlyRelevant",
                          kShowOnlyNew | kFilterRelevantPlatform | kFilterRelevantVersion, false},
                    Panel{"OnlyHeadlines", kFilterHeadlinesOnly, true},
                    Panel{"Ratings", kRatingView, true}, Panel{"Ratings", kRatingView, false}),
    [](const testing::TestParamInfo<Panel>& panel) {
      return std::string(panel.param.name) +
             (panel.param.hasRatingMap ? "WithRatingMap" : "WithoutRatingMap");
    });

TEST_F(MemoryTest, MarkingAllAsSeenSucceedsOrCanBeRepeated) {
  ExpectAllOrNothing([](World& world) { world.list->MarkAllSeen(); });
}

TEST_F(MemoryTest, ARatingSucceedsOrCanBeRepeated) {
  ExpectAllOrNothing([](World& world) { world.list->MarkItemHasBeenRated("EPIC-7"); });
}

}  // namespace
}  // namespace faults
