#include <orncore/string/Conversion.h>

#include <algorithm>
#include <array>
#include <cstdint>

#include <unicode/utf16.h>
#include <unicode/utf8.h>

#include <orncore/src/string/Ascii.h>

namespace orncore::string {
namespace {

constexpr UChar32 kReplacementCharacter = 0xFFFD;
constexpr std::string_view kUTF8BOM = "\xEF\xBB\xBF";

// ICU's decoders are macros over any index type, so texts of any size go through them in one piece,
// and they substitute per maximal subpart. They mix signed and unsigned numbers in ways that our
// warnings do not let through.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wconversion"
#pragma GCC diagnostic ignored "-Wsign-conversion"

// The code point at `position`, negative where the text is ill-formed; moves behind what it read.
UChar32 NextCodePoint(std::string_view text, std::size_t& position) noexcept {
  UChar32 codePoint = 0;
  U8_NEXT(text, position, text.size(), codePoint);
  return codePoint;
}

// The same for UTF-16; an unpaired surrogate becomes U+FFFD.
UChar32 NextCodePoint(std::u16string_view text, std::size_t& position) noexcept {
  UChar32 codePoint = 0;
  U16_NEXT_OR_FFFD(text, position, text.size(), codePoint);
  return codePoint;
}

// Writes a code point that is no surrogate as up to four bytes and answers where they end.
char* WriteCodePoint(UChar32 codePoint, char* to) noexcept {
  std::size_t written = 0;
  U8_APPEND_UNSAFE(to, written, codePoint);
  return to + written;
}

#pragma GCC diagnostic pop

// Units that are decoded before they are appended. To grow a string first and write into it then
// would cost a pass that clears it, and that one is slower than decoding.
constexpr std::size_t kChunkUnits = 256;
using Chunk = std::array<char16_t, kChunkUnits>;

char16_t* WriteUnits(UChar32 codePoint, char16_t* to) noexcept {
  if (codePoint < 0) {
    *to++ = kReplacementCharacter;
  } else if (codePoint <= 0xFFFF) {
    *to++ = static_cast<char16_t>(codePoint);
  } else {
    *to++ = U16_LEAD(codePoint);
    *to++ = U16_TRAIL(codePoint);
  }
  return to;
}

// Fills `chunk` from `position` on, which moves behind what it read; answers the end of the units.
char16_t* DecodeChunk(std::string_view text, std::size_t& position, Chunk& chunk) noexcept {
  char16_t* to = chunk.data();
  char16_t* const end = to + chunk.size();
  while (position < text.size()) {
    const std::size_t room = static_cast<std::size_t>(end - to);
    const std::size_t copied =
        ascii::CopyPrefix(text.data() + position, std::min(room, text.size() - position), to);
    position += copied;
    to += copied;
    while (position < text.size() && !ascii::IsAsciiUnit(text[position]) && end - to >= 2) {
      to = WriteUnits(NextCodePoint(text, position), to);
    }
    if (end - to < 2) break;
  }
  return to;
}

// Writes `text` to `to`, which has room for `UTF8Length(text)` bytes.
void Encode(std::u16string_view text, char* to) noexcept {
  std::size_t position = 0;
  while (position < text.size()) {
    const std::size_t copied =
        ascii::CopyPrefix(text.data() + position, text.size() - position, to);
    position += copied;
    to += copied;
    while (position < text.size() && !ascii::IsAsciiUnit(text[position])) {
      to = WriteCodePoint(NextCodePoint(text, position), to);
    }
  }
}

}  // namespace

UTF16String UTF8to16(std::string_view text) {
  UTF16String out;
  AppendUTF8to16(text, out);
  return out;
}

UTF8String UTF16to8(std::u16string_view text) {
  UTF8String out;
  AppendUTF16to8(text, out);
  return out;
}

void UTF8to16(std::string_view text, UTF16String& out) {
  out.clear();
  AppendUTF8to16(text, out);
}

void UTF16to8(std::u16string_view text, UTF8String& out) {
  out.clear();
  AppendUTF16to8(text, out);
}

void AppendUTF8to16(std::string_view text, UTF16String& out) {
  // No byte makes more than one unit. A text that is added to another one grows as appending does.
  if (out.empty() && text.size() > kChunkUnits) out.reserve(text.size());
  Chunk chunk;
  for (std::size_t position = 0; position < text.size();) {
    const char16_t* const begin = chunk.data();
    const char16_t* const end = DecodeChunk(text, position, chunk);
    out.append(begin, end);
  }
}

void AppendUTF16to8(std::u16string_view text, UTF8String& out) {
  const std::size_t before = out.size();
  // Texts that were converted are kept, so they are given the length they need and no more.
  out.resize(before + UTF8Length(text));
  Encode(text, out.data() + before);
}

UTF16String AsciiToUTF16(std::string_view text) {
  UTF16String out(text.size(), char16_t{kReplacementCharacter});
  std::size_t position = 0;
  while (position < text.size()) {
    position +=
        ascii::CopyPrefix(text.data() + position, text.size() - position, out.data() + position);
    while (position < text.size() && !ascii::IsAsciiUnit(text[position])) ++position;
  }
  return out;
}

std::size_t UTF8Length(std::u16string_view text) noexcept {
  std::size_t position = ascii::PrefixLength(text.data(), text.size());
  std::size_t length = position;
  for (; position < text.size(); ++position) {
    const char16_t unit = text[position];
    if (unit < 0x80) {
      length += 1;
    } else if (unit < 0x800) {
      length += 2;
    } else if (U16_IS_LEAD(unit) && position + 1 < text.size() &&
               U16_IS_TRAIL(text[position + 1])) {
      length += 4;
      ++position;
    } else {
      length += 3;
    }
  }
  return length;
}

bool IsAscii(std::string_view text) noexcept {
  return ascii::PrefixLength(text.data(), text.size()) == text.size();
}

bool IsWellFormedUTF8(std::string_view text) noexcept {
  std::size_t position = 0;
  while (position < text.size()) {
    position += ascii::PrefixLength(text.data() + position, text.size() - position);
    while (position < text.size() && !ascii::IsAsciiUnit(text[position])) {
      if (NextCodePoint(text, position) < 0) return false;
    }
  }
  return true;
}

bool RemoveUTF8BOM_IfPresent(UTF8String& text) {
  if (!text.starts_with(kUTF8BOM)) return false;
  text.erase(0, kUTF8BOM.size());
  return true;
}

}  // namespace orncore::string
