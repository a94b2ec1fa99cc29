// Replacement of texts in texts, in one pass from left to right.
//
// Occurrences are found in the text as it was: they never overlap, and what was inserted is never
// searched again. Patterns are compared unit by unit; an empty pattern replaces nothing.
//
// All functions may be called from several threads at once, as long as each changes a text of its
// own.
#ifndef ORNCORE_STRING_REPLACE_H_
#define ORNCORE_STRING_REPLACE_H_

#include <cstddef>
#include <span>
#include <string_view>

#include <orncore/Export.h>
#include <orncore/string/Types.h>

namespace orncore::string {

/// One thing to look for and what to put in its place. Views: the texts belong to the caller.
struct Replacement {
  std::u16string_view pattern;  ///< what to look for
  std::u16string_view text;     ///< what to put in its place
};

/// Replaces every occurrence of every pattern in `text`. Where several patterns begin at the same
/// unit, the first of `replacements` is taken. The views may lie in `text`. If an exception is
/// thrown (memory), `text` is unchanged.
///
///     Replacement arguments[] = {{u"@0", name}, {u"@1", version}};
///     ReplaceInString(line, arguments);
ORN_EXPORT void ReplaceInString(UTF16String& text, std::span<const Replacement> replacements);

/// Replaces every occurrence of `pattern` in `text`, with the same promises.
ORN_EXPORT void ReplaceInString(UTF16String& text, std::u16string_view pattern,
                                std::u16string_view replacement);

/// Adds `text`, with every occurrence replaced, behind what `out` holds. No view may lie in `out`.
ORN_EXPORT void AppendReplacing(std::u16string_view text, std::span<const Replacement> replacements,
                                UTF16String& out);

/// Replaces every occurrence of `pattern` in `text` and answers how many there were. The views may
/// lie in `text`. If an exception is thrown (memory), `text` is unchanged.
ORN_EXPORT std::size_t ReplaceAllStringInString(UTF16String& text, std::u16string_view pattern,
                                                std::u16string_view replacement);

}  // namespace orncore::string

#endif  // ORNCORE_STRING_REPLACE_H_
