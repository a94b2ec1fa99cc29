#include "hosts/console/TerminalText.h"

#include <algorithm>
#include <cstdint>

#include <orncore/string/Conversion.h>
#include <unicode/uchar.h>
#include <unicode/utf16.h>

namespace hosts::console {
namespace {

constexpr UChar32 kReplacement = 0xFFFD;
constexpr UChar32 kControlPictures = 0x2400;
constexpr UChar32 kDeletePicture = 0x2421;
constexpr UChar32 kNonJoiner = 0x200C;
constexpr UChar32 kJoiner = 0x200D;
constexpr UChar32 kTextPresentation = 0xFE0E;
constexpr UChar32 kEmojiPresentation = 0xFE0F;
constexpr UChar32 kKeycap = 0x20E3;
constexpr int kViramaClass = 9;

/// Returns the character at `position` and sets `position` to the end of the character. Returns
/// U+FFFD for an unpaired surrogate.
UChar32 ReadCharacter(std::u16string_view text, std::size_t& position) {
  // Use 64 bits, because the ICU macro mixes signed and unsigned 32-bit operands.
  std::int64_t character = 0;
  U16_NEXT_OR_FFFD(text, position, text.size(), character);
  return static_cast<UChar32>(character);
}

bool IsPrintableAscii(UChar32 character) {
  return character >= 0x20 && character < 0x7F;
}

bool IsPictograph(UChar32 character) {
  return u_hasBinaryProperty(character, UCHAR_EXTENDED_PICTOGRAPHIC) != 0;
}

bool EndsEmoji(UChar32 character) {
  return IsPictograph(character) || character == kEmojiPresentation ||
         u_hasBinaryProperty(character, UCHAR_EMOJI_MODIFIER) != 0;
}

bool IsJoining(UChar32 character) {
  return u_getIntPropertyValue(character, UCHAR_JOINING_TYPE) != U_JT_NON_JOINING;
}

/// Returns whether `joiner`, which is between `before` and `after`, changes how the text looks.
/// Joiners affect cursive scripts, Indic scripts and emoji. Between other characters, they are
/// invisible, and two different strings would look the same.
bool IsJoinerNeeded(UChar32 joiner, UChar32 before, UChar32 after) {
  if (u_getCombiningClass(before) == kViramaClass) return u_isalpha(after) != 0;
  if (joiner == kJoiner && EndsEmoji(before)) return IsPictograph(after);
  return IsJoining(before) && IsJoining(after) && before != kJoiner && before != kNonJoiner;
}

bool IsSelectorNeeded(UChar32 selector, UChar32 before, UChar32 after) {
  if (u_hasBinaryProperty(before, UCHAR_EMOJI) == 0) return false;
  // Digits have the property "emoji" only because of keycap sequences.
  return before > 0x7F || (selector == kEmojiPresentation && after == kKeycap);
}

bool IsInvisible(UChar32 character) {
  return u_hasBinaryProperty(character, UCHAR_DEFAULT_IGNORABLE_CODE_POINT) != 0 ||
         u_charType(character) == U_FORMAT_CHAR;
}

/// Returns the character to show instead of `character`, or 0 to show nothing. `before` is the last
/// character of the output, and `after` is the next character of the input.
UChar32 Substitute(UChar32 character, UChar32 before, UChar32 after, Whitespace whitespace) {
  const bool isLayout = character == '\n' || character == '\t';
  if (isLayout && whitespace == Whitespace::kKeep) return character;
  if (character < 0x20) return kControlPictures + character;
  if (character == 0x7F) return kDeletePicture;
  if (character < 0xA0) return character < 0x7F ? character : kReplacement;
  if (character == kJoiner || character == kNonJoiner) {
    return IsJoinerNeeded(character, before, after) ? character : 0;
  }
  if (character == kTextPresentation || character == kEmojiPresentation) {
    return IsSelectorNeeded(character, before, after) ? character : 0;
  }
  switch (u_charType(character)) {
    case U_LINE_SEPARATOR:
    case U_PARAGRAPH_SEPARATOR:
      return ' ';
    default:
      break;
  }
  if (u_hasBinaryProperty(character, UCHAR_NONCHARACTER_CODE_POINT) != 0) return kReplacement;
  return IsInvisible(character) ? 0 : character;
}

}  // namespace

std::u16string SafeForTerminal(std::u16string_view text, Whitespace whitespace) {
  std::u16string safe;
  safe.reserve(text.size());
  UChar32 before = 0;
  std::size_t position = 0;
  while (position < text.size()) {
    const std::size_t begin = position;
    const UChar32 character = ReadCharacter(text, position);
    if (IsPrintableAscii(character)) {
      before = character;
      safe.push_back(text[begin]);
      continue;
    }
    std::size_t next = position;
    const UChar32 after = next < text.size() ? ReadCharacter(text, next) : 0;
    const UChar32 shown = Substitute(character, before, after, whitespace);
    if (shown == 0) continue;
    if (shown == character && character != kReplacement) {
      safe.append(text, begin, position - begin);
    } else {
      safe.push_back(static_cast<char16_t>(shown));  // all substitutes are at most U+FFFF
    }
    before = shown;
  }
  return safe;
}

std::string SafeForTerminal(std::string_view text, Whitespace whitespace) {
  if (std::ranges::all_of(text, IsPrintableAscii)) return std::string(text);
  return orncore::string::UTF16to8(SafeForTerminal(orncore::string::UTF8to16(text), whitespace));
}

}  // namespace hosts::console
