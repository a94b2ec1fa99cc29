// Builds the terminal escape sequences for the panel's styles and links.
#ifndef HOSTS_CONSOLE_TERMINALSTYLE_H_
#define HOSTS_CONSOLE_TERMINALSTYLE_H_

#include <string>
#include <string_view>

#include "hosts/common/StyledSegments.h"

namespace hosts::console {

/// The escape sequence that switches off all colours and attributes.
inline constexpr std::string_view kStyleEnd = "\x1B[0m";
/// The escape sequence that ends a hyperlink.
inline constexpr std::string_view kHyperlinkEnd = "\x1B]8;;\x1B\\";

/// Returns the escape sequence that switches from plain text to `styles`. Returns an empty string
/// if text with these styles is shown as plain text. Uses colours of the terminal's palette that
/// are readable on dark and light backgrounds.
std::string StyleStart(const common::StyleSet& styles);

/// Returns the escape sequence that starts a hyperlink to `link`. Terminals treat hyperlinks with
/// the same `number` as one link, even on different lines. REQUIRES:
/// `ornwhatsnew::IsSafeLink(link)`.
std::string HyperlinkStart(std::string_view link, std::size_t number);

}  // namespace hosts::console

#endif  // HOSTS_CONSOLE_TERMINALSTYLE_H_
