// Tests that a list tolerates unusual callbacks and services: some throw, some return strings that
// no setter wrote, and some call the list that called them.
#include <algorithm>
#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include <ornappsupport/analytics/SDMUsageLogger.h>
#include <ornappsupport/feature/FeatureService.h>
#include <orncore/appstatemanager/AppStateManager.h>
#include <orncore/config/ClientInfo.h>
#include <orncore/config/Localizer.h>
#include <ornwhatsnew/utility/PersistedList.h>

#include "tests/faults/FaultWorld.h"
#include "tests/support/Matchers.h"
#include "tests/support/RandomSource.h"

namespace faults {
namespace {

using namespace ornwhatsnew;
using test_support::Format;
using test_support::InjectedFailure;

constexpr char kAllSeenItems[] = "WhatsNew.AllSeenItems";
constexpr char kLastVersion[] = "WhatsNew.LastVersionSeenWhatsNew";
constexpr char kAllVersions[] = "WhatsNew.AllVersionSeenWhatsNew";

using Operation = std::function<void(World&)>;

std::set<Guid> GuidsOf(std::string_view persistedList) {
  std::set<Guid> guids;
  for (const std::string_view element : SplitPersistedList(persistedList)) guids.emplace(element);
  return guids;
}

void ShowAll(World& world) {
  Format(*world.list);
}
void Rate(World& world) {
  world.list->MarkItemHasBeenRated("EPIC-7");
}
void Reload(World& world) {
  world.list->InitWithData(LaterData());
}

class CallbackTest : public FaultTest {
 protected:
  /// Runs the operation in a new world. Returns the result of `SnapshotsWhileUsed` for this world.
  std::string SnapshotsAfter(const Operation& operation) const {
    World world = MakeWorld();
    operation(world);
    return world.SnapshotsWhileUsed();
  }
};

TEST_F(CallbackTest, AThrowingGetterLeavesTheListUnchanged) {
  const std::string untouched = MakeWorld().Snapshot();
  const Operation refresh = [](World& world) { world.list->RefreshInternalSeenState(); };
  for (const Operation& operation : {Operation(Reload), refresh}) {
    const std::string expected = SnapshotsAfter(operation);
    for (int call = 1; call <= 3; ++call) {
      SCOPED_TRACE(call);
      World world = MakeWorld();
      world.store.FailGetterCall(call);
      EXPECT_THROW(operation(world), InjectedFailure);
      EXPECT_EQ(world.Snapshot(), untouched);
      operation(world);
      EXPECT_EQ(world.SnapshotsWhileUsed(), expected);
    }
  }
}

TEST_F(CallbackTest, TheConstructorPropagatesAnExceptionOfTheGetter) {
  for (int call = 1; call <= 3; ++call) {
    test_support::FakeStateStore store;
    store.FailGetterCall(call);
    EXPECT_THROW(FeatureListData(LoadedData(), store.Getter(), store.Setter()), InjectedFailure);
    EXPECT_EQ(store.SetterCalls(), 0);
  }
}

TEST_F(CallbackTest, ARepeatedCallWritesAllValuesAfterASetterThrew) {
  struct Case {
    Operation operation;
    int calls;
  };
  for (const Case& tried : {Case{ShowAll, 3}, Case{Rate, 1}}) {
    const std::string expected = SnapshotsAfter(tried.operation);
    for (int call = 1; call <= tried.calls; ++call) {
      SCOPED_TRACE(call);
      World world = MakeWorld();
      world.store.FailSetterCall(call);
      EXPECT_THROW(tried.operation(world), InjectedFailure);
      EXPECT_EQ(world.store.Writes().size(), static_cast<std::size_t>(call) - 1);
      tried.operation(world);
      EXPECT_EQ(world.SnapshotsWhileUsed(), expected);
    }
  }
}

TEST_F(CallbackTest, ExceptionsOfAnyTypeReachTheCaller) {
  const StateGetter getter = [](const UTF8String&) -> UTF8String { throw 25; };
  EXPECT_THROW(FeatureListData("", getter, [](const UTF8String&, const UTF8String&) {}), int);
  World world = MakeWorld();
  FeatureListData list(LoadedData(), world.store.Getter(),
                       [](const UTF8String&, const UTF8String&) { throw 42; });
  EXPECT_THROW(Format(list), int);
  EXPECT_THROW(list.MarkItemHasBeenRated("EPIC-7"), int);
}

/// Replaces all services that the library queries, except the debug store. `FailQuery` makes one
/// query of these services throw.
class FailingServices {
 public:
  /// Installs the services. The feature service uses a copy of the current feature table.
  FailingServices() : queries_(std::make_shared<Queries>()) {
    using namespace orncore;
    ornappsupport::feature::SetFeatureService(std::make_shared<Features>(queries_));
    config::SetClientInfo(std::make_shared<Client>(queries_));
    config::Localizer::Get().SetDictionary(std::make_shared<Dictionary>(queries_));
    appstatemanager::SetTerminationQuery([queries = queries_] { return queries->Query(false); });
    ornappsupport::analytics::SDMUsageLogger::SetLoggingQuery(
        [queries = queries_] { return queries->Query(true); });
  }

  /// Makes the n-th of the following queries throw `InjectedFailure`. If `n` is 0, no query fails.
  void FailQuery(int n) { queries_->failsIn = n; }
  /// Returns true if the query that `FailQuery` selected has been made, or if it selected no query.
  bool HasReachedFailure() const { return queries_->failsIn == 0; }

 private:
  struct Queries {
    int failsIn = 0;

    template <class Answer>
    Answer Query(Answer answer) {
      if (failsIn > 0 && --failsIn == 0) throw InjectedFailure("service");
      return answer;
    }
  };

  class Features : public ornappsupport::feature::FeatureService {
   public:
    explicit Features(std::shared_ptr<Queries> queries)
        : queries_(std::move(queries)), table_(ornappsupport::feature::GetConstBetaFeatureMap()) {}

    const ornappsupport::feature::BetaFeatureMap& GetBetaFeatures() const override {
      queries_->Query(0);
      return table_;
    }
    bool IsEnabled(std::string_view) const override { return queries_->Query(true); }
    bool IsAvailableForUser(std::string_view) const override { return queries_->Query(false); }
    bool AreInternalFeaturesAllowed() const override { return queries_->Query(true); }

   private:
    std::shared_ptr<Queries> queries_;
    ornappsupport::feature::BetaFeatureMap table_;
  };

  class Client : public orncore::config::ClientInfo {
   public:
    explicit Client(std::shared_ptr<Queries> queries) : queries_(std::move(queries)) {}

    UTF16String GetClientVersion() const override { return queries_->Query(UTF16String(u"25.3")); }
    UTF16String GetClientBuildNumber() const override {
      return queries_->Query(UTF16String(u"42"));
    }
    UTF8String GetClientPlatform() const override { return queries_->Query(UTF8String("Mac")); }

   private:
    std::shared_ptr<Queries> queries_;
  };

  class Dictionary : public orncore::config::DictionarySource {
   public:
    explicit Dictionary(std::shared_ptr<Queries> queries) : queries_(std::move(queries)) {}

    std::optional<UTF8String> Find(std::string_view) const override {
      return queries_->Query(std::optional<UTF8String>());
    }

   private:
    std::shared_ptr<Queries> queries_;
  };

  std::shared_ptr<Queries> queries_;
};

class ServiceTest : public CallbackTest {
 protected:
  /// Makes the n-th query of the operation throw. Expects that the exception reaches the caller,
  /// that the list and its state store are unchanged, and that the operation succeeds when it is
  /// repeated. `expected` is the result of `SnapshotsAfter(operation)` without failures. Returns
  /// false if the operation makes fewer than `n` queries.
  bool FailOne(int n, const Operation& operation, const std::string& expected) {
    SCOPED_TRACE(testing::Message() << "query " << n);
    World world = MakeWorld();
    const std::string untouched = world.Snapshot();
    services_.FailQuery(n);
    bool hasFailed = false;
    try {
      operation(world);
    } catch (const InjectedFailure&) {
      hasFailed = true;
    }
    const bool wasReached = services_.HasReachedFailure();
    services_.FailQuery(0);
    EXPECT_EQ(hasFailed, wasReached) << "the exception must reach the caller";
    if (!wasReached) return false;
    EXPECT_EQ(world.store.SetterCalls(), 0);
    EXPECT_EQ(world.Snapshot(), untouched);
    operation(world);
    EXPECT_EQ(world.SnapshotsWhileUsed(), expected);
    return true;
  }

  FailingServices services_;
};

TEST_F(ServiceTest, AThrowingServiceLeavesTheListUnchanged) {
  const Operation queryNews = [](World& world) {
    world.list->IsAnythingNew(kFilterRelevantPlatform | kFilterRelevantVersion);
    world.list->IsAnythingNeedingRating();
  };
  const Operation bubble = [](World& world) { world.list->BubbleUnlockedItemsToTheTop(); };
  const Operation refresh = [](World& world) { world.list->RefreshInternalSeenState(); };
  const Operation showRatings = [](World& world) { Format(*world.list, kRatingView, "rate"); };
  struct Case {
    std::string name;
    Operation operation;
    bool queriesServices = true;
  };
  for (const auto& [name, operation, queriesServices] :
       {Case{"reload", Reload}, Case{"show all", ShowAll}, Case{"show ratings", showRatings},
        Case{"rate", Rate, false}, Case{"refresh", refresh}, Case{"bubble", bubble},
        Case{"query news", queryNews}}) {
    SCOPED_TRACE(name);
    const std::string expected = SnapshotsAfter(operation);
    int n = 1;
    while (FailOne(n, operation, expected) && !HasFailure()) ++n;
    EXPECT_EQ(n > 1, queriesServices);
  }
}

TEST_F(ServiceTest, TheConstructorPropagatesAnExceptionOfAService) {
  for (int n = 1; n < 1000; ++n) {
    World world = MakeWorld();
    services_.FailQuery(n);
    try {
      const FeatureListData list(LoadedData(), world.store.Getter(), world.store.Setter());
      EXPECT_GT(n, 10) << "the constructor must query the services";
      EXPECT_FALSE(services_.HasReachedFailure()) << "the exception must reach the caller";
      services_.FailQuery(0);
      return;
    } catch (const InjectedFailure&) {
    }
  }
  FAIL() << "the constructor made 999 queries or more";
}

/// A stored string that no setter would write, and the name of its test.
struct StrangeText {
  std::string name;
  std::function<std::string()> make;
};

std::string Repeated(std::string_view element, std::size_t times) {
  std::string text;
  for (std::size_t i = 0; i < times; ++i) text += element;
  return text;
}

std::string ManyIdentities() {
  std::array<std::uint8_t, 16> bytes{};
  std::string text;
  for (std::uint32_t i = 0; i < 100'000; ++i) {
    for (std::size_t index = 0; index < 4; ++index) {
      bytes[index * 3] = static_cast<std::uint8_t>(i >> (8 * index));
    }
    if (!text.empty()) text += ' ';
    Guid(bytes).AppendTo(text);
  }
  return text;
}

const std::vector<StrangeText>& StrangeTexts() {
  static const std::vector<StrangeText> kTexts = {
      {"IllFormedUTF8", [] { return std::string("\xFF\xFE \xC3 \xED\xA0\x80 \xF5\x80\x80\x80"); }},
      {"NulCharacters", [] { return std::string("\0 \0\0 a\0b", 8); }},
      {"TruncatedIdentities",
       [] {
         return std::string("00112233-4455-6677 8899aabb-ccdd-eeff 00112233-4455-6677-8899-");
       }},
      {"JoinedIdentities",
       [] {
         return std::string(
             "00112233-4455-6677-8899-aabbccddeeff,00112233-4455-6677-8899-aabbccddeeff");
       }},
      {"DoubledSeparators",
       [] {
         return std::string(
             "  00112233-4455-6677-8899-aabbccddeeff   "
             "10112233-4455-6677-8899-aabbccddeeff  ");
       }},
      {"OtherSeparators", [] { return std::string("a\tb\nc\rd\ve\fg"); }},
      {"TwoMegabytesWithoutSeparator", [] { return std::string(std::size_t{2} << 20, 'x'); }},
      {"AMegabyteOfSeparators", [] { return std::string(std::size_t{1} << 20, ' '); }},
      {"AMegabyteOfDots", [] { return std::string(std::size_t{1} << 20, '.'); }},
      {"AMegabyteOfNines", [] { return std::string(std::size_t{1} << 20, '9'); }},
      {"ManyVersions", [] { return Repeated("25.1.0.42 ", 100'000) + "25.2"; }},
      {"ManyIdentities", ManyIdentities},
  };
  return kTexts;
}

class StrangeStateTest : public FaultTest, public testing::WithParamInterface<StrangeText> {
 protected:
  /// Expects that a list is usable if the state store contains `text` under `key`. Expects that the
  /// list keeps each stored identity and version.
  void ExpectUsable(const std::string& key, const std::string& text) {
    SCOPED_TRACE(key);
    test_support::FakeStateStore store;
    store.Put(key, text);
    const auto before = GuidsOf(store.Text(kAllSeenItems));
    FeatureListData list(LoadedData(), store.Getter(), store.Setter());
    list.IsAnythingNew(kShowOnlyNew | kFilterRelevantPlatform | kFilterRelevantVersion);
    EXPECT_EQ(Format(list).text, Format(*MakeWorld().list).text);
    list.MarkItemHasBeenRated("EPIC-7");

    const auto after = GuidsOf(store.Text(kAllSeenItems));
    for (const Guid& identity : before) EXPECT_TRUE(after.contains(identity));
    if (key == kAllVersions) ExpectVersionsKept(text, store.Text(kAllVersions));
    // The first display may normalise the stored strings. A second display must not change them
    // again.
    const auto texts = store.AllTexts();
    list.InitWithData(LoadedData());
    EXPECT_FALSE(list.IsAnythingNew(kShowOnlyNew));
    Format(list);
    EXPECT_TRUE(store.AllTexts() == texts);
  }

  static void ExpectVersionsKept(const std::string& before, const std::string& after) {
    const auto kept = test_support::SortedPieces(after);
    for (const std::string_view version : SplitPersistedList(before)) {
      if (version.empty()) continue;
      EXPECT_TRUE(std::ranges::binary_search(kept, version)) << "the list lost a version";
      if (HasFailure()) return;
    }
  }
};

TEST_P(StrangeStateTest, IsToleratedAndKeepsItsEntries) {
  const std::string text = GetParam().make();
  for (const char* const key : {kAllSeenItems, kLastVersion, kAllVersions}) ExpectUsable(key, text);
}

INSTANTIATE_TEST_SUITE_P(Texts, StrangeStateTest, testing::ValuesIn(StrangeTexts()),
                         [](const auto& text) { return text.param.name; });

TEST_F(CallbackTest, ARandomStateIsTolerated) {
  constexpr std::uint64_t kSeed = 20'251;
  SCOPED_TRACE(testing::Message() << "seed " << kSeed);
  test_support::RandomSource random(kSeed);
  for (int round = 0; round < 300; ++round) {
    test_support::FakeStateStore store;
    for (const char* const key : {kAllSeenItems, kLastVersion, kAllVersions}) {
      store.Put(key, random.HostileText(40));
    }
    FeatureListData list(LoadedData(), store.Getter(), store.Setter());
    Format(list, kShowOnlyNew | kFilterRelevantVersion);
    const auto texts = store.AllTexts();
    list.InitWithData(LoadedData());
    EXPECT_FALSE(list.IsAnythingNew(kShowOnlyNew | kFilterRelevantVersion));
    Format(list, kShowOnlyNew | kFilterRelevantVersion);
    EXPECT_TRUE(store.AllTexts() == texts) << "round " << round;
  }
}

/// A list whose getter calls `inGetter` and whose setter calls `inSetter`, with the list as
/// argument. Each function that a test assigns is called once. The list uses the state store of
/// `world`. The constructor destroys the list of `world`.
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
    // Reset the member first, because the action can cause further calls of the callbacks.
    const auto current = std::exchange(action, nullptr);
    current(*list);
    ++executedActions;
  }

  World& world_;
};

std::shared_ptr<FeatureListItem> NewItem() {
  return std::make_shared<FeatureListItem>("NEW", "", "New", "",
                                           FeatureListItem::Visibility::kPublic);
}

/// Returns one action for each kind of call that a callback may make on the list that called it.
const std::vector<std::function<void(FeatureListData&)>>& AllowedActions() {
  static const std::vector<std::function<void(FeatureListData&)>> kActions = {
      [](FeatureListData& list) {
        for (unsigned bits = 0; bits < 32; ++bits) {
          list.IsAnythingNew(DisplayOptions(static_cast<unsigned char>(bits)));
        }
        list.IsAnythingNeedingRating();
        list.GetNewSeenState();
        list.LocalizeIfNecessary("$$$/x=y");
      },
      [](FeatureListData& list) { Format(list); },
      [](FeatureListData& list) { Format(list, kRatingView, "rate"); },
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

TEST_F(CallbackTest, AGetterMayUseTheListThatCallsIt) {
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

TEST_F(CallbackTest, ASetterMayUseTheListThatCallsIt) {
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

TEST_F(CallbackTest, AGetterSeesTheListFromBeforeTheReload) {
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

/// A dictionary without translations. It calls `hook` when the list looks up the description of the
/// localised change in the data file.
class HookedDictionary : public orncore::config::DictionarySource {
 public:
  explicit HookedDictionary(std::function<void()> hook) : hook_(std::move(hook)) {}
  std::optional<UTF8String> Find(std::string_view key) const override {
    // Call `hook_` only for the description of a change, because the list is then iterating over
    // its items.
    if (key == "$$$/ornwhatsnew/Change/Localized") hook_();
    return std::nullopt;
  }

 private:
  std::function<void()> hook_;
};

/// A feature service with a copy of the current feature table. It calls `hook` on each query about
/// one feature.
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

/// Like `HookedFeatures`, but also calls `hook` when the list reads the feature table.
class HookedTable : public HookedFeatures {
 public:
  using HookedFeatures::HookedFeatures;
  const ornappsupport::feature::BetaFeatureMap& GetBetaFeatures() const override {
    RunHook();
    return HookedFeatures::GetBetaFeatures();
  }
};

/// A service that replaces itself with the default service during the first query about a feature
/// or the user. No test owns it, so the library must keep it alive until that query returns.
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

TEST_F(CallbackTest, AServiceMayReplaceItselfDuringAQuery) {
  World world = MakeWorld();
  World other = MakeWorld();
  ornappsupport::feature::SetFeatureService(nullptr);
  other.list->BubbleUnlockedItemsToTheTop();
  const std::string expected = other.Snapshot();
  const std::string expectedText = Format(*other.list).text;

  // A new `FaultHost` installs the feature table again, so that the service can copy it.
  FaultHost host;
  ornappsupport::feature::SetFeatureService(std::make_shared<SelfReplacingFeatures>());
  world.list->BubbleUnlockedItemsToTheTop();
  EXPECT_EQ(world.Snapshot(), expected);
  EXPECT_EQ(Format(*world.list).text, expectedText);
}

TEST_F(CallbackTest, AServiceMayQueryTheListThatQueriesIt) {
  auto& localizer = orncore::config::Localizer::Get();
  World world = MakeWorld();
  localizer.SetDictionary(std::make_shared<HookedDictionary>([] {}));
  const std::string expected = Format(*MakeWorld().list).text;
  int queries = 0;
  localizer.SetDictionary(std::make_shared<HookedDictionary>([&] {
    ++queries;
    world.list->IsAnythingNew(kShowOnlyNew);
    world.list->GetNewSeenState();
  }));
  EXPECT_EQ(Format(*world.list).text, expected);
  EXPECT_GT(queries, 0);
}

TEST_F(CallbackTest, AServiceSeesTheListFromBeforeTheReload) {
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

using CallbackDeathTest = CallbackTest;

TEST_F(CallbackDeathTest, AServiceMustNotChangeTheListThatQueriesIt) {
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
      [](World& world) { Format(*world.list); },
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
    EXPECT_DEATH(Format(list), "activeWalks == 0");

    orncore::config::Localizer::Get().SetDictionary(nullptr);
    ornappsupport::feature::SetFeatureService(std::make_shared<HookedFeatures>(hook));
    EXPECT_DEATH(list.IsAnythingNew({}), "activeWalks == 0");
  }
#endif
}

TEST_F(CallbackDeathTest, AServiceMustNotDestroyAListThatIsBeingUpdated) {
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
    EXPECT_DEATH(operation(list), "activeWalks == 0");
  }
#endif
}

TEST_F(CallbackDeathTest, ACallbackMustNotDestroyTheListThatCallsIt) {
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
