// Reads code points from UTF-8 and UTF-16, and writes them to UTF-8.
#ifndef ORNCORE_SRC_STRING_CODEPOINTS_H_
#define ORNCORE_SRC_STRING_CODEPOINTS_H_

#include <cstddef>
#include <cstdint>
#include <string_view>

#include <unicode/utf16.h>
#include <unicode/utf8.h>

namespace orncore::string {

/// The replacement character, which replaces ill-formed sequences.
inline constexpr UChar32 kReplacement = 0xFFFD;

// ICU's macros find the maximal subparts of ill-formed sequences. Unlike ICU's functions, they
// accept any index type and therefore strings of any length. They mix signed and unsigned numbers,
// so the conversion warnings are disabled for the functions that use them.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wconversion"
#pragma GCC diagnostic ignored "-Wsign-conversion"

/// Returns the code point at `position`, which must be less than the size of `text`, and advances
/// `position` past it. For an ill-formed sequence, returns a negative number and advances past its
/// maximal subpart.
inline UChar32 NextCodePoint(std::string_view text, std::size_t& position) noexcept {
  UChar32 codePoint = 0;
  U8_NEXT(text, position, text.size(), codePoint);
  return codePoint;
}

/// Returns the code point at `position`, which must be less than the size of `text`, and advances
/// `position` past it. Returns U+FFFD for an unpaired surrogate.
inline UChar32 NextCodePoint(std::u16string_view text, std::size_t& position) noexcept {
  UChar32 codePoint = 0;
  U16_NEXT_OR_FFFD(text, position, text.size(), codePoint);
  return codePoint;
}

/// Writes `codePoint` as UTF-8 to `text` at `position`, and advances `position` past it. `text`
/// must have space for `U8_LENGTH(codePoint)` bytes.
inline void WriteCodePoint(UChar32 codePoint, char* text, std::size_t& position) noexcept {
  // The macro assigns unsigned bytes. Without this cast, it would convert them to `char`
  // implicitly, which the integer sanitizer of the fuzzers reports as an error.
  auto* const bytes = reinterpret_cast<std::uint8_t*>(text);
  U8_APPEND_UNSAFE(bytes, position, codePoint);
}

#pragma GCC diagnostic pop

}  // namespace orncore::string

#endif  // ORNCORE_SRC_STRING_CODEPOINTS_H_
