// Builds the terminal escape sequences for the panel's styles and links.
#ifndef ORNWHATSNEW_SRC_RENDER_TERMINALSTYLE_H_
#define ORNWHATSNEW_SRC_RENDER_TERMINALSTYLE_H_

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include <ornwhatsnew/utility/SharedTypes.h>

namespace ornwhatsnew {

/// The escape sequence that switches off all colours and attributes.
inline constexpr std::string_view kStyleEnd = "\x1B[0m";
/// The escape sequence that ends a hyperlink.
inline constexpr std::string_view kHyperlinkEnd = "\x1B]8;;\x1B\\";

/// Returns the escape sequence that switches from plain text to `style`. Returns an empty string if
/// text with this style is shown as plain text. Uses colours of the terminal's palette that are
/// readable on dark and light backgrounds. The string has static storage duration.
std::string_view StyleStart(std::optional<StyleID> style);

/// Returns the escape sequence that starts a hyperlink to `link`. Terminals treat hyperlinks with
/// the same `link` and `number` as one link, even on different lines. REQUIRES: `IsSafeLink(link)`.
std::string HyperlinkStart(std::string_view link, std::size_t number);

}  // namespace ornwhatsnew

#endif  // ORNWHATSNEW_SRC_RENDER_TERMINALSTYLE_H_
