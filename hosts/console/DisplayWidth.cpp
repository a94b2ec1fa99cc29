#include "hosts/console/DisplayWidth.h"

#include <unicode/uchar.h>

#include "hosts/console/CodePoints.h"

namespace hosts::console {
namespace {

constexpr UChar32 kEmojiPresentation = 0xFE0F;

bool IsZeroWidth(UChar32 character) {
  switch (u_charType(character)) {
    case U_NON_SPACING_MARK:
    case U_ENCLOSING_MARK:
    case U_FORMAT_CHAR:
    case U_CONTROL_CHAR:
      return true;
    default:
      break;
  }
  // Vowels and finals of Hangul written in parts are drawn into the syllable's first part.
  const int syllable = u_getIntPropertyValue(character, UCHAR_HANGUL_SYLLABLE_TYPE);
  return syllable == U_HST_VOWEL_JAMO || syllable == U_HST_TRAILING_JAMO;
}

bool IsWide(UChar32 character) {
  const int width = u_getIntPropertyValue(character, UCHAR_EAST_ASIAN_WIDTH);
  return width == U_EA_WIDE || width == U_EA_FULLWIDTH;
}

std::size_t CharacterWidth(UChar32 character) {
  if (IsZeroWidth(character)) return 0;
  return IsWide(character) ? 2 : 1;
}

}  // namespace

std::size_t DisplayWidth(std::u16string_view text) {
  std::size_t columns = 0;
  std::size_t last = 0;
  std::size_t place = 0;
  while (place < text.size()) {
    if (text[place] >= 0x20 && text[place] < 0x7F) {
      last = 1;
      ++columns;
      ++place;
      continue;
    }
    const UChar32 character = NextCodePoint(text, place);
    // The selector for emoji presentation widens a narrow sign.
    const std::size_t width =
        character == kEmojiPresentation && last == 1 ? 1 : CharacterWidth(character);
    columns += width;
    last = width;
  }
  return columns;
}

}  // namespace hosts::console
