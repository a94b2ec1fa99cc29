// Measures the width of text on a terminal.
#ifndef HOSTS_CONSOLE_DISPLAYWIDTH_H_
#define HOSTS_CONSOLE_DISPLAYWIDTH_H_

#include <cstddef>
#include <string_view>

namespace hosts::console {

/// Returns the number of terminal columns that `text` occupies. Wide characters and emoji occupy 2
/// columns, combining marks 0 and all others 1, according to their East Asian width. Control
/// characters count as 0.
///
/// Counts each emoji of a joined sequence, because only some terminals draw the sequence as one
/// emoji. A line is therefore never wider than the result. Takes linear time.
std::size_t DisplayWidth(std::u16string_view text);

}  // namespace hosts::console

#endif  // HOSTS_CONSOLE_DISPLAYWIDTH_H_
