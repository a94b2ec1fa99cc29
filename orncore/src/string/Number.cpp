#include <orncore/string/Number.h>

#include <charconv>
#include <system_error>

namespace orncore::string {

bool StringToNumber(std::string_view text, std::int64_t& value, unsigned options) noexcept {
  if ((options & kStringToNumberDecimal) == 0) return false;
  // std::from_chars reads a minus sign itself, but no plus sign.
  if (text.starts_with('+')) {
    text.remove_prefix(1);
    if (text.starts_with('-')) return false;
  }
  std::int64_t number = 0;
  const char* const end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, number);
  if (error != std::errc() || stop != end) return false;
  value = number;
  return true;
}

}  // namespace orncore::string
