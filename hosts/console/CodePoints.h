// Reads UTF-16 text character by character.
#ifndef HOSTS_CONSOLE_CODEPOINTS_H_
#define HOSTS_CONSOLE_CODEPOINTS_H_

#include <cstddef>
#include <string_view>

#include <unicode/umachine.h>

namespace hosts::console {

/// The character at `place`, which moves behind it; an unpaired surrogate as it is.
/// REQUIRES: `place < text.size()`.
inline UChar32 NextCodePoint(std::u16string_view text, std::size_t& place) noexcept {
  const UChar32 first = text[place++];
  const bool isLead = first >= 0xD800 && first < 0xDC00;
  if (!isLead || place == text.size()) return first;
  const UChar32 second = text[place];
  if (second < 0xDC00 || second >= 0xE000) return first;
  ++place;
  return 0x10000 + ((first - 0xD800) * 0x400) + (second - 0xDC00);
}

}  // namespace hosts::console

#endif  // HOSTS_CONSOLE_CODEPOINTS_H_
