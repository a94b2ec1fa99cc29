// Fuzzes host descriptions: checks the reader and a list in the described host.
//
// The input is the text of a host description.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <map>
#include <optional>
#include <regex>
#include <string>
#include <string_view>

#include <ornappsupport/Services.h>
#include <orncore/string/Conversion.h>
#include <ornwhatsnew/FeatureListData.h>
#include <unicode/uchar.h>
#include <nlohmann/json.hpp>

#include "fuzz/PanelProperties.h"
#include "fuzz/Property.h"
#include "fuzz/StrictJson.h"
#include "hosts/common/HostDescription.h"
#include "hosts/common/JsonDocument.h"
#include "tests/support/FakeStateStore.h"
#include "tests/support/PlainPanel.h"
#include "tests/support/PlainText.h"

namespace fuzz {
namespace {

using hosts::common::BetaFeatureDescription;
using hosts::common::HostDescription;
using nlohmann::json;
using test_support::FormatWithLibrary;

constexpr char kDataText[] =
    "App Version,Grouping ID,Jira ID,Salience,Rating,First,Platform,URL,Changelist,Message\n"
    "25.1,EPIC-7,ORN-9,Headline,RequestRating,24.0,Mac,https://a.example/1,abc123,Faster export\n"
    "25.1,,,,,,,,,No grouping\n"
    "25.1,nowhere,,,,,,,,$$$/text/one=One^}s\n";

void RequireErrorText(std::string_view message) {
  Require(message.starts_with("host.json: "), "an error names its source");
  Require(orncore::string::IsWellFormedUTF8(message), "an error is well-formed UTF-8");
  const std::u16string text = test_support::PlainUTF8to16(message);
  Require(std::ranges::none_of(text, [](char16_t c) { return u_charType(c) == U_CONTROL_CHAR; }),
          "an error is one line without control characters");
}

std::optional<HostDescription> Parse(std::string_view text) {
  try {
    return hosts::common::ParseHostDescription(text, "host.json");
  } catch (const hosts::common::JsonError& error) {
    RequireErrorText(error.what());
    return std::nullopt;
  }
}

json FeatureJson(const BetaFeatureDescription& feature) {
  return {{"internalKey", feature.internalKey},
          {"epicKey", feature.epicKey},
          {"name", feature.name},
          {"description", feature.description},
          {"visibility", feature.visibility},
          {"enabled", feature.enabled},
          {"availableForUser", feature.availableForUser}};
}

json LinksJson(const ornappsupport::links::PanelLinks& links) {
  using orncore::string::UTF16to8;
  return {{"issueLink", UTF16to8(links.issueLink)},
          {"commitLink", UTF16to8(links.commitLink)},
          {"privacyPage", UTF16to8(links.privacyPage)},
          {"issuePrefix", UTF16to8(links.issuePrefix)}};
}

json HostJson(const HostDescription& host) {
  json features = json::array();
  for (const BetaFeatureDescription& feature : host.betaFeatures) {
    features.push_back(FeatureJson(feature));
  }
  return {{"clientVersion", host.clientVersion},
          {"buildNumber", host.buildNumber},
          {"platform", host.platform},
          {"terminating", host.terminating},
          {"usageLogging", host.usageLogging},
          {"internalFeaturesAllowed", host.internalFeaturesAllowed},
          {"betaFeatures", features},
          {"links", LinksJson(host.links)},
          {"debug", host.debug},
          {"dictionary", host.dictionary},
          {"dictionaryFiles", host.dictionaryFiles}};
}

bool IsObjectOfTexts(const json& value) {
  return value.is_object() &&
         std::ranges::all_of(value, [](const json& text) { return text.is_string(); });
}

bool IsVisibility(const json& value) {
  using Limits = std::numeric_limits<std::int32_t>;
  return value.is_number_integer() && value >= Limits::min() && value <= Limits::max();
}

bool IsTextWithoutControls(const json& value) {
  return value.is_string() &&
         std::ranges::none_of(test_support::PlainUTF8to16(value.get<std::string>()),
                              [](char16_t c) {
                                const auto kind = u_charType(c);
                                return kind == U_CONTROL_CHAR || kind == U_LINE_SEPARATOR ||
                                       kind == U_PARAGRAPH_SEPARATOR;
                              });
}

bool IsLink(const json& value) {
  static const std::regex link(
      R"((https://([-\w.]+|\[[A-Za-z\d.:]+\])(:\d*)?([/?#][-\w.~:/?#\[\]@!$&'()*+,;=%]*)?)?)",
      std::regex::ECMAScript | std::regex::optimize);
  return value.is_string() && value.get<std::string>().size() <= 2000 &&
         std::regex_match(value.get<std::string>(), link);
}

bool IsLinkTemplate(const json& value) {
  if (!IsLink(value)) return false;
  const std::string text = value.get<std::string>();
  return text.empty() || text.find("@0") != std::string::npos;
}

using KindCheck = bool (*)(const json& value);

bool HasOnly(const json& value, const std::map<std::string, KindCheck>& members) {
  if (!value.is_object()) return false;
  for (const auto& [name, member] : value.items()) {
    const auto found = members.find(name);
    if (found == members.end() || !found->second(member)) return false;
  }
  return true;
}

// Returns whether a host description is valid. This is a second implementation of the rules of
// `ParseHostDescription`.
bool IsValid(const json& value) {
  const KindCheck isText = [](const json& text) { return text.is_string(); };
  const KindCheck isBoolean = [](const json& boolean) { return boolean.is_boolean(); };
  static const std::map<std::string, KindCheck> featureMembers = {
      {"internalKey", isText},        {"epicKey", isText},          {"name", isText},
      {"description", isText},        {"visibility", IsVisibility}, {"enabled", isBoolean},
      {"availableForUser", isBoolean}};
  const KindCheck areFeatures = [](const json& features) {
    return features.is_array() && std::ranges::all_of(features, [](const json& feature) {
             return HasOnly(feature, featureMembers);
           });
  };
  static const std::map<std::string, KindCheck> linkMembers = {{"issueLink", IsLinkTemplate},
                                                               {"commitLink", IsLinkTemplate},
                                                               {"privacyPage", IsLink},
                                                               {"issuePrefix", isText}};
  const KindCheck areLinks = [](const json& links) { return HasOnly(links, linkMembers); };
  const KindCheck areTexts = [](const json& texts) {
    return texts.is_array() &&
           std::ranges::all_of(texts, [](const json& text) { return text.is_string(); });
  };
  return HasOnly(value, {{"$schema", isText},
                         {"clientVersion", IsTextWithoutControls},
                         {"buildNumber", IsTextWithoutControls},
                         {"platform", IsTextWithoutControls},
                         {"terminating", isBoolean},
                         {"usageLogging", isBoolean},
                         {"internalFeaturesAllowed", isBoolean},
                         {"betaFeatures", areFeatures},
                         {"links", areLinks},
                         {"debug", IsObjectOfTexts},
                         {"dictionary", IsObjectOfTexts},
                         {"dictionaryFiles", areTexts}});
}

// Checks that `read` contains each member of `written` with the same value, except `$schema`.
// `read` can have additional members, and so can its links and features.
void RequireSubset(const json& written, const json& read) {
  for (const auto& [name, value] : written.items()) {
    if (name == "$schema") continue;
    if (name == "links") {
      RequireSubset(value, read.at(name));
      continue;
    }
    if (name != "betaFeatures") {
      Require(read.at(name) == value, "a member is read unchanged");
      continue;
    }
    RequireEqual(read.at(name).size(), value.size(), "every feature is read");
    for (std::size_t i = 0; i < value.size(); ++i) RequireSubset(value[i], read.at(name)[i]);
  }
}

void RequireRoundTrip(const HostDescription& host) {
  const json written = HostJson(host);
  const std::optional<HostDescription> reread = Parse(written.dump());
  Require(reread.has_value(), "a written description can be read");
  Require(HostJson(*reread) == written, "writing and reading a description does not change it");
}

void RequireEqualLists(const HostDescription& host) {
  hosts::common::InstallHost(host);
  test_support::FakeStateStore state;
  test_support::PlainPanel::Texts store;
  ornwhatsnew::FeatureListData list(state.Getter(), state.Setter());
  test_support::PlainPanel plain(store);
  list.InitWithData(kDataText);
  plain.Load(kDataText);
  RequireEqual(FirstDifference(list, plain), {}, "the list equals the plain list");
  RequireKeysOnce(list);
  for (const unsigned options : {0x00U, 0x16U, 0x07U}) {
    RequireEqual(FormatWithLibrary(list, state, options, u"rate"), plain.Format(options, u"rate"),
                 "the panel equals the plain panel");
  }
  ornappsupport::ResetServices();
}

void Run(std::string_view text) {
  const std::optional<HostDescription> host = Parse(text);
  const json written = ParseStrictly(text);
  RequireEqual(host.has_value(), IsValid(written),
               "a description is accepted if and only if it is valid");
  if (!host) return;
  RequireSubset(written, HostJson(*host));
  RequireRoundTrip(*host);
  RequireEqualLists(*host);
}

}  // namespace
}  // namespace fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::Run({reinterpret_cast<const char*>(data), size});
  return 0;
}
