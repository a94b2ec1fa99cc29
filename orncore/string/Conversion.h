// Conversion between UTF-8, UTF-16 and ASCII.
//
// Nothing here rejects a text. Each maximal subpart of an ill-formed UTF-8 sequence becomes one
// U+FFFD, as the Unicode standard recommends (chapter 3, "U+FFFD Substitution of Maximal
// Subparts"); an unpaired surrogate becomes one U+FFFD. NUL is an ordinary character and a byte
// order mark is kept. So the results are always well-formed, and well-formed text survives the way
// there and back.
//
// The functions that fill `out` keep its capacity: used again with texts that are no longer, they
// allocate nothing. They throw `std::bad_alloc` or `std::length_error` when the result does not fit
// into memory; `out` then holds an unspecified text.
//
// All functions may be called from several threads at once, as long as each has an `out` of its
// own.
#ifndef ORNCORE_STRING_CONVERSION_H_
#define ORNCORE_STRING_CONVERSION_H_

#include <cstddef>
#include <string_view>

#include <orncore/Export.h>
#include <orncore/string/Types.h>

namespace orncore::string {

/// `text` as UTF-16.
[[nodiscard]] ORN_EXPORT UTF16String UTF8to16(std::string_view text);
/// `text` as UTF-8.
[[nodiscard]] ORN_EXPORT UTF8String UTF16to8(std::u16string_view text);

/// Replaces what `out` holds by `text` as UTF-16.
ORN_EXPORT void UTF8to16(std::string_view text, UTF16String& out);
/// Replaces what `out` holds by `text` as UTF-8.
ORN_EXPORT void UTF16to8(std::u16string_view text, UTF8String& out);

/// Adds `text` as UTF-16 behind what `out` holds. Surrogates that meet at the seam are not joined.
ORN_EXPORT void AppendUTF8to16(std::string_view text, UTF16String& out);
/// Adds `text` as UTF-8 behind what `out` holds.
ORN_EXPORT void AppendUTF16to8(std::u16string_view text, UTF8String& out);

/// An ASCII text of the program itself (a name, a number) as UTF-16. A byte of 0x80 or above, which
/// such a text does not hold, becomes U+FFFD.
[[nodiscard]] ORN_EXPORT UTF16String AsciiToUTF16(std::string_view text);

/// The number of bytes that `UTF16to8(text)` would have. Builds nothing.
[[nodiscard]] ORN_EXPORT std::size_t UTF8Length(std::u16string_view text) noexcept;

/// Whether every byte is below 0x80. True for the empty text.
[[nodiscard]] ORN_EXPORT bool IsAscii(std::string_view text) noexcept;

/// Whether `UTF8to16(text)` would replace nothing. True for the empty text.
[[nodiscard]] ORN_EXPORT bool IsWellFormedUTF8(std::string_view text) noexcept;

/// Removes one UTF-8 byte order mark (EF BB BF) from the front of `text`; true when there was one.
ORN_EXPORT bool RemoveUTF8BOM_IfPresent(UTF8String& text);

}  // namespace orncore::string

#endif  // ORNCORE_STRING_CONVERSION_H_
