// The rules of `ornwhatsnew lint`. Each subject has its own file.
#ifndef HOSTS_AUTHOR_LINT_RULES_H_
#define HOSTS_AUTHOR_LINT_RULES_H_

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include "hosts/author/lint/LintContext.h"

namespace hosts::author {

/// Judges the whole file.
using FileRule = void (*)(LintContext& context);

/// Judges one change that no earlier finding explains.
using ChangeRule = void (*)(LintContext& context, const LintRow& row);

// The rules for the file, in the order in which they must run. The rules for the form, the header
// and the rows set `LintRow::isExplained`.
std::span<const FileRule> FileFormRules();
std::span<const FileRule> HeaderRules();
std::span<const FileRule> RowShapeRules();
std::span<const FileRule> ChangesSinceRules();
std::span<const FileRule> HostTableRules();
std::span<const FileRule> ListRules();

// The rules for a change. They run for one change after the other, so that a row is read once.
// `TextRules` run last, because they omit fields that have a finding.
std::span<const ChangeRule> WordRules();
std::span<const ChangeRule> VersionRules();
std::span<const ChangeRule> LinkRules();
std::span<const ChangeRule> LocalisationRules();
std::span<const ChangeRule> TextRules();

/// Returns whether the fields look like the names of columns: at least three are names of the
/// manual, or begin like them, at any position.
bool LooksLikeHeader(const ornwhatsnew::DataRow& row);

/// Returns whether the fields look like those of a change: a version in the first column, a section
/// key in the second, a keyword in the fourth, or a link in the eighth.
bool LooksLikeChange(const ornwhatsnew::DataRow& row);

/// Returns whether the library accepts `text` as a salience.
bool IsSalience(std::string_view text);

/// Returns the length of a v, or of the word "version", before the first digit of `text`. Returns 0
/// if there is none.
std::size_t VersionPrefixLength(std::string_view text);

/// Reports a version that is a date of a spreadsheet.
void CheckVersionDate(LintContext& context, const LintRow& row, ornwhatsnew::DataColumn column);

/// Returns the parts of `version` between its points. An empty version has one empty part.
std::vector<std::string_view> VersionComponents(std::string_view version);

/// Returns the components of `version` as numbers. Returns `std::nullopt` if one is not a number.
std::optional<std::vector<std::int64_t>> VersionNumbers(std::string_view version);

/// Returns whether `text` is similar to "Changes-Since", but does not equal it.
bool IsMisspeltChangesSince(std::string_view text);

}  // namespace hosts::author

#endif  // HOSTS_AUTHOR_LINT_RULES_H_
