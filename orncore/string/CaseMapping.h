// Lower and upper case, the same in every locale.
//
// The functions use the full Unicode mappings from ICU's tables. A string can grow (U+00DF becomes
// "SS"), and a capital sigma at the end of a word becomes the final form. Unpaired surrogates and
// NUL map to themselves.
//
// Functions that write to `out` keep its capacity. The source must not be a part of `out`. All
// functions throw `std::length_error` for a string of 2^31 units or more that is not all ASCII; the
// content of `out` is unspecified then.
//
// All functions are safe to call from several threads, each with its own `out`.
#ifndef ORNCORE_STRING_CASEMAPPING_H_
#define ORNCORE_STRING_CASEMAPPING_H_

#include <string_view>

#include <orncore/Export.h>
#include <orncore/string/Conversion.h>

namespace orncore::string {

/// Returns `text` in lower case.
[[nodiscard]] ORN_EXPORT UTF16String LowerCase(std::u16string_view text);
/// Returns `text` in upper case.
[[nodiscard]] ORN_EXPORT UTF16String UpperCase(std::u16string_view text);
/// Replaces the content of `out` with `text` in upper case.
ORN_EXPORT void UpperCase(std::u16string_view text, UTF16String& out);

/// Returns UTF-8 `text` in lower case. Ill-formed sequences become U+FFFD, as in `UTF8to16`.
[[nodiscard]] ORN_EXPORT UTF8String LowerCaseUTF8(std::string_view text);
/// Replaces the content of `out` with UTF-8 `text` in lower case. Allocates nothing if `text` is
/// ASCII and `out` has room for it.
ORN_EXPORT void LowerCaseUTF8(std::string_view text, UTF8String& out);

}  // namespace orncore::string

#endif  // ORNCORE_STRING_CASEMAPPING_H_
