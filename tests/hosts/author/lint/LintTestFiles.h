// Helpers for tests of `ornwhatsnew lint`.
#ifndef TESTS_HOSTS_AUTHOR_LINT_LINTTESTFILES_H_
#define TESTS_HOSTS_AUTHOR_LINT_LINTTESTFILES_H_

#include <algorithm>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "hosts/author/lint/Lint.h"
#include "hosts/common/TextFile.h"

namespace hosts::author {

inline std::filesystem::path TestFile(std::string_view name) {
  return std::filesystem::path(LINT_TEST_FOLDER) / name;
}

/// The first two rows of most data files in tests: a header row and a `Changes-Since` row.
inline const std::string kHeaderRows =
    "App Version,Grouping ID,Jira ID,Salience,Rating,First Version,Platform,URL,Commit,Message\n"
    "4.2,Changes-Since\n";

/// Checks the data file `text` without a host description. Returns the finished report.
inline LintReport LintText(const std::string& text) {
  InstallNoLintHost();
  LintReport report = LintDataFile("data.csv", text, nullptr);
  FinishReport(report);
  return report;
}

/// Returns the names of the codes of all findings, in order.
inline std::vector<std::string> CodesOf(const LintReport& report) {
  std::vector<std::string> codes;
  for (const Finding& finding : report.findings) codes.emplace_back(InfoOf(finding.code).name);
  return codes;
}

}  // namespace hosts::author

#endif  // TESTS_HOSTS_AUTHOR_LINT_LINTTESTFILES_H_
