#include "hosts/author/TextEncoding.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <new>

#include <orncore/string/Conversion.h>
#include <unicode/ucnv.h>

#include "hosts/author/InputError.h"
#include "hosts/common/MessageText.h"

namespace hosts::author {
namespace {

constexpr char16_t kUTF16ByteOrderMark = u'\uFEFF';

using Converter = std::unique_ptr<UConverter, decltype(&ucnv_close)>;

/// Returns a converter that stops at invalid bytes. Throws `OptionError` if ICU does not know the
/// encoding.
Converter OpenConverter(const std::string& encoding) {
  UErrorCode error = U_ZERO_ERROR;
  // An empty name would select the default encoding of the system.
  Converter converter(encoding.empty() ? nullptr : ucnv_open(encoding.c_str(), &error),
                      &ucnv_close);
  if (error == U_MEMORY_ALLOCATION_ERROR) throw std::bad_alloc();
  if (converter == nullptr || U_FAILURE(error) != 0) {
    throw OptionError("the encoding '" + encoding +
                      "' is unknown; use an encoding such as UTF-8, UTF-16 or Windows-1252");
  }
  ucnv_setToUCallBack(converter.get(), UCNV_TO_U_CALLBACK_STOP, nullptr, nullptr, nullptr, &error);
  return converter;
}

/// Returns the number of line endings in `text`. A line ends with LF, CR or CR LF.
std::size_t CountLineEnds(std::u16string_view text) {
  std::size_t count = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool isFirstOfTwo = text[i] == u'\r' && text.substr(i + 1).starts_with(u'\n');
    if (text[i] == u'\n' || (text[i] == u'\r' && !isFirstOfTwo)) ++count;
  }
  return count;
}

/// Returns the bytes at which the converter stopped, as hexadecimal numbers. A space precedes each
/// number.
std::string InvalidBytes(UConverter& converter) {
  std::array<char, 16> bytes{};
  auto length = static_cast<std::int8_t>(bytes.size());
  UErrorCode error = U_ZERO_ERROR;
  ucnv_getInvalidChars(&converter, bytes.data(), &length, &error);
  std::string text;
  for (std::size_t i = 0; U_SUCCESS(error) != 0 && i < static_cast<std::size_t>(length); ++i) {
    text += " " + common::HexDigits(bytes[i]);
  }
  return text;
}

std::u16string Decode(std::string_view bytes, const std::string& encoding) {
  const Converter converter = OpenConverter(encoding);
  const char* source = bytes.data();
  const char* const end = source + bytes.size();
  std::array<char16_t, 4096> buffer{};
  std::u16string text;
  UErrorCode error = U_BUFFER_OVERFLOW_ERROR;
  while (error == U_BUFFER_OVERFLOW_ERROR) {
    error = U_ZERO_ERROR;
    char16_t* target = buffer.data();
    constexpr UBool kIsEndOfInput = 1;
    ucnv_toUnicode(converter.get(), &target, buffer.data() + buffer.size(), &source, end, nullptr,
                   kIsEndOfInput, &error);
    text.append(buffer.data(), target);
  }
  if (error == U_MEMORY_ALLOCATION_ERROR) throw std::bad_alloc();
  if (U_FAILURE(error) != 0) {
    throw InputError(CountLineEnds(text) + 1,
                     "the bytes" + InvalidBytes(*converter) + " are not valid " + encoding +
                         "; fix them, or name the file's encoding with --encoding");
  }
  return text;
}

/// Returns the encoding that the file's byte order mark indicates, or null if there is no mark.
const char* EncodingOfMark(std::string_view bytes) {
  constexpr std::size_t kLongestMark = 4;
  const std::string_view start = bytes.substr(0, kLongestMark);
  UErrorCode error = U_ZERO_ERROR;
  return ucnv_detectUnicodeSignature(start.data(), static_cast<std::int32_t>(start.size()), nullptr,
                                     &error);
}

/// Returns a `DecodedText` that contains the selected encoding and the reason for the selection.
/// The member `text` is empty.
DecodedText SelectEncoding(std::string_view bytes, const std::optional<std::string>& encoding) {
  if (encoding) return {"", *encoding, "because of --encoding"};
  if (const char* const marked = EncodingOfMark(bytes)) {
    return {"", marked, "because of its byte order mark"};
  }
  if (orncore::string::IsWellFormedUTF8(bytes)) {
    return {"", "UTF-8", "because all of its bytes are valid UTF-8"};
  }
  return {"", "Windows-1252",
          "because it is not valid UTF-8; use --encoding to select another encoding"};
}

/// Throws `InputError` if `text` contains NUL. The file is then probably UTF-16 without a byte
/// order mark: if UTF-16 text in Latin letters is decoded as UTF-8, every second character is NUL.
void RequireNoNul(std::u16string_view text) {
  const std::size_t nul = text.find(u'\0');
  if (nul == std::u16string_view::npos) return;
  throw InputError(CountLineEnds(text.substr(0, nul)) + 1,
                   "the text contains a NUL character; if the file is UTF-16, use --encoding "
                   "UTF-16LE or --encoding UTF-16BE");
}

}  // namespace

DecodedText DecodeText(std::string_view bytes, const std::optional<std::string>& encoding) {
  DecodedText decoded = SelectEncoding(bytes, encoding);
  const std::u16string text = Decode(bytes, decoded.encoding);
  RequireNoNul(text);
  std::u16string_view content = text;
  if (content.starts_with(kUTF16ByteOrderMark)) content.remove_prefix(1);
  decoded.text = orncore::string::UTF16to8(content);
  return decoded;
}

}  // namespace hosts::author
