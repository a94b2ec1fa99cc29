// Door: the host description, a JSON text, from its reading to a list inside the host.
//
// Input: the JSON text as it is.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include <ornappsupport/Services.h>
#include <orncore/Services.h>
#include <orncore/string/Conversion.h>
#include <ornwhatsnew/FeatureListData.h>
#include <unicode/uchar.h>
#include <nlohmann/json.hpp>

#include "fuzz/PanelProperties.h"
#include "fuzz/Property.h"
#include "hosts/common/HostDescription.h"
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
  Require(orncore::string::IsWellFormedUTF8(message), "an error is well-formed");
  const std::u16string text = test_support::PlainUTF8to16(message);
  Require(std::ranges::none_of(text, [](char16_t c) { return u_charType(c) == U_CONTROL_CHAR; }),
          "an error is one line without control characters");
}

std::optional<HostDescription> Parse(std::string_view text) {
  try {
    return hosts::common::ParseHostDescription(text, "host.json");
  } catch (const hosts::common::HostDescriptionError& error) {
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
          {"debug", host.debug},
          {"dictionary", host.dictionary}};
}

// Members that stand in the text must be the description's, the others its defaults.
void RequireMembers(const HostDescription& host, std::string_view text) {
  const json written = json::parse(text, nullptr, false);
  Require(written.is_object(), "only a JSON object is taken");
  const json read = HostJson(host);
  for (const auto& [name, value] : written.items()) {
    if (name != "betaFeatures") Require(read.at(name) == value, "a member is read as it stands");
  }
  const auto features = written.find("betaFeatures");
  if (features != written.end()) {
    RequireEqual(host.betaFeatures.size(), features->size(), "every feature is read");
  }
}

void RequireRoundTrip(const HostDescription& host) {
  const json written = HostJson(host);
  const std::optional<HostDescription> again = Parse(written.dump());
  Require(again.has_value(), "what was read can be written and read again");
  Require(HostJson(*again) == written, "a description survives being written and read");
}

void RequireListInside(const HostDescription& host) {
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
  orncore::ResetServices();
}

void Run(std::string_view text) {
  const std::optional<HostDescription> host = Parse(text);
  if (!host) return;
  RequireMembers(*host, text);
  RequireRoundTrip(*host);
  RequireListInside(*host);
}

}  // namespace
}  // namespace fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::Run({reinterpret_cast<const char*>(data), size});
  return 0;
}
