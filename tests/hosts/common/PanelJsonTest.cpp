#include <memory>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <ornwhatsnew/FeatureListItem.h>
#include <nlohmann/json.hpp>

#include "hosts/common/PanelJson.h"
#include "tests/support/LayoutBuilder.h"

namespace hosts::common {
namespace {

using nlohmann::json;
using ornwhatsnew::FeatureListItem;
using ornwhatsnew::StyleID;

TEST(PanelJson, WritesRunsByStyleNumberInRecordedOrder) {
  const ornwhatsnew::StyleRunMap runs = {
      {StyleID::kStyleHotSpot, {{{7, 2}, u"https://a"}, {{1, -1}, u""}}},
      {StyleID::kStyleRatingPlaceholder, {{{0, 3}, u"\u00E9"}}}};
  EXPECT_EQ(json::parse(R"({"6": [[7, 2, "https://a"], [1, -1, ""]], "13": [[0, 3, "é"]]})"),
            RunsJson(runs));
}

TEST(PanelJson, WritesTheRatingMap) {
  const auto items = std::make_shared<ornwhatsnew::RatingMap>();
  const auto item = std::make_shared<FeatureListItem>("EPIC-7", "f.export", "Export", "Faster",
                                                      FeatureListItem::Visibility{1});
  item->SetCustomRatingStr("Better?");
  items->emplace("EPIC-7", item);
  EXPECT_EQ(json::parse(R"({"EPIC-7": {"internalKey": "f.export", "name": "Export",
                            "description": "Faster", "customRating": "Better?", "visibility": 1}})"),
            RatingItemsJson(items));
}

TEST(PanelJson, WritesNullForAMissingRatingMap) {
  EXPECT_EQ(json(), RatingItemsJson(nullptr));
}

TEST(PanelJson, ReplacesIllFormedText) {
  EXPECT_EQ(json("a\uFFFDb"), TextJson(std::string_view("a\xFF"
                                                        "b")));
  const std::u16string unpaired = {u'a', char16_t{0xDC00}};
  EXPECT_EQ(json("a\uFFFD"), TextJson(unpaired));
}

TEST(PanelJson, ListsEachSafeLinkOnce) {
  const ornwhatsnew::StyleRunMap runs = {
      {StyleID::kStyleFeatureTitle, {{{0, 1}, u"https://b"}, {{1, 1}, u"https://a"}}},
      {StyleID::kStyleHotSpot, {{{0, 1}, u"https://b"}, {{2, 1}, u"https://a@b"}}},
      {StyleID::kStyleHeader, {{{0, 1}, u""}}}};
  EXPECT_EQ(json::array({"https://a", "https://b"}), SafeLinksJson(runs));
}

TEST(PanelJson, WritesEachParagraphWithItsSpans) {
  test_support::LayoutBuilder builder;
  builder.Begin(ornwhatsnew::ParagraphKind::kTitle, "EPIC-7")
      .Span(u"Export", StyleID::kStyleFeatureTitle, u"https://a")
      .Span(u" ");
  builder.Begin(ornwhatsnew::ParagraphKind::kChange, "MISC");
  builder.Last().isSection = true;
  builder.Last().hasText = false;
  EXPECT_EQ(json::parse(R"([
    {"kind": "title", "indentLevel": 0, "bullet": "", "hasText": true, "itemKey": "EPIC-7",
     "isSection": false, "text": "Export ",
     "spans": [{"text": "Export", "style": 0, "link": "https://a"},
               {"text": " ", "style": null, "link": ""}]},
    {"kind": "change", "indentLevel": 1, "bullet": "•", "hasText": false, "itemKey": "MISC",
     "isSection": true, "text": "", "spans": []}])"),
            ParagraphsJson(builder.Layout()));
}

TEST(PanelJson, NamesTheKindOfEachParagraph) {
  using enum ornwhatsnew::ParagraphKind;
  test_support::LayoutBuilder builder;
  for (const auto kind : {kHeader, kTitle, kDescription, kChange, kNotice, kRatingRequest})
    builder.Begin(kind, "MISC");
  std::vector<std::string> names;
  for (const json& paragraph : ParagraphsJson(builder.Layout()))
    names.push_back(paragraph.at("kind"));
  EXPECT_THAT(names, testing::ElementsAre("header", "title", "description", "change", "notice",
                                          "ratingRequest"));
}

TEST(PanelJson, WritesTheRatingRequestInItsParagraph) {
  test_support::LayoutBuilder builder;
  builder.Rating(u"Better?", u"Faster");
  const json paragraphs = ParagraphsJson(builder.Layout());
  EXPECT_EQ("ratingRequest", paragraphs.at(0).at("kind"));
  EXPECT_EQ(json::parse(R"({"title": "", "question": "Better?", "description": "Faster"})"),
            paragraphs.at(0).at("rating"));
}

TEST(PanelJson, WritesTextRunsLinksRatingItemsAndParagraphs) {
  EXPECT_EQ(json::parse(R"({"text": "T", "runs": {"0": [[0, 1, ""]]}, "safeLinks": [],
                            "ratingItems": {}, "paragraphs": []})"),
            PanelJson(u"T", {{StyleID{0}, {{{0, 1}, u""}}}},
                      std::make_shared<ornwhatsnew::RatingMap>(), {}));
}

}  // namespace
}  // namespace hosts::common
