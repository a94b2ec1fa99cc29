#include "hosts/common/ControlCharacters.h"

#include <algorithm>

#include <orncore/string/Conversion.h>
#include <orncore/string/SafeText.h>

namespace hosts::common {

using orncore::string::IsControlCharacter;

bool HasControlCharacters(std::string_view text) {
  return std::ranges::any_of(orncore::string::UTF8to16(text), IsControlCharacter);
}

std::string WithoutControlCharacters(std::string_view text) {
  std::u16string replaced = orncore::string::UTF8to16(text);
  std::ranges::replace_if(replaced, IsControlCharacter, u'\uFFFD');
  return orncore::string::UTF16to8(replaced);
}

}  // namespace hosts::common
