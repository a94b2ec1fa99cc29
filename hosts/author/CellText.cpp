#include "hosts/author/CellText.h"

#include <array>
#include <cstdint>
#include <cstdio>

#include <orncore/string/Conversion.h>
#include <unicode/uchar.h>
#include <unicode/utf8.h>

namespace hosts::author {
namespace {

constexpr UChar32 kQuote = '"';
constexpr char16_t kOpeningQuote = u'\u201C';
constexpr char16_t kClosingQuote = u'\u201D';
constexpr char16_t kInchMark = u'\u2033';

/// Returns the code point at `position` of `text` (UTF-8), and moves `position` after it. Returns 0
/// at the end of the text, and a negative number for ill-formed bytes.
UChar32 ReadCharacter(std::string_view text, std::size_t& position) {
  const std::string_view bytes = text.substr(position, U8_MAX_LENGTH);
  if (bytes.empty()) return 0;
  const auto* const begin = reinterpret_cast<const std::uint8_t*>(bytes.data());
  std::int32_t length = 0;
  UChar32 character = 0;
  U8_NEXT(begin, length, static_cast<std::int32_t>(bytes.size()), character);
  position += static_cast<std::size_t>(length);
  return character;
}

/// Returns whether `character` ends a line, according to the Unicode standard (UAX 14).
bool IsLineEnd(UChar32 character) {
  return (character >= '\n' && character <= '\r') || character == 0x85 || character == 0x2028 ||
         character == 0x2029;
}

bool CanPrecedeWord(UChar32 character) {
  if (character == 0 || character == '/' || character == '=') return true;
  switch (u_charType(character)) {
    case U_START_PUNCTUATION:
    case U_INITIAL_PUNCTUATION:
    case U_DASH_PUNCTUATION:
      return true;
    default:
      return u_isUWhiteSpace(character) != 0;
  }
}

/// Returns the character that replaces a double quote between the characters `before` and `after`.
/// `before` is 0 at the start of the text, and `after` is 0 at its end.
char16_t ReplacementForQuote(UChar32 before, UChar32 after) {
  if (u_isdigit(before) != 0) return kInchMark;
  const bool isBeforeSpace = after == 0 || u_isUWhiteSpace(after) != 0;
  return CanPrecedeWord(before) && !isBeforeSpace ? kOpeningQuote : kClosingQuote;
}

void CountQuote(ConvertedText& converted, char16_t replacement) {
  if (replacement == kOpeningQuote) ++converted.openingQuotes;
  if (replacement == kClosingQuote) ++converted.closingQuotes;
  if (replacement == kInchMark) ++converted.inchMarks;
}

/// Appends an element such as "2 line breaks by spaces" to the comma-separated `list`. Does nothing
/// if `count` is 0.
void AddToList(std::string& list, std::size_t count, std::string_view what) {
  if (count == 0) return;
  if (!list.empty()) list += ", ";
  list += std::to_string(count) + " " + std::string(what);
}

std::string CodePoint(UChar32 character) {
  std::array<char, 16> text{};
  static_cast<void>(
      std::snprintf(text.data(), text.size(), "U+%04X", static_cast<unsigned>(character)));
  return text.data();
}

}  // namespace

ConvertedText ConvertText(std::string_view text) {
  ConvertedText converted;
  UChar32 before = 0;
  std::size_t position = 0;
  while (position < text.size()) {
    const std::size_t begin = position;
    const UChar32 character = ReadCharacter(text, position);
    std::size_t next = position;
    const UChar32 after = ReadCharacter(text, next);
    if (character == '\r' && after == '\n') continue;
    char16_t replacement = 0;
    if (IsLineEnd(character)) {
      replacement = u' ';
      ++converted.lineEnds;
    } else if (character == kQuote) {
      replacement = ReplacementForQuote(before, after);
      CountQuote(converted, replacement);
    }
    if (replacement == 0) {
      converted.text += text.substr(begin, position - begin);
      before = character;
    } else {
      orncore::string::AppendUTF16to8({&replacement, 1}, converted.text);
      before = replacement;
    }
  }
  return converted;
}

std::string DescribeReplacements(const ConvertedText& converted) {
  std::string list;
  AddToList(list, converted.openingQuotes, "'\"' by '\u201C'");
  AddToList(list, converted.closingQuotes, "'\"' by '\u201D'");
  AddToList(list, converted.inchMarks, "'\"' by '\u2033'");
  AddToList(list, converted.lineEnds,
            converted.lineEnds == 1 ? "line break by a space" : "line breaks by spaces");
  return list;
}

std::optional<std::string> ProblemWith(std::string_view value) {
  if (!orncore::string::IsWellFormedUTF8(value)) return "is not valid UTF-8; convert it to UTF-8";
  std::size_t position = 0;
  while (position < value.size()) {
    const UChar32 character = ReadCharacter(value, position);
    if (character == kQuote) {
      return "contains a double quote, which no field can contain; use '\u201C' and '\u201D', "
             "or remove it";
    }
    if (character == '\n' || character == '\r') {
      return "contains a line break, which no field can contain; remove it";
    }
    if (u_charType(character) == U_CONTROL_CHAR && character != '\t') {
      return "contains the control character " + CodePoint(character) +
             "; remove it, or check the encoding of the input";
    }
  }
  return std::nullopt;
}

}  // namespace hosts::author
