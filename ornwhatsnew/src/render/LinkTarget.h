// Formats the targets of links as text, for links that are not clickable.
#ifndef ORNWHATSNEW_SRC_RENDER_LINKTARGET_H_
#define ORNWHATSNEW_SRC_RENDER_LINKTARGET_H_

#include <cstddef>
#include <string>
#include <string_view>

namespace ornwhatsnew {

/// The maximum length, in bytes, of the result of `PrintedLinkTarget` for a link that is not safe.
inline constexpr std::size_t kMaximumPrintedTarget = 200;

/// Returns `link` as visible ASCII text that a panel can print in angle brackets. A safe link
/// (`IsSafeLink`) is unchanged.
///
/// In any other link, spaces, `<`, `>`, `"`, control characters and non-ASCII characters are
/// percent-encoded, so that the link cannot look like two links. If the result would be longer than
/// `kMaximumPrintedTarget`, the function shortens the link. It omits all but two slashes before the
/// host name, and replaces the user information with "...". If the result is still too long, "..."
/// also replaces the end of the link. The host name remains unchanged unless it alone is too long.
/// In that case, "..." replaces its beginning, because the end of a host name identifies its owner.
/// An escape such as `%20` is never split.
std::string PrintedLinkTarget(std::string_view link);

}  // namespace ornwhatsnew

#endif  // ORNWHATSNEW_SRC_RENDER_LINKTARGET_H_
