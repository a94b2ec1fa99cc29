// The width of text on a terminal.
#ifndef HOSTS_CONSOLE_DISPLAYWIDTH_H_
#define HOSTS_CONSOLE_DISPLAYWIDTH_H_

#include <cstddef>
#include <string_view>

namespace hosts::console {

/// Returns the number of terminal columns of a text without control characters, by the East Asian
/// width of its characters: 2 for wide characters and emoji, 0 for combining marks, 1 for all
/// others. Emoji that are connected by joiners count separately, because only some terminals draw
/// them as one; a line is therefore never wider than the terminal. Takes linear time.
std::size_t DisplayWidth(std::u16string_view text);

}  // namespace hosts::console

#endif  // HOSTS_CONSOLE_DISPLAYWIDTH_H_
