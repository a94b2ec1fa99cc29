// Memory that runs out at every allocation: for each operation the first allocation fails, then the
// second, and so on until the last, each alone and with all later ones.
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
  /// Checks the world after each failure.
  using Check = std::function<void(World&)>;

  void SetUp() override {
    if (!test_support::AreAllocationsReplaced()) GTEST_SKIP() << "another allocator is in place";
  }

  /// Fails every allocation of the operation in turn, each in a new world.
  void FailEach(const Operation& operation, const Check& check) const {
    WarmUp(operation, check);
    for (const FailureExtent extent : {FailureExtent::kOne, FailureExtent::kAllFrom}) {
      std::size_t n = 1;
      while (FailOneAndCount(n, extent, operation, check) && !HasFailure()) ++n;
      std::cout << n - 1 << " allocations failed in turn\n";
    }
  }

  /// Expects that a failed operation changes nothing unless it has called the setter, and that it
  /// has its full effect when it is repeated.
  void ExpectAllOrNothing(const Operation& operation) const {
    const std::string untouched = MakeWorld().Look();
    World other = MakeWorld();
    operation(other);
    const std::string expected = other.Aftermath();
    FailEach(operation, [&](World& world) {
      const bool isWritten = world.store.SetterCalls() > 0;
      if (!isWritten) {
        EXPECT_EQ(world.Look(), untouched);
      }
      operation(world);
      EXPECT_EQ(world.Aftermath(), expected);
    });
  }

  /// Expects that a failed query changes nothing and returns the same value when it is repeated.
  template <class Question>
  void ExpectAnswerOrNothing(const Question& question) const {
    const World other = MakeWorld();
    const auto expected = question(*other.list);
    const std::string untouched = other.Look();
    FailEach([&](World& world) { question(*world.list); },
             [&](World& world) {
               EXPECT_TRUE(question(*world.list) == expected);
               EXPECT_EQ(world.Look(), untouched);
             });
  }

 private:
  /// Runs everything once, because some objects are created once and kept.
  void WarmUp(const Operation& operation, const Check& check) const {
    World checked = MakeWorld();
    check(checked);
    World operated = MakeWorld();
    operation(operated);
  }

  /// Returns whether there was an n-th allocation.
  bool FailOneAndCount(std::size_t n, FailureExtent extent, const Operation& operation,
                       const Check& check) const {
    SCOPED_TRACE(testing::Message()
                 << "allocation " << n << (extent == FailureExtent::kOne ? "" : " and all after"));
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

TEST_F(MemoryTest, ConstructionFromData) {
  const std::string text = LoadedData();
  const std::string expected = MakeWorld().Look();
  FailEach(
      [&](World& world) { FeatureListData list(text, world.store.Getter(), world.store.Setter()); },
      [&](World& world) {
        world.list =
            std::make_unique<FeatureListData>(text, world.store.Getter(), world.store.Setter());
        EXPECT_EQ(world.Look(), expected);
      });
}

TEST_F(MemoryTest, GetWhatsNew) {
  const std::string text = LoadedData();
  const UTF16String path = u"a path that is too long to be held without an allocation";
  ornui::utility::MemoryResourceManager resources;
  resources.Add(path, u"csv", {text.begin(), text.end()});
  const std::string expected = MakeWorld().Look();
  FailEach(
      [&](World& world) {
        GetWhatsNew(path, &resources, world.store.Getter(), world.store.Setter());
      },
      [&](World& world) {
        const auto list = GetWhatsNew(path, &resources, world.store.Getter(), world.store.Setter());
        world.list->InitWithData(text);
        EXPECT_EQ(list->GetOrderedFeatureKeys(), world.list->GetOrderedFeatureKeys());
        EXPECT_EQ(world.Look(), expected);
      });
}

TEST_F(MemoryTest, GetWhatsNewFromAFolder) {
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

TEST_F(MemoryTest, ConstructionWithTheStateInTheDebugDatabase) {
  const std::string text = LoadedData();
  FailEach([&](World&) { FeatureListData list(text, {}, {}); },
           [&](World& world) {
             const FeatureListData list(text, {}, {});
             EXPECT_EQ(list.GetOrderedFeatureKeys(), world.list->GetOrderedFeatureKeys());
           });
}

TEST_F(MemoryTest, InitWithDataOfALiveList) {
  const std::string text = LaterData();
  ExpectAllOrNothing([&](World& world) { world.list->InitWithData(text); });
}

TEST_F(MemoryTest, RefreshOfTheSeenState) {
  ExpectAllOrNothing([](World& world) { world.list->RefreshInternalSeenState(); });
}

TEST_F(MemoryTest, CreatingASection) {
  ExpectAllOrNothing([](World& world) {
    world.list->EnsureSpecialCaseItemExists("A section of the host, with a long key",
                                            u"A section of the host, with a long name",
                                            u"A section of the host, with a long description");
  });
}

TEST_F(MemoryTest, InsertingAnItem) {
  ExpectAllOrNothing([](World& world) {
    world.list->InsertFeatureListItem(std::make_shared<FeatureListItem>(
        "An item of the host, with a long key", "feature.export.for.everybody",
        "A name of the host's own, and a long one", "", FeatureListItem::Visibility::kPublic));
  });
}

TEST_F(MemoryTest, AddingAChangeToAnItem) {
  const auto change = test_support::MakeDetail({.version = "25.3",
                                                .salience = "HideBetaFeatureFromExternal",
                                                .url = "https://help.tarsa.example/added",
                                                .description = "A change that the host adds"});
  // The first item has a URL already; the second receives the URL of the change.
  for (const char* const key : {"EPIC-7", "ORN-1000000000000000"}) {
    SCOPED_TRACE(key);
    ExpectAllOrNothing([&](World& world) {
      change->SetHasDuplicateURL(false);
      world.list->GetFeatureItems().at(key)->AddFeatureDetail(change);
    });
  }
}

TEST_F(MemoryTest, AChangeThatCouldNotBeAddedIsNotMarked) {
  const auto change = test_support::MakeDetail({.url = "https://help.tarsa.example/added"});
  FailEach(
      [&](World& world) {
        change->SetHasDuplicateURL(false);
        world.list->GetFeatureItems().at("EPIC-7")->AddFeatureDetail(change);
      },
      [&](World&) { EXPECT_FALSE(change->HasDuplicateURL()); });
}

TEST_F(MemoryTest, BubblingTheUnlockedItems) {
  ExpectAllOrNothing([](World& world) { world.list->BubbleUnlockedItemsToTheTop(); });
}

TEST_F(MemoryTest, ParsingWithoutClearing) {
  // A failed parse may have added some of its changes; a reload removes them.
  const std::string text = LaterData();
  World other = MakeWorld();
  other.list->InitWithData(text);
  const std::string expected = other.Aftermath();
  const auto reload = [&](World& world) {
    world.list->InitWithData(text);
    EXPECT_EQ(world.Aftermath(), expected);
  };
  FailEach([&](World& world) { world.list->ParseWhatsNewData(text); }, reload);
  FailEach([&](World& world) { world.list->ParseBetaFeatures(); }, reload);
}

TEST_F(MemoryTest, IsAnythingNewWithEveryOption) {
  for (unsigned bits = 0; bits < 32; ++bits) {
    SCOPED_TRACE(bits);
    const DisplayOptions options(static_cast<unsigned char>(bits));
    ExpectAnswerOrNothing([&](const FeatureListData& list) { return list.IsAnythingNew(options); });
  }
}

TEST_F(MemoryTest, IsAnythingNeedingRating) {
  ExpectAnswerOrNothing([](const FeatureListData& list) { return list.IsAnythingNeedingRating(); });
}

TEST_F(MemoryTest, TheNewSeenState) {
  ExpectAnswerOrNothing([](const FeatureListData& list) { return list.GetNewSeenState(); });
}

TEST_F(MemoryTest, Localizing) {
  ExpectAnswerOrNothing([](const FeatureListData& list) {
    return list.LocalizeIfNecessary("$$$/ornwhatsnew/Feature/Translated=x") +
           list.LocalizeIfNecessary("no key, but longer than what fits into a string");
  });
}

TEST_F(MemoryTest, CapturingAStyle) {
  const UTF16String text = u"a text before";
  const UTF16String url = u"https://help.tarsa.example/export";
  ExpectAnswerOrNothing([&](const FeatureListData& list) {
    StyleRunMap runs;
    for (int i = 0; i < 3; ++i) list.CaptureStyle(kStyleHotSpot, text, u"piece", 1, -1, url, runs);
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
  EXPECT_EQ(mostKept, 2U) << "the third call must fail after two runs";
}

/// The arguments of a display call.
struct Panel {
  DisplayOptions options;
  bool hasRatingMap;
};

class MemoryOfPanelTest : public MemoryTest, public testing::WithParamInterface<Panel> {};

TEST_P(MemoryOfPanelTest, IsShownAndWrittenOrShownAgain) {
  const UTF16String placeholder = u"	A placeholder for the rating control";
  ExpectAllOrNothing([&](World& world) {
    StyleRunMap runs;
    const auto ratingItems = GetParam().hasRatingMap ? std::make_shared<RatingMap>() : nullptr;
    world.list->GetFormattedTextForDisplay(GetParam().options, placeholder, runs, ratingItems);
  });
}

INSTANTIATE_TEST_SUITE_P(
    Panels, MemoryOfPanelTest,
    testing::Values(Panel{{}, true}, Panel{{}, false}, Panel{kShowOnlyNew, true},
                    Panel{kShowOnlyNew | kFilterRelevantPlatform | kFilterRelevantVersion, false},
                    Panel{kFilterHeadlinesOnly, true}, Panel{kRatingView, true},
                    Panel{kRatingView, false}),
    [](const testing::TestParamInfo<Panel>& panel) {
      return "Options" + std::to_string(panel.param.options.Bits()) +
             (panel.param.hasRatingMap ? "WithRatingMap" : "WithoutRatingMap");
    });

TEST_F(MemoryTest, ARatingIsWrittenOrCanBeRepeated) {
  ExpectAllOrNothing([](World& world) { world.list->MarkItemHasBeenRated("EPIC-7"); });
}

}  // namespace
}  // namespace faults
