#include "hosts/author/MessageTemplate.h"

#include <string>
#include <string_view>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "hosts/common/HostDescription.h"

namespace hosts::author {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

using std::string_literals::operator""s;

constexpr std::string_view kHeaderLine = "h1,h2,h3,h4,h5,h6,h7,h8,h9,h10\n";

/// Returns the entries of `messages` without the header entry.
std::string EntriesOf(const MessageTemplate& messages) {
  const std::string text = messages.Format();
  const std::size_t end = text.find("\n\n");
  return end == std::string::npos ? "" : text.substr(end + 2);
}

std::string EntriesOfDescription(std::string_view description) {
  MessageTemplate messages;
  messages.AddDataFile(
      "a.csv", std::string(kHeaderLine) + ",MISC,,,,,,,," + std::string(description) + "\n");
  return EntriesOf(messages);
}

TEST(MessageTemplate, ContainsTheLocalisedColumnsOfADataFile) {
  MessageTemplate messages;
  messages.AddDataFile("a b.csv", std::string(kHeaderLine) +
                                      "$$$/v=4.3,MISC,,,$$$/rating=R,$$$/F=4.2,,,,$$$/text=Text\n"
                                      "$$$/since=4.1,Changes-Since\n"
                                      "1,,,,,,,,,$$$/skipped=Skipped\n");
  EXPECT_EQ(EntriesOf(messages),
            "#: \u2068a b.csv\u2069:2\nmsgctxt \"$$$/v\"\nmsgid \"4.3\"\nmsgstr \"\"\n\n"
            "#: \u2068a b.csv\u2069:2\nmsgctxt \"$$$/rating\"\nmsgid \"R\"\nmsgstr \"\"\n\n"
            "#: \u2068a b.csv\u2069:2\nmsgctxt \"$$$/f\"\nmsgid \"4.2\"\nmsgstr \"\"\n\n"
            "#: \u2068a b.csv\u2069:2\nmsgctxt \"$$$/text\"\nmsgid \"Text\"\nmsgstr \"\"\n");
}

TEST(MessageTemplate, OmitsTextsWithoutATranslation) {
  for (const std::string_view text :
       {"", "Text", "$$$/a", "$$$/a=", "$$$/a=#{comment}note", "$$$/private/a=Text"}) {
    EXPECT_EQ("", EntriesOfDescription(text)) << text;
  }
}

TEST(MessageTemplate, WritesTheCommentForTranslators) {
  EXPECT_EQ(
      "#. Keep it short.\n#: a.csv:2\nmsgctxt \"$$$/a\"\nmsgid \"A #{mdash} ^[b^]\"\n"
      "msgstr \"\"\n",
      EntriesOfDescription("$$$/a=A #{mdash} ^[b^]#{comment}Keep it short."));
}

TEST(MessageTemplate, EscapesTheStringsOfAPoFile) {
  EXPECT_THAT(EntriesOfDescription("$$$/a\\=\\n\tb\x1B\x7F"),
              HasSubstr("msgctxt \"$$$/a\\\\\"\nmsgid \"\\\\n\\tb\\033\\177\"\n"));
  EXPECT_THAT(EntriesOfDescription("$$$/a=b#{comment}\x1B[1m\xE2\x80\xAE"),
              HasSubstr("#. \\u001b[1m\\u202e\n"));
}

TEST(MessageTemplate, MergesEqualTextsAndReportsDifferentOnes) {
  MessageTemplate messages;
  messages.AddDataFile("a.csv", std::string(kHeaderLine) + ",MISC,,,,,,,,$$$/a=A\n" +
                                    ",MISC,,,,,,,,$$$/a=A#{comment}note\n");
  messages.AddDataFile("b.csv", std::string(kHeaderLine) + ",MISC,,,,,,,,$$$/a=B\n");
  EXPECT_EQ("#. note\n#: a.csv:2\n#: a.csv:3\nmsgctxt \"$$$/a\"\nmsgid \"A\"\nmsgstr \"\"\n",
            EntriesOf(messages));
  EXPECT_THAT(messages.Warnings(),
              ElementsAre(HasSubstr("b.csv:2: the key '$$$/a' has a different default text")));
}

TEST(MessageTemplate, ReportsATextThatGettextCannotContain) {
  MessageTemplate messages;
  messages.AddDataFile("a.csv", std::string(kHeaderLine) + ",MISC,,,,,,,,$$$/a=A\0B\n"s);
  EXPECT_EQ("", EntriesOf(messages));
  EXPECT_THAT(messages.Warnings(), ElementsAre(HasSubstr("a.csv:2: ")));
}

TEST(MessageTemplate, ContainsTheTextsOfAFeatureTable) {
  const std::string json = R"({"betaFeatures": [
  {"name": "$$$/f/name=Map",
   "description": "$$$\/f\/description=Shows \"maps\"."},
  {"name": "Plain"}]})";
  MessageTemplate messages;
  messages.AddFeatureTable("host.json", json, common::ParseHostDescription(json, "host.json"));
  EXPECT_EQ(EntriesOf(messages),
            "#: host.json:2\nmsgctxt \"$$$/f/name\"\nmsgid \"Map\"\nmsgstr \"\"\n\n"
            "#: host.json\nmsgctxt \"$$$/f/description\"\nmsgid \"Shows \\\"maps\\\".\"\n"
            "msgstr \"\"\n");
}

TEST(MessageTemplate, ContainsTheLibrarysOwnTexts) {
  MessageTemplate messages;
  messages.AddPanelTexts();
  const std::string entries = EntriesOf(messages);
  EXPECT_THAT(entries, HasSubstr("#: ornwhatsnew/PanelText.h\n"
                                 "msgctxt \"$$$/ornwhatsnew/Feature/Item/ViewMore/ViewMore\"\n"
                                 "msgid \"View more\"\n"));
  EXPECT_THAT(entries, HasSubstr("msgid \"\\tYou^}re all caught up.#{endl}#{endl}\"\n"));
  EXPECT_THAT(entries, HasSubstr("#. this is followed by a URL, and then Part2;"));
  EXPECT_THAT(entries, HasSubstr("msgctxt \"$$$/ornwhatsnew/SectionKey/Unreviewed\"\n"));
  EXPECT_THAT(entries, Not(HasSubstr("private")));
  EXPECT_THAT(messages.Warnings(), IsEmpty());
}

}  // namespace
}  // namespace hosts::author
