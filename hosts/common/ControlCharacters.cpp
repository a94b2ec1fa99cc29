#include "hosts/common/ControlCharacters.h"

#include <algorithm>

#include <orncore/string/Conversion.h>

namespace hosts::common {
namespace {

bool IsControlCharacter(char16_t unit) {
  return unit < 0x20 || (unit >= 0x7F && unit < 0xA0) || unit == 0x2028 || unit == 0x2029;
}

}  // namespace

bool HasControlCharacters(std::string_view text) {
  return std::ranges::any_of(orncore::string::UTF8to16(text), IsControlCharacter);
}

std::string WithoutControlCharacters(std::string_view text) {
  std::u16string replaced = orncore::string::UTF8to16(text);
  std::ranges::replace_if(replaced, IsControlCharacter, u'\uFFFD');
  return orncore::string::UTF16to8(replaced);
}

}  // namespace hosts::common
