#include "hosts/author/lint/LintBaseline.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/hosts/author/lint/LintTestFiles.h"

namespace hosts::author {
namespace {

using testing::ElementsAre;
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

TEST(LintBaseline, PairsAnEditedTextByTheOrderWithinItsItem) {
  const LintReport report =
      Compare(std::string(kOne) + kTwo, std::string(kOne) + "4.3,MISC,ORN-2,,,,,,,Two more\n");
  EXPECT_THAT(CodesOf(report), ElementsAre("baseline-new-again"));
}

TEST(LintBaseline, NewAndVanishedRowsOfDifferentItemsAreNoPair) {
  const LintReport report = Compare(kOne, "4.3,BUGFIX,ORN-9,,,,,,,Nine\n");
  EXPECT_THAT(CodesOf(report), ElementsAre("baseline-vanished", "baseline-new"));
}

TEST(LintBaseline, RowWithoutATextIsNoNews) {
  EXPECT_THAT(CodesOf(Compare(kOne, std::string(kOne) + "4.3,MAP-7,,,RequestRating,,,,,\n")),
              IsEmpty());
}

}  // namespace
}  // namespace hosts::author
