// The rules of `ornwhatsnew lint`. Each subject has its own file.
#ifndef HOSTS_AUTHOR_LINT_RULES_H_
#define HOSTS_AUTHOR_LINT_RULES_H_

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "hosts/author/lint/LintContext.h"

namespace hosts::author {

/// Checks the whole file.
using FileRule = void (*)(LintContext& context);

/// Checks one change. Does not run if `LintRow::isExplained` is true for the row.
using ChangeRule = void (*)(LintContext& context, const LintRow& row);

// The rules for the file. `FileFormRules`, `HeaderRules` and `RowShapeRules` run before the rules
// for a change, because they set `LintRow::isExplained`.
std::span<const FileRule> FileFormRules();
std::span<const FileRule> HeaderRules();
std::span<const FileRule> RowShapeRules();
std::span<const FileRule> ChangesSinceRules();
std::span<const FileRule> HostTableRules();
std::span<const FileRule> ListRules();

// The rules for a change. All of them check one change before any of them checks the next change,
// so that the row stays in the processor cache. `TextRules` run last, because the rule for spaces
// does not report a field that already has a finding.
std::span<const ChangeRule> WordRules();
std::span<const ChangeRule> VersionRules();
std::span<const ChangeRule> LinkRules();
std::span<const ChangeRule> LocalisationRules();
std::span<const ChangeRule> TextRules();

/// Returns whether the fields look like the names of columns. At least three fields, at any
/// position, must match a column name that ornwhatsnew(5) lists. A field matches a name if both
/// have at least three bytes and one of them begins with the other. Ignores the letter case.
bool LooksLikeHeader(const ornwhatsnew::DataRow& row);

/// Returns whether at least one field looks like a field of a change: a version in the first
/// column, a section key in the second, a salience in the fourth, or a link in the eighth.
bool LooksLikeChange(const ornwhatsnew::DataRow& row);

/// Returns whether `header`, the row that the library uses as the header, is probably a change or a
/// Changes-Since row. The change or the version is then lost. `items` are the items of the list.
bool IsChangeUsedAsHeader(const ornwhatsnew::DataRow& header, const ornwhatsnew::FeatureMap& items);

/// Returns whether the row has an odd number of double quotes. The last quote is then an opening
/// quote without a closing quote.
bool HasOpenQuote(const ornwhatsnew::DataRow& row);

/// Returns whether `text` is a keyword of the salience column, in any letter case.
bool IsSalience(std::string_view text);

/// Returns whether `c` is a digit from 0 to 9.
constexpr bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}

/// Returns whether `version` consists only of digits and dots. This is true for an empty version.
bool IsPlainVersion(std::string_view version);

/// Returns the number of bytes before the first digit of `text` if these bytes are "v" or
/// "version". Otherwise, returns 0. Ignores the letter case, spaces around the word, and a dot at
/// the end of the word.
std::size_t VersionPrefixLength(std::string_view text);

/// Reports the version in `column` if it is a date. Spreadsheet programs convert some versions to
/// dates.
void CheckVersionDate(LintContext& context, const LintRow& row, ornwhatsnew::DataColumn column);

/// Returns `text` with dots instead of commas if it is a version with a comma, such as "4,3".
/// Returns an empty string for any other text.
std::string VersionWithDots(std::string_view text);

/// Returns the number of components of `version`. Dots separate the components. An empty version
/// has one empty component.
std::size_t CountVersionComponents(std::string_view version);

/// Returns the components of `version` as numbers. Returns `std::nullopt` if a component is not a
/// number.
std::optional<std::vector<std::int64_t>> VersionNumbers(std::string_view version);

/// Returns why the library cannot correctly compare `version` with versions that have the same
/// number of components. The result is a clause that follows the version in a message. It is empty
/// if the library can compare them.
std::string ComparisonMistake(std::string_view version);

/// Returns whether `text` is similar, but not equal, to "Changes-Since". Ignores the letter case.
bool IsMisspeltChangesSince(std::string_view text);

}  // namespace hosts::author

#endif  // HOSTS_AUTHOR_LINT_RULES_H_
