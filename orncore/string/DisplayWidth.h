// Measures the width of text on a terminal.
#ifndef ORNCORE_STRING_DISPLAYWIDTH_H_
#define ORNCORE_STRING_DISPLAYWIDTH_H_

#include <cstddef>
#include <string_view>

#include <orncore/Export.h>

namespace orncore::string {

/// Returns the number of terminal columns that `text` occupies. It is the sum of these widths:
/// - 0 for nonspacing and enclosing marks, invisible format characters, control characters, and
///   Hangul vowels and final consonants;
/// - 2 for other characters whose East Asian width is wide or fullwidth, or that are followed by
///   U+FE0F, the selector for emoji presentation;
/// - 1 for all other characters.
///
/// Counts each emoji of a joined sequence separately, because only some terminals draw the sequence
/// as one emoji. On these terminals, the result is greater than the width. An unpaired surrogate
/// counts like U+FFFD. Takes linear time and is safe to call from any thread.
[[nodiscard]] ORN_EXPORT std::size_t DisplayWidth(std::u16string_view text) noexcept;

}  // namespace orncore::string

#endif  // ORNCORE_STRING_DISPLAYWIDTH_H_
