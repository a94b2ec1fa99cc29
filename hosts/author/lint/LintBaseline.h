// Compares a data file with an earlier version of it.
#ifndef HOSTS_AUTHOR_LINT_LINTBASELINE_H_
#define HOSTS_AUTHOR_LINT_LINTBASELINE_H_

#include <string>
#include <string_view>

#include "hosts/author/lint/Lint.h"

namespace hosts::author {

/// Returns a report with a finding for each effect that the edits since `oldText` have on users:
/// new changes, changes that are new again, removed changes, and features that users are asked to
/// rate again.
///
/// Pairs the changes of both files by their identity, then by the columns 2, 3 and 10, and then by
/// their order within an item. `host` is the installed host, or null after `InstallNoLintHost`.
/// Without a host, does not compare rating requests.
LintReport CompareWithBaseline(const std::string& name, std::string_view text,
                               const std::string& oldName, std::string_view oldText,
                               const LintHost* host);

}  // namespace hosts::author

#endif  // HOSTS_AUTHOR_LINT_LINTBASELINE_H_
