#include "hosts/common/PanelJson.h"

#include <cstdint>
#include <set>
#include <string>
#include <utility>

#include <orncore/string/Conversion.h>
#include <orncore/string/SafeLink.h>
#include <ornwhatsnew/FeatureListItem.h>
#include <nlohmann/json.hpp>

namespace hosts::common {

using nlohmann::json;

namespace {

json RatingItemJson(const ornwhatsnew::FeatureListItem& item) {
  return {{"internalKey", TextJson(item.GetBetaFeatureInternalKey())},
          {"name", TextJson(item.GetFeatureName())},
          {"description", TextJson(item.GetFeatureDescription())},
          {"customRating", TextJson(item.GetCustomRatingStr())},
          {"visibility", static_cast<std::int32_t>(item.GetVisibility())}};
}

const char* KindName(ornwhatsnew::ParagraphKind kind) {
  switch (kind) {
    case ornwhatsnew::ParagraphKind::kHeader:
      return "header";
    case ornwhatsnew::ParagraphKind::kTitle:
      return "title";
    case ornwhatsnew::ParagraphKind::kDescription:
      return "description";
    case ornwhatsnew::ParagraphKind::kChange:
      return "change";
    case ornwhatsnew::ParagraphKind::kNotice:
      return "notice";
    case ornwhatsnew::ParagraphKind::kRatingRequest:
      return "ratingRequest";
  }
  return "";
}

json SpansJson(const ornwhatsnew::PanelLayout& layout,
               const ornwhatsnew::LayoutParagraph& paragraph) {
  json array = json::array();
  for (const auto& [range, style, link] : paragraph.spans) {
    array.push_back({{"text", TextJson(layout.text.substr(range.begin, range.length))},
                     {"style", style ? json(static_cast<int>(*style)) : json()},
                     {"link", TextJson(link)}});
  }
  return array;
}

json RatingRequestJson(const ornwhatsnew::RatingRequest& request) {
  return {{"title", TextJson(request.title)},
          {"question", TextJson(request.question)},
          {"description", TextJson(request.description)}};
}

}  // namespace

std::string ToJsonText(const json& value) {
  return value.dump(2, ' ', true) + "\n";
}

json TextJson(std::string_view text) {
  return TextJson(orncore::string::UTF8to16(text));
}

json TextJson(std::u16string_view text) {
  return orncore::string::UTF16to8(text);
}

json RunsJson(std::span<const ornwhatsnew::StyleRun> runs) {
  json array = json::array();
  for (const auto& [range, string] : runs) {
    array.push_back(json::array({range.first, range.second, TextJson(string)}));
  }
  return array;
}

json RunsJson(const ornwhatsnew::StyleRunMap& runs) {
  json object = json::object();
  for (const auto& [style, styleRuns] : runs) {
    object[std::to_string(static_cast<int>(style))] = RunsJson(styleRuns);
  }
  return object;
}

json RatingItemsJson(const std::shared_ptr<const ornwhatsnew::RatingMap>& items) {
  if (items == nullptr) return nullptr;
  json object = json::object();
  for (const auto& [key, item] : *items) {
    object[TextJson(key).get<std::string>()] = item == nullptr ? json() : RatingItemJson(*item);
  }
  return object;
}

json SafeLinksJson(const ornwhatsnew::StyleRunMap& runs) {
  std::set<std::string> links;
  for (const auto& [style, styleRuns] : runs) {
    for (const auto& [range, string] : styleRuns) {
      if (orncore::string::IsSafeLink(string)) links.insert(orncore::string::UTF16to8(string));
    }
  }
  return links;
}

json ParagraphsJson(const ornwhatsnew::PanelLayout& layout) {
  json array = json::array();
  for (const ornwhatsnew::LayoutParagraph& paragraph : layout.paragraphs) {
    const auto& [begin, length] = paragraph.range;
    json object = {{"kind", KindName(paragraph.kind)},
                   {"indentLevel", paragraph.indentLevel},
                   {"bullet", TextJson(paragraph.bullet)},
                   {"hasText", paragraph.hasText},
                   {"itemKey", TextJson(paragraph.itemKey)},
                   {"isSection", paragraph.isSection},
                   {"text", TextJson(layout.text.substr(begin, length))},
                   {"spans", SpansJson(layout, paragraph)}};
    if (paragraph.rating) {
      object["rating"] = RatingRequestJson(layout.ratingRequests[*paragraph.rating]);
    }
    array.push_back(std::move(object));
  }
  return array;
}

json PanelJson(std::u16string_view text, const ornwhatsnew::StyleRunMap& runs,
               const std::shared_ptr<const ornwhatsnew::RatingMap>& items,
               const ornwhatsnew::PanelLayout& layout) {
  return {{"text", TextJson(text)},
          {"runs", RunsJson(runs)},
          {"safeLinks", SafeLinksJson(runs)},
          {"ratingItems", RatingItemsJson(items)},
          {"paragraphs", ParagraphsJson(layout)}};
}

}  // namespace hosts::common
