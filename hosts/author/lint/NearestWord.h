// Finds the word that an author probably meant.
#ifndef HOSTS_AUTHOR_LINT_NEARESTWORD_H_
#define HOSTS_AUTHOR_LINT_NEARESTWORD_H_

#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace hosts::author {

/// Returns `text` (UTF-8) in lower case as UTF-16. Removes control characters up to U+001F, and
/// common white space and invisible characters. Replaces dashes and underscores with hyphens.
std::u16string Fold(std::string_view text);

/// Returns the element of `words` that is most similar to `text`. Uses only the first 256 bytes of
/// `text`, and compares the results of `Fold`. Selects the first of these words that exists:
///
/// 1. a word for which `Fold` returns the same string
/// 2. the word with the smallest edit distance. The limit for the distance is 0 to 3, depending on
///    the length of the shorter string. For a word with digits, the limit is at most 1.
/// 3. a word that begins with `text`, or with which `text` begins. Both must have at least three
///    characters and no digits.
///
/// Returns `std::nullopt` if there is no such word.
std::optional<std::string> NearestWord(std::string_view text,
                                       std::span<const std::string_view> words);

/// Returns `text` without the tabs, spaces, no-break spaces and ideographic spaces at its start and
/// end.
std::string_view TrimSpaces(std::string_view text);

}  // namespace hosts::author

#endif  // HOSTS_AUTHOR_LINT_NEARESTWORD_H_
