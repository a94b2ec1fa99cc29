#include "hosts/author/lint/LintContext.h"

#include <string>
#include <utility>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/hosts/author/lint/LintTestFiles.h"

namespace hosts::author {
namespace {

using ornwhatsnew::DataColumn;

const std::string kTwoChanges =
    kHeaderRows + "4.3,MISC,ORN-1,,,,,,,One\n4.3,MISC,ORN-2,,,,,,,Two\n";

TEST(LintContext, KnowsWhichFieldsOfTheCurrentRowHaveAFinding) {
  InstallNoLintHost();
  LintedFile file("data.csv", kTwoChanges);
  const LintHost host{"host.json", {}};
  LintContext context(file, &host);
  const LintRow& first = file.Rows()[2];
  const LintRow& second = file.Rows()[3];
  context.ReportField(LintCode::kSalienceUnknown, first, DataColumn::kSalience, "first");
  EXPECT_TRUE(context.HasFinding(first, DataColumn::kSalience));
  EXPECT_FALSE(context.HasFinding(first, DataColumn::kPlatform));
  const auto reportOnSecond = [&context, &second] {
    context.ReportField(LintCode::kVersionDate, second, DataColumn::kVersion, "second");
    return context.HasFinding(second, DataColumn::kVersion);
  };
  EXPECT_TRUE(reportOnSecond());
  EXPECT_FALSE(context.HasFinding(first, DataColumn::kSalience));
  EXPECT_FALSE(context.HasFinding(second, DataColumn::kSalience));
  context.ReportFile(LintCode::kNoChange, "file");
  EXPECT_FALSE(context.HasFinding(second, DataColumn::kVersion));
  EXPECT_TRUE(reportOnSecond());
  EXPECT_EQ(context.ReportHost(LintCode::kHostEpicKeyEmpty, "host").file, "host.json");
  EXPECT_FALSE(context.HasFinding(second, DataColumn::kVersion));
  EXPECT_TRUE(reportOnSecond());
  EXPECT_EQ(context.TakeFindings().size(), 6U);
  EXPECT_FALSE(context.HasFinding(second, DataColumn::kVersion));
}

TEST(LintContext, FindingOnAMissingFieldOrPartIsOnTheRowOrTheField) {
  InstallNoLintHost();
  const std::string x64(64, 'x');
  const std::string text = kHeaderRows + "4.3,MISC,ORN-1,,,,,,,a " + x64 + "yy\n" +
                           "4.3,MISC,ORN-1,,,,,,," + x64 + "\"\"y " + x64 + "y\n";
  LintedFile file("data.csv", text);
  LintContext context(file, nullptr);
  const auto columnsOf = [&context, &file](std::size_t row, DataColumn column,
                                           const std::string& part) {
    const Finding& finding =
        context.ReportPart(LintCode::kHTML, file.Rows()[row], column, part, "message");
    EXPECT_EQ(finding.place.line, row + 1);
    return std::pair(finding.place.column, finding.place.endColumn);
  };
  EXPECT_EQ(columnsOf(1, DataColumn::kStoryID, ""), std::pair(1UL, 18UL));
  EXPECT_EQ(columnsOf(2, DataColumn::kStoryID, ""), std::pair(10UL, 15UL));
  EXPECT_EQ(columnsOf(2, DataColumn::kDescription, "yy"), std::pair(88UL, 90UL));
  EXPECT_EQ(columnsOf(2, DataColumn::kDescription, x64 + "y"), std::pair(24UL, 89UL));
  EXPECT_EQ(columnsOf(2, DataColumn::kDescription, x64 + "z"), std::pair(22UL, 90UL));
  EXPECT_EQ(columnsOf(3, DataColumn::kDescription, x64 + "y"), std::pair(22UL, 155UL));
}

TEST(LintContext, OnlyVersionsOfChangesArePlainVersions) {
  InstallNoLintHost();
  for (const auto& [version, isPlain] :
       {std::pair("4.3", true), std::pair("v4.3", false), std::pair("", false)}) {
    const std::string text = kHeaderRows + version + ",MISC,,,,,,,,Text\n";
    LintedFile file("data.csv", text);
    LintContext context(file, nullptr);
    EXPECT_EQ(context.HasPlainVersion(), isPlain) << version;
    EXPECT_EQ(context.HasPlainVersion(), isPlain) << version;
  }
}

/// Searches for `count` - 1 keys that no key is similar to, and then for two similar keys.
void ExpectSearches(std::size_t count) {
  LintedFile file("data.csv", kTwoChanges);
  LintContext context(file, nullptr);
  for (std::size_t i = 1; i < count; ++i) {
    EXPECT_EQ(context.NearestKey("#" + std::to_string(i)), std::nullopt);
  }
  EXPECT_EQ(context.NearestKey("BUGFX"), "BUGFIX");
  EXPECT_EQ(context.NearestKey("BUGIX"), std::nullopt);
  EXPECT_EQ(context.NearestKey("BUGFX"), "BUGFIX");
  EXPECT_EQ(context.NearestKey("bugfix "), "BUGFIX");
}

TEST(LintContext, SearchesFor500Keys) {
  InstallNoLintHost();
  ExpectSearches(500);
}

TEST(LintContext, SearchesForFewerKeysIfThereAreManyItems) {
  common::HostDescription description;
  for (std::size_t i = 0; i < 496; ++i) {
    const std::string number = std::to_string(i);
    description.betaFeatures.push_back(
        {"feature." + number, "EPIC-" + number, "Feature", "", 0, true, true});
  }
  InstallLintHost("host.json", description);
  ASSERT_EQ(LintedFile("data.csv", kTwoChanges).Items().size(), 500U);
  ExpectSearches(400);
}

}  // namespace
}  // namespace hosts::author
