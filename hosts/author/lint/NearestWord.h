// Finds the word that an author probably meant.
#ifndef HOSTS_AUTHOR_LINT_NEARESTWORD_H_
#define HOSTS_AUTHOR_LINT_NEARESTWORD_H_

#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace hosts::author {

/// Returns `text` (UTF-8) in lower case, without any kind of spaces and invisible characters, and
/// with a hyphen instead of each kind of dash and of the underscore.
std::u16string Fold(std::string_view text);

/// Returns the element of `words` that is most similar to `text`: first one with an equal `Fold`,
/// otherwise one with few inserted, deleted, replaced or exchanged characters, otherwise one
/// without digits that begins with `text` or that `text` begins with. Returns `std::nullopt` if
/// none is similar. Compares at most 64 characters.
std::optional<std::string> NearestWord(std::string_view text,
                                       std::span<const std::string_view> words);

/// Returns `text` without the spaces of any kind at its start and end.
std::string_view TrimSpaces(std::string_view text);

}  // namespace hosts::author

#endif  // HOSTS_AUTHOR_LINT_NEARESTWORD_H_
