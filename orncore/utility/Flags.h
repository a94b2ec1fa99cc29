// Defines a class for a set of option bits, with bitwise operators.
#ifndef ORNCORE_UTILITY_FLAGS_H_
#define ORNCORE_UTILITY_FLAGS_H_

#include <orncore/Export.h>  // checks the language mode before <concepts> is used

#include <concepts>

namespace orncore::utility {

/// A set of option bits, stored in a `T`. All operations are `constexpr` and never throw. An object
/// is as cheap to copy as a `T`.
///
///     constexpr Flags<unsigned char> kBold{0x01}, kItalic{0x02};
///     if ((kBold | kItalic).Has(kBold)) ...
///
/// Threads: several threads may read an object at the same time. A thread that modifies an object
/// needs exclusive access.
template <std::unsigned_integral T>
class Flags {
 public:
  /// Creates the empty set.
  constexpr Flags() noexcept = default;
  /// Creates the set of the bits that are 1 in `bits`. The constructor is implicit, so that a `T`
  /// can be passed to a function with a `Flags` parameter.
  constexpr Flags(T bits) noexcept : bits_(bits) {}

  /// Returns whether the set contains all bits of `wanted`. Returns true if `wanted` is empty.
  [[nodiscard]] constexpr bool Has(Flags wanted) const noexcept {
    return (*this & wanted) == wanted;
  }

  /// Returns the bits that are in at least one of the two sets.
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
