// Measures the width of text on a terminal.
#ifndef ORNWHATSNEW_SRC_RENDER_DISPLAYWIDTH_H_
#define ORNWHATSNEW_SRC_RENDER_DISPLAYWIDTH_H_

#include <cstddef>
#include <string_view>

namespace ornwhatsnew {

/// Returns the number of terminal columns that `text` occupies. Characters whose East Asian width
/// is wide or fullwidth occupy 2 columns. A narrow character before U+FE0F, the selector for emoji
/// presentation, also occupies 2 columns. Combining marks, format characters, control characters,
/// and Hangul vowels and final consonants occupy 0 columns. All other characters occupy 1 column.
///
/// Counts each emoji of a joined sequence separately, because only some terminals draw the sequence
/// as one emoji. The text is therefore never wider than the result. Takes linear time.
std::size_t DisplayWidth(std::u16string_view text);

}  // namespace ornwhatsnew

#endif  // ORNWHATSNEW_SRC_RENDER_DISPLAYWIDTH_H_
