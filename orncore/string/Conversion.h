// The string types of all modules, and conversion between UTF-8, UTF-16, ASCII and numbers.
//
// No conversion rejects a string. Each maximal subpart of an ill-formed UTF-8 sequence becomes one
// U+FFFD, as the Unicode standard recommends (chapter 3, "U+FFFD Substitution of Maximal
// Subparts"). An unpaired surrogate becomes one U+FFFD. NUL is an ordinary character and a byte
// order mark is kept. Results are therefore well-formed, and a well-formed string survives the
// round trip.
//
// Functions that write to `out` keep its capacity: with a string that is no longer than the
// previous one they allocate nothing. The source must not be a part of `out`. The functions throw
// `std::bad_alloc` or `std::length_error` if the result does not fit into memory; the content of
// `out` is unspecified then.
//
// All functions are safe to call from several threads, each with its own `out`.
#ifndef ORNCORE_STRING_CONVERSION_H_
#define ORNCORE_STRING_CONVERSION_H_

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include <orncore/Export.h>

namespace orncore::string {

/// A UTF-8 string, sizes in bytes: file text, persisted values, identifiers. May hold any bytes.
using UTF8String = std::string;
/// A UTF-16 string, sizes in 16-bit units: paths and display text. May hold any units.
using UTF16String = std::u16string;

/// Returns `text` as UTF-16.
[[nodiscard]] ORN_EXPORT UTF16String UTF8to16(std::string_view text);
/// Returns `text` as UTF-8.
[[nodiscard]] ORN_EXPORT UTF8String UTF16to8(std::u16string_view text);

/// Replaces the content of `out` with `text` as UTF-16.
ORN_EXPORT void UTF8to16(std::string_view text, UTF16String& out);
/// Replaces the content of `out` with `text` as UTF-8.
ORN_EXPORT void UTF16to8(std::u16string_view text, UTF8String& out);

/// Appends `text` as UTF-16 to `out`. Two surrogates from different calls are not joined.
ORN_EXPORT void AppendUTF8to16(std::string_view text, UTF16String& out);
/// Appends `text` as UTF-8 to `out`.
ORN_EXPORT void AppendUTF16to8(std::u16string_view text, UTF8String& out);

/// Returns an ASCII string (a name, a number) as UTF-16. A byte of 0x80 or above becomes U+FFFD.
[[nodiscard]] ORN_EXPORT UTF16String AsciiToUTF16(std::string_view text);

/// Returns the size of `UTF16to8(text)` in bytes, without allocating.
[[nodiscard]] ORN_EXPORT std::size_t UTF8Length(std::u16string_view text) noexcept;

/// Returns whether `UTF8to16(text)` would replace nothing. True for the empty string.
[[nodiscard]] ORN_EXPORT bool IsWellFormedUTF8(std::string_view text) noexcept;

/// Removes one UTF-8 byte order mark (EF BB BF) from the start of `text`. Returns whether there was
/// one.
ORN_EXPORT bool RemoveUTF8BOM_IfPresent(UTF8String& text);

/// Parses a signed 64-bit decimal integer, in the same way in every locale: an optional `+` or `-`,
/// then one or more ASCII digits, and nothing else, not even a space. If `text` is such a number
/// and within range, sets `value` and returns true. Otherwise returns false and leaves `value`
/// unchanged.
ORN_EXPORT bool StringToNumber(std::string_view text, std::int64_t& value) noexcept;

}  // namespace orncore::string

#endif  // ORNCORE_STRING_CONVERSION_H_
