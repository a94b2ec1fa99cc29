#include "tests/conformance/CallFunctions.h"

#include <algorithm>
#include <array>

#include <ornwhatsnew/FeatureListData.h>
#include <ornwhatsnew/FeatureListDetail.h>
#include <ornwhatsnew/FeatureListItem.h>
#include <ornwhatsnew/WhatsNewTypes.h>
#include <ornwhatsnew/utility/TextHelpers.h>
#include <nlohmann/json.hpp>

#include "tests/conformance/ResultJson.h"

namespace conformance {

using nlohmann::json;
using ornwhatsnew::FeatureListData;

namespace {

using Arguments = std::span<const std::string>;

json CallParseVersion(Arguments arguments, const FeatureListData*) {
  const ornwhatsnew::FeatureListDetail detail({});
  return detail.ParseVersionStringToNumber(arguments[0]);
}

constexpr auto kFunctions = std::to_array<CallFunction>({
    {"IsZString", 1, false,
     [](Arguments arguments, const FeatureListData*) -> json {
       return ornwhatsnew::IsZString(arguments[0]);
     }},
    {"ExtractHashablePortion", 1, false,
     [](Arguments arguments, const FeatureListData*) {
       return TextJson(ornwhatsnew::ExtractHashablePortion(arguments[0]));
     }},
    {"CaseInsensitiveEqual", 2, false,
     [](Arguments arguments, const FeatureListData*) -> json {
       return ornwhatsnew::CaseInsensitiveEqual(arguments[0], arguments[1]);
     }},
    {"LowerCase8", 1, false,
     [](Arguments arguments, const FeatureListData*) {
       return TextJson(ornwhatsnew::LowerCase8(arguments[0]));
     }},
    {"IsSpecialCaseSection", 1, false,
     [](Arguments arguments, const FeatureListData*) -> json {
       return ornwhatsnew::IsSpecialCaseSection(arguments[0]);
     }},
    {"IsInternalSpecialCaseSection", 1, false,
     [](Arguments arguments, const FeatureListData*) -> json {
       return ornwhatsnew::IsInternalSpecialCaseSection(arguments[0]);
     }},
    {"ParseVersionStringToNumber", 1, false, CallParseVersion},
    {"LocalizeIfNecessary", 1, true,
     [](Arguments arguments, const FeatureListData* list) {
       return TextJson(list->LocalizeIfNecessary(arguments[0]));
     }},
    {"GetFullClientVersionString", 0, false,
     [](Arguments, const FeatureListData*) {
       return TextJson(ornwhatsnew::GetFullClientVersionString());
     }},
    {"ShowingAllOffFeaturesInternally", 0, false,
     [](Arguments, const FeatureListData*) -> json {
       return ornwhatsnew::ShowingAllOffFeaturesInternally();
     }},
    {"AnalyticsDisabled", 0, false,
     [](Arguments, const FeatureListData*) -> json {
       return ornwhatsnew::FeatureListItem::AnalyticsDisabled();
     }},
});

}  // namespace

const CallFunction* FindCallFunction(std::string_view name) {
  const auto found = std::ranges::find(kFunctions, name, &CallFunction::name);
  return found == kFunctions.end() ? nullptr : &*found;
}

}  // namespace conformance
