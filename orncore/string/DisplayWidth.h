// Measures the width of text on a terminal.
#ifndef ORNCORE_STRING_DISPLAYWIDTH_H_
#define ORNCORE_STRING_DISPLAYWIDTH_H_

#include <cstddef>
#include <string_view>

#include <orncore/Export.h>

namespace orncore::string {

/// Returns the number of terminal columns that `text` occupies. Characters whose East Asian width
/// is wide or fullwidth occupy 2 columns. A narrow character before U+FE0F, the selector for emoji
/// presentation, also occupies 2 columns. Nonspacing and enclosing marks, invisible format
/// characters, control characters, and Hangul vowels and final consonants occupy 0 columns. All
/// other characters occupy 1 column.
///
/// Counts each emoji of a joined sequence separately, because only some terminals draw the sequence
/// as one emoji. The text is therefore never wider than the result. An unpaired surrogate counts
/// like U+FFFD. Takes linear time and is safe to call from any thread.
[[nodiscard]] ORN_EXPORT std::size_t DisplayWidth(std::u16string_view text) noexcept;

}  // namespace orncore::string

#endif  // ORNCORE_STRING_DISPLAYWIDTH_H_
