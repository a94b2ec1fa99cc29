// Checks data files for mistakes of authors.
//
//     InstallLintHost(host);
//     const LintReport report = LintDataFile("whatsnew.csv", text, &host);
#ifndef HOSTS_AUTHOR_LINT_LINT_H_
#define HOSTS_AUTHOR_LINT_LINT_H_

#include <cstddef>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "hosts/author/lint/Finding.h"
#include "hosts/author/lint/LintContext.h"

namespace hosts::author {

/// The severities that replace those of the table.
using SeverityOverrides = std::map<LintCode, Severity>;

/// The findings in one or more files.
struct LintReport {
  /// The findings of each file in the order of their places.
  std::vector<Finding> findings;
  /// The findings that are not listed.
  std::map<LintCode, OmittedFindings> omitted;
  std::size_t files = 0;
  std::size_t changes = 0;
  /// What was not judged and why, each as one clause.
  std::set<std::string> notJudged;

  std::size_t Count(Severity severity) const;
  /// Adds the findings of another file. Counts those that are not listed, without their edits.
  void Append(LintReport other);
};

/// Reads a host description and configures the services of the process from it. The user of the
/// host is an internal user without debug entries, so that a feature that this user does not see is
/// seen by nobody. Throws `common::JsonError` if the file cannot be used.
LintHost InstallLintHost(const std::string& file);

/// Configures the services of the process in the same way from the host description of `file`.
LintHost InstallLintHost(const std::string& file, common::HostDescription description);

/// Configures the services of the process for a host without features.
void InstallNoLintHost();

/// Checks `text`, the content of the file `name`. `host` is the installed host, or null. Never
/// fails for any content. Takes time O(n log n) in the length of `text`.
LintReport LintDataFile(const std::string& name, std::string text, const LintHost* host);

/// Replaces the severities of the findings, and removes those that are off.
void ApplySeverities(LintReport& report, const SeverityOverrides& overrides);

/// Sorts the findings by file and place, removes duplicates, and makes equal fingerprints
/// different. Adds the numbers of findings that are not listed to `notJudged`.
void FinishReport(LintReport& report);

}  // namespace hosts::author

#endif  // HOSTS_AUTHOR_LINT_LINT_H_
