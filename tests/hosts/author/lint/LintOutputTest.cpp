#include "hosts/author/lint/LintOutput.h"

#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <ornwhatsnew/Version.h>
#include <nlohmann/json.hpp>

#include "tests/hosts/author/lint/LintTestFiles.h"

namespace hosts::author {
namespace {

using nlohmann::json;
using testing::HasSubstr;
using testing::IsEmpty;

const std::string kBugfixRow = "4.3,bugfix,,,,,,,,Text\n";

TEST(LintJson, DescribesAFinding) {
  const LintReport linted = LintText(kHeaderRows + kBugfixRow);
  const json report = json::parse(LintJson(linted));
  EXPECT_EQ(report["version"], 1);
  const json& finding = report["findings"].at(0);
  EXPECT_EQ(finding["file"], "data.csv");
  EXPECT_EQ(finding["line"], 3);
  EXPECT_EQ(finding["column"], 5);
  EXPECT_EQ(finding["endLine"], 3);
  EXPECT_EQ(finding["endColumn"], 11);
  EXPECT_EQ(finding["field"], json({{"number", 2}, {"name", "Grouping ID"}}));
  EXPECT_EQ(finding["severity"], "error");
  EXPECT_EQ(finding["code"], "grouping-id-unknown");
  EXPECT_EQ(finding["related"], json::array());
  EXPECT_EQ(finding["fix"], json({{"replacement", "BUGFIX"}}));
  EXPECT_EQ(finding["message"], linted.findings.at(0).message);
  EXPECT_EQ(finding["fingerprint"], linted.findings.at(0).fingerprint);
}

TEST(LintJson, FindingOnTheWholeFileHasNoFieldAndNoFix) {
  const json report = json::parse(LintJson(LintText("")));
  const json& finding = report["findings"].at(0);
  EXPECT_EQ(finding["code"], "file-empty");
  EXPECT_EQ(finding["line"], 1);
  EXPECT_EQ(finding["endColumn"], 1);
  EXPECT_EQ(finding["field"], nullptr);
  EXPECT_EQ(finding["fix"], nullptr);
  EXPECT_EQ(report["summary"]["changes"], 0);
}

TEST(LintJson, ListsTheRelatedPlaces) {
  const std::string header = kHeaderRows.substr(0, kHeaderRows.find('\n') + 1);
  const json report = json::parse(LintJson(LintText(kHeaderRows + header)));
  EXPECT_EQ(
      report["findings"].at(0)["related"],
      json::array(
          {{{"file", "data.csv"}, {"line", 1}, {"column", 1}, {"message", "the first header"}}}));
}

TEST(LintJson, FindingOnLineEndsHasAFixIfThereIsOnlyOne) {
  const auto fix = [](const std::string& rows) {
    const json finding = json::parse(LintJson(LintText(kHeaderRows + rows)))["findings"].at(0);
    EXPECT_EQ(finding["code"], "file-line-ends");
    return finding["fix"];
  };
  const std::string row = "4.3,MISC,,,,,,,,One";
  EXPECT_EQ(fix(row + "\r" + row + "\n"), json({{"replacement", "\n"}}));
  EXPECT_EQ(fix(row + "\r\r" + row + "\n"), nullptr);
}

TEST(LintJson, SummaryCountsFindingsFilesAndChanges) {
  const json summary = json::parse(LintJson(LintText(kHeaderRows + kBugfixRow)))["summary"];
  EXPECT_EQ(summary["errors"], 1);
  EXPECT_EQ(summary["warnings"], 0);
  EXPECT_EQ(summary["notes"], 0);
  EXPECT_EQ(summary["files"], 1);
  EXPECT_EQ(summary["changes"], 1);
  EXPECT_EQ(summary["notJudged"],
            json::array({"features, their keys and the version of the host are checked only with "
                         "--host"}));
}

TEST(LintJson, PositionsCountCodePoints) {
  const json report = json::parse(LintJson(LintText(
      "\uFEFF" + kHeaderRows + "4.3,MISC,\U00010000\U000103FF\U0010FC00\uE000 ,,,,,,,T\n")));
  const json& finding = report["findings"].at(0);
  EXPECT_EQ(finding["column"], 10);
  EXPECT_EQ(finding["endColumn"], 15);
}

TEST(LintReport, FingerprintDoesNotDependOnTheLine) {
  const LintReport report = LintText(kHeaderRows + kBugfixRow);
  const LintReport moved = LintText(kHeaderRows + "4.3,MISC,,,,,,,,First\n" + kBugfixRow);
  EXPECT_EQ(report.findings.at(0).fingerprint, moved.findings.at(0).fingerprint);
}

TEST(LintReport, EqualRowsHaveDifferentFingerprints) {
  const LintReport report = LintText(kHeaderRows + kBugfixRow + kBugfixRow);
  ASSERT_EQ(report.findings.at(2).code, LintCode::kGroupingIDUnknown);
  EXPECT_EQ(report.findings.at(2).fingerprint, report.findings.at(0).fingerprint + "/2");
}

// A service that receives the findings of every version recognises a known finding by this string.
TEST(LintReport, FingerprintIsTheSameInEveryVersion) {
  EXPECT_EQ(LintText(kHeaderRows + kBugfixRow).findings.at(0).fingerprint,
            "6d01a544-42a8-2c34-add6-120ca4478c28");
}

TEST(LintReport, AppendAddsTheFindingsAndTheCounts) {
  const LintHost host = InstallLintHost(TestFile("codes/host-epic-key-empty.host.json").native());
  std::string text = kHeaderRows;
  for (std::size_t i = 0; i < kMaximumFindings + 5; ++i) text += "4.3,misc,ORN-1,,,,,,,Text\n";
  LintReport report;
  report.Append(LintDataFile("a.csv", text, &host));
  report.Append(LintDataFile("b.csv", text, &host));
  FinishReport(report);
  EXPECT_EQ(report.files, 2U);
  EXPECT_EQ(report.changes, 2 * (kMaximumFindings + 5));
  EXPECT_THAT(
      report.notJudged,
      testing::Contains("10 more findings with the code grouping-id-unknown are not listed"));
  // The host description has two findings, which the check of each file reports.
  EXPECT_EQ(std::ranges::count(CodesOf(report), "host-epic-key-empty"), 2);
  EXPECT_EQ(std::ranges::count(report.findings, host.file, &Finding::file), 2);
}

TEST(LintReport, SeverityOffRemovesAFinding) {
  LintReport report = LintText(kHeaderRows + kBugfixRow);
  ApplySeverities(report, {{LintCode::kGroupingIDUnknown, Severity::kOff}});
  EXPECT_THAT(CodesOf(report), IsEmpty());
}

TEST(LintReport, ListsALimitedNumberOfFindingsOfACode) {
  std::string text = kHeaderRows;
  for (std::size_t i = 0; i < kMaximumFindings + 5; ++i) text += kBugfixRow;
  LintReport report = LintText(text);
  ApplySeverities(report, {{LintCode::kSameIdentity, Severity::kOff}});
  EXPECT_EQ(report.findings.size(), 1000U);
  EXPECT_THAT(report.notJudged,
              testing::ElementsAre(
                  "4 more findings with the code same-identity are not listed",
                  "5 more findings with the code grouping-id-unknown are not listed",
                  "features, their keys and the version of the host are checked only with --host"));
}

TEST(LintReport, ListsTheFirstFeaturesWithLaterLinks) {
  LintHost host;
  std::string text = kHeaderRows;
  for (std::size_t i = 0; i < kMaximumFindings + 20; ++i) {
    const std::string number = std::to_string(i);
    host.description.betaFeatures.push_back(
        {"feature." + number, "EPIC-" + number, "Feature", "", 0, true, true});
    text += "4.3,EPIC-" + number + ",,,,,,https://a.example/" + number + ",,One\n";
    text += "4.3,EPIC-" + number + ",,,,,,https://b.example/" + number + ",,Two\n";
  }
  common::InstallHost(host.description);
  const LintReport report = LintDataFile("data.csv", text, &host);
  std::vector<std::size_t> lines;
  for (const Finding& finding : report.findings) {
    if (finding.code == LintCode::kLinkLater) lines.push_back(finding.place.line);
  }
  ASSERT_EQ(lines.size(), kMaximumFindings);
  EXPECT_EQ(*std::ranges::max_element(lines), 2 * kMaximumFindings + 2);
}

TEST(LintReport, DoesNotCountFindingsThatAreOff) {
  InstallNoLintHost();
  std::string text = kHeaderRows;
  for (std::size_t i = 0; i < kMaximumFindings + 5; ++i) text += kBugfixRow;
  LintReport report = LintDataFile("data.csv", text, nullptr);
  ApplySeverities(report, {{LintCode::kGroupingIDUnknown, Severity::kOff}});
  FinishReport(report);
  EXPECT_THAT(report.notJudged, testing::Not(testing::Contains(HasSubstr("unknown are not"))));
}

TEST(LintReport, FindingThatIsNotListedDoesNotChangeAListedOne) {
  std::string text = kHeaderRows;
  for (std::size_t i = 0; i < kMaximumFindings; ++i) text += "4.3,MISC,,Wrong,,,,,,Text\n";
  const LintReport report = LintText(text + "4.3,MISC,, Wrong,,,,,,Text\n");
  for (const Finding& finding : report.findings) EXPECT_FALSE(finding.edit);
}

TEST(LintSarif, DescribesAFinding) {
  const LintReport report = LintText(kHeaderRows + kBugfixRow);
  const json log = json::parse(LintSarif(report));
  EXPECT_EQ(log["version"], "2.1.0");
  EXPECT_EQ(log["$schema"], "https://json.schemastore.org/sarif-2.1.0.json");
  const json& run = log["runs"].at(0);
  EXPECT_EQ(run["tool"]["driver"]["name"], "ornwhatsnew lint");
  EXPECT_EQ(run["tool"]["driver"]["version"], ornwhatsnew::kVersionText);
  EXPECT_EQ(run["columnKind"], "unicodeCodePoints");
  const json& result = run["results"].at(0);
  EXPECT_EQ(result["ruleId"], "grouping-id-unknown");
  EXPECT_EQ(result["level"], "error");
  EXPECT_EQ(result["message"], json({{"text", report.findings.at(0).message}}));
  EXPECT_EQ(result["partialFingerprints"],
            json({{"ornwhatsnewLint/v1", report.findings.at(0).fingerprint}}));
  const std::size_t index = result["ruleIndex"].get<std::size_t>();
  const LintCodeInfo& info = InfoOf(LintCode::kGroupingIDUnknown);
  EXPECT_EQ(run["tool"]["driver"]["rules"].at(index),
            json({{"id", "grouping-id-unknown"},
                  {"shortDescription", {{"text", info.summary}}},
                  {"fullDescription", {{"text", info.explanation}}},
                  {"help", {{"text", info.remedy}}},
                  {"defaultConfiguration", {{"level", "error"}}}}));
  const json& place = result["locations"].at(0)["physicalLocation"];
  EXPECT_EQ(place["artifactLocation"]["uri"], "data.csv");
  EXPECT_EQ(place["region"],
            json({{"startLine", 3}, {"startColumn", 5}, {"endLine", 3}, {"endColumn", 11}}));
  EXPECT_FALSE(result.contains("relatedLocations"));
}

TEST(LintSarif, ListsTheRelatedPlaces) {
  const std::string header = kHeaderRows.substr(0, kHeaderRows.find('\n') + 1);
  const json log = json::parse(LintSarif(LintText(kHeaderRows + header)));
  const json& result = log["runs"].at(0)["results"].at(0);
  EXPECT_EQ(result["ruleId"], "header-repeated");
  const json& related = result["relatedLocations"].at(0);
  EXPECT_EQ(related["id"], 0);
  EXPECT_EQ(related["message"]["text"], "the first header");
  const json& place = related["physicalLocation"];
  EXPECT_EQ(place["artifactLocation"]["uri"], "data.csv");
  EXPECT_EQ(place["region"], json({{"startLine", 1}, {"startColumn", 1}}));
}

TEST(LintSarif, EscapesPaths) {
  LintReport report = LintText(kHeaderRows + kBugfixRow);
  report.findings.at(0).file = "new files/what's n\u00F6w%.csv";
  EXPECT_THAT(LintSarif(report), HasSubstr("\"new%20files/what%27s%20n%C3%B6w%25.csv\""));
}

TEST(LintSarif, AbsolutePathIsAFileURI) {
  LintReport report = LintText(kHeaderRows + kBugfixRow);
  report.findings.at(0).file = "/new files/data.csv";
  EXPECT_THAT(LintSarif(report), HasSubstr("\"file:///new%20files/data.csv\""));
}

TEST(LintGithub, EscapesPropertiesAndMessages) {
  LintReport report = LintText(kHeaderRows + kBugfixRow);
  report.findings.at(0).file = "a,b:c%.csv";
  report.findings.at(0).message = "100%, and: this\nor\rthat";
  EXPECT_EQ(LintGithub(report),
            "::error file=a%2Cb%3Ac%25.csv,line=3,endLine=3,col=5,endColumn=11,"
            "title=grouping-id-unknown::100%25, and: this%0Aor%0Dthat\n");
}

TEST(LintGithub, NoteIsANotice) {
  LintReport report = LintText(kHeaderRows + "4.3,MISC,,Unreviewed,,,,,,Text\n");
  EXPECT_THAT(LintGithub(report), testing::StartsWith("::notice "));
}

TEST(LintSummary, CountsInWords) {
  EXPECT_EQ(LintSummary(LintText(kHeaderRows + kBugfixRow)),
            "one error, no warnings and no notes in one change of one file");
}

}  // namespace
}  // namespace hosts::author
