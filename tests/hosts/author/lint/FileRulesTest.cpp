// Tests limits and special cases of the rules of `lint` for the file, its header, its Changes-Since
// row, its links and its list. LintCodesTest tests each code with one data file.
#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/hosts/author/lint/LintTestFiles.h"

namespace hosts::author {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

const std::string kChange = "4.3,MISC,ORN-1,,,,,,,Text\n";

std::vector<std::string> CodesIn(const std::string& text) {
  return CodesOf(LintText(text));
}

/// Returns the message of the first finding with the code `code` in `text`.
std::string MessageIn(const std::string& text, std::string_view code) {
  for (const Finding& finding : LintText(text).findings) {
    if (InfoOf(finding.code).name == code) return finding.message;
  }
  return "no finding";
}

/// Returns the report on `text` for a host whose only feature is `feature`.
LintReport ReportForFeature(const std::string& text,
                            const common::BetaFeatureDescription& feature) {
  LintHost host;
  host.description.betaFeatures.push_back(feature);
  common::InstallHost(host.description);
  return LintDataFile("data.csv", text, &host);
}

/// Returns `count` rows that consist of `start` and the number of the row, from 0.
std::string Rows(int count, const std::string& start) {
  std::string rows;
  for (int i = 0; i < count; ++i) rows += start + std::to_string(i) + "\n";
  return rows;
}

// ---- the form of the file

TEST(FileRules, ThirdOfTheFirst1000BytesDistinguishesUTF16) {
  const std::string start = std::string(333, '\0') + std::string(666, 'a');
  EXPECT_THAT(CodesIn(start + std::string(1, '\0') + "a"), ElementsAre("file-utf16"));
  EXPECT_THAT(CodesIn(start + "a" + std::string(1, '\0')), Not(Contains("file-utf16")));
}

TEST(FileRules, FileOfSpacesAndLineEndsIsEmpty) {
  for (const std::string text : {"", "\n", " \t\r\n", "\uFEFF", "\uFEFF \n \n"}) {
    EXPECT_THAT(CodesIn(text), ElementsAre("file-empty")) << testing::PrintToString(text);
  }
}

TEST(FileRules, FiveSemicolonsInMostRowsAreSeparators) {
  const std::string wide = "4.3;MISC;1;2;3;Text\n";
  const std::string narrow = "4.3;MISC;1;2;Text\n";
  EXPECT_THAT(CodesIn(wide + wide), ElementsAre("file-separator"));
  EXPECT_THAT(CodesIn(narrow + narrow), Not(Contains("file-separator")));
  EXPECT_THAT(CodesIn(wide + wide + narrow), ElementsAre("file-separator"));
  EXPECT_THAT(CodesIn(wide + narrow), Not(Contains("file-separator")));
}

TEST(FileRules, SemicolonsInCompleteRowsAreNotSeparators) {
  EXPECT_THAT(CodesIn(kHeaderRows + "4.3,MISC,ORN-1,,,,,,,a; b; c; d; e; f\n"
                                    "4.3,MISC,ORN-2,,,,,,,g; h; i; j; k; l\n"),
              testing::IsEmpty());
}

TEST(FileRules, NamesOneSeparatorOnly) {
  const LintReport report = LintText("a;b;c;d;e;f\t\t\t\t\t\n");
  ASSERT_THAT(CodesOf(report), ElementsAre("file-separator"));
  EXPECT_THAT(report.findings.front().message, HasSubstr("semicolons"));
}

TEST(FileRules, EditOfLineEndsExtendsFromTheFirstToTheLastCR) {
  const std::string first = ",MISC,ORN-1,,,,,,,One\r";
  const std::string second = ",MISC,ORN-2,,,,,,,Two\r";
  const std::string last = "4.3,MAP-7,,,RequestRating,,,,,\r\n";
  const auto edit = [](const std::string& rows) {
    return LintText(kHeaderRows + rows).findings.front().edit.value_or(Edit());
  };
  const Edit one = edit(first + last);
  EXPECT_EQ(one.offset, kHeaderRows.size() + first.size() - 1);
  EXPECT_EQ(one.length, 1U);
  EXPECT_EQ(one.replacement, "\n");
  const Edit two = edit(first + second + last);
  EXPECT_EQ(two.offset, one.offset);
  EXPECT_EQ(two.length, 1 + second.size());
  EXPECT_EQ(two.replacement, "\n" + second.substr(0, second.size() - 1) + "\n");
}

TEST(FileRules, CRInsideATextHasNoEdit) {
  const LintReport report = LintText(kHeaderRows + "4.3,MISC,ORN-1,,,,,,,One\rTwo\n");
  ASSERT_THAT(CodesOf(report), ElementsAre("file-line-ends"));
  EXPECT_FALSE(report.findings.front().edit.has_value());
}

TEST(FileRules, FindsConflictMarksBeforeCRLF) {
  for (const std::string mark : {"<<<<<<<", "=======", ">>>>>>>", "<<<<<<< HEAD"}) {
    EXPECT_THAT(CodesIn(kHeaderRows + kChange + mark + "\r\n"), ElementsAre("conflict-mark"))
        << mark;
  }
}

// ---- the header

TEST(FileRules, HeaderInAnotherLanguageHasAtLeastFiveFields) {
  EXPECT_THAT(CodesIn("Fassung,Gruppe,Vorgang,Rang,Frage\n" + kChange), Contains("header-width"));
  EXPECT_THAT(CodesIn("Fassung,Gruppe,Vorgang,Rang\n" + kChange), Contains("header-missing"));
}

TEST(FileRules, ThreeColumnNamesMakeAHeader) {
  EXPECT_THAT(CodesIn("Fassung,Grouping ID,Jira ID,Salience\n" + kChange),
              Contains("header-width"));
  EXPECT_THAT(CodesIn("Fassung,Grouping ID,Jira ID\n" + kChange), Contains("header-missing"));
}

TEST(FileRules, ColumnNamesHaveAtLeastThreeBytes) {
  EXPECT_THAT(CodesIn("App,Gro,Jir\n" + kChange), Contains("header-width"));
  EXPECT_THAT(CodesIn("Ap,Gr,Ji\n" + kChange), Contains("header-missing"));
}

TEST(FileRules, SpacesAndAByteOrderMarkAreNotPartOfAColumnName) {
  EXPECT_THAT(CodesIn("\xEF\xBB\xBF"
                      "App Version, Grouping ID ,Jira ID\n" +
                      kChange),
              Contains("header-width"));
  EXPECT_THAT(CodesIn("Fassung, Grouping ID ,Jira ID,Salience\n" + kChange),
              Contains("header-width"));
}

TEST(FileRules, FirstRowWithAFieldOfAChangeIsNoHeader) {
  for (const std::string row :
       {"4.3,X,,,,,,,,", "v4.3,X,,,,,,,,", "V4.3,X,,,,,,,,", "0.9,X,,,,,,,,", "9.1,X,,,,,,,,",
        " 4.3 ,X,,,,,,,,", ",MISC,,,,,,,,", ",X,,,,,,https://forum.example/1,,"}) {
    EXPECT_THAT(CodesIn(row + "\n" + kChange), Contains("header-missing")) << row;
  }
  for (const std::string row :
       {".5,X,,,,,,,,", "v,X,,,,,,,,", "4.3 beta,X,,,,,,,,", "Version,X,,,,,,,,", ",X,,,,,,,,"}) {
    EXPECT_THAT(CodesIn(row + "\n" + kChange), Not(Contains("header-missing"))) << row;
  }
}

TEST(FileRules, TextOfAChangeUsedAsHeaderIsNoColumnName) {
  EXPECT_THAT(CodesIn("4.3,MISC,ORN-1,,,,,,,Jira IDs are links\n4.2,Changes-Since\n" + kChange),
              ElementsAre("header-missing"));
}

TEST(FileRules, HeaderContinuesIfTwoRowsHaveAllFields) {
  const std::vector<std::pair<std::string, std::string>> cases = {
      {"App Version,Grouping ID,Jira ID,Salience\nRating,First,Platform,URL,Commit",
       "header-width"},
      {"App Version,Grouping ID,Jira ID,Salience\nRating,First,Platform,URL,Commit,Message",
       "header-over-lines"},
      {"App Version,Grouping ID,Jira ID,Salience,Rating\nFirst,Platform,URL,Commit,Message",
       "header-over-lines"},
      {"App Version,Grouping ID,Jira ID,Salience,Ask\nRating,First,Platform,URL,Commit,Message",
       "header-over-lines"},
      {"App Version,Grouping ID,Jira ID,Salience,Ask,Us\nRating,First,Platform,URL,Commit,Message",
       "header-width"}};
  for (const auto& [header, code] : cases) {
    EXPECT_THAT(CodesIn(header + "\n4.2,Changes-Since\n" + kChange), Contains(code)) << header;
  }
}

TEST(FileRules, HeaderContinuesOverThreeLinesInQuotes) {
  const std::string header =
      "App Version,\"Grouping ID\n(Jira Epic)\n\",Jira ID,Salience,Rating,First Version,Platform,"
      "URL,Commit,Message\n";
  EXPECT_THAT(CodesIn(header + "4.2,Changes-Since\n" + kChange), Contains("header-over-lines"));
}

TEST(FileRules, TitleWithAnOpenQuoteIsNoHeader) {
  EXPECT_THAT(CodesIn("Release notes \"draft\n" + kHeaderRows + kChange),
              Not(Contains("header-over-lines")));
}

TEST(FileRules, RowWithAnOpenQuoteDoesNotHideMistakesInTheHeader) {
  EXPECT_THAT(CodesIn("Notes \"draft,2026\nApp Version,Jira ID,Grouping ID,,,,,,,\n"
                      "4.2,Changes-Since\n" +
                      kChange),
              Contains("header-order"));
}

TEST(FileRules, WrongHeaderWithoutAChangeUsedInsteadLosesNothing) {
  EXPECT_EQ(MessageIn("App Version,Grouping ID,Jira ID\n", "header-width"),
            "the header has 3 fields instead of ten, so it is skipped; write ten column names");
  EXPECT_EQ(MessageIn("App Version,Grouping ID,Jira ID\n" + kHeaderRows + kChange, "header-width"),
            "the header has 3 fields instead of ten, so it is skipped; write ten column names");
  EXPECT_EQ(
      MessageIn("App Version,Grouping ID,Jira ID,Salience,Rating\n"
                "First Version,Platform,URL,Commit,Message\n",
                "header-over-lines"),
      "the header continues on the next line, so it is skipped; write the header on one line");
}

TEST(FileRules, FindsAWrongHeaderAfterATitle) {
  EXPECT_THAT(CodesIn("Release notes\nApp Version,Grouping ID,Jira ID\n" + kChange),
              Contains("header-width"));
}

TEST(FileRules, HeaderInACommentIsNoMistake) {
  EXPECT_THAT(CodesIn("# App Version,Grouping ID,Jira ID,Salience\n" + kHeaderRows + kChange),
              ElementsAre("comment-line"));
}

TEST(FileRules, LostChangeBeforeTheHeaderIsNoHeader) {
  for (const std::string row : {"4.3,MISC,ORN-1,,,,,,Lost\n", ",MISC,ORN-1,,,,,,Lost\n"}) {
    EXPECT_THAT(CodesIn(row + kHeaderRows + kChange), ElementsAre("missing-comma")) << row;
  }
}

TEST(FileRules, RowAfterALostChangeIsNoHeader) {
  EXPECT_THAT(CodesIn("4.3,MISC,ORN-1,,,,,,Lost\nFassung,Gruppe,Vorgang,Rang,Frage\n" +
                      kHeaderRows + kChange),
              Not(Contains("header-width")));
}

TEST(FileRules, WrongHeaderDoesNotHideTheMistakeInTheNextRow) {
  EXPECT_THAT(CodesIn("App Version,Grouping ID,Jira ID\n4.3,MISC,ORN-1,,,,,,Lost\n"
                      "4.2,Changes-Since\n" +
                      kChange),
              ElementsAre("header-width", "missing-comma"));
}

TEST(FileRules, FindsARepeatedHeaderInAnotherLanguage) {
  const std::string header = "Version,Gruppe,Vorgang,Rang,Frage,Ab,System,Verweis,Commit,Text\n";
  EXPECT_THAT(CodesIn(header + "4.2,Changes-Since\n" + kChange + header),
              ElementsAre("header-repeated"));
}

TEST(FileRules, FindsARepeatedHeaderWithOtherNames) {
  EXPECT_THAT(CodesIn(kHeaderRows + kChange +
                      "App Version,Grouping,Jira ID,,,,,,,Public/Internal message\n"),
              ElementsAre("header-repeated"));
}

TEST(FileRules, RepeatedHeaderWithNineFieldsIsNotReadAsAChange) {
  EXPECT_THAT(CodesIn(kHeaderRows + kChange + "App Version,Grouping ID,Jira ID,,,,,,\n"),
              Not(Contains("header-repeated")));
}

TEST(FileRules, RepeatedHeadersAreNotReportedAsEqualChanges) {
  const std::string header = kHeaderRows.substr(0, kHeaderRows.find('\n') + 1);
  EXPECT_THAT(CodesIn(header + header + header + "4.2,Changes-Since\n" + kChange),
              ElementsAre("header-repeated", "header-repeated"));
}

// ---- the Changes-Since row

TEST(FileRules, MisspeltChangesSinceHas10To24Bytes) {
  for (const std::string text : {"Changes-Si", "Changes-Since the launch"}) {
    EXPECT_THAT(CodesIn(kHeaderRows + "4.2," + text + ",,,,,,,,\n"),
                Contains("changes-since-spelling"))
        << text;
  }
  for (const std::string text : {"Changes-S", "Changes-Since the release", "OTHER-10000"}) {
    EXPECT_THAT(CodesIn(kHeaderRows + "4.2," + text + ",,,,,,,,\n"),
                Not(Contains("changes-since-spelling")))
        << text;
  }
}

TEST(FileRules, FileWithoutChangesNeedsNoChangesSinceRow) {
  EXPECT_THAT(CodesIn(kHeaderRows.substr(0, kHeaderRows.find('\n') + 1)), ElementsAre("no-change"));
}

TEST(FileRules, VersionAloneAfterAChangesSinceRowUsedAsHeaderIsReported) {
  EXPECT_THAT(CodesIn("4.2,Changes-Since\n4.1\n" + kChange),
              ElementsAre("changes-since-before-header", "changes-since-overwritten"));
}

TEST(FileRules, TextOfAChangesSinceRowIsNoChange) {
  const std::string header = kHeaderRows.substr(0, kHeaderRows.find('\n') + 1);
  EXPECT_THAT(CodesIn(header + "4.2,Changes-Since,,,,,,,,$$$/rules/title=Title\n" +
                      "4.3,MISC,ORN-1,,,,,,,$$$/rules/title=Text\n"),
              testing::IsEmpty());
}

// ---- links

TEST(FileRules, FindsTheSecondLinkAfterEachSeparator) {
  for (const std::string separator : {" ", ",", ";", "|", "\t", ", "}) {
    EXPECT_THAT(CodesIn(kHeaderRows + "4.3,MAP-7,ORN-1,,,,,\"https://forum.example/1" + separator +
                        "https://forum.example/2\",,Text\n"),
                ElementsAre("link-two"))
        << separator;
  }
}

TEST(FileRules, LinkOfAnUnreviewedChangeIsNoLinkOfASection) {
  EXPECT_THAT(CodesIn(kHeaderRows + "4.3,MISC,ORN-1,Unreviewed,,,,https://forum.example/1,,Text\n"),
              ElementsAre("unreviewed-left"));
}

TEST(FileRules, ALinkWithAnotherSchemeInATextIsNotReported) {
  EXPECT_THAT(CodesIn(kHeaderRows + "4.3,MISC,ORN-1,,,,,,,Opens ftp://forum.example addresses\n"),
              testing::IsEmpty());
}

TEST(FileRules, AFeatureThatIsUnknownWithoutAHostCanHaveALinkOnly) {
  EXPECT_THAT(CodesIn(kHeaderRows + "4.3,MAP-7,ORN-1,,,,,https://forum.example/1,,\n"),
              testing::IsEmpty());
}

// ---- the list

TEST(FileRules, EqualChangesWithoutATextAreNotReported) {
  const std::string row = "4.3,MAP-7,,,RequestRating,,,,,\n";
  EXPECT_THAT(CodesIn(kHeaderRows + row + row), testing::IsEmpty());
}

TEST(FileRules, FileWhoseOnlyChangeIsLostIsNotReportedAsEmpty) {
  EXPECT_THAT(CodesIn(kHeaderRows + "4.3,MISC,ORN-1,,,,,,Lost\n"), ElementsAre("missing-comma"));
}

TEST(FileRules, MessageListsTenLaterLinks) {
  const common::BetaFeatureDescription feature = {"rules.map", "MAP-7", "Map", "", 0, true, true};
  const auto message = [&feature](int later) {
    const LintReport report = ReportForFeature(
        kHeaderRows + Rows(1 + later, "4.3,MAP-7,,,,,,https://forum.example/1,,Text "), feature);
    EXPECT_THAT(CodesOf(report), ElementsAre("link-later"));
    return report.findings.front().message;
  };
  EXPECT_THAT(message(10), HasSubstr("(lines 4, 5, 6, 7, 8, 9, 10, 11, 12, 13);"));
  EXPECT_THAT(message(11), HasSubstr("(lines 4, 5, 6, 7, 8, 9, 10, 11, 12, 13 and others);"));
}

TEST(FileRules, FindingHasAtMostFiftyRelatedPlaces) {
  const common::BetaFeatureDescription feature = {"rules.map", "MAP-7", "Map", "", 0, true, true};
  common::BetaFeatureDescription off = feature;
  off.enabled = off.availableForUser = false;
  const std::string texts = Rows(53, "4.3,MAP-7,,,,,,,,Text ");
  const std::string links = Rows(53, "4.3,MAP-7,,,,,,https://forum.example/1,,Text ");
  for (const LintReport& report :
       {ReportForFeature(kHeaderRows + "4.3,MAP-7,,HideBetaFeature,,,,,,\n" + texts, feature),
        ReportForFeature(kHeaderRows + texts, off),
        ReportForFeature(kHeaderRows + links, feature)}) {
    ASSERT_EQ(report.findings.size(), 1U);
    EXPECT_EQ(report.findings.front().related.size(), 50U) << report.findings.front().message;
  }
}

TEST(FileRules, HostVersionThatIsNoNumberCannotBeCompared) {
  common::HostDescription description;
  description.clientVersion = "4.x";
  description.buildNumber = "118";
  const LintHost host = InstallLintHost("host.json", description);
  const LintReport report =
      LintDataFile("data.csv", kHeaderRows + "4.3.0.0,BUGFIX,,,,4.2.0.0,,,,Text\n", &host);
  ASSERT_THAT(CodesOf(report), ElementsAre("bounds-host"));
  EXPECT_EQ(report.findings.front().message,
            "the host's full version '4.x.0.118' has a component that is not a number from 0 to "
            "999, so the wrong users see the change; leave the field empty");
}

}  // namespace
}  // namespace hosts::author
