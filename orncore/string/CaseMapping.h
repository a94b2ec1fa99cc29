// Converts strings to lower and upper case. The results do not depend on the locale.
//
// The functions use the full case mappings of Unicode. The result can be longer than the source:
// U+00DF becomes "SS". In lower case, a capital sigma at the end of a word becomes a final sigma.
// NUL maps to itself.
//
// The functions throw `std::length_error` if the source or the result has 2^31 UTF-16 units or
// more. `LowerCaseUTF8` has no limit for ASCII strings. The functions throw `std::bad_alloc` if
// memory runs out.
//
// All functions are safe to call from any thread if each call has its own `out`.
#ifndef ORNCORE_STRING_CASEMAPPING_H_
#define ORNCORE_STRING_CASEMAPPING_H_

#include <string_view>

#include <orncore/Export.h>
#include <orncore/string/Conversion.h>

namespace orncore::string {

/// Returns `text` in lower case. Keeps unpaired surrogates unchanged.
[[nodiscard]] ORN_EXPORT UTF16String LowerCase(std::u16string_view text);
/// Returns `text` in upper case. Keeps unpaired surrogates unchanged.
[[nodiscard]] ORN_EXPORT UTF16String UpperCase(std::u16string_view text);

/// Returns the UTF-8 string `text` in lower case. Replaces ill-formed sequences with U+FFFD, as
/// `UTF8to16` does.
[[nodiscard]] ORN_EXPORT UTF8String LowerCaseUTF8(std::string_view text);
/// Replaces the content of `out` with the result of `LowerCaseUTF8(text)`. Allocates nothing if
/// `text` is ASCII and fits into the capacity of `out`. `text` must not be a part of `out`. After
/// an exception, the content of `out` is unspecified.
ORN_EXPORT void LowerCaseUTF8(std::string_view text, UTF8String& out);

}  // namespace orncore::string

#endif  // ORNCORE_STRING_CASEMAPPING_H_
