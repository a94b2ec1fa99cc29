// A set of option bits.
#ifndef ORNCORE_UTILITY_FLAGS_H_
#define ORNCORE_UTILITY_FLAGS_H_

#include <orncore/Export.h>  // reports a compiler that is not in C++20 mode

#include <concepts>

namespace orncore::utility {

/// A small set of option bits, kept in a `T`. A value: copy it freely; distinct objects may be used
/// by distinct threads.
///
///     constexpr Flags<unsigned char> kBold{0x01}, kItalic{0x02};
///     if ((kBold | kItalic).Has(kBold)) ...
template <std::unsigned_integral T>
class Flags {
 public:
  /// Creates the empty set.
  constexpr Flags() noexcept = default;
  /// Creates the set of the bits of `bits`. Implicit, so that an option value converts to a set.
  constexpr Flags(T bits) noexcept : bits_(bits) {}

  /// Returns the set as a number.
  [[nodiscard]] constexpr T Bits() const noexcept { return bits_; }

  /// Returns whether all bits of `wanted` are set. True for the empty set.
  [[nodiscard]] constexpr bool Has(Flags wanted) const noexcept {
    return (*this & wanted) == wanted;
  }

  /// Adds the bits of `other`.
  constexpr Flags& operator|=(Flags other) noexcept { return *this = *this | other; }
  /// Removes the bits that are not in `other`.
  constexpr Flags& operator&=(Flags other) noexcept { return *this = *this & other; }

  /// Returns the bits that are in either set.
  friend constexpr Flags operator|(Flags left, Flags right) noexcept {
    return Flags(static_cast<T>(left.bits_ | right.bits_));
  }
  /// Returns the bits that are in both sets.
  friend constexpr Flags operator&(Flags left, Flags right) noexcept {
    return Flags(static_cast<T>(left.bits_ & right.bits_));
  }
  /// Returns whether both sets have the same bits.
  friend constexpr bool operator==(Flags left, Flags right) noexcept = default;

 private:
  T bits_ = 0;
};

}  // namespace orncore::utility

#endif  // ORNCORE_UTILITY_FLAGS_H_
