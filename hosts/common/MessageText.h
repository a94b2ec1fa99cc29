// Shortens and quotes strings for messages, and formats counts and bytes.
#ifndef HOSTS_COMMON_MESSAGETEXT_H_
#define HOSTS_COMMON_MESSAGETEXT_H_

#include <cstddef>
#include <string>
#include <string_view>

namespace hosts::common {

/// Returns whether `byte` is not a UTF-8 continuation byte.
bool IsCharacterStart(char byte);

/// Returns the first `length` bytes of `text` (UTF-8), or up to three bytes fewer so that no
/// character is split. Returns all of `text` if it is shorter.
std::string_view Prefix(std::string_view text, std::size_t length);

/// Returns `text` (UTF-8) for a message. If it has more than 200 bytes, replaces its middle with
/// " ... ". Does not split a character.
std::string WithoutMiddle(std::string_view text);

/// Returns `text` (UTF-8) in single quotation marks for a message. Escapes invisible characters. If
/// `text` has more than 60 bytes, replaces its end with "...".
std::string Quoted(std::string_view text);

/// Returns `number` and `noun`, for example "one field" or "2 fields" for the noun "field".
std::string Counted(std::size_t number, std::string_view noun);

/// Returns `byte` as two upper-case hexadecimal digits.
std::string HexDigits(char byte);

}  // namespace hosts::common

#endif  // HOSTS_COMMON_MESSAGETEXT_H_
