#include "ornwhatsnew/src/datafile/FieldCleaner.h"

#include <algorithm>

#include <orncore/string/CaseMapping.h>
#include <orncore/string/Conversion.h>

namespace ornwhatsnew {

std::size_t FindFieldEnd(std::string_view row, std::size_t begin) {
  std::size_t comma = std::min(row.find(',', begin), row.size());
  std::size_t quote = row.substr(0, comma).find('"', begin);
  while (quote < comma) {
    const std::size_t closingQuote = row.find('"', quote + 1);
    if (closingQuote == row.npos) return row.size();
    if (comma < closingQuote) comma = std::min(row.find(',', closingQuote), row.size());
    quote = row.find('"', closingQuote + 1);
  }
  return comma;
}

bool IsClean(std::string_view text) {
  return text.find('"') == text.npos && text.find('\r') == text.npos &&
         orncore::string::IsWellFormedUTF8(text);
}

std::string_view CleanField(std::string_view field, UTF8String& buffer) {
  if (IsClean(field)) return field;

  // Compatibility: every quote is removed, even a doubled quote (docs/compatibility.md).
  buffer.assign(field);
  std::erase(buffer, '"');
  if (IsClean(buffer)) return buffer;

  // Remove carriage returns after the conversion to UTF-16. Otherwise the bytes before and after a
  // carriage return could form a new character.
  UTF16String text = orncore::string::UTF8to16(buffer);
  std::erase(text, u'\r');
  orncore::string::UTF16to8(text, buffer);
  return buffer;
}

std::string_view LowerField(std::string_view field, UTF8String& buffer) {
  orncore::string::LowerCaseUTF8(field, buffer);
  return buffer;
}

}  // namespace ornwhatsnew
