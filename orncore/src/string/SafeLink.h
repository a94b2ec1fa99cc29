// Implements `ornwhatsnew::IsSafeLink`. It is in this module because `ornappsupport` uses it, too.
#ifndef ORNCORE_SRC_STRING_SAFELINK_H_
#define ORNCORE_SRC_STRING_SAFELINK_H_

#include <string_view>

namespace orncore::string {

/// Returns whether a view may open `link`. <ornwhatsnew/SafeLink.h> documents the rules.
bool IsSafeLink(std::string_view link) noexcept;
/// Returns the same result for a UTF-16 string.
bool IsSafeLink(std::u16string_view link) noexcept;

}  // namespace orncore::string

#endif  // ORNCORE_SRC_STRING_SAFELINK_H_
