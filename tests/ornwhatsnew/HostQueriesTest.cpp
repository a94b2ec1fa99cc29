// Tests the order of the host queries of `GetFormattedTextForDisplay` and `GetLayoutForDisplay`.
// Hosts can observe this order.
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <ornappsupport/feature/FeatureService.h>
#include <orncore/config/Localizer.h>
#include <orncore/debug/DebugDatabase.h>
#include <ornwhatsnew/FeatureListData.h>

#include "tests/support/Builders.h"
#include "tests/support/FakeHost.h"
#include "tests/support/TemplateKeys.h"

namespace ornwhatsnew {
namespace {

using test_support::DataFile;
using testing::ElementsAre;

// A feature service that appends each query to `log`, except queries for the feature table.
class LoggingFeatures : public ornappsupport::feature::FeatureService {
 public:
  explicit LoggingFeatures(std::vector<std::string>& log) : log_(log) {}

  const ornappsupport::feature::BetaFeatureMap& GetBetaFeatures() const override {
    return features_;
  }
  bool IsEnabled(std::string_view key) const override {
    log_.push_back("enabled " + std::string(key));
    return true;
  }
  bool IsAvailableForUser(std::string_view key) const override {
    log_.push_back("available " + std::string(key));
    return true;
  }
  bool AreInternalFeaturesAllowed() const override {
    log_.emplace_back("internal user");
    return true;
  }

 private:
  std::vector<std::string>& log_;
  const ornappsupport::feature::BetaFeatureMap features_ = {
      {"export", {"EPIC-7", u"", u"", FeatureListItem::Visibility::kPublic}}};
};

class LoggingDictionary : public orncore::config::DictionarySource {
 public:
  explicit LoggingDictionary(std::vector<std::string>& log) : log_(log) {}

  std::optional<UTF8String> Find(std::string_view key) const override {
    log_.push_back("text " + std::string(key.substr(key.rfind('/') + 1)));
    return std::nullopt;
  }

 private:
  std::vector<std::string>& log_;
};

class LoggingDebugStore : public orncore::debug::DebugStore {
 public:
  explicit LoggingDebugStore(std::vector<std::string>& log) : log_(log) {}

  std::optional<UTF8String> Find(std::string_view key) const override {
    log_.push_back("debug " + std::string(key.substr(key.rfind('.') + 1)));
    return "true";
  }
  void Store(std::string_view, std::string_view) override {}

 private:
  std::vector<std::string>& log_;
};

using HostQueries = test_support::FakeHostTest;

TEST_F(HostQueries, OfADisplayHaveAFixedOrder) {
  std::vector<std::string> log;
  FeatureListData list(host_.Getter(), host_.Setter());
  list.InsertFeatureListItem(test_support::MakeItem(
      {"EPIC-7", "export", "$$$/feature/title=Export", "$$$/feature/description=Exports files"},
      {{.groupingID = "EPIC-7", .description = "$$$/feature/change=Faster"}}));
  ornappsupport::feature::SetFeatureService(std::make_shared<LoggingFeatures>(log));
  orncore::config::Localizer::Get().SetDictionary(std::make_shared<LoggingDictionary>(log));
  orncore::debug::DebugDatabase::Instance().SetStore(std::make_shared<LoggingDebugStore>(log));
  StyleRunMap runs;
  list.GetFormattedTextForDisplay({}, u"", runs, nullptr);

  EXPECT_THAT(
      log, ElementsAre(
               // The list looks up the translation of each template once.
               "text TarsaOnly", "text Off", "text Unlocked", "text InDevelopment", "text Tab",
               "text DisplayTemplate", "text displaytemplate", "text displaytemplate",
               "text displaytemplate", "text displaytemplate", "text Newline", "text ViewMore",
               "text SpaceWitDash", "text ParenthesizedCode", "text DisplayTemplate",
               "text DisplayTemplate", "text displaytemplate", "text optedOutOfAnalyticsPart1",
               "text optedOutOfAnalyticsPart2", "text nonewratings",
               // The result of the first query determines whether the panel can contain notes,
               // issue keys and commit IDs. The result of the second query determines whether the
               // list shows the feature.
               "internal user", "enabled export",
               // The results of these three queries determine the unlock label.
               "internal user", "debug SimulateShowingAllOffFeaturesInWhatsNew", "enabled export",
               // The list makes the remaining queries while it writes the title line, the
               // description and the change.
               "text title", "internal user", "debug SimulateShowingAllUnlockCodesInWhatsNew",
               "text description", "text change"));
}

TEST_F(HostQueries, OfTemplatesAreForTheKeysOfRandomDictionaries) {
  std::vector<std::string> log;
  FeatureListData list(host_.Getter(), host_.Setter());
  const auto dictionary = std::make_shared<LoggingDictionary>(log);
  orncore::config::Localizer::Get().SetDictionary(dictionary);
  StyleRunMap runs;
  list.GetFormattedTextForDisplay({}, u"", runs, nullptr);
  const std::vector<std::string> queries = std::exchange(log, {});
  for (const char* key : test_support::kTemplateKeys) dictionary->Find(key);
  log.pop_back();  // the title of a section
  EXPECT_EQ(log, queries);
}

TEST_F(HostQueries, OfALayoutHaveTheOrderOfTheDisplay) {
  const std::string file = DataFile()
                               .Row({.groupingID = "EPIC-7",
                                     .ratingRequest = "RequestRating",
                                     .description = "$$$/change=Faster"})
                               .Row({.groupingID = "EPIC-8",
                                     .ratingRequest = "$$$/question=Is it fast?",
                                     .description = "Slower"})
                               .Text();
  std::vector<std::string> log;
  FeatureListData list(host_.Getter(), host_.Setter());
  list.InsertFeatureListItem(test_support::MakeItem(
      {"EPIC-7", "export", "$$$/feature/title=Export", "$$$/feature/description=Exports files"}));
  list.InsertFeatureListItem(test_support::MakeItem({"EPIC-8", "import", "Import"}));
  list.ParseWhatsNewData(file);
  ornappsupport::feature::SetFeatureService(std::make_shared<LoggingFeatures>(log));
  orncore::config::Localizer::Get().SetDictionary(std::make_shared<LoggingDictionary>(log));
  orncore::debug::DebugDatabase::Instance().SetStore(std::make_shared<LoggingDebugStore>(log));

  StyleRunMap runs;
  list.GetFormattedTextForDisplay({}, u"", runs, nullptr);
  const std::vector<std::string> ofText = std::exchange(log, {});
  list.GetLayoutForDisplay({});
  EXPECT_EQ(std::exchange(log, {}), ofText);
  list.PreviewLayout({});
  EXPECT_EQ(std::exchange(log, {}), ofText);

  list.RefreshInternalSeenState();
  log.clear();
  list.GetFormattedTextForDisplay(kRatingView, u"", runs, std::make_shared<RatingMap>());
  std::vector<std::string> ofRatingView = std::exchange(log, {});
  EXPECT_EQ(list.GetLayoutForDisplay(kRatingView).ratingRequests.size(), 2U);
  // Unlike `GetFormattedTextForDisplay`, `GetLayoutForDisplay` looks up each rating request that is
  // a key text.
  ofRatingView.emplace_back("text question");
  EXPECT_EQ(log, ofRatingView);
}

}  // namespace
}  // namespace ornwhatsnew
