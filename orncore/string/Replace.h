// Replaces substrings in one pass from left to right.
//
// The functions search the original string and not the inserted text. Matches do not overlap. An
// empty pattern matches nothing. Patterns and replacements may be views of the string that is
// changed.
//
// If memory runs out, the functions throw `std::bad_alloc` and leave the string unchanged.
//
// All functions are safe to call from any thread if each call changes its own string.
#ifndef ORNCORE_STRING_REPLACE_H_
#define ORNCORE_STRING_REPLACE_H_

#include <cstddef>
#include <span>
#include <string_view>

#include <orncore/Export.h>
#include <orncore/string/Conversion.h>

namespace orncore::string {

/// A pattern and its replacement text. Both are views of strings, which must exist until
/// `ReplaceInString` returns.
struct Replacement {
  std::u16string_view pattern;  ///< the substring to find
  std::u16string_view text;     ///< the text that replaces it
};

/// Replaces every occurrence of every pattern in `text`. If several patterns match at the same
/// position, the first one in `replacements` applies.
///
///     Replacement arguments[] = {{u"@0", name}, {u"@1", version}};
///     ReplaceInString(line, arguments);
ORN_EXPORT void ReplaceInString(UTF16String& text, std::span<const Replacement> replacements);

/// Replaces every occurrence of `pattern` in `text` with `replacement`. Returns the number of
/// replacements.
ORN_EXPORT std::size_t ReplaceAllStringInString(UTF16String& text, std::u16string_view pattern,
                                                std::u16string_view replacement);

}  // namespace orncore::string

#endif  // ORNCORE_STRING_REPLACE_H_
