// Formats the findings of `lint` as text for a terminal or a log.
#ifndef HOSTS_CONSOLE_LINTTEXT_H_
#define HOSTS_CONSOLE_LINTTEXT_H_

#include <map>
#include <string>

#include "hosts/author/lint/Lint.h"

namespace hosts::console {

/// The contents of the checked files by name.
using FileTexts = std::map<std::string, std::string>;

/// Returns one line "FILE:LINE:COLUMN: severity: message [code]" for each finding. If `isStyled` is
/// true, colours the severity and adds two lines. The first added line is an excerpt of the line in
/// the file, and the second contains carets below the range of the finding. Omits both lines if
/// this range is empty, or if `texts` does not contain the file. In the excerpt, replaces control
/// characters, and shortens a long line with "...".
std::string LintText(const author::LintReport& report, const FileTexts& texts, bool isStyled);

}  // namespace hosts::console

#endif  // HOSTS_CONSOLE_LINTTEXT_H_
