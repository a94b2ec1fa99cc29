// Processes the strings of data files: key texts, letter case, section keys and versions.
//
// All functions accept UTF-8 strings with any bytes and can be called from any thread. When they
// compare or convert letter case, ill-formed UTF-8 counts as U+FFFD.
#ifndef ORNWHATSNEW_UTILITY_TEXTHELPERS_H_
#define ORNWHATSNEW_UTILITY_TEXTHELPERS_H_

#include <cstdint>
#include <string_view>

#include <orncore/Export.h>
#include <ornwhatsnew/utility/SharedTypes.h>

namespace ornwhatsnew {

/// Returns whether `text` is a key text, which means that it begins with `$$$/`. A complete key
/// text has the form `$$$/path/key=default text`.
ORN_EXPORT bool IsZString(std::string_view text) noexcept;

/// Returns the part of `text` from which identities are computed. For a key text with a `=`, this
/// is the part before the first `=`, with the prefix `$$$/private/` replaced by `$$$/`. Therefore,
/// an identity does not change if only the default text changes or if the key moves out of
/// `private`. Returns any other string unchanged.
ORN_EXPORT UTF8String ExtractHashablePortion(std::string_view text);

/// Returns whether two strings are equal after `LowerCase8`. Does not allocate if both are ASCII.
ORN_EXPORT bool CaseInsensitiveEqual(std::string_view a, std::string_view b);

/// Returns `text` in lower case. Uses the full Unicode mapping, which does not depend on the
/// locale.
ORN_EXPORT UTF8String LowerCase8(std::string_view text);

/// Returns whether `key` is the key of one of the four sections, ignoring the letter case.
ORN_EXPORT bool IsSpecialCaseSection(std::string_view key);

/// Returns whether `key` is "INTERNAL" or "UNREVIEWED", ignoring the letter case. Only internal
/// users see these two sections.
ORN_EXPORT bool IsInternalSpecialCaseSection(std::string_view key);

/// Returns the number by which versions are compared. Each component of the dotted `version` has
/// 1000 times the weight of the component to its right. The last component has the weight 1. For
/// example, `25.1.3` gives 25,001,003. Missing components are not added, so `25.1` and `25.1.0`
/// differ.
///
/// A component that is not a decimal integer, or that does not fit into 64 bits, counts as 0. A
/// component of 1000 or more carries over into the component to its left. The sum wraps modulo
/// 2^64. Does not allocate.
ORN_EXPORT std::int64_t VersionNumber(std::string_view version);

}  // namespace ornwhatsnew

#endif  // ORNWHATSNEW_UTILITY_TEXTHELPERS_H_
