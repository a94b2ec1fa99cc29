// Finds the ASCII prefix of a string. Tests eight bytes at a time, because nearly all strings are
// ASCII.
#ifndef ORNCORE_SRC_STRING_ASCII_H_
#define ORNCORE_SRC_STRING_ASCII_H_

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace orncore::string {

/// Returns the length of the longest ASCII prefix of `text`, in elements of type `Unit`.
template <class Unit>
std::size_t AsciiPrefixLength(std::basic_string_view<Unit> text) noexcept {
  constexpr std::size_t kUnitsPerWord = sizeof(std::uint64_t) / sizeof(Unit);
  constexpr std::uint64_t kNotAscii =
      sizeof(Unit) == 1 ? 0x8080'8080'8080'8080U : 0xFF80'FF80'FF80'FF80U;
  std::size_t position = 0;
  while (text.size() - position >= kUnitsPerWord) {
    std::uint64_t word = 0;
    std::memcpy(&word, text.data() + position, sizeof word);
    if ((word & kNotAscii) != 0) break;
    position += kUnitsPerWord;
  }
  while (position < text.size() && static_cast<char32_t>(text[position]) < 0x80) ++position;
  return position;
}

}  // namespace orncore::string

#endif  // ORNCORE_SRC_STRING_ASCII_H_
