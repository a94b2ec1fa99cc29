#include "hosts/author/lint/LintCode.h"

#include <filesystem>
#include <fstream>
#include <ostream>
#include <set>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "hosts/author/lint/LintBaseline.h"
#include "tests/hosts/author/lint/LintTestFiles.h"

namespace hosts::author {

void PrintTo(const LintCodeInfo& info, std::ostream* stream) {
  *stream << info.name;
}

namespace {

using testing::HasSubstr;

// Returns the expected content of docs/lint-codes.md.
std::string CodePage() {
  std::string text =
      "# Codes of ornwhatsnew lint\n\n"
      "This page is generated from the table that `ornwhatsnew lint --explain CODE` reads. A test\n"
      "compares this page with the table. The [author's manual](data-file.md) explains the\n"
      "format of the data file.\n\n"
      "| Code | Severity | Summary |\n"
      "|---|---|---|\n";
  for (const LintCodeInfo& info : LintCodes()) {
    const std::string_view name = info.name;
    text.append("| [").append(name).append("](#").append(name).append(") | ");
    text.append(SeverityName(info.severity)).append(" | ").append(info.summary).append(" |\n");
  }
  for (const LintCodeInfo& info : LintCodes()) {
    text += "\n## " + std::string(info.name) + "\n\n";
    text += "Severity: " + std::string(SeverityName(info.severity)) + ". " +
            std::string(info.explanation) + "\n\n" + std::string(info.remedy) + "\n";
  }
  return text;
}

std::string Describe(const Finding& finding) {
  const Place& place = finding.place;
  std::string text = std::to_string(place.line) + ":" + std::to_string(place.column) + "-" +
                     std::to_string(place.endLine) + ":" + std::to_string(place.endColumn);
  text += " " + std::string(SeverityName(finding.severity)) + " " +
          std::string(InfoOf(finding.code).name) + ": " + finding.message + "\n";
  for (const RelatedPlace& related : finding.related) {
    text += "  " + std::to_string(related.line) + ":" + std::to_string(related.column) + " " +
            related.message + "\n";
  }
  return text;
}

LintReport ReportOnCode(const std::string& code) {
  const std::filesystem::path host = TestFile("codes/" + code + ".host.json");
  const bool hasHost = std::filesystem::exists(host);
  const LintHost installed = InstallLintHost((hasHost ? host : TestFile("host.json")).native());
  const std::string text = common::ReadTextFile(TestFile("codes/" + code + ".csv"));
  LintReport report = LintDataFile("data.csv", text, &installed);
  const std::filesystem::path old = TestFile("codes/" + code + ".old.csv");
  if (std::filesystem::exists(old)) {
    report.Append(
        CompareWithBaseline("data.csv", text, "old.csv", common::ReadTextFile(old), &installed));
  }
  // Switch off `feature-without-change` in the tests of other codes, because their data files do
  // not contain a change for each feature.
  if (code != "feature-without-change") {
    ApplySeverities(report, {{LintCode::kFeatureWithoutChange, Severity::kOff}});
  }
  FinishReport(report);
  return report;
}

class LintCodesTest : public testing::TestWithParam<LintCodeInfo> {};

/// For each code, CODE.expected lists the findings in CODE.csv. The host description is
/// CODE.host.json or, if this file is missing, host.json. If CODE.old.csv exists, it is the
/// baseline.
TEST_P(LintCodesTest, DataFileHasExactlyTheExpectedFindings) {
  const std::string code(GetParam().name);
  const LintReport report = ReportOnCode(code);
  std::string findings;
  for (const Finding& finding : report.findings) findings += Describe(finding);
  EXPECT_EQ(findings, common::ReadTextFile(TestFile("codes/" + code + ".expected")));
  EXPECT_THAT(CodesOf(report), testing::Contains(code));
}

INSTANTIATE_TEST_SUITE_P(AllCodes, LintCodesTest,
                         testing::ValuesIn(LintCodes().begin(), LintCodes().end()),
                         [](const auto& instance) {
                           std::string name(instance.param.name);
                           std::ranges::replace(name, '-', '_');
                           return name;
                         });

TEST(LintCodes, EachDataFileBelongsToACode) {
  for (const auto& entry : std::filesystem::directory_iterator(TestFile("codes"))) {
    const std::string name = entry.path().filename().native();
    EXPECT_TRUE(FindLintCode(name.substr(0, name.find('.'))).has_value()) << name;
  }
}

TEST(LintCodes, NamesAreUnique) {
  std::set<std::string_view> names;
  for (const LintCodeInfo& info : LintCodes()) {
    EXPECT_TRUE(names.insert(info.name).second) << info.name;
  }
}

TEST(LintCodes, UnknownNameHasNoCode) {
  EXPECT_EQ(FindLintCode("no-such-code"), std::nullopt);
}

TEST(LintCodes, SeverityNamesCanBeReadBack) {
  for (const Severity severity :
       {Severity::kOff, Severity::kNote, Severity::kWarning, Severity::kError}) {
    EXPECT_EQ(FindSeverity(SeverityName(severity)), severity);
  }
}

TEST(LintCodes, ExplanationContainsTheWholeEntry) {
  const LintCodeInfo& info = InfoOf(LintCode::kOpenQuote);
  const std::string text = Explanation(LintCode::kOpenQuote);
  EXPECT_EQ(text, "open-quote (error): " + std::string(info.summary) + "\n\n" +
                      std::string(info.explanation) + "\n\n" + std::string(info.remedy) + "\n");
}

TEST(LintCodes, ListIsATable) {
  EXPECT_THAT(CodeList(),
              testing::AllOf(testing::StartsWith("file-separator               error    the "),
                             HasSubstr("\nchanges-since-before-header  error    "),
                             HasSubstr("\nsame-identity                warning  ")));
}

TEST(LintCodes, PageInTheManualIsCurrent) {
  const std::string current = testing::TempDir() + "lint-codes.md";
  std::ofstream(current) << CodePage();
  EXPECT_EQ(common::ReadTextFile(LINT_CODE_PAGE), CodePage())
      << "the table of codes has changed: copy " << current << " to docs/";
}

}  // namespace
}  // namespace hosts::author
