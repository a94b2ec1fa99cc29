#include <memory>

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include "tests/conformance/ResultJson.h"
#include "tests/support/Builders.h"
#include "tests/support/FakeHost.h"

namespace conformance {
namespace {

using nlohmann::json;
using ornwhatsnew::StyleID;

TEST(ResultJson, ReplacesInvalidUtf8) {
  const std::string_view replacement = "\xEF\xBF\xBD";
  EXPECT_EQ(TextJson(std::string_view("a\xC3\xA9\0", 4)), std::string("a\xC3\xA9\0", 4));
  EXPECT_EQ(TextJson(std::string_view("\xFF")), replacement);
  EXPECT_EQ(TextJson(std::u16string_view(u"\xD83D\xDE00")), "\xF0\x9F\x98\x80");
  EXPECT_EQ(TextJson(std::u16string_view(u"\xD83D")), replacement);
  EXPECT_EQ(LineOf(TextJson(std::string_view("\xE2\x80\xA8\n"))), R"("\u2028\n")");
}

TEST(ResultJson, SortsTheElementsOfPersistedLists) {
  const auto sorted = [](std::string_view list) {
    return PersistedListJson(list, ListForm::kSorted);
  };
  EXPECT_EQ(sorted(""), json::array());
  EXPECT_EQ(sorted("b a b"), json::array({"a", "b", "b"}));
  EXPECT_EQ(sorted("b  \xC3\xA9 Z"), json::array({"", "Z", "b", "\xC3\xA9"}));
  EXPECT_EQ(sorted(" "), json::array({"", ""}));
}

TEST(ResultJson, KeepsPersistedListsInTextForm) {
  EXPECT_EQ(PersistedListJson("b a  b", ListForm::kText), "b a  b");
  const std::pair<std::string, std::string> writes[] = {{"WhatsNew.AllSeenItems", "b a"}};
  EXPECT_EQ(WritesJson(writes, ListForm::kText),
            json::parse(R"([["WhatsNew.AllSeenItems","b a"]])"));
}

TEST(ResultJson, SortsOnlyTheTwoPersistedLists) {
  const std::pair<std::string, std::string> writes[] = {
      {"WhatsNew.AllSeenItems", "b a"},
      {"WhatsNew.LastVersionSeenWhatsNew", "b a"},
      {"WhatsNew.AllVersionSeenWhatsNew", ""},
  };
  EXPECT_EQ(WritesJson(writes, ListForm::kSorted),
            json::parse(R"([["WhatsNew.AllSeenItems",["a","b"]],
                            ["WhatsNew.LastVersionSeenWhatsNew","b a"],
                            ["WhatsNew.AllVersionSeenWhatsNew",[]]])"));
}

TEST(ResultJson, UsesStyleNumbersAndKeepsTheOrderOfRuns) {
  ornwhatsnew::StyleRunMap runs;
  runs[StyleID::kStyleRatingPlaceholder] = {{{5, -1}, u"x"}, {{2, 0}, u""}};
  runs[StyleID::kStyleFeatureTitle] = {};
  EXPECT_EQ(RunsJson(runs), json::parse(R"({"0":[],"13":[[5,-1,"x"],[2,0,""]]})"));
}

TEST(ResultJson, DistinguishesAMissingRatingMapFromAnEmptyOne) {
  EXPECT_EQ(RatingItemsJson(nullptr), json());
  EXPECT_EQ(RatingItemsJson(std::make_shared<ornwhatsnew::RatingMap>()), json::object());
}

TEST(ResultJson, ConvertsARatingRecord) {
  const auto items = std::make_shared<ornwhatsnew::RatingMap>();
  const auto item = test_support::MakeItem(
      {.groupingKey = "E", .internalKey = "f", .name = "N", .description = "D", .visibility = 2});
  item->SetCustomRatingStr("How?");
  (*items)["E"] = item;
  EXPECT_EQ(RatingItemsJson(items),
            json::parse(R"({"E":{"internalKey":"f","name":"N","description":"D",
                                 "customRating":"How?","visibility":2}})"));
}

class ItemsJsonTest : public test_support::FakeHostTest {
 protected:
  ornwhatsnew::FeatureListData list_{host_.Getter(), host_.Setter()};
};

TEST_F(ItemsJsonTest, ConvertsOrderAndItems) {
  const auto item = test_support::MakeItem(
      {.groupingKey = "E", .internalKey = "f", .name = "N", .description = "D"},
      {{.version = "25.1",
        .groupingID = "e",
        .storyID = "s",
        .salience = "odd",
        .ratingRequest = "r",
        .firstVersion = "24",
        .platform = "Mac",
        .url = "https://a",
        .sha = "c0",
        .description = "d"},
       {.url = "http://b"}});
  list_.InsertFeatureListItem(item);
  list_.InsertFeatureListItem(item);
  list_.BubbleUnlockedItemsToTheTop();

  const json result = ItemsJson(list_);
  EXPECT_EQ(result["order"], json::array({"UNREVIEWED", "E", "E"}));
  const json& shown = result["items"]["E"];
  EXPECT_EQ(shown["viewMoreURL"], "https://a");
  EXPECT_EQ(shown["seen"], item->GetItemSeenGuid().AsUTF8String());
  EXPECT_EQ(shown["rated"], item->GetItemRatedGuid().AsUTF8String());
  const auto& change = *item->GetAllChanges()[0];
  EXPECT_EQ(shown["changes"][0], json({{"description", "d"},
                                       {"version", "25.1"},
                                       {"epic", "e"},
                                       {"story", "s"},
                                       {"salience", "odd"},
                                       {"firstVersion", "24"},
                                       {"platform", "Mac"},
                                       {"ratingRequest", "r"},
                                       {"url", "https://a"},
                                       {"sha", "c0"},
                                       {"duplicateURL", false},
                                       {"unmatched", false},
                                       {"malformedPlatform", false},
                                       {"malformedSalience", true},
                                       {"malformedURL", false},
                                       {"seen", change.GetItemSeenGuid().AsUTF8String()},
                                       {"rated", change.GetItemRatedGuid().AsUTF8String()}}));
  EXPECT_EQ(shown["changes"][1]["duplicateURL"], true);
  EXPECT_EQ(shown["changes"][1]["malformedURL"], true);
}

TEST_F(ItemsJsonTest, ConvertsAnEmptyEntryToNull) {
  list_.ParseWhatsNewData("");
  list_.BubbleUnlockedItemsToTheTop();
  EXPECT_EQ(ItemsJson(list_), json::parse(R"({"order":["UNREVIEWED"],
                                              "items":{"UNREVIEWED":null}})"));
}

}  // namespace
}  // namespace conformance
