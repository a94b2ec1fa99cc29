// Corrects the mistakes in a data file that have only one possible correction.
#ifndef HOSTS_AUTHOR_LINT_LINTFIX_H_
#define HOSTS_AUTHOR_LINT_LINTFIX_H_

#include <cstddef>
#include <string>
#include <string_view>

#include "hosts/author/lint/Lint.h"

namespace hosts::author {

/// The corrections to make.
enum class FixScope {
  kSafe,  ///< only corrections that do not announce a change again
  kAll,
};

struct FixedFile {
  std::string text;
  /// The differences from the old text in the unified format, without context lines. The lines
  /// contain the bytes of the file without escapes.
  std::string diff;
  std::size_t corrected = 0;
  /// The number of corrections that were not made, because only `FixScope::kAll` makes them.
  std::size_t withheld = 0;
};

/// Applies the edits of the findings in `report` to `text`, the content of the file `name`.
/// `report` must be the report on this file only. `host` is the installed host, or null. Keeps the
/// byte order mark and CR LF line endings.
///
/// A correction announces a change again if it changes the identity of a change that has text and
/// is not in an internal section.
FixedFile FixDataFile(const std::string& name, std::string_view text, const LintReport& report,
                      FixScope scope, const LintHost* host);

}  // namespace hosts::author

#endif  // HOSTS_AUTHOR_LINT_LINTFIX_H_
