#include "hosts/common/MessageText.h"

#include <algorithm>

#include <orncore/string/SafeText.h>

namespace hosts::common {
namespace {

/// The maximum length, in bytes, of a string that `WithoutMiddle` returns unchanged.
constexpr std::size_t kMaximumDetail = 200;

}  // namespace

bool IsCharacterStart(char byte) {
  return (static_cast<unsigned char>(byte) & 0xC0U) != 0x80U;
}

std::string_view Prefix(std::string_view text, std::size_t length) {
  if (text.size() <= length) return text;
  const std::size_t minimum = length - std::min<std::size_t>(length, 3);
  while (length > minimum && !IsCharacterStart(text[length])) --length;
  return text.substr(0, length);
}

std::string WithoutMiddle(std::string_view text) {
  if (text.size() <= kMaximumDetail) return std::string(text);
  std::string_view end = text.substr(text.size() - kMaximumDetail / 2);
  for (int i = 0; i < 3 && !IsCharacterStart(end.front()); ++i) end.remove_prefix(1);
  return std::string(Prefix(text, kMaximumDetail / 2)) + " ... " + std::string(end);
}

std::string Quoted(std::string_view text) {
  constexpr std::size_t kMaximumBytes = 60;
  const std::string_view shown = Prefix(text, kMaximumBytes);
  return "'" + orncore::string::EscapeInvisible(shown) + (shown.size() < text.size() ? "..." : "") +
         "'";
}

std::string Counted(std::size_t number, std::string_view noun) {
  if (number == 1) return "one " + std::string(noun);
  return std::to_string(number) + " " + std::string(noun) + "s";
}

std::string HexDigits(char byte) {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  const auto value = static_cast<unsigned char>(byte);
  return {kDigits[value / 16], kDigits[value % 16]};
}

}  // namespace hosts::common
