// How each style of the panel looks on a terminal.
#ifndef HOSTS_CONSOLE_TERMINALSTYLE_H_
#define HOSTS_CONSOLE_TERMINALSTYLE_H_

#include <string>
#include <string_view>

#include "hosts/common/StyledSegments.h"

namespace hosts::console {

/// Ends every colour and attribute.
inline constexpr std::string_view kStyleEnd = "\x1B[0m";
/// Ends a hyperlink.
inline constexpr std::string_view kHyperlinkEnd = "\x1B]8;;\x1B\\";

/// The escape sequence that switches a set of styles on from plain text; empty when the set looks
/// like plain text. Uses the terminal's own palette, so that it can be read on dark and on light
/// grounds alike.
std::string StyleStart(const common::StyleSet& styles);

/// Whether the link may be handed to a terminal: it begins with "https://", consists of the
/// characters that a URL may have, all ASCII, and is at most 2,000 bytes long.
bool IsSafeHyperlink(std::string_view link);

/// The escape sequence that starts a hyperlink. Pieces with the same number are one link, though a
/// line may end between them. REQUIRES: `IsSafeHyperlink(link)`.
std::string HyperlinkStart(std::string_view link, std::size_t number);

}  // namespace hosts::console

#endif  // HOSTS_CONSOLE_TERMINALSTYLE_H_
