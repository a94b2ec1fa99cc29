// Formats the findings of `ornwhatsnew lint` for other programs, and summarises them.
#ifndef HOSTS_AUTHOR_LINT_LINTOUTPUT_H_
#define HOSTS_AUTHOR_LINT_LINTOUTPUT_H_

#include <string>

#include "hosts/author/lint/Lint.h"

namespace hosts::author {

/// Returns the report as a JSON document:
///
///   {"version": 1,
///    "findings": [{"file", "line", "column", "endLine", "endColumn", "field": {"number", "name"},
///                  "severity", "code", "message", "related": [{"file", "line", "column",
///                  "message"}], "fix": {"replacement"}, "fingerprint"}],
///    "summary": {"errors", "warnings", "notes", "files", "changes", "notJudged": []}}
///
/// "field" is null if the finding is not about a single field. "fix" is null if no single
/// replacement of the finding's characters corrects the mistake.
std::string LintJson(const LintReport& report);

/// Returns the report as a SARIF 2.1.0 log with one run. Column numbers count code points.
std::string LintSarif(const LintReport& report);

/// Returns one workflow command of GitHub Actions for each finding.
std::string LintGithub(const LintReport& report);

/// Returns the summary, such as "2 errors, one warning and no notes in 210 changes of one file".
std::string LintSummary(const LintReport& report);

}  // namespace hosts::author

#endif  // HOSTS_AUTHOR_LINT_LINTOUTPUT_H_
