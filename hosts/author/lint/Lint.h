// Checks data files for mistakes of authors.
//
//     const LintHost host = InstallLintHost("host.json");
//     const LintReport report = LintDataFile("whatsnew.csv", text, &host);
#ifndef HOSTS_AUTHOR_LINT_LINT_H_
#define HOSTS_AUTHOR_LINT_LINT_H_

#include <cstddef>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "hosts/author/lint/Finding.h"
#include "hosts/author/lint/LintContext.h"

namespace hosts::author {

/// The configured severities of codes. They replace the severities in the table of codes.
using SeverityOverrides = std::map<LintCode, Severity>;

/// The findings in one or more files.
struct LintReport {
  /// The listed findings. `FinishReport` sorts them by file and position.
  std::vector<Finding> findings;
  /// For each code, the findings that are not listed; see `OmittedFindings`.
  std::map<LintCode, OmittedFindings> omitted;
  std::size_t files = 0;
  std::size_t changes = 0;
  /// Clauses that state what `lint` did not check, and which findings it does not list.
  std::set<std::string> notJudged;

  std::size_t Count(Severity severity) const;
  /// Adds the findings, counts and clauses of `other`. For the findings that `other` does not list,
  /// adds only their number, not their edits.
  void Append(LintReport other);
};

/// Reads a host description and configures the services of the process from it. Makes the user an
/// internal user, removes the debug entries, and clears `terminating`. A feature that this user
/// does not see is therefore visible to nobody. Throws `common::JsonError` in the same cases as
/// `common::ReadHostDescription`.
LintHost InstallLintHost(const std::string& file);

/// Configures the services of the process from `description`, the host description in `file`. Makes
/// the user an internal user, removes the debug entries, and clears `terminating`.
LintHost InstallLintHost(const std::string& file, common::HostDescription description);

/// Configures the services of the process for a host without features.
void InstallNoLintHost();

/// Checks `text`, the content of the file `name`. `host` is the installed host, or null after
/// `InstallNoLintHost`. Accepts any content. Takes time O(n log n) in the length of `text`.
LintReport LintDataFile(const std::string& name, std::string_view text, const LintHost* host,
                        LintScope scope = LintScope::kFile);

/// Replaces the severities of the findings whose codes are in `overrides`. Removes the findings
/// with the severity `kOff`, including those that are not listed.
void ApplySeverities(LintReport& report, const SeverityOverrides& overrides);

/// Sorts the findings by file and position, removes duplicates, and makes the fingerprints in each
/// file unique. For each code with findings that are not listed, adds a clause to `notJudged` that
/// states how many there are.
void FinishReport(LintReport& report);

}  // namespace hosts::author

#endif  // HOSTS_AUTHOR_LINT_LINT_H_
