#include "hosts/author/lint/LintBaseline.h"

#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/hosts/author/lint/LintTestFiles.h"

namespace hosts::author {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr const char* kOne = "4.3,MISC,ORN-1,,,,,,,One\n";
constexpr const char* kTwo = "4.3,MISC,ORN-2,,,,,,,Two\n";

LintReport Compare(const std::string& before, const std::string& after) {
  InstallNoLintHost();
  LintReport report =
      CompareWithBaseline("new.csv", kHeaderRows + after, "old.csv", kHeaderRows + before, nullptr);
  FinishReport(report);
  return report;
}

TEST(LintBaseline, EqualFilesHaveNoFinding) {
  EXPECT_THAT(CodesOf(Compare(kOne, kOne)), IsEmpty());
}

TEST(LintBaseline, CopyOfARowIsNew) {
  const LintReport report = Compare(kOne, std::string(kOne) + kOne);
  ASSERT_THAT(CodesOf(report), ElementsAre("baseline-new"));
  EXPECT_EQ(report.findings[0].place.line, 4U);
}

TEST(LintBaseline, MovedRowsHaveNoFinding) {
  EXPECT_THAT(CodesOf(Compare(std::string(kOne) + kTwo, std::string(kTwo) + kOne)), IsEmpty());
}

TEST(LintBaseline, EditsThatKeepTheIdentityHaveNoFinding) {
  EXPECT_THAT(
      CodesOf(Compare("4.3,MISC,,,,,,,,$$$/a=One\n", "4.3,MISC,,,,,,,,\"$$$/a=Two, too\"\n")),
      IsEmpty());
}

TEST(LintBaseline, EditNamesTheColumnAndTheOldValue) {
  const LintReport report = Compare(kOne, "4.4,MISC,ORN-1,,,,,,,One\n");
  ASSERT_THAT(CodesOf(report), ElementsAre("baseline-new-again"));
  EXPECT_THAT(report.findings[0].message, HasSubstr("\"App Version\" was '4.3'"));
  EXPECT_EQ(report.findings[0].related.at(0).file, "old.csv");
}

TEST(LintBaseline, EditNamesAllColumnsExceptTheRatingRequest) {
  const LintReport report = Compare("4.3,MAP-7,ORN-1,,RequestRating,,,,,One\n",
                                    "4.4,MAP-7,ORN-1,,Do you like it?,,,,,Two\n");
  ASSERT_THAT(CodesOf(report), ElementsAre("baseline-new-again"));
  EXPECT_THAT(report.findings[0].message,
              EndsWith(": \"App Version\" was '4.3', \"Message\" was 'One'"));
}

TEST(LintBaseline, PairsAnEditedRowByItsIDsAndItsText) {
  const LintReport report = Compare(std::string(kOne) + kTwo, "4.4,MISC,ORN-2,,,,,,,Two\n");
  ASSERT_THAT(CodesOf(report), ElementsAre("baseline-vanished", "baseline-new-again"));
  EXPECT_THAT(report.findings[0].message, HasSubstr("'One' on line 3"));
  EXPECT_THAT(report.findings[1].message, EndsWith(": \"App Version\" was '4.3'"));
}

TEST(LintBaseline, DoesNotPairRowsWhoseIDsAreEqualOnlyWhenJoined) {
  const LintReport report = Compare("4.3,MAP~7,ORN-1,,,,,,,One\n", "4.3,MAP,7~ORN-1,,,,,,,One\n");
  EXPECT_THAT(CodesOf(report), ElementsAre("baseline-vanished", "baseline-new"));
}

TEST(LintBaseline, PairsEditedTextsByTheOrderWithinTheirItem) {
  const LintReport report = Compare(
      std::string(kTwo) + kOne, "4.3,MISC,ORN-2,,,,,,,Two more\n4.3,MISC,ORN-1,,,,,,,One more\n");
  ASSERT_THAT(CodesOf(report), ElementsAre("baseline-new-again", "baseline-new-again"));
  EXPECT_THAT(report.findings[0].message, EndsWith(": \"Message\" was 'Two'"));
  EXPECT_THAT(report.findings[1].message, EndsWith(": \"Message\" was 'One'"));
}

TEST(LintBaseline, NewAndVanishedRowsOfDifferentItemsAreNoPair) {
  const LintReport report = Compare(kOne, "4.3,BUGFIX,ORN-9,,,,,,,Nine\n");
  EXPECT_THAT(CodesOf(report), ElementsAre("baseline-vanished", "baseline-new"));
}

TEST(LintBaseline, RowWithoutATextIsNoNews) {
  const std::string row = "4.3,MAP-7,,,RequestRating,,,,,";
  EXPECT_THAT(CodesOf(Compare(kOne, kOne + row + "\n")), IsEmpty());
  EXPECT_THAT(CodesOf(Compare(kOne + row + "\n", kOne)), IsEmpty());
  EXPECT_THAT(CodesOf(Compare(row + "\n", row + "Text\n")), ElementsAre("baseline-new"));
  EXPECT_THAT(CodesOf(Compare(row + "Text\n", row + "\n")), ElementsAre("baseline-vanished"));
}

TEST(LintBaseline, CountsTheFindingsThatAreNotListed) {
  std::string rows;
  for (std::size_t i = 0; i <= kMaximumFindings; ++i) rows += kOne;
  const LintReport report = Compare("", rows);
  EXPECT_THAT(report.notJudged,
              ElementsAre("one more finding with the code baseline-new is not listed",
                          "without --host, rating requests are not compared with the baseline"));
}

TEST(LintBaseline, AddsNoFileAndNoChangeToTheCounts) {
  const LintReport report = Compare(kOne, kTwo);
  EXPECT_EQ(report.files, 0U);
  EXPECT_EQ(report.changes, 0U);
}

TEST(LintBaseline, OnlyAFeatureThatRequestedARatingCanRequestItAgain) {
  const LintHost host = InstallLintHost(TestFile("host.json").native());
  const auto compare = [&host](const std::string& before, const std::string& after) {
    LintReport report =
        CompareWithBaseline("new.csv", kHeaderRows + after, "old.csv", kHeaderRows + before, &host);
    EXPECT_THAT(report.notJudged, IsEmpty());
    return report;
  };
  const auto row = [](const std::string& key, const std::string& request) {
    return "4.3," + key + ",ORN-1,," + request + ",,,,,One\n";
  };
  EXPECT_THAT(CodesOf(compare(row("MAP-7", ""), row("MAP-7", "One?"))), IsEmpty());
  EXPECT_THAT(CodesOf(compare(row("MISC", "One?"), row("MISC", "Two?"))), IsEmpty());
  const LintReport report =
      compare(row("MAP-7", "One?") + kTwo, row("MAP-7", "Two?") + kTwo + row("MAP-7", ""));
  ASSERT_THAT(CodesOf(report), Contains("baseline-rated-again"));
  EXPECT_EQ(report.findings.back().place.line, 3U);
}

}  // namespace
}  // namespace hosts::author
