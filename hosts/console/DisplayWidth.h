// How many columns of a terminal a text takes.
#ifndef HOSTS_CONSOLE_DISPLAYWIDTH_H_
#define HOSTS_CONSOLE_DISPLAYWIDTH_H_

#include <cstddef>
#include <string_view>

namespace hosts::console {

/// The columns of a text without control characters, by the East Asian width of its characters:
/// two for wide ones and emoji, none for marks that combine with what stands before them, one for
/// the others. Characters that only some terminals draw as one (emoji glued together by joiners)
/// count one by one, so that a line never gets longer than the terminal is wide.
/// Takes time linear in the text.
std::size_t DisplayWidth(std::u16string_view text);

}  // namespace hosts::console

#endif  // HOSTS_CONSOLE_DISPLAYWIDTH_H_
