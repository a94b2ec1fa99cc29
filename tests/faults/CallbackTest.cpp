// Tests that a list tolerates callbacks and services that throw.
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include <gtest/gtest.h>

#include <ornappsupport/analytics/SDMUsageLogger.h>
#include <ornappsupport/feature/FeatureService.h>
#include <orncore/appstatemanager/AppStateManager.h>
#include <orncore/config/ClientInfo.h>
#include <orncore/config/Localizer.h>

#include "tests/faults/FaultWorld.h"
#include "tests/support/Matchers.h"

namespace faults {
namespace {

using namespace ornwhatsnew;
using test_support::Format;
using test_support::InjectedFailure;

using Operation = std::function<void(World&)>;

void ShowAll(World& world) {
  Format(*world.list);
}
void LayOutAll(World& world) {
  world.list->GetLayoutForDisplay({});
}
void MarkAllSeen(World& world) {
  world.list->MarkAllSeen();
}
void Rate(World& world) {
  world.list->MarkItemHasBeenRated("EPIC-7");
}
void Reload(World& world) {
  world.list->InitWithData(LaterData());
}

class CallbackTest : public FaultTest {
 protected:
  /// Runs the operation on a new `World`. Then calls `SnapshotsWhileUsed` on this `World` and
  /// returns the result.
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
  for (const Case& tried :
       {Case{ShowAll, 3}, Case{LayOutAll, 3}, Case{MarkAllSeen, 3}, Case{Rate, 1}}) {
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

/// Installs a feature service, client information, a dictionary, a termination query and a logging
/// query. `FailQuery` makes one query of these services throw.
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
  /// Returns true if the query that `FailQuery` selected has been made, or if no query is selected.
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
  const Operation layOutRatings = [](World& world) {
    world.list->GetLayoutForDisplay(kRatingView);
  };
  const Operation preview = [](World& world) {
    world.list->PreviewLayout(kShowOnlyNew);
    world.list->CountNew(kShowOnlyNew);
    world.list->ExplainVisibility(kShowOnlyNew);
  };
  struct Case {
    std::string name;
    Operation operation;
    bool queriesServices = true;
  };
  for (const auto& [name, operation, queriesServices] :
       {Case{"reload", Reload}, Case{"show all", ShowAll}, Case{"show ratings", showRatings},
        Case{"lay out all", LayOutAll}, Case{"lay out ratings", layOutRatings},
        Case{"preview", preview}, Case{"mark all as seen", MarkAllSeen}, Case{"rate", Rate, false},
        Case{"refresh", refresh}, Case{"bubble", bubble}, Case{"query news", queryNews}}) {
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

}  // namespace
}  // namespace faults
