#include <ornappsupport/feature/FeatureService.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/Threads.h"

namespace ornappsupport::feature {
namespace {

using testing::ElementsAre;

BetaFeature Feature(std::string epic = "EPIC-1") {
  return BetaFeature(std::move(epic), u"Name", u"Description", VisibilityInAllClientApps::kPublic);
}

class FeatureServiceTest : public testing::Test {
 protected:
  ~FeatureServiceTest() override { SetFeatureService(nullptr); }

  // Installs a service without features and returns a reference to it. The test can then change the
  // service.
  FixedFeatureService& InstallService() {
    auto service = std::make_shared<FixedFeatureService>();
    FixedFeatureService& reference = *service;
    SetFeatureService(std::move(service));
    return reference;
  }
};

TEST(BetaFeature, KeepsItsConstructorArguments) {
  const BetaFeature feature("EPIC-7", u"N\u00E4me", u"", VisibilityInAllClientApps::kInDevelopment);
  EXPECT_EQ(feature.GetJiraEpicKey(), "EPIC-7");
  EXPECT_EQ(feature.GetDisplayName(), u"N\u00E4me");
  EXPECT_EQ(feature.GetDisplayDescription(), u"");
  EXPECT_EQ(feature.GetVisibility(), VisibilityInAllClientApps::kInDevelopment);
}

TEST(BetaFeature, VisibilitiesHaveFixedValues) {
  EXPECT_EQ(static_cast<int>(VisibilityInAllClientApps::kPublic), 0);
  EXPECT_EQ(static_cast<int>(VisibilityInAllClientApps::kInternal), 1);
  EXPECT_EQ(static_cast<int>(VisibilityInAllClientApps::kInDevelopment), 2);
  EXPECT_EQ(static_cast<int>(VisibilityInAllClientApps::kUnlabelled), 3);
}

TEST_F(FeatureServiceTest, HasNoFeaturesWithoutAService) {
  EXPECT_TRUE(GetConstBetaFeatureMap().empty());
  EXPECT_FALSE(IsFeatureEnabled("a"));
  EXPECT_FALSE(IsAvailableForUserEnablement("a"));
  EXPECT_FALSE(IsEntitlementSetToInternalFeaturesAllowed());
}

TEST_F(FeatureServiceTest, AnswersEachQueryIndependently) {
  FixedFeatureService& service = InstallService();
  service.Add("on", Feature(), true, false);
  service.Add("available", Feature(), false, true);
  EXPECT_TRUE(IsFeatureEnabled("on"));
  EXPECT_FALSE(IsAvailableForUserEnablement("on"));
  EXPECT_FALSE(IsFeatureEnabled("available"));
  EXPECT_TRUE(IsAvailableForUserEnablement("available"));
  EXPECT_FALSE(IsEntitlementSetToInternalFeaturesAllowed());
  service.SetInternalFeaturesAllowed(true);
  EXPECT_TRUE(IsEntitlementSetToInternalFeaturesAllowed());
}

TEST_F(FeatureServiceTest, ListsFeaturesInAscendingByteOrder) {
  FixedFeatureService& service = InstallService();
  for (const char* key : {"b", "\xC3\xA4", "B", "", "ab", "a"}) {
    service.Add(key, Feature(), false, false);
  }
  std::vector<std::string> keys;
  for (const auto& entry : GetConstBetaFeatureMap()) keys.push_back(entry.first);
  EXPECT_THAT(keys, ElementsAre("", "B", "a", "ab", "b", "\xC3\xA4"));
}

TEST_F(FeatureServiceTest, AddReplacesTheWholeFeature) {
  FixedFeatureService& service = InstallService();
  service.Add("a", Feature("EPIC-1"), true, true);
  service.Add("a", Feature("EPIC-2"), false, false);
  EXPECT_EQ(GetConstBetaFeatureMap().at("a").GetJiraEpicKey(), "EPIC-2");
  EXPECT_FALSE(IsFeatureEnabled("a"));
  EXPECT_FALSE(IsAvailableForUserEnablement("a"));
}

TEST_F(FeatureServiceTest, ReturnsFalseForNullAndUnknownKeys) {
  class AlwaysTrueService final : public FeatureService {
   public:
    const BetaFeatureMap& GetBetaFeatures() const override { return features; }
    bool IsEnabled(std::string_view) const override { return true; }
    bool IsAvailableForUser(std::string_view) const override { return true; }
    bool AreInternalFeaturesAllowed() const override { return true; }
    BetaFeatureMap features{{"known", Feature()}};
  };
  SetFeatureService(std::make_shared<AlwaysTrueService>());
  EXPECT_TRUE(IsFeatureEnabled("known"));
  EXPECT_TRUE(IsAvailableForUserEnablement("known"));
  for (const char* key : {"Known", "know", "known ", ""}) {
    EXPECT_FALSE(IsFeatureEnabled(key)) << key;
    EXPECT_FALSE(IsAvailableForUserEnablement(key)) << key;
  }
  EXPECT_FALSE(IsFeatureEnabled(nullptr));
  EXPECT_FALSE(IsAvailableForUserEnablement(nullptr));
}

TEST_F(FeatureServiceTest, NullRemovesTheService) {
  FixedFeatureService& service = InstallService();
  service.Add("a", Feature(), true, true);
  service.SetInternalFeaturesAllowed(true);
  SetFeatureService(nullptr);
  EXPECT_TRUE(GetConstBetaFeatureMap().empty());
  EXPECT_FALSE(IsFeatureEnabled("a"));
  EXPECT_FALSE(IsEntitlementSetToInternalFeaturesAllowed());
}

TEST_F(FeatureServiceTest, AServiceMayReplaceItselfDuringAQuery) {
  class SelfReplacing final : public FeatureService,
                              public std::enable_shared_from_this<SelfReplacing> {
   public:
    const BetaFeatureMap& GetBetaFeatures() const override {
      ReplaceSelf();
      return features_;
    }
    bool IsEnabled(std::string_view key) const override { return features_.contains(key); }
    bool IsAvailableForUser(std::string_view key) const override { return features_.contains(key); }
    bool AreInternalFeaturesAllowed() const override { return ReplaceSelf(); }

   private:
    bool ReplaceSelf() const {
      const auto self = weak_from_this();
      SetFeatureService(nullptr);
      EXPECT_FALSE(self.expired());
      return true;
    }

    BetaFeatureMap features_{{"a", Feature()}};
  };
  const auto install = [] { SetFeatureService(std::make_shared<SelfReplacing>()); };
  install();
  EXPECT_TRUE(IsFeatureEnabled("a"));
  install();
  EXPECT_TRUE(IsAvailableForUserEnablement("a"));
  install();
  EXPECT_TRUE(IsEntitlementSetToInternalFeaturesAllowed());
  EXPECT_FALSE(IsEntitlementSetToInternalFeaturesAllowed());
}

// The threads do not use the feature table, because a reference to it is only valid until the
// service is replaced.
TEST_F(FeatureServiceTest, SeveralThreadsMayQueryDuringAReplacement) {
  constexpr int kCalls = 2'000;
  const auto set = [] {
    auto service = std::make_shared<FixedFeatureService>();
    service->Add("a", Feature(), true, true);
    service->SetInternalFeaturesAllowed(true);
    SetFeatureService(std::move(service));
  };
  set();
  test_support::ThreadCounter positiveResults;
  test_support::RunOnThreads(
      [&positiveResults] {
        for (int call = 0; call < kCalls; ++call) {
          const bool areAllPositive = IsFeatureEnabled("a") && IsAvailableForUserEnablement("a") &&
                                      IsEntitlementSetToInternalFeaturesAllowed();
          positiveResults.Add(areAllPositive ? 1 : 0);
        }
      },
      set);
  EXPECT_EQ(positiveResults.Value(), test_support::kThreadCount * kCalls);
}

}  // namespace
}  // namespace ornappsupport::feature
