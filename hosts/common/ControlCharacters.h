// Finds and replaces the characters that can end a line or control a terminal.
#ifndef HOSTS_COMMON_CONTROLCHARACTERS_H_
#define HOSTS_COMMON_CONTROLCHARACTERS_H_

#include <string>
#include <string_view>

namespace hosts::common {

/// Returns whether `text` (UTF-8) contains a character for which
/// `orncore::string::IsControlCharacter` returns true.
bool HasControlCharacters(std::string_view text);

/// Returns a copy of `text` (UTF-8) in which U+FFFD replaces each character that
/// `HasControlCharacters` finds. Also replaces ill-formed UTF-8 with U+FFFD.
std::string WithoutControlCharacters(std::string_view text);

}  // namespace hosts::common

#endif  // HOSTS_COMMON_CONTROLCHARACTERS_H_
