#include "hosts/author/lint/LintConfig.h"

#include <filesystem>
#include <fstream>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "hosts/common/JsonDocument.h"
#include "tests/support/TemporaryFolder.h"

namespace hosts::author {
namespace {

using testing::HasSubstr;

std::string ProblemOf(std::string_view json) {
  try {
    ParseLintConfig(json, "config");
  } catch (const common::JsonError& error) {
    return error.what();
  }
  return "";
}

TEST(LintConfig, ReadsSeverities) {
  const SeverityOverrides overrides =
      ParseLintConfig(R"({"severity": {"unreviewed-left": "error", "html": "off"}})", "config");
  EXPECT_EQ(overrides.at(LintCode::kUnreviewedLeft), Severity::kError);
  EXPECT_EQ(overrides.at(LintCode::kHTML), Severity::kOff);
  EXPECT_THAT(ParseLintConfig("{}", "config"), testing::IsEmpty());
}

TEST(LintConfig, ReadsAFileOfAtMostAMillionBytes) {
  const test_support::TemporaryFolder folder;
  const std::string json = R"({"severity": {"html": "off"}})";
  const std::string spaces(1'000'000 - json.size(), ' ');
  folder.Write(kLintConfigName, json + spaces);
  EXPECT_THAT(ConfiguredSeverities(folder.Path() / "data.csv"),
              testing::ElementsAre(testing::Pair(LintCode::kHTML, Severity::kOff)));
  folder.Write(kLintConfigName, json + spaces + " ");
  EXPECT_THROW(ConfiguredSeverities(folder.Path() / "data.csv"), common::JsonError);
}

TEST(LintConfig, RejectsAnUnknownCodeAndNamesTheNearest) {
  EXPECT_THAT(ProblemOf(R"({"severity": {"unreviewed-lef": "error"}})"),
              HasSubstr("unknown code 'unreviewed-lef'; write 'unreviewed-left'"));
}

TEST(LintConfig, RejectsAnUnknownSeverity) {
  EXPECT_THAT(ProblemOf(R"({"severity": {"html": "fatal"}})"), HasSubstr("'warning'"));
  EXPECT_THAT(ProblemOf(R"({"severity": {"html": []}})"), HasSubstr("more than 2 deep"));
}

TEST(LintConfig, RejectsAnUnknownMember) {
  EXPECT_THAT(ProblemOf(R"({"severities": {}})"), HasSubstr("severities"));
}

TEST(LintConfig, IsFoundInTheNearestFolderAbove) {
  const test_support::TemporaryFolder folder;
  std::filesystem::create_directories(folder.Path() / "a/b");
  const std::filesystem::path config = folder.Path() / kLintConfigName;
  EXPECT_EQ(FindLintConfig(folder.Path() / "a/b/data.csv"), std::nullopt);
  std::ofstream(config) << "{}";
  EXPECT_EQ(FindLintConfig(folder.Path() / "a/b/data.csv"), config);
  std::ofstream(folder.Path() / "a" / kLintConfigName) << "{}";
  EXPECT_EQ(FindLintConfig(folder.Path() / "a/b/data.csv"), folder.Path() / "a" / kLintConfigName);
}

TEST(LintConfig, CommandLineSeverityNeedsACodeAndALevel) {
  SeverityOverrides overrides;
  EXPECT_EQ(AddSeverity("html=error", overrides), "");
  EXPECT_EQ(overrides.at(LintCode::kHTML), Severity::kError);
  EXPECT_THAT(AddSeverity("htm=error", overrides), HasSubstr("unknown code"));
  EXPECT_THAT(AddSeverity("html", overrides), HasSubstr("does not contain a valid severity"));
  EXPECT_THAT(AddSeverity("html=fatal", overrides),
              testing::AllOf(HasSubstr("does not contain a valid severity"),
                             testing::EndsWith(" after '='")));
}

}  // namespace
}  // namespace hosts::author
