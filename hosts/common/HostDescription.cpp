#include "hosts/common/HostDescription.h"

#include <algorithm>
#include <array>
#include <memory>
#include <optional>
#include <span>
#include <utility>

#include <ornappsupport/analytics/SDMUsageLogger.h>
#include <ornappsupport/feature/FeatureService.h>
#include <orncore/appstatemanager/AppStateManager.h>
#include <orncore/config/ClientInfo.h>
#include <orncore/config/Localizer.h>
#include <orncore/config/TopLevel.h>
#include <orncore/debug/DebugDatabase.h>
#include <orncore/string/Conversion.h>

#include "hosts/common/JsonReader.h"
#include "hosts/common/TextFile.h"

namespace hosts::common {

using ornappsupport::analytics::SDMUsageLogger;
using ornappsupport::feature::BetaFeature;
using ornappsupport::feature::FixedFeatureService;
using ornappsupport::feature::VisibilityInAllClientApps;
using orncore::config::FixedClientInfo;
using orncore::config::Localizer;
using orncore::config::MapDictionary;
using orncore::debug::DebugDatabase;
using orncore::debug::MemoryDebugStore;
using orncore::string::UTF8to16;

namespace {

/// In the order in which errors list them; the two that only scenarios have come last.
constexpr std::array<std::string_view, 11> kMembers = {
    "clientVersion", "buildNumber",  "platform",
    "terminating",   "usageLogging", "internalFeaturesAllowed",
    "betaFeatures",  "debug",        "dictionary",
    "state",         "callbacks"};

/// Where the schema of the description lies: for editors, which find it by this name.
constexpr std::string_view kSchemaMember = "$schema";

std::span<const std::string_view> NamesOf(HostMembers members) {
  const std::span<const std::string_view> all(kMembers);
  switch (members) {
    case HostMembers::kProgram:
      return all.first(all.size() - 2);
    case HostMembers::kScenarioChange:
      return all.first(all.size() - 1);
    case HostMembers::kScenario:
      break;
  }
  return all;
}

void ReadText(const JsonReader& object, std::string_view name, std::string& text) {
  if (const auto member = object.Find(name)) text = member->Text();
}

void ReadTexts(const JsonReader& object, std::string_view name, HostDescription::Texts& texts) {
  if (const auto member = object.Find(name)) texts = member->Texts();
}

void ReadBoolean(const JsonReader& object, std::string_view name, bool& value) {
  if (const auto member = object.Find(name)) value = member->Boolean();
}

BetaFeatureDescription ReadBetaFeature(const JsonReader& object) {
  object.RequireObject({"internalKey", "epicKey", "name", "description", "visibility", "enabled",
                        "availableForUser"});
  BetaFeatureDescription feature;
  ReadText(object, "internalKey", feature.internalKey);
  ReadText(object, "epicKey", feature.epicKey);
  ReadText(object, "name", feature.name);
  ReadText(object, "description", feature.description);
  if (const auto member = object.Find("visibility")) feature.visibility = member->Integer32();
  ReadBoolean(object, "enabled", feature.enabled);
  ReadBoolean(object, "availableForUser", feature.availableForUser);
  return feature;
}

std::vector<BetaFeatureDescription> ReadBetaFeatures(const JsonReader& array) {
  std::vector<BetaFeatureDescription> features;
  for (const JsonReader& element : array.Elements()) features.push_back(ReadBetaFeature(element));
  return features;
}

Callbacks ReadCallbacks(const JsonReader& member) {
  constexpr std::array<std::pair<std::string_view, Callbacks>, 4> kNames = {
      {{"both", Callbacks::kBoth},
       {"getter", Callbacks::kGetter},
       {"setter", Callbacks::kSetter},
       {"none", Callbacks::kNone}}};
  const std::string text = member.IsText() ? member.Text() : std::string();
  for (const auto& [name, callbacks] : kNames) {
    if (text == name) return callbacks;
  }
  member.FailExpecting("\"both\", \"getter\", \"setter\" or \"none\"");
}

void RefuseScenarioMembers(const JsonReader& object) {
  for (const std::string_view name : {"state", "callbacks"}) {
    if (const auto member = object.Find(name)) {
      member->Fail(
          "this member is only for scenarios; remove it, a program keeps its state in its "
          "own store");
    }
  }
}

BetaFeature MakeBetaFeature(const BetaFeatureDescription& feature) {
  return BetaFeature(feature.epicKey, UTF8to16(feature.name), UTF8to16(feature.description),
                     static_cast<VisibilityInAllClientApps>(feature.visibility));
}

}  // namespace

HostDescription ReadHostDescription(const std::filesystem::path& file) {
  try {
    return ParseHostDescription(ReadTextFile(file), file.string());
  } catch (const orncore::config::ResultError& error) {
    throw HostDescriptionError("The host description '" + file.string() + "' cannot be read: " +
                               ReasonOf(error) + ". Name a JSON file with --host.");
  }
}

HostDescription ParseHostDescription(std::string_view json, std::string_view sourceName) {
  try {
    const JsonDocument document = JsonDocument::Parse(json, sourceName);
    HostDescription host;
    ReadHostMembers(JsonReader(document), HostMembers::kProgram, {}, host);
    return host;
  } catch (const JsonError& error) {
    throw HostDescriptionError(error.what());
  }
}

void ReadHostMembers(const JsonReader& object, HostMembers members,
                     std::span<const std::string_view> others, HostDescription& host) {
  if (members == HostMembers::kProgram) RefuseScenarioMembers(object);
  const auto names = NamesOf(members);
  std::vector<std::string_view> known(others.begin(), others.end());
  known.insert(known.end(), names.begin(), names.end());
  if (members == HostMembers::kProgram) known.push_back(kSchemaMember);
  object.RequireObject(known);
  if (const auto schema = object.Find(kSchemaMember)) static_cast<void>(schema->Text());
  ReadText(object, "clientVersion", host.clientVersion);
  ReadText(object, "buildNumber", host.buildNumber);
  ReadText(object, "platform", host.platform);
  ReadBoolean(object, "terminating", host.terminating);
  ReadBoolean(object, "usageLogging", host.usageLogging);
  ReadBoolean(object, "internalFeaturesAllowed", host.internalFeaturesAllowed);
  if (const auto member = object.Find("betaFeatures")) {
    host.betaFeatures = ReadBetaFeatures(*member);
  }
  ReadTexts(object, "debug", host.debug);
  ReadTexts(object, "dictionary", host.dictionary);
  ReadTexts(object, "state", host.state);
  if (const auto member = object.Find("callbacks")) host.callbacks = ReadCallbacks(*member);
}

std::shared_ptr<MemoryDebugStore> InstallHost(const HostDescription& host) {
  InstallHostButDebugEntries(host);
  return InstallDebugEntries(host.debug);
}

void InstallHostButDebugEntries(const HostDescription& host) {
  orncore::config::SetClientInfo(std::make_shared<FixedClientInfo>(
      UTF8to16(host.clientVersion), UTF8to16(host.buildNumber), host.platform));
  Localizer::Get().SetDictionary(std::make_shared<MapDictionary>(host.dictionary));
  auto features = std::make_shared<FixedFeatureService>();
  features->SetInternalFeaturesAllowed(host.internalFeaturesAllowed);
  for (const BetaFeatureDescription& feature : host.betaFeatures) {
    features->Add(feature.internalKey, MakeBetaFeature(feature), feature.enabled,
                  feature.availableForUser);
  }
  ornappsupport::feature::SetFeatureService(std::move(features));
  orncore::appstatemanager::SetTerminationQuery(
      [terminating = host.terminating] { return terminating; });
  SDMUsageLogger::SetLoggingQuery([logging = host.usageLogging] { return logging; });
}

std::shared_ptr<MemoryDebugStore> InstallDebugEntries(const HostDescription::Texts& entries) {
  auto store = std::make_shared<MemoryDebugStore>(entries);
  DebugDatabase::Instance().SetStore(store);
  return store;
}

}  // namespace hosts::common
