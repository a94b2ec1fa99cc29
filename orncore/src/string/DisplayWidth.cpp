#include <orncore/string/DisplayWidth.h>

#include <unicode/uchar.h>

#include "orncore/src/string/CodePoints.h"

namespace orncore::string {
namespace {

constexpr UChar32 kEmojiSelector = 0xFE0F;

bool IsZeroWidth(UChar32 character) {
  switch (u_charType(character)) {
    case U_NON_SPACING_MARK:
    case U_ENCLOSING_MARK:
    case U_CONTROL_CHAR:
      return true;
    case U_FORMAT_CHAR:
      // Some format characters are visible, for example the Arabic number sign.
      return u_hasBinaryProperty(character, UCHAR_PREPENDED_CONCATENATION_MARK) == 0;
    default:
      break;
  }
  // A terminal draws Hangul vowels and final consonants in the columns of the first consonant.
  const int syllable = u_getIntPropertyValue(character, UCHAR_HANGUL_SYLLABLE_TYPE);
  return syllable == U_HST_VOWEL_JAMO || syllable == U_HST_TRAILING_JAMO;
}

bool IsWide(UChar32 character) {
  const int width = u_getIntPropertyValue(character, UCHAR_EAST_ASIAN_WIDTH);
  return width == U_EA_WIDE || width == U_EA_FULLWIDTH;
}

std::size_t CharacterWidth(UChar32 character) {
  // Most characters are ASCII. Looking up their properties would take most of the time of
  // `DisplayWidth`.
  if (character >= 0x20 && character < 0x7F) return 1;
  if (IsZeroWidth(character)) return 0;
  return IsWide(character) ? 2 : 1;
}

}  // namespace

std::size_t DisplayWidth(std::u16string_view text) noexcept {
  std::size_t columns = 0;
  std::size_t previousWidth = 0;
  std::size_t position = 0;
  while (position < text.size()) {
    const UChar32 character = NextCodePoint(text, position);
    // U+FE0F after a narrow character selects its emoji presentation, which is wide.
    const bool widens = character == kEmojiSelector && previousWidth == 1;
    const std::size_t width = widens ? 1 : CharacterWidth(character);
    columns += width;
    previousWidth = widens ? 2 : width;
  }
  return columns;
}

}  // namespace orncore::string
