#include <orncore/string/CaseMapping.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <new>
#include <stdexcept>

#include <unicode/uchar.h>
#include <unicode/ustring.h>

#include "orncore/src/string/Ascii.h"

namespace orncore::string {
namespace {

constexpr const char* kRootLocale = "";
constexpr std::size_t kMaxUnits = std::numeric_limits<std::int32_t>::max();

using MapWithICU = decltype(&u_strToLower);

UTF16String MapCase(MapWithICU map, std::u16string_view text) {
  if (text.size() > kMaxUnits) throw std::length_error("the string is too long to change its case");
  const auto length = static_cast<std::int32_t>(text.size());
  UTF16String out(text.size(), u'\0');
  if (text.empty()) return out;  // ICU rejects the null pointer of an empty view
  UErrorCode error = U_ZERO_ERROR;
  std::int32_t needed = map(out.data(), length, text.data(), length, kRootLocale, &error);
  if (error == U_BUFFER_OVERFLOW_ERROR) {
    error = U_ZERO_ERROR;
    out.resize(static_cast<std::size_t>(needed));
    needed = map(out.data(), needed, text.data(), length, kRootLocale, &error);
  }
  if (error == U_MEMORY_ALLOCATION_ERROR) throw std::bad_alloc();
  if (U_FAILURE(error)) throw std::length_error("the string is too long after changing its case");
  out.resize(static_cast<std::size_t>(needed));
  return out;
}

char LowerAscii(char character) {
  return character >= 'A' && character <= 'Z' ? static_cast<char>(character | 0x20) : character;
}

}  // namespace

UTF16String LowerCase(std::u16string_view text) {
  return MapCase(u_strToLower, text);
}

UTF16String UpperCase(std::u16string_view text) {
  return MapCase(u_strToUpper, text);
}

UTF8String LowerCaseUTF8(std::string_view text) {
  UTF8String out;
  LowerCaseUTF8(text, out);
  return out;
}

void LowerCaseUTF8(std::string_view text, UTF8String& out) {
  // Nearly all strings are ASCII, so ASCII strings have a fast path.
  if (AsciiPrefixLength(text) == text.size()) {
    out.resize(text.size());
    std::ranges::transform(text, out.begin(), LowerAscii);
  } else {
    UTF16to8(LowerCase(UTF8to16(text)), out);
  }
}

}  // namespace orncore::string
