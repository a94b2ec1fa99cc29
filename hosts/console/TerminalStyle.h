// Terminal escape sequences for the panel's styles and links.
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

/// Returns the escape sequence that switches from plain text to a set of styles, or an empty string
/// if the set looks like plain text. The colours are those of the terminal's palette and readable
/// on dark and light backgrounds.
std::string StyleStart(const common::StyleSet& styles);

/// Whether the link may be sent to a terminal: it begins with "https://", has only the ASCII
/// characters that are valid in a URL, and has at most 2,000 bytes.
bool IsSafeHyperlink(std::string_view link);

/// Returns the escape sequence that starts a hyperlink. Parts with the same number belong to one
/// link, even on different lines. REQUIRES: `IsSafeHyperlink(link)`.
std::string HyperlinkStart(std::string_view link, std::size_t number);

}  // namespace hosts::console

#endif  // HOSTS_CONSOLE_TERMINALSTYLE_H_
