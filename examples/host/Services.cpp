#include "Services.h"

#include <iostream>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include <ornappsupport/Services.h>
#include <ornappsupport/analytics/SDMUsageLogger.h>
#include <ornappsupport/feature/FeatureService.h>
#include <ornappsupport/links/PanelLinks.h>
#include <orncore/appstatemanager/AppStateManager.h>
#include <orncore/config/ClientInfo.h>
#include <orncore/config/Localizer.h>
#include <orncore/debug/DebugDatabase.h>
#include <orncore/debug/Log.h>

namespace feature = ornappsupport::feature;

// Returns the version, the build number and the platform of the application.
class RunningApplication final : public orncore::config::ClientInfo {
 public:
  std::u16string GetClientVersion() const override { return u"4.3"; }
  std::u16string GetClientBuildNumber() const override { return u"118"; }
  std::string GetClientPlatform() const override { return "Win"; }
};

// Returns the feature table and the internal-features permission. Also returns whether a feature is
// switched on, and whether the user may switch it on.
class Switches final : public feature::FeatureService {
 public:
  explicit Switches(const Preferences& preferences) : preferences_(preferences) {}

  const feature::BetaFeatureMap& GetBetaFeatures() const override { return table_; }
  bool IsEnabled(std::string_view internalKey) const override {
    return preferences_.switchedOn.contains(internalKey);
  }
  bool IsAvailableForUser(std::string_view internalKey) const override {
    return internalKey == "herbarium.map";
  }
  bool AreInternalFeaturesAllowed() const override { return preferences_.isStaff; }

 private:
  const Preferences& preferences_;
  const feature::BetaFeatureMap table_ = {
      {"herbarium.map",
       {"ORN-1187", u"$$$/herbarium/feature/map/name=Map of finds",
        u"$$$/herbarium/feature/map/description=Every sheet where it was collected.",
        feature::VisibilityInAllClientApps::kPublic}},
      {"herbarium.sync",
       {"ORN-1320", u"Sync between herbaria", u"Keeps two collections in sync.",
        feature::VisibilityInAllClientApps::kInDevelopment}},
  };
};

// Finds translations by key. The key is the part of a key text before `=`.
class GermanTexts final : public orncore::config::DictionarySource {
 public:
  std::optional<std::string> Find(std::string_view key) const override {
    if (key == "$$$/herbarium/feature/map/name") return "Karte der Funde";
    if (key == "$$$/herbarium/feature/map/description") return "Jeder Bogen an seinem Fundort.";
    if (key == "$$$/herbarium/news/43/zoom") return "Strg und das Rad#{mdash}schon zoomt sie";
    if (key == "$$$/ornwhatsnew/SectionKey/Miscellaneous") return "Sonstiges";
    return std::nullopt;  // the list shows the default text after `=`
  }
};

// Stores the debug entries with the application's other strings.
class DebugTexts final : public orncore::debug::DebugStore {
 public:
  explicit DebugTexts(Preferences& preferences) : preferences_(preferences) {}

  std::optional<std::string> Find(std::string_view key) const override {
    const auto found = preferences_.texts.find("debug/" + std::string(key));
    if (found == preferences_.texts.end()) return std::nullopt;
    return found->second;
  }
  void Store(std::string_view key, std::string_view value) override {
    preferences_.texts["debug/" + std::string(key)] = value;
  }

 private:
  Preferences& preferences_;
};

// Sets the link templates and the URL of the privacy page.
void SetLinks() {
  ornappsupport::links::PanelLinks links;  // the defaults
  links.issueLink = u"https://issues.herbarium.example/browse/@0";
  links.commitLink.clear();  // commits have no page
  links.privacyPage = u"https://account.herbarium.example/privacy";
  if (!ornappsupport::links::SetPanelLinks(links)) std::cout << "a link is not valid\n";
}

void ReplaceServices(Preferences& preferences) {
  orncore::config::SetClientInfo(std::make_shared<RunningApplication>());
  feature::SetFeatureService(std::make_shared<Switches>(preferences));
  orncore::config::Localizer::Get().SetDictionary(std::make_shared<GermanTexts>());
  orncore::debug::DebugDatabase::Instance().SetStore(std::make_shared<DebugTexts>(preferences));

  ornappsupport::analytics::SDMUsageLogger::SetLoggingQuery(
      [&preferences] { return preferences.logsUsage; });

  SetLinks();

  orncore::appstatemanager::SetTerminationQuery([&preferences] { return preferences.isQuitting; });

  orncore::debug::SetLogSink(
      [](std::string_view line) { std::cout << "herbarium.log: " << line << '\n'; });
}

void RestoreServices() {
  ornappsupport::ResetServices();
}
