// Lower and upper case, the same in every locale.
//
// The mappings are Unicode's full ones, by the tables of ICU: a text can grow (U+00DF becomes
// "SS"), and a capital sigma becomes the final form at the end of a word. Unpaired surrogates and
// NUL map to themselves.
//
// The functions that fill `out` keep its capacity: used again with texts that are no longer, they
// allocate nothing; `text` may lie in `out` (that costs a copy). All throw `std::length_error` for
// a text of 2^31 units or more that is not all ASCII; `out` then holds an unspecified text.
//
// All functions may be called from several threads at once, as long as each has an `out` of its
// own.
#ifndef ORNCORE_STRING_CASEMAPPING_H_
#define ORNCORE_STRING_CASEMAPPING_H_

#include <string_view>

#include <orncore/Export.h>
#include <orncore/string/Types.h>

namespace orncore::string {

/// `text` in lower case.
[[nodiscard]] ORN_EXPORT UTF16String LowerCase(std::u16string_view text);
/// `text` in upper case.
[[nodiscard]] ORN_EXPORT UTF16String UpperCase(std::u16string_view text);

/// Replaces what `out` holds by `text` in lower case.
ORN_EXPORT void LowerCase(std::u16string_view text, UTF16String& out);
/// Replaces what `out` holds by `text` in upper case.
ORN_EXPORT void UpperCase(std::u16string_view text, UTF16String& out);

/// UTF-8 in lower case: the same bytes as the way through UTF-16, `LowerCase` and back gives, so
/// ill-formed sequences become U+FFFD. ASCII text never leaves its 8 bits.
[[nodiscard]] ORN_EXPORT UTF8String LowerCaseUTF8(std::string_view text);
/// Replaces what `out` holds by UTF-8 `text` in lower case.
ORN_EXPORT void LowerCaseUTF8(std::string_view text, UTF8String& out);

}  // namespace orncore::string

#endif  // ORNCORE_STRING_CASEMAPPING_H_
