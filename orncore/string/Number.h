// Numbers read from text, the same in every locale.
#ifndef ORNCORE_STRING_NUMBER_H_
#define ORNCORE_STRING_NUMBER_H_

#include <cstdint>
#include <string_view>

#include <orncore/Export.h>

namespace orncore::string {

/// Option bit of `StringToNumber`: a decimal integer.
inline constexpr unsigned kStringToNumberDecimal = 1;

/// Reads a signed 64-bit integer: an optional `+` or `-`, then one or more ASCII digits, and
/// nothing else, no blanks either. True when `text` is one and within range; otherwise false, and
/// `value` is unchanged. `options` holds option bits; without `kStringToNumberDecimal` nothing is a
/// number. May be called from several threads at once.
ORN_EXPORT bool StringToNumber(std::string_view text, std::int64_t& value,
                               unsigned options = kStringToNumberDecimal) noexcept;

}  // namespace orncore::string

#endif  // ORNCORE_STRING_NUMBER_H_
