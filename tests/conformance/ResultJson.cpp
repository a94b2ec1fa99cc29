#include "tests/conformance/ResultJson.h"

#include <cstdint>

#include <ornwhatsnew/FeatureListDetail.h>
#include <ornwhatsnew/FeatureListItem.h>
#include <nlohmann/json.hpp>

#include "tests/support/Matchers.h"

namespace conformance {

using namespace ornwhatsnew;
using nlohmann::json;

namespace {

json ChangeJson(const FeatureListDetail& change) {
  return {{"description", TextJson(change.GetDescription())},
          {"version", TextJson(change.GetChangeAddedVersion())},
          {"epic", TextJson(change.GetJIRAEpicID())},
          {"story", TextJson(change.GetJIRAStoryBugTaskID())},
          {"salience", TextJson(change.GetSalienceOptional())},
          {"firstVersion", TextJson(change.GetRelevantFirstVersionOptional())},
          {"platform", TextJson(change.GetRelevantPlatformOptional())},
          {"ratingRequest", TextJson(change.GetRatingRequestOptional())},
          {"url", TextJson(change.GetViewMoreURLOptional())},
          {"sha", TextJson(change.GetSHAOptional())},
          {"duplicateURL", change.HasDuplicateURL()},
          {"unmatched", change.DetailInternalCouldNotMatchBetaFeature()},
          {"malformedPlatform", change.HasMalformedPlatform()},
          {"malformedSalience", change.HasMalformedSalience()},
          {"malformedURL", change.HasMalformedURL()},
          {"seen", change.GetItemSeenGuid().AsUTF8String()},
          {"rated", change.GetItemRatedGuid().AsUTF8String()}};
}

std::int32_t VisibilityOf(const FeatureListItem& item) {
  return static_cast<std::int32_t>(item.GetVisibility());
}

json ItemJson(const FeatureListItem& item) {
  json changes = json::array();
  for (const auto& change : item.GetAllChanges()) changes.push_back(ChangeJson(*change));
  return {{"internalKey", TextJson(item.GetBetaFeatureInternalKey())},
          {"internalOverride", item.IsItemInternalOverride()},
          {"visibility", VisibilityOf(item)},
          {"name", TextJson(item.GetFeatureName())},
          {"description", TextJson(item.GetFeatureDescription())},
          {"viewMoreURL", TextJson(item.GetFeatureViewMoreURL())},
          {"prefsUI", TextJson(item.GetFeaturePrefsUI())},
          {"customRating", TextJson(item.GetCustomRatingStr())},
          {"seen", item.GetItemSeenGuid().AsUTF8String()},
          {"rated", item.GetItemRatedGuid().AsUTF8String()},
          {"changes", std::move(changes)}};
}

}  // namespace

std::string LineOf(const json& value) {
  return value.dump(-1, ' ', true, json::error_handler_t::replace);
}

json PersistedListJson(std::string_view persistedList, ListForm form) {
  if (form == ListForm::kText) return TextJson(persistedList);
  json elements = json::array();
  for (const std::string& element : test_support::SortedPieces(persistedList)) {
    elements.push_back(TextJson(element));
  }
  return elements;
}

json PersistedValueJson(std::string_view key, std::string_view value, ListForm form) {
  const bool isList = key == "WhatsNew.AllSeenItems" || key == "WhatsNew.AllVersionSeenWhatsNew";
  return isList ? PersistedListJson(value, form) : TextJson(value);
}

json WritesJson(std::span<const std::pair<std::string, std::string>> writes, ListForm form) {
  json array = json::array();
  for (const auto& [key, value] : writes) {
    array.push_back(json::array({TextJson(key), PersistedValueJson(key, value, form)}));
  }
  return array;
}

json ItemsJson(const FeatureListData& list) {
  json order = json::array();
  for (const std::string& key : list.GetOrderedFeatureKeys()) order.push_back(TextJson(key));
  json items = json::object();
  for (const auto& [key, item] : list.GetFeatureItems()) {
    items[TextJson(key).get<std::string>()] = item ? ItemJson(*item) : json();
  }
  return {{"order", std::move(order)}, {"items", std::move(items)}};
}

}  // namespace conformance
