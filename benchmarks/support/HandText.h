// A floor for what is done to texts: ASCII eight bytes at a time, the rest by ICU straight.
#ifndef BENCHMARKS_SUPPORT_HANDTEXT_H_
#define BENCHMARKS_SUPPORT_HANDTEXT_H_

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

#include <unicode/ustring.h>

namespace benchmarks {

inline bool IsAsciiByHand(std::string_view text) {
  std::uint64_t all = 0;
  std::size_t at = 0;
  for (; at + 8 <= text.size(); at += 8) {
    std::uint64_t word;
    std::memcpy(&word, text.data() + at, 8);
    all |= word;
  }
  for (; at < text.size(); ++at) all |= static_cast<unsigned char>(text[at]);
  return (all & 0x8080808080808080U) == 0;
}

inline void LowerAsciiByHand(std::string& text) {
  for (char& c : text) c = static_cast<char>(c + (c >= 'A' && c <= 'Z' ? 32 : 0));
}

/// Texts through ICU and back, in buffers that are kept.
class IcuByHand {
 public:
  std::string_view LowerCase(std::string_view text) {
    MakeRoom(text.size());
    UErrorCode error = U_ZERO_ERROR;
    std::int32_t length = Decode(text);
    length = u_strToLower(lowered_.data(), Length(lowered_), utf16_.data(), length, "", &error);
    return Encode(lowered_, length);
  }

  std::string_view ThereAndBack(std::string_view text) {
    MakeRoom(text.size());
    return Encode(utf16_, Decode(text));
  }

 private:
  template <class Text>
  static std::int32_t Length(const Text& text) {
    return static_cast<std::int32_t>(text.size());
  }

  // A letter becomes at most three.
  void MakeRoom(std::size_t bytes) {
    if (utf16_.size() >= bytes) return;
    utf16_.resize(2 * bytes);
    lowered_.resize(3 * utf16_.size());
    utf8_.resize(3 * lowered_.size());
  }
  std::int32_t Decode(std::string_view text) {
    UErrorCode error = U_ZERO_ERROR;
    std::int32_t length = 0;
    u_strFromUTF8WithSub(utf16_.data(), Length(utf16_), &length, text.data(), Length(text), 0xFFFD,
                         nullptr, &error);
    return length;
  }
  std::string_view Encode(const std::u16string& from, std::int32_t units) {
    UErrorCode error = U_ZERO_ERROR;
    std::int32_t length = 0;
    u_strToUTF8WithSub(utf8_.data(), Length(utf8_), &length, from.data(), units, 0xFFFD, nullptr,
                       &error);
    return {utf8_.data(), static_cast<std::size_t>(length)};
  }

  std::u16string utf16_;
  std::u16string lowered_;
  std::string utf8_;
};

/// Adds well-formed UTF-8 behind a text that has the room.
inline void AppendByHand(std::string_view piece, std::u16string& text) {
  const std::size_t before = text.size();
  text.resize(before + piece.size());
  char16_t* const to = text.data() + before;
  if (IsAsciiByHand(piece)) {
    for (std::size_t at = 0; at < piece.size(); ++at) to[at] = static_cast<char16_t>(piece[at]);
    return;
  }
  UErrorCode error = U_ZERO_ERROR;
  std::int32_t length = 0;
  u_strFromUTF8WithSub(to, static_cast<std::int32_t>(piece.size()), &length, piece.data(),
                       static_cast<std::int32_t>(piece.size()), 0xFFFD, nullptr, &error);
  text.resize(before + static_cast<std::size_t>(length));
}

}  // namespace benchmarks

#endif  // BENCHMARKS_SUPPORT_HANDTEXT_H_
