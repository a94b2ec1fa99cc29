// Tests the limits of the rules for the shape and the fields of a row. LintCodesTest tests each
// code with one data file.
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "hosts/author/lint/LintFix.h"
#include "tests/hosts/author/lint/LintTestFiles.h"

namespace hosts::author {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

/// Returns the codes of the findings in a data file whose last row is `row`.
std::vector<std::string> CodesOfLastRow(const std::string& row) {
  return CodesOf(LintText(kHeaderRows + row + "\n"));
}

/// Returns `row` after all corrections.
std::string CorrectedRow(const std::string& row) {
  const std::string text = kHeaderRows + row + "\n";
  const std::string fixed =
      FixDataFile("data.csv", text, LintText(text), FixScope::kAll, nullptr).text;
  return fixed.substr(kHeaderRows.size(), fixed.size() - kHeaderRows.size() - 1);
}

TEST(FieldRules, KeyWithoutADefaultTextIsAWarningWithoutAHost) {
  const LintReport report = LintText(kHeaderRows + "4.3,MISC,ORN-1,,,,,,,$$$/rules/news\n");
  ASSERT_THAT(CodesOf(report), ElementsAre("key-no-default"));
  EXPECT_EQ(report.findings.front().severity, Severity::kWarning);
}

TEST(FieldRules, CommentBeforeTheHeaderIsReported) {
  EXPECT_THAT(CodesOf(LintText("# A comment\n" + kHeaderRows + "4.3,MISC,,,,,,,,Text\n")),
              Contains("comment-line"));
}

TEST(FieldRules, ExplainsARowWithTwentyThousandFields) {
  EXPECT_THAT(CodesOfLastRow(std::string(19'999, ',')), Contains("trailing-comma"));
  EXPECT_THAT(CodesOfLastRow(std::string(20'000, ',')), Contains("field-count"));
}

TEST(FieldRules, IssueKeyHasLettersAHyphenAndDigits) {
  for (const std::string issues : {"A-1,B-2", "Z-1,z-2", "a-1,#2"}) {
    EXPECT_THAT(CodesOfLastRow("4.3,MISC," + issues + ",,,,,,,Text"), ElementsAre("issue-list"))
        << issues;
  }
  for (const std::string issues :
       {"-1,-2", "1,2", "1-2,3-4", "a_b-1,a_b-2", "a|b-1,a|b-2", "ORN,MAP", "A-,B-", "A.1,B.2"}) {
    EXPECT_THAT(CodesOfLastRow("4.3,MISC," + issues + ",,,,,,,Text"), Not(Contains("issue-list")))
        << issues;
  }
}

TEST(FieldRules, QuotedTextContinuesOnAtMostFiftyLines) {
  const auto reportOn = [](int lines) {
    std::string text = kHeaderRows + "4.3,MISC,ORN-1,,,,,,,\"The first line\n";
    for (int i = 1; i < lines; ++i) text += "another line\n";
    return LintText(text + "and the last one\"\n");
  };
  const LintReport report = reportOn(50);
  ASSERT_THAT(CodesOf(report), ElementsAre("text-over-lines"));
  EXPECT_EQ(report.findings.front().place.endLine, 53U);
  EXPECT_THAT(CodesOf(reportOn(51)), Not(Contains("text-over-lines")));
}

TEST(FieldRules, QuotedTextDoesNotContinueAfterASkippedChange) {
  EXPECT_THAT(CodesOfLastRow("4.3,MISC,ORN-1,,,,,,,Fits a 27\" display\n"
                             "4.3,MISC,ORN-2,,,Text\n"
                             "Fits a 32\" display"),
              Not(Contains("text-over-lines")));
}

TEST(FieldRules, TwoAdjacentQuotesDoNotOpenAText) {
  EXPECT_THAT(CodesOfLastRow("4.3,MISC,ORN-1,,,,,,,\"Fits a 27\"\" display\"\nor a 32\" display"),
              Not(Contains("text-over-lines")));
}

TEST(FieldRules, QuotesAroundFieldsDoNotVanish) {
  for (const std::string row :
       {R"(4.3,MISC,"",,,,,,,"Faster, and smaller")", R"("4.3","MISC",ORN-1,,,,,,,Text)",
        "4.3,MISC,ORN-1,,,,,,,\"Faster, and smaller\"\r",
        "4.3,\"MISC\",ORN-1,,,,,,,\"Faster, and smaller\"\r"}) {
    EXPECT_THAT(CodesOfLastRow(row), IsEmpty()) << row;
  }
}

TEST(FieldRules, FindsVanishingQuotesAtTheEndsOfAField) {
  for (const std::string row :
       {R"(4.3,MISC,ORN-1,,,,,,,"Start window)", R"(4.3,MISC,ORN-1,,,,,,,")",
        R"(4.3,MISC,ORN-1,,,,,,,"Start"s)", R"(4.3,MISC,ORN-1,,,,,,,"Fast," they say)",
        R"(4.3,MISC,ORN-1,,,,,,,Fits 27", or 32")", R"(4.3,MISC,"",,,,,,,Fits 27")",
        R"(4.3,MISC,"ORN-1"s,,,,,,,Text)", R"(v"4.3",MISC,ORN-1,,,,,,,Text)"}) {
    EXPECT_THAT(CodesOfLastRow(row), Contains("quotes-vanish")) << row;
  }
}

TEST(FieldRules, VanishingQuoteNamesItsField) {
  const LintReport report = LintText(kHeaderRows + "4.3,MISC,ORN-1,,,,,,,Fits 27\"\n");
  ASSERT_THAT(CodesOf(report), ElementsAre("quotes-vanish"));
  EXPECT_EQ(report.findings.front().fieldNumber, 10U);
  EXPECT_EQ(report.findings.front().fieldName, "Message");
}

TEST(FieldRules, QuotesInTheMiddleOfATextDoNotEncloseIt) {
  for (const std::string text :
       {"\u201Cfast, small\u201D", "\u201Efast, small\u201C", "\u201Efast, small\u201D",
        "\u00ABfast, small\u00BB", "\u00BBfast, small\u00AB", "\u2018fast, small\u2019",
        "'fast, small'"}) {
    EXPECT_THAT(CodesOfLastRow("4.3,MISC,ORN-1,,,,,,,See " + text), ElementsAre("unquoted-comma"))
        << text;
  }
}

TEST(FieldRules, EachSeparatorSeparatesSaliences) {
  for (const std::string separator : {" ", ",", ";", "/", "|", "+", "&"}) {
    EXPECT_THAT(CodesOfLastRow("4.3,MISC,ORN-1,\"Detail" + separator + "Headline\",,,,,,Text"),
                ElementsAre("salience-two-words"))
        << separator;
  }
}

TEST(FieldRules, ComparesVersionsUpToTheGreatestNumber) {
  const std::string row = ",BUGFIX,ORN-1,,,1.0.0.0.0.0.0,,,,Text";
  EXPECT_THAT(CodesOfLastRow("9.223.372.036.854.775.807" + row), IsEmpty());
  EXPECT_THAT(CodesOfLastRow("9.223.372.036.854.775.808" + row), ElementsAre("bounds-number"));
}

TEST(FieldRules, FixDeletesSpacesAroundAKeyAndAnEmptyValue) {
  EXPECT_EQ(CorrectedRow("4.3, MAP-7,ORN-1,,,,,,,Text"), "4.3,MAP-7,ORN-1,,,,,,,Text");
  EXPECT_EQ(CorrectedRow("4.3,MISC, ,,,,,,,Text"), "4.3,MISC,,,,,,,,Text");
}

TEST(FieldRules, FixKeepsSpacesOutsideQuotesAndMisspeltKeys) {
  for (const std::string row :
       {R"(4.3,MISC,, "Detail",,,,,,Text)", "4.3,BUGIFX,ORN-1,,,,,,,Text"}) {
    EXPECT_EQ(CorrectedRow(row), row);
  }
}

}  // namespace
}  // namespace hosts::author
