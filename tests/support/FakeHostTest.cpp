#include <gmock/gmock.h>

#include <ornappsupport/feature/FeatureService.h>
#include <orncore/config/ClientInfo.h>
#include <ornwhatsnew/WhatsNewTypes.h>

#include "tests/support/FakeHost.h"
#include "tests/support/Matchers.h"

namespace test_support {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Pair;

TEST(FakeStateStore, LogsWritesAndReadsThemBack) {
  FakeStateStore store;
  store.Put("a", "1");
  store.Setter()("a", "2");
  EXPECT_EQ(store.Getter()("a"), "2");
  EXPECT_EQ(store.Getter()("b"), "");
  EXPECT_THAT(store.TakeWrites(), ElementsAre(Pair("a", "2")));
  EXPECT_THAT(store.Writes(), IsEmpty());
  EXPECT_EQ(store.GetterCalls(), 2);
  EXPECT_EQ(store.SetterCalls(), 1);
}

TEST(FakeStateStore, FailsTheGivenCall) {
  FakeStateStore store;
  const auto setter = store.Setter();
  store.FailSetterCall(2);
  setter("a", "1");
  EXPECT_THROW(setter("a", "2"), InjectedFailure);
  EXPECT_EQ(store.Text("a"), "1");
  EXPECT_THAT(store.Writes(), ElementsAre(Pair("a", "1")));
  setter("a", "3");
  EXPECT_EQ(store.Text("a"), "3");

  const auto getter = store.Getter();
  store.FailGetterCall(1);
  EXPECT_THROW(getter("a"), InjectedFailure);
  EXPECT_EQ(getter("a"), "3");
}

TEST(FakeHost, ReplacesAllServicesAndResetsThem) {
  using namespace ornappsupport::feature;
  {
    FakeHost host;
    host.SetClientVersion("26");
    host.SetInternalFeaturesAllowed(true);
    host.AddFeature({.internalKey = "f", .name = "N", .visibility = 2});
    host.ShowAllOffFeatures(true);
    EXPECT_THAT(orncore::config::GetClientVersion(), IsText("26"));
    EXPECT_TRUE(IsFeatureEnabled("f"));
    EXPECT_TRUE(ornwhatsnew::ShowingAllOffFeaturesInternally());
    host.SetFeatureEnabled("f", false);
    EXPECT_FALSE(IsFeatureEnabled("f"));
    host.RemoveFeature("f");
    EXPECT_THAT(GetConstBetaFeatureMap(), IsEmpty());
    host.AddFeature({.internalKey = "g"});
  }
  EXPECT_THAT(orncore::config::GetClientVersion(), IsText("25.1"));
  EXPECT_THAT(GetConstBetaFeatureMap(), IsEmpty());
  EXPECT_FALSE(IsEntitlementSetToInternalFeaturesAllowed());
}

}  // namespace
}  // namespace test_support
