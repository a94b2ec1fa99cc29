#include "hosts/common/HostDescription.h"

#include <memory>
#include <utility>

#include <ornappsupport/analytics/SDMUsageLogger.h>
#include <ornappsupport/feature/FeatureService.h>
#include <ornappsupport/links/PanelLinks.h>
#include <orncore/appstatemanager/AppStateManager.h>
#include <orncore/config/ClientInfo.h>
#include <orncore/config/Localizer.h>
#include <orncore/config/TopLevel.h>
#include <orncore/debug/DebugDatabase.h>
#include <orncore/string/Conversion.h>

#include "hosts/common/ControlCharacters.h"
#include "hosts/common/GettextCatalog.h"
#include "hosts/common/JsonReader.h"
#include "hosts/common/TextFile.h"

namespace hosts::common {

using ornappsupport::analytics::SDMUsageLogger;
using ornappsupport::feature::BetaFeature;
using ornappsupport::feature::FixedFeatureService;
using ornappsupport::feature::VisibilityInAllClientApps;
using ornappsupport::links::PanelLinks;
using orncore::config::FixedClientInfo;
using orncore::config::Localizer;
using orncore::config::MapDictionary;
using orncore::debug::DebugDatabase;
using orncore::debug::MemoryDebugStore;
using orncore::string::UTF16String;
using orncore::string::UTF8to16;

namespace {

/// The name of the member that contains the path of the JSON schema. Editors use the schema.
/// `ReadHostDescription` does not open it.
constexpr std::string_view kSchemaMember = "$schema";

/// The nesting depth of a beta feature, which is an object in an array in the root object.
/// `JsonDocument::Parse` rejects deeper input early, because nested arrays and objects take up to
/// thirty times as much memory as their text.
constexpr std::size_t kDescriptionDepth = 3;

/// The maximum number of beta features and dictionary files together. A description contains no
/// other array. `JsonDocument::Parse` rejects more elements early, because features without
/// members take 70 times as much memory as their text.
constexpr std::size_t kMaximumElements = 20'000;

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
  const std::vector<JsonReader> elements = array.Elements();
  std::vector<BetaFeatureDescription> features;
  features.reserve(elements.size());
  for (const JsonReader& element : elements) features.push_back(ReadBetaFeature(element));
  return features;
}

/// Copies the member `name` of `object`, if it exists, to the member `link` of `links`. Throws
/// `JsonError` if the member of `object` is not a string or not a valid link. The error message
/// contains `expected`, a description of a valid link. REQUIRES: all members of `links` are valid.
void ReadLink(const JsonReader& object, std::string_view name, std::string_view expected,
              PanelLinks& links, UTF16String PanelLinks::*link) {
  const auto member = object.Find(name);
  if (!member) return;
  links.*link = UTF8to16(member->Text());
  if (!AreValid(links)) member->FailExpecting(expected);
}

PanelLinks ReadLinks(const JsonReader& object) {
  constexpr std::string_view kTemplate =
      "an https URL with @0 after the host name, or an empty string";
  object.RequireObject({"issueLink", "commitLink", "privacyPage", "issuePrefix"});
  PanelLinks links;
  ReadLink(object, "issueLink", kTemplate, links, &PanelLinks::issueLink);
  ReadLink(object, "commitLink", kTemplate, links, &PanelLinks::commitLink);
  ReadLink(object, "privacyPage", "an https URL, or an empty string", links,
           &PanelLinks::privacyPage);
  if (const auto member = object.Find("issuePrefix")) links.issuePrefix = UTF8to16(member->Text());
  return links;
}

/// Throws `JsonError` if the version, the build number or the platform contains a control
/// character. The heading of the panel can show the version. The text after a newline in the
/// version would look like a second line of the heading.
void RequireVisibleVersion(const JsonReader& object) {
  for (const std::string_view name : {"clientVersion", "buildNumber", "platform"}) {
    const auto member = object.Find(name);
    if (member && HasControlCharacters(member->Text())) {
      member->FailExpecting("a string without control characters");
    }
  }
}

std::string ReadOrThrow(const std::filesystem::path& file) {
  try {
    return ReadTextFile(file);
  } catch (const orncore::config::ResultError& error) {
    throw JsonError(JsonMessage(OpenErrorMessage(file, error), "", ""));
  }
}

/// Adds the translations of the compiled gettext catalog `file` to `texts`. Does not replace
/// translations in `texts`. Throws `JsonError` if the catalog cannot be used.
void AddTranslations(const std::filesystem::path& file, HostDescription::Texts& texts) {
  try {
    texts.merge(ParseGettextCatalog(ReadOrThrow(file)));
  } catch (const CatalogError& error) {
    throw JsonError(JsonMessage("the file '" + file.native() + "' " + error.what(), "", ""));
  }
}

BetaFeature MakeBetaFeature(const BetaFeatureDescription& feature) {
  return BetaFeature(feature.epicKey, UTF8to16(feature.name), UTF8to16(feature.description),
                     static_cast<VisibilityInAllClientApps>(feature.visibility));
}

}  // namespace

HostDescription ReadHostDescription(const std::filesystem::path& file) {
  HostDescription host = ParseHostDescription(ReadOrThrow(file), file.native());
  for (const std::filesystem::path& path : DictionaryPaths(host, file)) {
    AddTranslations(path, host.dictionary);
  }
  return host;
}

std::vector<std::filesystem::path> DictionaryPaths(const HostDescription& host,
                                                   const std::filesystem::path& file) {
  std::vector<std::filesystem::path> paths;
  for (const std::string& name : host.dictionaryFiles) paths.push_back(file.parent_path() / name);
  return paths;
}

HostDescription ParseHostDescription(std::string_view json, std::string_view sourceName) {
  const JsonDocument document =
      JsonDocument::Parse(json, sourceName, kDescriptionDepth, kMaximumElements);
  const JsonReader object(document);
  std::vector<std::string_view> known(kHostMembers.begin(), kHostMembers.end());
  known.push_back(kSchemaMember);
  object.RequireObject(known);
  if (const auto schema = object.Find(kSchemaMember)) static_cast<void>(schema->Text());
  HostDescription host;
  ReadHostMembers(object, host);
  RequireVisibleVersion(object);
  return host;
}

void ReadHostMembers(const JsonReader& object, HostDescription& host) {
  ReadText(object, "clientVersion", host.clientVersion);
  ReadText(object, "buildNumber", host.buildNumber);
  ReadText(object, "platform", host.platform);
  ReadBoolean(object, "terminating", host.terminating);
  ReadBoolean(object, "usageLogging", host.usageLogging);
  ReadBoolean(object, "internalFeaturesAllowed", host.internalFeaturesAllowed);
  if (const auto member = object.Find("betaFeatures")) {
    host.betaFeatures = ReadBetaFeatures(*member);
  }
  if (const auto member = object.Find("links")) host.links = ReadLinks(*member);
  ReadTexts(object, "debug", host.debug);
  ReadTexts(object, "dictionary", host.dictionary);
  if (const auto member = object.Find("dictionaryFiles")) {
    host.dictionaryFiles.clear();
    for (const JsonReader& name : member->Elements()) host.dictionaryFiles.push_back(name.Text());
  }
}

void InstallHost(const HostDescription& host) {
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
  ornappsupport::links::SetPanelLinks(host.links);
  orncore::appstatemanager::SetTerminationQuery(
      [terminating = host.terminating] { return terminating; });
  SDMUsageLogger::SetLoggingQuery([logging = host.usageLogging] { return logging; });
  DebugDatabase::Instance().SetStore(std::make_shared<MemoryDebugStore>(host.debug));
}

}  // namespace hosts::common
