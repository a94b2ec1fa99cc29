// Decides which links a view may open.
#ifndef ORNCORE_STRING_SAFELINK_H_
#define ORNCORE_STRING_SAFELINK_H_

#include <string_view>

#include <orncore/Export.h>

namespace orncore::string {

/// Returns whether a view may make `link` clickable or open it.
///
/// A safe link begins with `https://` in lower case, followed by a host name and an optional port.
/// The host name is an IP address in square brackets, or it consists of ASCII letters, digits, `-`,
/// `.` and `_`. The function checks the characters of an IP address, but not its syntax. The link
/// has at most 2,000 bytes. All of them are ASCII characters that are valid in a URL. Therefore,
/// the link has no spaces, double quotes, angle brackets, backslashes or control characters.
///
/// A safe link has no user information before the host name. In `https://a.example@b.example/`, the
/// host name is `b.example`, but the link looks like a link to `a.example`.
///
/// A panel contains the links of the data file unchanged. Call this function for each link. If the
/// result is false, show the link as text or omit it. Does not allocate. Safe to call from any
/// thread.
ORN_EXPORT bool IsSafeLink(std::string_view link) noexcept;

/// Applies the rules of the UTF-8 overload to a UTF-16 string, such as the link of a style run.
ORN_EXPORT bool IsSafeLink(std::u16string_view link) noexcept;

}  // namespace orncore::string

#endif  // ORNCORE_STRING_SAFELINK_H_
