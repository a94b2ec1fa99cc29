// Tests the host descriptions of the example. They describe one application with different users
// and versions, so a feature must be the same in every description that contains it.
#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <tuple>

#include <gtest/gtest.h>

#include <orncore/config/Localizer.h>
#include <ornwhatsnew/FeatureListData.h>

#include "hosts/common/HostDescription.h"

namespace examples {
namespace {

using hosts::common::HostDescription;

using Feature = std::tuple<std::string, std::string, std::string, int, bool, bool>;

HostDescription ReadHost(const std::string& name) {
  return hosts::common::ReadHostDescription(std::filesystem::path(EXAMPLE_FOLDER) / name);
}

std::map<std::string, Feature> FeaturesOf(const HostDescription& host) {
  std::map<std::string, Feature> features;
  for (const auto& feature : host.betaFeatures) {
    features.emplace(feature.internalKey,
                     Feature(feature.epicKey, feature.name, feature.description, feature.visibility,
                             feature.enabled, feature.availableForUser));
  }
  return features;
}

TEST(ExampleHosts, HaveTheSameFeatures) {
  const auto features = FeaturesOf(ReadHost("host.json"));
  EXPECT_EQ(FeaturesOf(ReadHost("host.de.json")), features);
  EXPECT_EQ(FeaturesOf(ReadHost("internal.json")), features);
  EXPECT_EQ(FeaturesOf(ReadHost("opted-out.json")), features);
}

TEST(ExampleHosts, TheEarlierVersionHasFewerFeatures) {
  const auto features = FeaturesOf(ReadHost("host.json"));
  const auto earlier = FeaturesOf(ReadHost("earlier.json"));
  EXPECT_LT(earlier.size(), features.size());
  for (const auto& [key, feature] : earlier) {
    ASSERT_TRUE(features.contains(key)) << key;
    EXPECT_EQ(feature, features.at(key)) << key;
  }
}

TEST(ExampleHosts, ContainEveryVisibilityAndSwitch) {
  std::set<int> visibilities;
  std::set<std::pair<bool, bool>> switches;
  for (const auto& feature : ReadHost("host.json").betaFeatures) {
    visibilities.insert(feature.visibility);
    switches.emplace(feature.enabled, feature.availableForUser);
  }
  EXPECT_EQ(visibilities, (std::set<int>{0, 1, 2, 3}));
  EXPECT_EQ(switches.size(), 4U);
}

TEST(ExampleHosts, OnlyTheGermanHostHasADictionary) {
  for (const char* name : {"host.json", "internal.json", "opted-out.json", "earlier.json"}) {
    EXPECT_TRUE(ReadHost(name).dictionary.empty()) << name;
  }
  EXPECT_GT(ReadHost("host.de.json").dictionary.size(), 20U);
}

/// An empty dictionary that records the keys that the library looks up.
class QueriedKeys : public orncore::config::DictionarySource {
 public:
  std::optional<std::string> Find(std::string_view key) const override {
    keys.emplace(key);
    return std::nullopt;
  }

  mutable std::set<std::string> keys;
};

TEST(ExampleHosts, GermanHostTranslatesEveryTextOfThePanel) {
  // These templates contain no words, so they are the same in every language.
  const std::set<std::string> untranslated = {
      "$$$/ornwhatsnew/Feature/Detail/Plain/DisplayTemplate/Tab",
      "$$$/ornwhatsnew/Feature/Detail/Plain/DisplayTemplate",
      "$$$/ornwhatsnew/Feature/Detail/JiraID/displaytemplate",
      "$$$/private/ornwhatsnew/Feature/Newline",
      "$$$/ornwhatsnewui/WhatsNewView/SpaceWitDash",
      "$$$/ornwhatsnewui/WhatsNewView/ParenthesizedCode",
  };
  const auto queried = std::make_shared<QueriedKeys>();
  orncore::config::Localizer::Get().SetDictionary(queried);
  ornwhatsnew::FeatureListData list("", nullptr, nullptr);
  ornwhatsnew::StyleRunMap runs;
  list.GetFormattedTextForDisplay({}, {}, runs, nullptr);
  orncore::config::Localizer::Get().SetDictionary(nullptr);

  const auto dictionary = ReadHost("host.de.json").dictionary;
  EXPECT_GT(queried->keys.size(), untranslated.size() + 10);
  for (const std::string& key : queried->keys) {
    EXPECT_TRUE(untranslated.contains(key) || dictionary.contains(key)) << key;
  }
}

}  // namespace
}  // namespace examples
