// Converts strings for the baselines of loading and display. Processes several ASCII characters at
// a time, and uses ICU for strings with other characters.
#ifndef BENCHMARKS_SUPPORT_HANDTEXT_H_
#define BENCHMARKS_SUPPORT_HANDTEXT_H_

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

#include <unicode/ustring.h>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

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

/// Converts UTF-8 strings with ICU. A result is valid until the next call.
class IcuByHand {
 public:
  std::string_view LowerCase(std::string_view text) {
    ResizeBuffers(text.size());
    UErrorCode error = U_ZERO_ERROR;
    std::int32_t length = Decode(text);
    length = u_strToLower(lowered_.data(), Length(lowered_), utf16_.data(), length, "", &error);
    return Encode(lowered_, length);
  }

  /// Converts the string to UTF-16 and back, so that U+FFFD replaces ill-formed UTF-8.
  std::string_view RoundTrip(std::string_view text) {
    ResizeBuffers(text.size());
    return Encode(utf16_, Decode(text));
  }

 private:
  template <class Text>
  static std::int32_t Length(const Text& text) {
    return static_cast<std::int32_t>(text.size());
  }

  // Makes the buffers large enough for a string of `bytes` bytes. The conversion to lower case
  // turns a UTF-16 code unit into at most three code units. The conversion to UTF-8 turns a code
  // unit into at most three bytes.
  void ResizeBuffers(std::size_t bytes) {
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

/// Copies the leading ASCII characters of `text` to `to` as UTF-16. Returns their number. `to` must
/// have space for `text.size()` code units.
inline std::size_t WidenByHand(std::string_view text, char16_t* to) {
  std::size_t at = 0;
#if defined(__SSE2__)
  for (; at + 16 <= text.size(); at += 16) {
    const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(text.data() + at));
    if (_mm_movemask_epi8(bytes) != 0) break;
    auto* const units = reinterpret_cast<__m128i*>(to + at);
    _mm_storeu_si128(units, _mm_unpacklo_epi8(bytes, _mm_setzero_si128()));
    _mm_storeu_si128(units + 1, _mm_unpackhi_epi8(bytes, _mm_setzero_si128()));
  }
#endif
  for (; at < text.size() && static_cast<unsigned char>(text[at]) < 0x80; ++at) {
    to[at] = static_cast<char16_t>(text[at]);
  }
  return at;
}

/// Converts `utf8` to UTF-16 and appends the result to `text`.
inline void AppendByHand(std::string_view utf8, std::u16string& text) {
  const std::size_t before = text.size();
  text.resize(before + utf8.size());
  const std::size_t ascii = WidenByHand(utf8, text.data() + before);
  if (ascii == utf8.size()) return;
  UErrorCode error = U_ZERO_ERROR;
  std::int32_t length = 0;
  const auto rest = static_cast<std::int32_t>(utf8.size() - ascii);
  u_strFromUTF8WithSub(text.data() + before + ascii, rest, &length, utf8.data() + ascii, rest,
                       0xFFFD, nullptr, &error);
  text.resize(before + ascii + static_cast<std::size_t>(length));
}

}  // namespace benchmarks

#endif  // BENCHMARKS_SUPPORT_HANDTEXT_H_
