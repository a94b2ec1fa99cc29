// Defines the string types of all modules. Converts between UTF-8 and UTF-16, from ASCII to UTF-16,
// and from decimal strings to integers.
//
// The UTF-8 and UTF-16 conversions accept every string, and their results are well-formed. They
// keep NUL and the byte order mark. Converting a well-formed string to the other encoding and back
// returns an equal string.
//
// The conversions replace each unpaired surrogate with one U+FFFD. They replace each maximal
// subpart of an ill-formed UTF-8 sequence with one U+FFFD. The Unicode standard recommends this in
// chapter 3, "U+FFFD Substitution of Maximal Subparts".
//
// Functions with the parameter `out` reuse its capacity and allocate only if it is too small. For a
// conversion to UTF-16, the required capacity is one unit per byte of the source. The source must
// not be a part of `out`.
//
// Unless declared `noexcept`, the functions throw `std::bad_alloc` or `std::length_error` if the
// result does not fit into memory. After such an exception, the content of `out` is unspecified.
//
// All functions are safe to call from any thread if each call has its own `out`.
#ifndef ORNCORE_STRING_CONVERSION_H_
#define ORNCORE_STRING_CONVERSION_H_

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include <orncore/Export.h>

namespace orncore::string {

/// A UTF-8 string for file text, persisted values and identifiers. Sizes are in bytes. The type
/// does not enforce well-formed content.
using UTF8String = std::string;
/// A UTF-16 string for paths and display text. Sizes are in 16-bit units. The type does not enforce
/// well-formed content.
using UTF16String = std::u16string;

/// Converts UTF-8 to UTF-16 and returns the result.
[[nodiscard]] ORN_EXPORT UTF16String UTF8to16(std::string_view text);
/// Converts UTF-16 to UTF-8 and returns the result.
[[nodiscard]] ORN_EXPORT UTF8String UTF16to8(std::u16string_view text);

/// Converts UTF-16 to UTF-8 and replaces the content of `out` with the result.
ORN_EXPORT void UTF16to8(std::u16string_view text, UTF8String& out);

/// Converts UTF-8 to UTF-16 and appends the result to `out`. A UTF-8 sequence that is split between
/// two calls is ill-formed in both.
ORN_EXPORT void AppendUTF8to16(std::string_view text, UTF16String& out);
/// Converts UTF-16 to UTF-8 and appends the result to `out`. A surrogate pair that is split between
/// two calls is treated as two unpaired surrogates.
ORN_EXPORT void AppendUTF16to8(std::u16string_view text, UTF8String& out);

/// Converts an ASCII string, such as a name or a number, to UTF-16. Replaces each byte that is 0x80
/// or greater with U+FFFD.
[[nodiscard]] ORN_EXPORT UTF16String AsciiToUTF16(std::string_view text);

/// Returns the size of `UTF16to8(text)` in bytes, without allocating.
[[nodiscard]] ORN_EXPORT std::size_t UTF8Length(std::u16string_view text) noexcept;

/// Returns whether `text` is well-formed UTF-8, so that `UTF8to16` replaces nothing. Returns true
/// for the empty string.
[[nodiscard]] ORN_EXPORT bool IsWellFormedUTF8(std::string_view text) noexcept;

/// Returns the byte offset of the first ill-formed sequence in `text`. Returns `npos` if `text` is
/// well-formed UTF-8.
[[nodiscard]] ORN_EXPORT std::size_t FindIllFormedUTF8(std::string_view text) noexcept;

/// Removes one UTF-8 byte order mark (EF BB BF) from the start of `text` and returns true. If
/// `text` does not start with a byte order mark, returns false and leaves `text` unchanged.
ORN_EXPORT bool RemoveUTF8BOM_IfPresent(UTF8String& text);

/// Parses a signed decimal integer: an optional `+` or `-`, then one or more ASCII digits. Any
/// other character, including a space, makes `text` invalid. The result does not depend on the
/// locale.
///
/// Sets `value` and returns true if `text` is valid and the number fits into 64 bits. Otherwise
/// returns false and leaves `value` unchanged.
ORN_EXPORT bool StringToNumber(std::string_view text, std::int64_t& value) noexcept;

}  // namespace orncore::string

#endif  // ORNCORE_STRING_CONVERSION_H_
