#include <orncore/string/Conversion.h>

#include <algorithm>
#include <charconv>
#include <system_error>

#include "orncore/src/string/Ascii.h"
#include "orncore/src/string/CodePoints.h"

namespace orncore::string {
namespace {

constexpr std::string_view kUTF8BOM = "\xEF\xBB\xBF";

// Writes `text` as UTF-16 to `to`, which must have space for one unit per byte of `text`. Returns
// the number of units written.
std::size_t Decode(std::string_view text, char16_t* to) noexcept {
  std::size_t written = 0;
  for (std::size_t position = 0; position < text.size();) {
    const std::size_t ascii = AsciiPrefixLength(text.substr(position));
    std::copy_n(text.data() + position, ascii, to + written);
    position += ascii;
    written += ascii;
    while (position < text.size() && !U8_IS_SINGLE(text[position])) {
      UChar32 codePoint = NextCodePoint(text, position);
      if (codePoint < 0) codePoint = kReplacement;
      U16_APPEND_UNSAFE(to, written, codePoint);
    }
  }
  return written;
}

// Writes `text` as UTF-8 to `to`, which must have space for `UTF8Length(text)` bytes.
void Encode(std::u16string_view text, char* to) noexcept {
  std::size_t position = AsciiPrefixLength(text);
  std::size_t written = position;
  std::copy_n(text.data(), position, to);
  while (position < text.size()) {
    WriteCodePoint(NextCodePoint(text, position), to, written);
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

void UTF16to8(std::u16string_view text, UTF8String& out) {
  out.clear();
  AppendUTF16to8(text, out);
}

void AppendUTF8to16(std::string_view text, UTF16String& out) {
  const std::size_t oldSize = out.size();
  out.resize(oldSize + text.size());
  out.resize(oldSize + Decode(text, out.data() + oldSize));
}

void AppendUTF16to8(std::u16string_view text, UTF8String& out) {
  const std::size_t oldSize = out.size();
  // Compute the exact length to save memory, because callers store the converted strings.
  out.resize(oldSize + UTF8Length(text));
  Encode(text, out.data() + oldSize);
}

UTF16String AsciiToUTF16(std::string_view text) {
  UTF16String out(text.size(), u'\0');
  std::ranges::transform(text, out.begin(), [](char character) {
    return U8_IS_SINGLE(character) ? static_cast<char16_t>(character) : u'\uFFFD';
  });
  return out;
}

std::size_t UTF8Length(std::u16string_view text) noexcept {
  std::size_t position = AsciiPrefixLength(text);
  std::size_t length = position;
  while (position < text.size()) {
    const UChar32 codePoint = NextCodePoint(text, position);
    length += static_cast<std::size_t>(U8_LENGTH(codePoint));
  }
  return length;
}

bool IsWellFormedUTF8(std::string_view text) noexcept {
  return FindIllFormedUTF8(text) == text.npos;
}

std::size_t FindIllFormedUTF8(std::string_view text) noexcept {
  for (std::size_t position = AsciiPrefixLength(text); position < text.size();) {
    const std::size_t begin = position;
    if (U8_IS_SINGLE(text[position])) {
      position += AsciiPrefixLength(text.substr(position));
    } else if (NextCodePoint(text, position) < 0) {
      return begin;
    }
  }
  return text.npos;
}

bool RemoveUTF8BOM_IfPresent(UTF8String& text) {
  if (!text.starts_with(kUTF8BOM)) return false;
  text.erase(0, kUTF8BOM.size());
  return true;
}

bool StringToNumber(std::string_view text, std::int64_t& value) noexcept {
  // Skip a plus sign, because std::from_chars accepts only a minus sign.
  if (text.starts_with('+')) {
    text.remove_prefix(1);
    if (text.starts_with('-')) return false;
  }
  std::int64_t number = 0;
  const char* const end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, number);
  if (error != std::errc() || stop != end) return false;
  value = number;
  return true;
}

}  // namespace orncore::string
