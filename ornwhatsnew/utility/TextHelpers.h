// The small text rules that records, parser, visibility and display share: what a localisation key
// is, which part of a text identifies it, how keywords compare, which grouping keys are sections,
// and what number a version text stands for. All of them are pure functions on UTF-8 texts; bytes
// that are not UTF-8 count as U+FFFD wherever a rule looks at characters.
#ifndef ORNWHATSNEW_UTILITY_TEXTHELPERS_H_
#define ORNWHATSNEW_UTILITY_TEXTHELPERS_H_

#include <cstdint>
#include <string_view>
#include <utility>

#include <orncore/Export.h>
#include <ornwhatsnew/utility/SharedTypes.h>

namespace ornwhatsnew {

/// Whether the text is a localisation key of the form `$$$/path/key=default text`: begins with
/// `$$$/`.
ORN_EXPORT bool IsZString(std::string_view text) noexcept;

/// The part of a text that takes part in its identity. For a localisation key that is the part
/// before the first `=`, with `$$$/private/` shortened to `$$$/`, so that neither a reworded
/// default nor a move out of the private area makes a text new; any other text, and a key without
/// `=`, counts whole.
ORN_EXPORT UTF8String ExtractHashablePortion(std::string_view text);

/// The same without a copy: the portion is `first` followed by `second`. Both view into `text` or
/// into a constant.
ORN_EXPORT std::pair<std::string_view, std::string_view> SplitHashablePortion(
    std::string_view text) noexcept;

/// Whether two texts are equal after full Unicode lower-casing. Allocates only for texts beyond
/// ASCII.
ORN_EXPORT bool CaseInsensitiveEqual(std::string_view a, std::string_view b);

/// The text in lower case, by full Unicode mapping without a locale.
ORN_EXPORT UTF8String LowerCase8(std::string_view text);

/// Whether the grouping key names one of the four sections, in any letter case.
ORN_EXPORT bool IsSpecialCaseSection(std::string_view key);

/// Whether the grouping key names one of the two sections that only users with the
/// internal-features permission see, in any letter case.
ORN_EXPORT bool IsInternalSpecialCaseSection(std::string_view key);

/// The number of a dotted version, base 1000, the rightmost component counting once: `25.1.3` is
/// 25,001,003, and so `25.1` and `25.1.0` differ. A component that is no decimal number counts as
/// 0, one of 1000 or more spills into the next; the sum wraps modulo 2^64. Allocates only
/// for versions of more than 16 components.
ORN_EXPORT std::int64_t VersionNumber(std::string_view version);

}  // namespace ornwhatsnew

#endif  // ORNWHATSNEW_UTILITY_TEXTHELPERS_H_
