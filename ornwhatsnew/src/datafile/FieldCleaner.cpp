#include "ornwhatsnew/src/datafile/FieldCleaner.h"

#include <algorithm>

#include <orncore/string/CaseMapping.h>
#include <orncore/string/Conversion.h>

namespace ornwhatsnew {
namespace {

constexpr bool IsLineEnd(char16_t unit) {
  return unit == u'\r' || unit == u'\n';
}
constexpr bool MayHaveLowerCase(char c) {
  return (c >= 'A' && c <= 'Z') || static_cast<unsigned char>(c) >= 0x80;
}

bool HasLineEnd(std::string_view bytes) {
  return bytes.find('\r') != std::string_view::npos || bytes.find('\n') != std::string_view::npos;
}

}  // namespace

std::string_view FieldCleaner::Clean(std::string_view field, UTF8String& buffer) {
  if (!HasLineEnd(field) && orncore::string::IsWellFormedUTF8(field)) return field;
  orncore::string::UTF8to16(field, utf16_);
  std::erase_if(utf16_, IsLineEnd);
  orncore::string::UTF16to8(utf16_, buffer);
  return buffer;
}

std::string_view LowerField(std::string_view field, UTF8String& buffer) {
  if (std::ranges::none_of(field, MayHaveLowerCase)) return field;
  orncore::string::LowerCaseUTF8(field, buffer);
  return buffer;
}

}  // namespace ornwhatsnew
