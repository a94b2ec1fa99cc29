#include <orncore/string/SafeText.h>

#include <cstdint>

#include <unicode/uchar.h>

#include "orncore/src/string/CodePoints.h"

namespace orncore::string {
namespace {

constexpr UChar32 kControlPictures = 0x2400;
constexpr UChar32 kDeletePicture = 0x2421;
constexpr UChar32 kNonJoiner = 0x200C;
constexpr UChar32 kJoiner = 0x200D;
constexpr UChar32 kTextPresentation = 0xFE0E;
constexpr UChar32 kEmojiPresentation = 0xFE0F;
constexpr UChar32 kKeycap = 0x20E3;
constexpr UChar32 kEscape = '\\';
constexpr char16_t kByteOrderMark = 0xFEFF;
constexpr char16_t kLineSeparator = 0x2028;
constexpr int kViramaClass = 9;

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

// Returns whether the joining type of `character` is transparent, as for marks and tags. The form
// of such a character does not depend on a joiner before it.
bool IsTransparent(UChar32 character) {
  return u_getIntPropertyValue(character, UCHAR_JOINING_TYPE) == U_JT_TRANSPARENT;
}

// Returns whether `joiner`, which is between `before` and `after`, changes how the text looks.
// Joiners affect cursive scripts, Indic scripts and emoji. Between other characters, joiners are
// invisible, so two different strings could look the same.
bool IsJoinerNeeded(UChar32 joiner, UChar32 before, UChar32 after) {
  if (u_getCombiningClass(before) == kViramaClass) return u_isalpha(after) != 0;
  if (joiner == kJoiner && EndsEmoji(before)) return IsPictograph(after);
  return IsJoining(before) && IsJoining(after) && !IsTransparent(after) && before != kJoiner &&
         before != kNonJoiner;
}

bool IsSelectorNeeded(UChar32 selector, UChar32 before, UChar32 after) {
  if (u_hasBinaryProperty(before, UCHAR_EMOJI) == 0) return false;
  // Digits, "#" and "*" have the property "emoji" only because of keycap sequences.
  return before > 0x7F || (selector == kEmojiPresentation && after == kKeycap);
}

bool IsInvisible(UChar32 character) {
  if (u_hasBinaryProperty(character, UCHAR_DEFAULT_IGNORABLE_CODE_POINT) != 0) return true;
  // Some format characters are visible, for example the Arabic number sign.
  return u_charType(character) == U_FORMAT_CHAR &&
         u_hasBinaryProperty(character, UCHAR_PREPENDED_CONCATENATION_MARK) == 0;
}

// Returns the character to show for `character`: `character` itself, a replacement, or 0 to show
// nothing. `before` is the last character of the output, or 0 if the output is empty. `after` is
// the character that follows `character`, or 0 at the end of the input.
UChar32 Substitute(UChar32 character, UChar32 before, UChar32 after) {
  if (character < 0x20) return kControlPictures + character;
  if (character == 0x7F) return kDeletePicture;
  if (character < 0xA0) return IsPrintableAscii(character) ? character : kReplacement;
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

// Returns false for direction marks such as U+200E, because they affect only the text next to them.
constexpr bool ChangesDirection(char16_t unit) {
  return (unit >= 0x202A && unit <= 0x202E) || (unit >= 0x2066 && unit <= 0x2069);
}

// Appends `unit` or its replacement to `document`. Appends nothing if `unit` is a byte order mark
// or changes the text direction. `unit` must not be a surrogate.
void AppendToDocument(char16_t unit, UTF16String& document) {
  if (unit == kByteOrderMark || ChangesDirection(unit)) return;
  if (unit == u'\t') {
    document += u' ';
  } else if (unit == u'\n' || unit == kLineSeparator) {
    document += kLineSeparator;
  } else {
    document += IsControlCharacter(unit) ? static_cast<char16_t>(kReplacement) : unit;
  }
}

bool LooksLikeSpace(UChar32 character) {
  constexpr UChar32 kBlankBraillePattern = 0x2800;
  return character != ' ' &&
         (u_charType(character) == U_SPACE_SEPARATOR || character == kBlankBraillePattern);
}

// Returns the first character of `text` (UTF-8), or 0 if `text` is empty. Returns a backslash if
// the first character is ill-formed, is invisible or looks like a space. `EscapeInvisible` can
// replace such a character with an escape, and a joiner before an escape would be invisible.
UChar32 NextVisibleCharacter(std::string_view text) {
  if (text.empty()) return 0;
  std::size_t end = 0;
  const UChar32 character = NextCodePoint(text, end);
  const bool isEscaped = character < 0 || IsInvisible(character) || LooksLikeSpace(character);
  return isEscaped ? kEscape : character;
}

// Appends a backslash, `kind` and `digits` hexadecimal digits of `value`.
void AppendEscape(std::string& text, char kind, int digits, std::uint32_t value) {
  constexpr std::string_view kDigits = "0123456789abcdef";
  text += '\\';
  text += kind;
  for (int shift = 4 * (digits - 1); shift >= 0; shift -= 4) text += kDigits[value >> shift & 0xFU];
}

}  // namespace

UTF16String SafeForTerminal(std::u16string_view text) {
  UTF16String safe;
  safe.reserve(text.size());
  UChar32 before = 0;
  std::size_t position = 0;
  while (position < text.size()) {
    const std::size_t begin = position;
    const UChar32 character = NextCodePoint(text, position);
    if (IsPrintableAscii(character) || character == '\n' || character == '\t') {
      before = character;
      safe.push_back(text[begin]);
      continue;
    }
    std::size_t next = position;
    const UChar32 after = next < text.size() ? NextCodePoint(text, next) : 0;
    const UChar32 shown = Substitute(character, before, after);
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

UTF16String SafeForDocument(std::u16string_view text) {
  UTF16String safe;
  safe.reserve(text.size());
  std::size_t position = 0;
  while (position < text.size()) {
    const std::size_t begin = position;
    const UChar32 character = NextCodePoint(text, position);
    if (U_IS_UNICODE_NONCHAR(character)) {
      safe += static_cast<char16_t>(kReplacement);
    } else if (character > 0xFFFF) {
      safe.append(text, begin, position - begin);
    } else {
      AppendToDocument(static_cast<char16_t>(character), safe);
    }
  }
  return safe;
}

UTF8String EscapeInvisible(std::string_view text) {
  UTF8String escaped;
  escaped.reserve(text.size());
  UChar32 before = 0;
  std::size_t position = 0;
  while (position < text.size()) {
    const std::string_view rest = text.substr(position);
    const UChar32 character = NextCodePoint(text, position);
    const std::string_view bytes = rest.substr(0, rest.size() - (text.size() - position));
    const UChar32 after = NextVisibleCharacter(text.substr(position));
    if (character >= 0 && !LooksLikeSpace(character) &&
        Substitute(character, before, after) == character) {
      escaped += bytes;
      before = character;
      continue;
    }
    before = kEscape;
    if (character < 0) {
      for (const char byte : bytes) AppendEscape(escaped, 'x', 2, static_cast<unsigned char>(byte));
    } else if (character < 0x10000) {
      AppendEscape(escaped, 'u', 4, static_cast<std::uint32_t>(character));
    } else {
      AppendEscape(escaped, 'U', 8, static_cast<std::uint32_t>(character));
    }
  }
  return escaped;
}

}  // namespace orncore::string
