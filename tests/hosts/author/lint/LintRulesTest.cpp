// Tests special cases of the rules of `lint`, such as other separators and very long rows.
// LintCodesTest tests each code with one data file.
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/hosts/author/lint/LintTestFiles.h"

namespace hosts::author {
namespace {

using testing::Contains;
using testing::Not;

TEST(LintRules, FirstChangeWithOnlyASalienceIsNoHeader) {
  EXPECT_THAT(CodesOf(LintText(",MAP-7,,Headline,,,,,,Text\n")), Contains("header-missing"));
}

TEST(LintRules, FirstChangeOfAFeatureOfTheHostIsNoHeader) {
  const LintHost host = InstallLintHost(TestFile("host.json").native());
  const std::string text = ",MAP-7,,,,,,,,Text\n";
  EXPECT_THAT(CodesOf(LintDataFile("data.csv", text, &host)), Contains("header-missing"));
}

TEST(LintRules, TranslatedHeaderIsAHeader) {
  const std::string header = "Version,Gruppe,Vorgang,Rang,Frage,Ab,System,Verweis,Commit,Text\n";
  EXPECT_THAT(CodesOf(LintText(header + "4.3,MISC,,,,,,,,Text\n")),
              Not(Contains("header-missing")));
}

TEST(LintRules, FiveColumnNamesInAnotherLanguageAreAShortHeader) {
  EXPECT_THAT(CodesOf(LintText("Fassung,Gruppe,Vorgang,Rang,Frage\n4.3,MISC,ORN-1,,,,,,,Text\n")),
              Contains("header-width"));
}

TEST(LintRules, NamesTheFirstWrongColumnOfTheHeader) {
  const LintReport report = LintText(
      "Jira ID,Grouping ID,App Version,Salience,Rating,First Version,Platform,URL,Commit,"
      "Message\n4.2,Changes-Since\n4.3,MISC,ORN-1,,,,,,,Text\n");
  ASSERT_THAT(CodesOf(report), testing::ElementsAre("header-order"));
  EXPECT_EQ(report.findings.front().fieldNumber, 1U);
}

TEST(LintRules, ListsTheFirstTenFeaturesWithoutAChange) {
  LintHost host;
  for (int i = 10; i < 21; ++i) {
    const std::string number = std::to_string(i);
    host.description.betaFeatures.push_back(
        {"feature." + number, "EPIC-" + number, "Feature", "", 0, true, true});
  }
  common::InstallHost(host.description);
  const std::string text = kHeaderRows + "4.3,EPIC-10,,,,,,,,Text\n";
  const auto message = [&host](const std::string& rows) {
    const LintReport report = LintDataFile("data.csv", rows, &host);
    EXPECT_THAT(CodesOf(report), testing::ElementsAre("feature-without-change"));
    return report.findings.front().message;
  };
  EXPECT_THAT(message(text), testing::EndsWith("'EPIC-19', 'EPIC-20'"));
  EXPECT_THAT(message(kHeaderRows + "4.3,MISC,,,,,,,,Text\n"),
              testing::EndsWith("'EPIC-18', 'EPIC-19' and others"));
}

TEST(LintRules, NamesTheSeparatorOfAFileWithoutCommas) {
  for (const auto& [separator, name] :
       {std::pair(';', "semicolons"), std::pair('\t', "tabs"), std::pair('|', "vertical bars")}) {
    std::string text = kHeaderRows + "4.3,MISC,,,,,,,,Text\n";
    std::ranges::replace(text, ',', separator);
    const LintReport report = LintText(text);
    ASSERT_THAT(CodesOf(report), testing::ElementsAre("file-separator")) << name;
    EXPECT_THAT(report.findings.front().message, testing::HasSubstr(name));
  }
}

TEST(LintRules, TextWithAnOpenQuoteDoesNotContinueInAnotherChange) {
  const std::string first = "4.3,MISC,ORN-1,,,,,,,Fits a 27\" display\n";
  for (const std::string start : {"4.3,MISC", ",MISC", "4.3,MAP-7"}) {
    const LintReport report =
        LintText(kHeaderRows + first + start + ",ORN-2,,,,,,,Fits a 32\" display\n");
    EXPECT_EQ(std::ranges::count(CodesOf(report), "quotes-vanish"), 2) << start;
  }
}

TEST(LintRules, FindsQuotesThatVanish) {
  for (const std::string row :
       {R"(4.3,MISC,"ORN-1",,,,,,,The "start" window)", R"(4.3,MISC,ORN-1,,,,,,,"Start" window)",
        R"(4.3,MISC,ORN-1,,,,,,,"Start"~window)", R"(4.3,MISC,ORN-1,,,,,,,The "start")",
        R"(4.3,MISC,ORN-1,,,,,,,A"start")"}) {
    EXPECT_THAT(CodesOf(LintText(kHeaderRows + row + "\n")), testing::ElementsAre("quotes-vanish"))
        << row;
  }
}

TEST(LintRules, FindsEachKindOfWrongQuotes) {
  for (const std::string text :
       {"\u201Cfast, small, new\u201D", "\u201Efast, small, new\u201C",
        "\u201Efast, small, new\u201D", "\u00ABfast, small, new\u00BB",
        "\u00BBfast, small, new\u00AB", "\u2018fast, small, new\u2019", "'fast, small, new'"}) {
    EXPECT_THAT(CodesOf(LintText(kHeaderRows + "4.3,MISC,ORN-1,,,,,,," + text + "\n")),
                Contains("wrong-quotes"))
        << text;
  }
}

TEST(LintRules, FindsUTF16WithoutLatinLetters) {
  EXPECT_THAT(CodesOf(LintText("\xFF\xFE\x48\x72")), testing::ElementsAre("file-utf16"));
  EXPECT_THAT(CodesOf(LintText("\xFE\xFF\x72\x48")), testing::ElementsAre("file-utf16"));
}

TEST(LintRules, FindsAByteOrderMarkAfterTheFirstCharacter) {
  EXPECT_THAT(CodesOf(LintText("A\uFEFF" + kHeaderRows.substr(1) + "4.3,MISC,ORN-1,,,,,,,Text\n")),
              Contains("inner-byte-order-mark"));
}

TEST(LintRules, FindsMojibakeOfLettersMarksAndEmoji) {
  for (const std::string text :
       {"\u00C3\u00B6", "\u00C3\u0160", "\u00C3\u0192", "\u00C3\u02C6", "\u00C3\u20AC",
        "\u00C2\u00A9", "\u00E2\u20AC\u2122", "\u00F0\u0178\u02DC\u20AC"}) {
    EXPECT_THAT(CodesOf(LintText(kHeaderRows + "4.3,MISC,ORN-1,,,,,,," + text + "\n")),
                testing::ElementsAre("mojibake"))
        << text;
  }
  for (const std::string text : {"S\u00C3O", "S\u00C3", "\u00C3\u00C0"}) {
    EXPECT_THAT(CodesOf(LintText(kHeaderRows + "4.3,MISC,ORN-1,,,,,,," + text + "\n")),
                testing::IsEmpty())
        << text;
  }
}

TEST(LintRules, FindsEveryTagAndEntity) {
  std::vector<std::string> markup = {"<br>",     "<br/>",   "<br />", "<p>",     "<BR>",
                                     "<hr>",     "&amp;",   "&lt;",   "&gt;",    "&quot;",
                                     "&nbsp;",   "&apos;",  "&#39;",  "&mdash;", "&ndash;",
                                     "&hellip;", "&#8217;", "&rsquo;"};
  for (const std::string tag :
       {"a",    "b",   "i",     "u",   "em",  "strong", "p",   "li", "ul", "ol", "span", "div",
        "code", "pre", "small", "sub", "sup", "tt",     "kbd", "h1", "h2", "h3", "h4",   "font"}) {
    markup.push_back("<" + tag + ">the map</" + tag + ">");
  }
  for (const std::string& text : markup) {
    const LintReport report = LintText(kHeaderRows + "4.3,MISC,ORN-1,,,,,,,See " + text + " now\n");
    ASSERT_THAT(CodesOf(report), testing::ElementsAre("html")) << text;
  }
}

TEST(LintRules, AWordThatIsNoQuestionIsNoRatingRequest) {
  for (const std::string word :
       {"yes", "y",  "true",  "x",  "1",    "on",     "ok",      "ja",    "oui",  "si",
        "no",  "n",  "false", "0",  "off",  "nein",   "non",     "none",  "null", "nil",
        "n/a", "na", "-",     "--", "rate", "rating", "request", "\u2714"}) {
    EXPECT_THAT(CodesOf(LintText(kHeaderRows + "4.3,MAP-7,ORN-1,," + word + ",,,,,Text\n")),
                Contains("rating-request-word"))
        << word;
  }
}

TEST(LintRules, AShortQuestionIsARatingRequest) {
  EXPECT_THAT(CodesOf(LintText(kHeaderRows + "4.3,MAP-7,ORN-1,,RequestRatin?,,,,,Text\n")),
              Not(Contains("rating-request-word")));
}

TEST(LintRules, FindsAKeywordBeforeAnotherWord) {
  EXPECT_THAT(CodesOf(LintText(kHeaderRows + "4.3,MISC,ORN-1,Headline now,,,,,,Text\n")),
              testing::ElementsAre("salience-two-words"));
}

TEST(LintRules, FindsClosingTagsInAnyLetterCase) {
  EXPECT_THAT(CodesOf(LintText(kHeaderRows + "4.3,MISC,ORN-1,,,,,,,The <B>big</b> map\n")),
              testing::ElementsAre("html"));
}

TEST(LintRules, AnotherTagDoesNotOpenAClosingTag) {
  for (const std::string text :
       {"The </b> tag after <body>", "</b> and <b>", "<b></b and", "<b><//b>"}) {
    EXPECT_THAT(CodesOf(LintText(kHeaderRows + "4.3,MISC,ORN-1,,,,,,," + text + "\n")),
                testing::IsEmpty())
        << text;
  }
}

TEST(LintRules, ShortensALongColumnName) {
  const std::string name(1'000, 'x');
  const LintReport report = LintText("v,g,3,4,5,6,7,8,9," + name +
                                     "\n4.2,Changes-Since\n"
                                     "4.3,MISC,,,,,,,,See https://a.example\n");
  ASSERT_THAT(CodesOf(report), testing::ElementsAre("link-in-text"));
  EXPECT_THAT(report.findings.front().fieldName, testing::SizeIs(testing::Lt(300U)));
}

TEST(LintRules, MessageOmitsTheParenthesisOfALongColumnName) {
  const LintReport report = LintText(
      "App Version,Grouping ID (BUGFIX/MISC/EPICS),Jira ID (Story / Task / Error),"
      "Salience,Rating,First Version,Platform,URL,Commit,Message\n"
      "4.2,Changes-Since\n"
      "4.3,,ORN-1,,,,,,,Text\n"
      "4.3,MISC,Headline,,,,,,,Text\n");
  ASSERT_THAT(CodesOf(report), testing::ElementsAre("grouping-id-empty", "keyword-column"));
  EXPECT_THAT(report.findings[0].message, testing::EndsWith(" into \"Grouping ID\""));
  EXPECT_THAT(report.findings[1].message,
              testing::HasSubstr(" in \"Jira ID (Story / Task / Error)\";"));
}

TEST(LintRules, DoesNotExplainARowWithVeryManyFields) {
  const LintReport report = LintText(kHeaderRows + std::string(50'000, ',') + "\n");
  ASSERT_THAT(CodesOf(report), testing::Contains("field-count"));
  EXPECT_THAT(report.findings.back().message,
              testing::EndsWith("its change is lost; write a row with ten fields"));
}

// If the reader compared the inherited grouping ID with `Changes-Since` for each row, this test
// would take minutes.
TEST(LintRules, ReadsManyShortRowsAfterALongGroupingID) {
  std::string text = kHeaderRows + "4.3,";
  for (int i = 0; i < 500'000; ++i) text += "\u00E9";
  text += ",,,,,,,,Text\n";
  for (int i = 0; i < 100'000; ++i) text += "line\n";
  EXPECT_EQ(LintText(text).changes, 1U);
}

}  // namespace
}  // namespace hosts::author
