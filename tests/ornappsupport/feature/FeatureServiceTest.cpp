#include <ornappsupport/feature/FeatureService.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace ornappsupport::feature {
namespace {

using testing::ElementsAre;

BetaFeature Feature(std::string epic = "EPIC-1") {
  return BetaFeature(std::move(epic), u"Name", u"Description", VisibilityInAllClientApps::kPublic);
}

class FeatureServiceTest : public testing::Test {
 protected:
  ~FeatureServiceTest() override { SetFeatureService(nullptr); }

  // Registers a service and leaves it open to changes.
  FixedFeatureService& Register() {
    auto service = std::make_shared<FixedFeatureService>();
    FixedFeatureService& reference = *service;
    SetFeatureService(std::move(service));
    return reference;
  }
};

TEST(BetaFeature, KeepsWhatItWasMadeFrom) {
  const BetaFeature feature("EPIC-7", u"N\u00E4me", u"", VisibilityInAllClientApps::kInDevelopment);
  EXPECT_EQ(feature.GetJiraEpicKey(), "EPIC-7");
  EXPECT_EQ(feature.GetDisplayName(), u"N\u00E4me");
  EXPECT_EQ(feature.GetDisplayDescription(), u"");
  EXPECT_EQ(feature.GetVisibility(), VisibilityInAllClientApps::kInDevelopment);
}

TEST(BetaFeature, NumbersTheVisibilities) {
  EXPECT_EQ(static_cast<int>(VisibilityInAllClientApps::kPublic), 0);
  EXPECT_EQ(static_cast<int>(VisibilityInAllClientApps::kInternal), 1);
  EXPECT_EQ(static_cast<int>(VisibilityInAllClientApps::kInDevelopment), 2);
  EXPECT_EQ(static_cast<int>(VisibilityInAllClientApps::kUnlabelled), 3);
}

TEST_F(FeatureServiceTest, KnowsAndAllowsNothingWithoutAService) {
  EXPECT_TRUE(GetConstBetaFeatureMap().empty());
  EXPECT_FALSE(IsFeatureEnabled("a"));
  EXPECT_FALSE(IsAvailableForUserEnablement("a"));
  EXPECT_FALSE(IsEntitlementSetToInternalFeaturesAllowed());
}

TEST_F(FeatureServiceTest, AnswersEachQueryByItself) {
  FixedFeatureService& service = Register();
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
  FixedFeatureService& service = Register();
  for (const char* key : {"b", "\xC3\xA4", "B", "", "ab", "a"}) {
    service.Add(key, Feature(), false, false);
  }
  std::vector<std::string> keys;
  for (const auto& entry : GetConstBetaFeatureMap()) keys.push_back(entry.first);
  EXPECT_THAT(keys, ElementsAre("", "B", "a", "ab", "b", "\xC3\xA4"));
}

TEST_F(FeatureServiceTest, ReplacesAFeatureWhole) {
  FixedFeatureService& service = Register();
  service.Add("a", Feature("EPIC-1"), true, true);
  service.Add("a", Feature("EPIC-2"), false, false);
  EXPECT_EQ(GetConstBetaFeatureMap().at("a").GetJiraEpicKey(), "EPIC-2");
  EXPECT_FALSE(IsFeatureEnabled("a"));
  EXPECT_FALSE(IsAvailableForUserEnablement("a"));
}

TEST_F(FeatureServiceTest, AnswersFalseForNullAndForAnUnknownKey) {
  class YesMan final : public FeatureService {
   public:
    const BetaFeatureMap& GetBetaFeatures() const override { return features; }
    bool IsEnabled(std::string_view) const override { return true; }
    bool IsAvailableForUser(std::string_view) const override { return true; }
    bool AreInternalFeaturesAllowed() const override { return true; }
    BetaFeatureMap features{{"known", Feature()}};
  };
  SetFeatureService(std::make_shared<YesMan>());
  EXPECT_TRUE(IsFeatureEnabled("known"));
  EXPECT_TRUE(IsAvailableForUserEnablement("known"));
  for (const char* key : {"Known", "know", "known ", ""}) {
    EXPECT_FALSE(IsFeatureEnabled(key)) << key;
    EXPECT_FALSE(IsAvailableForUserEnablement(key)) << key;
  }
  EXPECT_FALSE(IsFeatureEnabled(nullptr));
  EXPECT_FALSE(IsAvailableForUserEnablement(nullptr));
}

TEST_F(FeatureServiceTest, ForgetsTheServiceAtNull) {
  FixedFeatureService& service = Register();
  service.Add("a", Feature(), true, true);
  service.SetInternalFeaturesAllowed(true);
  SetFeatureService(nullptr);
  EXPECT_TRUE(GetConstBetaFeatureMap().empty());
  EXPECT_FALSE(IsFeatureEnabled("a"));
  EXPECT_FALSE(IsEntitlementSetToInternalFeaturesAllowed());
}

TEST_F(FeatureServiceTest, OutlivesAServiceThatReplacesItself) {
  class Leaving final : public FeatureService, public std::enable_shared_from_this<Leaving> {
   public:
    const BetaFeatureMap& GetBetaFeatures() const override {
      Leave();
      return features_;
    }
    bool IsEnabled(std::string_view key) const override { return features_.contains(key); }
    bool IsAvailableForUser(std::string_view key) const override { return features_.contains(key); }
    bool AreInternalFeaturesAllowed() const override { return Leave(); }

   private:
    bool Leave() const {
      const auto self = weak_from_this();
      SetFeatureService(nullptr);
      EXPECT_FALSE(self.expired());
      return true;
    }

    BetaFeatureMap features_{{"a", Feature()}};
  };
  const auto enter = [] { SetFeatureService(std::make_shared<Leaving>()); };
  enter();
  EXPECT_TRUE(IsFeatureEnabled("a"));
  enter();
  EXPECT_TRUE(IsAvailableForUserEnablement("a"));
  enter();
  EXPECT_TRUE(IsEntitlementSetToInternalFeaturesAllowed());
  EXPECT_FALSE(IsEntitlementSetToInternalFeaturesAllowed());
}

}  // namespace
}  // namespace ornappsupport::feature
