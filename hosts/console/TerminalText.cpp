#include "hosts/console/TerminalText.h"

#include <algorithm>
#include <cstdint>

#include <orncore/string/Conversion.h>
#include <unicode/uchar.h>

#include "hosts/console/CodePoints.h"

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

bool IsPrintableAscii(char16_t unit) {
  return unit >= 0x20 && unit < 0x7F;
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

/// Joiners shape cursive and Indic scripts and glue emoji together; between other characters they
/// only make equal looking texts differ.
bool IsJoinerNeeded(UChar32 joiner, UChar32 before, UChar32 after) {
  if (u_getCombiningClass(before) == kViramaClass) return u_isalpha(after) != 0;
  if (joiner == kJoiner && EndsEmoji(before)) return IsPictograph(after);
  return IsJoining(before) && IsJoining(after) && before != kJoiner && before != kNonJoiner;
}

bool IsSelectorNeeded(UChar32 selector, UChar32 before, UChar32 after) {
  if (u_hasBinaryProperty(before, UCHAR_EMOJI) == 0) return false;
  // Digits count as emoji for the sake of keycaps only.
  return before > 0x7F || (selector == kEmojiPresentation && after == kKeycap);
}

bool IsInvisible(UChar32 character) {
  return u_hasBinaryProperty(character, UCHAR_DEFAULT_IGNORABLE_CODE_POINT) != 0 ||
         u_charType(character) == U_FORMAT_CHAR;
}

/// What stands for a character that is not plain text; 0 when nothing does. `before` is the last
/// character kept, `after` the next one of the text.
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
    case U_SURROGATE:
      return kReplacement;
    default:
      break;
  }
  if (u_hasBinaryProperty(character, UCHAR_NONCHARACTER_CODE_POINT) != 0) return kReplacement;
  return IsInvisible(character) ? 0 : character;
}

void Append(std::u16string& text, UChar32 character) {
  if (character < 0x10000) {
    text.push_back(static_cast<char16_t>(character));
  } else {
    text.push_back(static_cast<char16_t>(0xD800 + (character - 0x10000) / 0x400));
    text.push_back(static_cast<char16_t>(0xDC00 + (character - 0x10000) % 0x400));
  }
}

}  // namespace

std::u16string SafeForTerminal(std::u16string_view text, Whitespace whitespace) {
  std::u16string safe;
  safe.reserve(text.size());
  UChar32 before = 0;
  std::size_t place = 0;
  while (place < text.size()) {
    if (IsPrintableAscii(text[place])) {
      before = text[place];
      safe.push_back(text[place++]);
      continue;
    }
    const UChar32 character = NextCodePoint(text, place);
    std::size_t behind = place;
    const UChar32 after = place < text.size() ? NextCodePoint(text, behind) : 0;
    const UChar32 shown = Substitute(character, before, after, whitespace);
    if (shown == 0) continue;
    Append(safe, shown);
    before = shown;
  }
  return safe;
}

std::string SafeForTerminal(std::string_view text, Whitespace whitespace) {
  const auto isPlain = [](char byte) { return byte >= 0x20 && byte < 0x7F; };
  if (std::ranges::all_of(text, isPlain)) return std::string(text);
  return orncore::string::UTF16to8(SafeForTerminal(orncore::string::UTF8to16(text), whitespace));
}

}  // namespace hosts::console
