// Tests callbacks and services that call functions of the list that called them. Death tests check
// the assertions that detect forbidden calls.
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include <ornappsupport/feature/FeatureService.h>
#include <orncore/config/Localizer.h>

#include "tests/faults/FaultWorld.h"
#include "tests/support/Matchers.h"

namespace faults {
namespace {

using namespace ornwhatsnew;
using test_support::Format;

/// Contains a list that stores its state in `world.store`. Its getter calls `inGetter` and its
/// setter calls `inSetter`, with the list as the argument. Each function runs only once, because
/// the `ReentrantList` resets it before the call.
class ReentrantList {
 public:
  explicit ReentrantList(World& world) : world_(world) {
    list = std::make_unique<FeatureListData>(
        [this, getter = world.store.Getter()](const UTF8String& key) {
          Execute(inGetter);
          return getter(key);
        },
        [this, setter = world.store.Setter()](const UTF8String& key, const UTF8String& value) {
          setter(key, value);
          Execute(inSetter);
        });
    list->InitWithData(LoadedData());
    world_.list = nullptr;
  }

  std::function<void(FeatureListData&)> inGetter;
  std::function<void(FeatureListData&)> inSetter;
  std::unique_ptr<FeatureListData> list;
  int executedActions = 0;

 private:
  void Execute(std::function<void(FeatureListData&)>& action) {
    if (!action || list == nullptr) return;
    // Reset the member first, because the action can cause further calls to the callbacks.
    const auto current = std::exchange(action, nullptr);
    current(*list);
    ++executedActions;
  }

  World& world_;
};

using NestedCallTest = FaultTest;

std::shared_ptr<FeatureListItem> NewItem() {
  return std::make_shared<FeatureListItem>("NEW", "", "New", "",
                                           FeatureListItem::Visibility::kPublic);
}

/// Returns actions that a callback may execute on the list that calls it.
const std::vector<std::function<void(FeatureListData&)>>& AllowedActions() {
  static const std::vector<std::function<void(FeatureListData&)>> kActions = {
      [](FeatureListData& list) {
        for (unsigned bits = 0; bits < 32; ++bits) {
          list.IsAnythingNew(DisplayOptions(static_cast<unsigned char>(bits)));
        }
        list.IsAnythingNeedingRating();
        list.CountNew(kShowOnlyNew);
        list.ExplainVisibility(kShowOnlyNew);
        list.PreviewLayout({});
        list.GetNewSeenState();
        list.GetDataFileSummary();
        list.LocalizeIfNecessary("$$$/x=y");
      },
      [](FeatureListData& list) { Format(list); },
      [](FeatureListData& list) { Format(list, kRatingView, "rate"); },
      [](FeatureListData& list) { list.GetLayoutForDisplay({}); },
      [](FeatureListData& list) { list.GetLayoutForDisplay(kRatingView); },
      [](FeatureListData& list) { list.MarkAllSeen(); },
      [](FeatureListData& list) { list.MarkItemHasBeenRated("EPIC-7"); },
      [](FeatureListData& list) { list.InitWithData(LoadedData()); },
      [](FeatureListData& list) { list.ParseWhatsNewData(LaterData()); },
      [](FeatureListData& list) { list.ParseBetaFeatures(); },
      [](FeatureListData& list) { list.RefreshInternalSeenState(); },
      [](FeatureListData& list) { list.BubbleUnlockedItemsToTheTop(); },
      [](FeatureListData& list) { list.InsertFeatureListItem(NewItem()); },
      [](FeatureListData& list) { list.EnsureSpecialCaseItemExists("NEW", u"New", u""); },
      [](FeatureListData& list) {
        StyleRunMap runs;
        list.CaptureStyle(kStyleHeader, u"a", u"b", 0, 0, u"", runs);
      },
  };
  return kActions;
}

TEST_F(NestedCallTest, AGetterMayUseTheListThatCallsIt) {
  for (const auto& action : AllowedActions()) {
    World world = MakeWorld();
    ReentrantList reentrant(world);
    reentrant.inGetter = action;
    reentrant.list->InitWithData(LoadedData());
    EXPECT_EQ(reentrant.executedActions, 1);
    // The reload replaces the content that the callback changed, so the list must equal a new list.
    const World other = MakeWorld();
    EXPECT_EQ(reentrant.list->GetOrderedFeatureKeys(), other.list->GetOrderedFeatureKeys());
    for (const auto& [key, item] : other.list->GetFeatureItems()) {
      EXPECT_EQ(test_support::ItemOf(*reentrant.list, key).GetAllChanges().size(),
                item->GetAllChanges().size());
    }
  }
}

TEST_F(NestedCallTest, ASetterMayUseTheListThatCallsIt) {
  const auto expected = Format(*MakeWorld().list);
  for (const auto& action : AllowedActions()) {
    World world = MakeWorld();
    ReentrantList reentrant(world);
    reentrant.inSetter = action;
    EXPECT_EQ(Format(*reentrant.list).text, expected.text);
    reentrant.inSetter = action;
    reentrant.list->MarkItemHasBeenRated("ORN-1000000000000000");
    EXPECT_EQ(reentrant.executedActions, 2);
    reentrant.list->InitWithData(LoadedData());
    EXPECT_FALSE(reentrant.list->IsAnythingNew(kShowOnlyNew));
  }
}

TEST_F(NestedCallTest, AGetterSeesTheListFromBeforeTheReload) {
  World world = MakeWorld();
  ReentrantList reentrant(world);
  std::size_t changes = 0;
  reentrant.inGetter = [&changes](FeatureListData& list) {
    changes = test_support::ItemOf(list, "EPIC-7").GetAllChanges().size();
  };
  reentrant.list->InitWithData("");
  EXPECT_EQ(changes, 2U);
  EXPECT_EQ(test_support::ItemOf(*reentrant.list, "EPIC-7").GetAllChanges().size(), 0U);
}

/// A dictionary without translations. It calls `hook` when the list looks up the only change
/// description that is a key text.
class HookedDictionary : public orncore::config::DictionarySource {
 public:
  explicit HookedDictionary(std::function<void()> hook) : hook_(std::move(hook)) {}
  std::optional<UTF8String> Find(std::string_view key) const override {
    // The list looks up this key while it iterates over its items. Ignore the keys of templates,
    // because the list looks them up before the iteration.
    if (key == "$$$/ornwhatsnew/Change/Localized") hook_();
    return std::nullopt;
  }

 private:
  std::function<void()> hook_;
};

/// A feature service with a copy of the current feature table. It calls `hook` during each query
/// about one feature.
class HookedFeatures : public ornappsupport::feature::FeatureService {
 public:
  explicit HookedFeatures(std::function<void()> hook)
      : features_(ornappsupport::feature::GetConstBetaFeatureMap()), hook_(std::move(hook)) {}
  const ornappsupport::feature::BetaFeatureMap& GetBetaFeatures() const override {
    return features_;
  }
  bool IsEnabled(std::string_view /*key*/) const override { return RunHook(); }
  bool IsAvailableForUser(std::string_view /*key*/) const override { return RunHook(); }
  bool AreInternalFeaturesAllowed() const override { return false; }

 protected:
  bool RunHook() const {
    hook_();
    return true;
  }

 private:
  ornappsupport::feature::BetaFeatureMap features_;
  std::function<void()> hook_;
};

/// A `HookedFeatures` that also calls `hook` when the list reads the feature table.
class HookedTable : public HookedFeatures {
 public:
  using HookedFeatures::HookedFeatures;
  const ornappsupport::feature::BetaFeatureMap& GetBetaFeatures() const override {
    RunHook();
    return HookedFeatures::GetBetaFeatures();
  }
};

/// A feature service that replaces itself with the default service when it is first queried about a
/// feature or the internal-features permission. No test owns this service, so the library must keep
/// it alive until that query returns.
class SelfReplacingFeatures : public ornappsupport::feature::FeatureService {
 public:
  SelfReplacingFeatures() : features_(ornappsupport::feature::GetConstBetaFeatureMap()) {}
  ~SelfReplacingFeatures() override {
    EXPECT_FALSE(isQueried_) << "the service was destroyed during a query";
  }
  const ornappsupport::feature::BetaFeatureMap& GetBetaFeatures() const override {
    return features_;
  }
  bool IsEnabled(std::string_view /*key*/) const override { return Replace(); }
  bool IsAvailableForUser(std::string_view /*key*/) const override { return Replace(); }
  bool AreInternalFeaturesAllowed() const override { return Replace(); }

 private:
  bool Replace() const {
    isQueried_ = true;
    ornappsupport::feature::SetFeatureService(nullptr);
    isQueried_ = false;
    return false;
  }

  ornappsupport::feature::BetaFeatureMap features_;
  mutable bool isQueried_ = false;
};

TEST_F(NestedCallTest, AServiceMayReplaceItselfDuringAQuery) {
  World world = MakeWorld();
  World other = MakeWorld();
  ornappsupport::feature::SetFeatureService(nullptr);
  other.list->BubbleUnlockedItemsToTheTop();
  const std::string expected = other.Snapshot();
  const std::string expectedText = Format(*other.list).text;

  // Create a new `FaultHost` to reinstall the feature table, which `SelfReplacingFeatures` copies.
  FaultHost host;
  ornappsupport::feature::SetFeatureService(std::make_shared<SelfReplacingFeatures>());
  world.list->BubbleUnlockedItemsToTheTop();
  EXPECT_EQ(world.Snapshot(), expected);
  EXPECT_EQ(Format(*world.list).text, expectedText);
}

TEST_F(NestedCallTest, AServiceMayQueryTheListThatQueriesIt) {
  auto& localizer = orncore::config::Localizer::Get();
  World world = MakeWorld();
  localizer.SetDictionary(std::make_shared<HookedDictionary>([] {}));
  const std::string expected = Format(*MakeWorld().list).text;
  int queries = 0;
  localizer.SetDictionary(std::make_shared<HookedDictionary>([&] {
    // The call to `PreviewLayout` runs this hook again, so only the first run uses the list.
    if (queries++ > 0) return;
    world.list->IsAnythingNew(kShowOnlyNew);
    world.list->CountNew(kShowOnlyNew);
    world.list->ExplainVisibility(kShowOnlyNew);
    world.list->PreviewLayout({});
    world.list->GetDataFileSummary();
    world.list->GetNewSeenState();
  }));
  EXPECT_EQ(Format(*world.list).text, expected);
  EXPECT_GT(queries, 1);
}

TEST_F(NestedCallTest, AServiceSeesTheListFromBeforeTheReload) {
  World world = MakeWorld();
  int queries = 0;
  ornappsupport::feature::SetFeatureService(std::make_shared<HookedFeatures>([&] {
    ++queries;
    EXPECT_EQ(test_support::ItemOf(*world.list, "EPIC-7").GetAllChanges().size(), 2U);
  }));
  world.list->InitWithData("");
  EXPECT_GT(queries, 0);
  EXPECT_EQ(test_support::ItemOf(*world.list, "EPIC-7").GetAllChanges().size(), 0U);
}

using NestedCallDeathTest = FaultTest;

TEST_F(NestedCallDeathTest, AServiceMustNotChangeTheListThatQueriesIt) {
#ifdef NDEBUG
  GTEST_SKIP() << "only debug builds assert this";
#else
  const std::vector<std::function<void(World&)>> changes = {
      [](World& world) { world.list->InitWithData(""); },
      [](World& world) { world.list->ParseWhatsNewData(""); },
      [](World& world) { world.list->ParseBetaFeatures(); },
      [](World& world) { world.list->RefreshInternalSeenState(); },
      [](World& world) { world.list->BubbleUnlockedItemsToTheTop(); },
      [](World& world) { world.list->InsertFeatureListItem(NewItem()); },
      [](World& world) { world.list->EnsureSpecialCaseItemExists("NEW", u"", u""); },
      [](World& world) { world.list->MarkItemHasBeenRated("EPIC-7"); },
      [](World& world) { world.list->MarkAllSeen(); },
      [](World& world) { Format(*world.list); },
      [](World& world) { world.list->GetLayoutForDisplay({}); },
      [](World& world) { world.list = nullptr; },
  };
  for (const auto& change : changes) {
    // A new `FaultHost` removes the services of the previous iteration, which refer to the previous
    // list.
    const FaultHost host;
    World world(host);
    FeatureListData& list = *world.list;
    const auto hook = [&] { change(world); };
    orncore::config::Localizer::Get().SetDictionary(std::make_shared<HookedDictionary>(hook));
    EXPECT_DEATH(Format(list), "activeIterations == 0");

    orncore::config::Localizer::Get().SetDictionary(nullptr);
    ornappsupport::feature::SetFeatureService(std::make_shared<HookedFeatures>(hook));
    EXPECT_DEATH(list.IsAnythingNew({}), "activeIterations == 0");
  }
#endif
}

TEST_F(NestedCallDeathTest, AServiceMustNotDestroyAListThatIsBeingUpdated) {
#ifdef NDEBUG
  GTEST_SKIP() << "only debug builds assert this";
#else
  const std::vector<std::function<void(FeatureListData&)>> operations = {
      [](FeatureListData& list) { list.InitWithData(LoadedData()); },
      [](FeatureListData& list) { list.ParseBetaFeatures(); },
      [](FeatureListData& list) { list.BubbleUnlockedItemsToTheTop(); },
      [](FeatureListData& list) { list.RefreshInternalSeenState(); },
  };
  for (const auto& operation : operations) {
    const FaultHost host;
    World world(host);
    FeatureListData& list = *world.list;
    ornappsupport::feature::SetFeatureService(
        std::make_shared<HookedTable>([&] { world.list = nullptr; }));
    EXPECT_DEATH(operation(list), "activeIterations == 0");
  }
#endif
}

TEST_F(NestedCallDeathTest, ACallbackMustNotDestroyTheListThatCallsIt) {
#ifdef NDEBUG
  GTEST_SKIP() << "only debug builds assert this";
#else
  World world = MakeWorld();
  ReentrantList reentrant(world);
  FeatureListData& list = *reentrant.list;
  reentrant.inSetter = [&](FeatureListData&) { reentrant.list = nullptr; };
  EXPECT_DEATH(Format(list), "activeCallbacks == 0");
#endif
}

}  // namespace
}  // namespace faults
