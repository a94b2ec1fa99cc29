// Measures the width of text on a terminal.
#ifndef HOSTS_CONSOLE_DISPLAYWIDTH_H_
#define HOSTS_CONSOLE_DISPLAYWIDTH_H_

#include <cstddef>
#include <string_view>

namespace hosts::console {

/// Returns the number of terminal columns that `text` occupies. Characters whose East Asian width
/// is wide occupy 2 columns. A narrow character with a selector for emoji presentation also
/// occupies 2. Combining marks, format characters, control characters, and Hangul vowels and final
/// consonants occupy 0 columns. All other characters occupy 1 column.
///
/// Counts each emoji of a joined sequence, because only some terminals draw the sequence as one
/// emoji. The text is therefore never wider than the result. Takes linear time.
std::size_t DisplayWidth(std::u16string_view text);

}  // namespace hosts::console

#endif  // HOSTS_CONSOLE_DISPLAYWIDTH_H_
