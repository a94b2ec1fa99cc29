#include <filesystem>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/hosts/author/lint/LintTestFiles.h"

namespace hosts::author {
namespace {

/// Returns the report on clean/NAME.csv with the host description clean/NAME.json.
LintReport ReportOn(const std::string& name) {
  const LintHost host = InstallLintHost(TestFile("clean/" + name + ".json").native());
  LintReport report =
      LintDataFile("data.csv", common::ReadTextFile(TestFile("clean/" + name + ".csv")), &host);
  FinishReport(report);
  return report;
}

std::string MessagesOf(const LintReport& report) {
  std::string messages;
  for (const Finding& finding : report.findings) {
    messages += std::to_string(finding.place.line) + ": " + finding.message + "\n";
  }
  return messages;
}

class CleanFilesTest : public testing::TestWithParam<const char*> {};

TEST_P(CleanFilesTest, HasNoFinding) {
  EXPECT_EQ(MessagesOf(ReportOn(GetParam())), "");
}

TEST_P(CleanFilesTest, HasNoFindingWithoutAHost) {
  InstallNoLintHost();
  const std::string file = "clean/" + std::string(GetParam()) + ".csv";
  const LintReport report = LintDataFile("data.csv", common::ReadTextFile(TestFile(file)), nullptr);
  EXPECT_EQ(MessagesOf(report), "");
}

INSTANTIATE_TEST_SUITE_P(AllFiles, CleanFilesTest, testing::Values("editor", "studio", "toolkit"));

TEST(CleanFiles, HaveEnoughRows) {
  std::size_t changes = 0;
  for (const char* const name : {"editor", "studio", "toolkit"}) changes += ReportOn(name).changes;
  EXPECT_GE(changes, 200U);
}

}  // namespace
}  // namespace hosts::author
