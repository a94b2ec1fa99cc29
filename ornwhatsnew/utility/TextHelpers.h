// Text rules: what a localisation key is, which part of a text identifies it, how keywords compare,
// which grouping keys are section keys, and the number of a version.
//
// All functions are pure and take UTF-8. Where a rule is about characters, ill-formed bytes count
// as U+FFFD.
#ifndef ORNWHATSNEW_UTILITY_TEXTHELPERS_H_
#define ORNWHATSNEW_UTILITY_TEXTHELPERS_H_

#include <cstdint>
#include <string_view>

#include <orncore/Export.h>
#include <ornwhatsnew/utility/SharedTypes.h>

namespace ornwhatsnew {

/// Returns whether the text is a localisation key: it begins with `$$$/`. The full form is
/// `$$$/path/key=default text`.
ORN_EXPORT bool IsZString(std::string_view text) noexcept;

/// Returns the part of a text that takes part in identities. For a localisation key with a `=`,
/// this is the part before the first `=`, with `$$$/private/` replaced by `$$$/`. So neither a new
/// default text nor a move out of the private area makes a text new. Any other text is returned
/// unchanged.
ORN_EXPORT UTF8String ExtractHashablePortion(std::string_view text);

/// Returns whether two texts are equal after full Unicode lower-casing. Does not allocate if both
/// are ASCII.
ORN_EXPORT bool CaseInsensitiveEqual(std::string_view a, std::string_view b);

/// Returns the text in lower case, by the full Unicode mapping without a locale.
ORN_EXPORT UTF8String LowerCase8(std::string_view text);

/// Returns whether the grouping key is one of the four section keys, in any letter case.
ORN_EXPORT bool IsSpecialCaseSection(std::string_view key);

/// Returns whether the grouping key is that of one of the two sections that only internal users
/// see, in any letter case.
ORN_EXPORT bool IsInternalSpecialCaseSection(std::string_view key);

/// Returns the number of a dotted version in base 1000. The rightmost component has the weight 1,
/// so `25.1.3` is 25,001,003, and `25.1` and `25.1.0` differ. A component that is not a decimal
/// number counts as 0. A component of 1000 or more carries over. The sum wraps modulo 2^64. Does
/// not allocate.
ORN_EXPORT std::int64_t VersionNumber(std::string_view version);

}  // namespace ornwhatsnew

#endif  // ORNWHATSNEW_UTILITY_TEXTHELPERS_H_
