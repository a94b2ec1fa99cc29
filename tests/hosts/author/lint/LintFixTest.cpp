#include "hosts/author/lint/LintFix.h"

#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/hosts/author/lint/LintTestFiles.h"

namespace hosts::author {
namespace {

using testing::HasSubstr;

FixedFile Fix(const std::string& text, FixScope scope = FixScope::kSafe) {
  return FixDataFile("data.csv", text, LintText(text), scope, nullptr);
}

TEST(LintFix, CorrectsTheLetterCaseOfSectionKeys) {
  const FixedFile fixed = Fix(kHeaderRows + "4.3,bugfix,,,,,,,,Text\n");
  EXPECT_EQ(fixed.text, kHeaderRows + "4.3,BUGFIX,,,,,,,,Text\n");
  EXPECT_EQ(fixed.corrected, 1U);
}

TEST(LintFix, CorrectsASectionKeyAfterManyUnknownKeys) {
  std::string text = kHeaderRows;
  for (int i = 0; i < 1000; ++i) text += "4.3,X-" + std::to_string(i) + ",,,,,,,,Text\n";
  EXPECT_EQ(Fix(text + "4.3,misc,,,,,,,,Text\n").text, text + "4.3,MISC,,,,,,,,Text\n");
}

TEST(LintFix, DiffIsUnifiedWithoutContext) {
  EXPECT_EQ(Fix(kHeaderRows + "4.3,MISC,,,,,,,,One\n4.3,bugfix,,,,,,,,Two\n").diff,
            "--- a/data.csv\n+++ b/data.csv\n@@ -4 +4 @@\n-4.3,bugfix,,,,,,,,Two\n"
            "+4.3,BUGFIX,,,,,,,,Two\n");
}

TEST(LintFix, DiffCountsTheLinesOfEarlierCorrections) {
  EXPECT_EQ(Fix(kHeaderRows + "4.3,MISC,,,,,,,,One\r4.3,MISC,,,,,,,,Two\n4.3,MISC,,,,,,,,Three\n"
                              "4.3,bugfix,,,,,,,,Four\n")
                .diff,
            "--- a/data.csv\n+++ b/data.csv\n@@ -3 +3,2 @@\n"
            "-4.3,MISC,,,,,,,,One\r4.3,MISC,,,,,,,,Two\n"
            "+4.3,MISC,,,,,,,,One\n+4.3,MISC,,,,,,,,Two\n"
            "@@ -5 +6 @@\n-4.3,bugfix,,,,,,,,Four\n+4.3,BUGFIX,,,,,,,,Four\n");
}

TEST(LintFix, KeepsTheByteOrderMarkAndLineEnds) {
  std::string text = "\xEF\xBB\xBF" + kHeaderRows + "4.3,bugfix,,,,,,,,Text\n";
  for (std::size_t at = text.find('\n'); at != text.npos; at = text.find('\n', at + 2)) {
    text.insert(at, "\r");
  }
  const FixedFile fixed = Fix(text);
  text.replace(text.find("bugfix"), 6, "BUGFIX");
  EXPECT_EQ(fixed.text, text);
}

TEST(LintFix, DeletesSpacesOnlyIfNoChangeIsAnnouncedAgain) {
  const std::string text =
      kHeaderRows + "4.3,MISC, ORN-1,,,,,,,Text\n4.3,INTERNAL, ORN-2,,,,,,,Text\n";
  const FixedFile fixed = Fix(text);
  EXPECT_EQ(fixed.text,
            kHeaderRows + "4.3,MISC, ORN-1,,,,,,,Text\n4.3,INTERNAL,ORN-2,,,,,,,Text\n");
  EXPECT_EQ(fixed.withheld, 1U);
}

TEST(LintFix, UnmatchedChangeIsInternalOnlyWithAHost) {
  const std::string text = kHeaderRows + "4.3,NEW-1, ORN-1,,,,,,,Text\n";
  EXPECT_EQ(Fix(text).withheld, 1U);
  const LintHost host = InstallLintHost(TestFile("host.json").native());
  const auto fix = [&host](const std::string& rows) {
    return FixDataFile("data.csv", rows, LintDataFile("data.csv", rows, &host), FixScope::kSafe,
                       &host);
  };
  EXPECT_EQ(fix(text).corrected, 1U);
  EXPECT_EQ(fix(kHeaderRows + "4.3,MAP-7, ORN-1,,,,,,,Text\n").withheld, 1U);
}

TEST(LintFix, AllCorrectionsSayWhichChangesAreAnnouncedAgain) {
  const FixedFile fixed = Fix(kHeaderRows + "4.3,MISC, ORN-1,,,,,,,Text\n", FixScope::kAll);
  EXPECT_EQ(fixed.text, kHeaderRows + "4.3,MISC,ORN-1,,,,,,,Text\n");
  EXPECT_THAT(fixed.diff, HasSubstr("@@ -3 +3 @@ announced again to users who saw the change\n"));
}

TEST(LintFix, CorrectsSpacesAroundAKeyword) {
  EXPECT_EQ(Fix(kHeaderRows + "4.3,MISC,,\" Detail \",,,,,,Text\n", FixScope::kAll).text,
            kHeaderRows + "4.3,MISC,,\"Detail\",,,,,,Text\n");
}

TEST(LintFix, KeepsSpacesAroundATextAndAVersion) {
  const std::string text = kHeaderRows + "4.3 ,MISC,,,,,,,, Text \n";
  EXPECT_THAT(CodesOf(LintText(text)), testing::ElementsAre("outer-spaces", "outer-spaces"));
  EXPECT_EQ(Fix(text, FixScope::kAll).text, text);
}

TEST(LintFix, KeepsAGroupingIDOfSpaces) {
  const std::string text = kHeaderRows + "4.3, ,ORN-1,,,,,,,Text\n";
  EXPECT_THAT(CodesOf(LintText(text)), testing::ElementsAre("grouping-id-unknown"));
  EXPECT_EQ(Fix(text, FixScope::kAll).text, text);
}

TEST(LintFix, ReplacesCRLineEnds) {
  const std::string rows = kHeaderRows + "\n4.3,MISC,,,,,,,,One\n4.3,MISC,,,,,,,,Two\n";
  std::string old = rows;
  std::ranges::replace(old, '\n', '\r');
  const FixedFile fixed = Fix(old);
  EXPECT_EQ(fixed.text, rows);
  EXPECT_THAT(fixed.diff, HasSubstr("@@ -1 +1,5 @@\n-App Version,"));
  EXPECT_TRUE(fixed.diff.ends_with("\n+4.3,MISC,,,,,,,,Two\n")) << fixed.diff;
}

TEST(LintFix, ReplacesCRLineEndsOfAFileWithoutALastLineEnd) {
  const FixedFile fixed = Fix("v,g,,,,,,,,\r4.3,MISC,,,,,,,,One");
  EXPECT_EQ(fixed.text, "v,g,,,,,,,,\n4.3,MISC,,,,,,,,One");
  EXPECT_EQ(fixed.diff,
            "--- a/data.csv\n+++ b/data.csv\n@@ -1 +1,2 @@\n"
            "-v,g,,,,,,,,\r4.3,MISC,,,,,,,,One\n\\ No newline at end of file\n"
            "+v,g,,,,,,,,\n+4.3,MISC,,,,,,,,One\n\\ No newline at end of file\n");
}

TEST(LintFix, ReplacesACRAtTheStartOfTheFile) {
  EXPECT_EQ(Fix("\rv,g,,,,,,,,\r4.3,MISC,,,,,,,,One").text, "\nv,g,,,,,,,,\n4.3,MISC,,,,,,,,One");
}

// If `lint --fix` made one edit for each CR, this test would take hours.
TEST(LintFix, ReplacesAMillionCRLineEndsAsOneMistake) {
  const std::string blankLines(1'000'000, '\r');
  std::string expected = kHeaderRows + blankLines + "4.3,MISC,,,,,,,,Text\n";
  const FixedFile fixed = Fix(expected);
  std::ranges::replace(expected, '\r', '\n');
  EXPECT_TRUE(fixed.text == expected);
  EXPECT_EQ(fixed.corrected, 1U);
}

TEST(LintFix, KeepsTheCRLFAfterACR) {
  const FixedFile fixed = Fix(kHeaderRows + "4.3,MISC,,,,,,,,One\r4.3,MISC,,,,,,,,Two\r\n");
  EXPECT_EQ(fixed.text, kHeaderRows + "4.3,MISC,,,,,,,,One\n4.3,MISC,,,,,,,,Two\r\n");
}

TEST(LintFix, DoesNotSplitATextAtACR) {
  const std::string text = kHeaderRows + "4.3,MISC,,,,,,,,One\rTwo\n";
  EXPECT_EQ(Fix(text).text, text);
}

TEST(LintFix, CorrectsMistakesThatAreNotListed) {
  std::string text = kHeaderRows;
  for (std::size_t i = 0; i < kMaximumFindings + 2; ++i) {
    text += "4.3,misc,,,,,,,,Text " + std::to_string(i) + "\n";
  }
  EXPECT_EQ(Fix(text).corrected, kMaximumFindings + 2);
  LintReport report = LintText(text);
  EXPECT_THAT(report.omitted.at(LintCode::kGroupingIDUnknown).edits, testing::SizeIs(2));
  ApplySeverities(report, {{LintCode::kGroupingIDUnknown, Severity::kOff}});
  EXPECT_EQ(FixDataFile("data.csv", text, report, FixScope::kSafe, nullptr).corrected, 0U);
}

TEST(LintFix, CorrectsSeveralFieldsOfARowWhoseMistakesAreNotListed) {
  std::string text = kHeaderRows;
  std::string expected = kHeaderRows;
  for (std::size_t i = 0; i < kMaximumFindings + 2; ++i) {
    const std::string message = "Text " + std::to_string(i) + "\n";
    text += "4.3, misc, ORN-1, Detail,,, Win,,," + message;
    expected += "4.3,MISC,ORN-1,Detail,,,Win,,," + message;
  }
  EXPECT_TRUE(Fix(text, FixScope::kAll).text == expected);
}

TEST(LintFix, OmitsACorrectionThatOverlapsAnEarlierOne) {
  const std::string text = kHeaderRows + "4.3,misc,,,,,,,,Text\n";
  LintReport report = LintText(text);
  Finding finding = report.findings.at(0);
  finding.edit = Edit{finding.edit->offset + 1, 1, "X"};
  report.findings.push_back(finding);
  const FixedFile fixed = FixDataFile("data.csv", text, report, FixScope::kAll, nullptr);
  EXPECT_EQ(fixed.text, kHeaderRows + "4.3,MISC,,,,,,,,Text\n");
  EXPECT_EQ(fixed.corrected, 1U);
}

TEST(LintFix, CleanFileHasNoDiff) {
  const std::string text = kHeaderRows + "4.3,MISC,,,,,,,,Text\n";
  EXPECT_EQ(Fix(text).diff, "");
  EXPECT_EQ(Fix(text).text, text);
}

}  // namespace
}  // namespace hosts::author
