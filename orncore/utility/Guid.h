// Defines a 128-bit identifier and its text form, and declares the class that computes identifiers.
#ifndef ORNCORE_UTILITY_GUID_H_
#define ORNCORE_UTILITY_GUID_H_

#include <algorithm>
#include <array>
#include <compare>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <functional>
#include <span>
#include <string>
#include <string_view>

#include <orncore/Export.h>

namespace orncore::utility {

/// A 128-bit identifier, such as an identity. It consists of sixteen bytes.
///
/// The text form shows the bytes in order as lower-case hexadecimal digits in groups of 8, 4, 4, 4
/// and 12 digits:
///
///     01 23 45 67 89 ab cd ef 01 23 45 67 89 ab cd ef
///     01234567-89ab-cdef-0123-456789abcdef
///
/// The text form has 36 ASCII characters and no spaces, so a list of text forms can use spaces as
/// separators.
///
/// Threads: several threads may read an object at the same time. A thread that modifies an object
/// needs exclusive access.
class ORN_EXPORT Guid {
 public:
  /// The length of the text form in bytes.
  static constexpr std::size_t kTextLength = 36;
  /// The number of bytes of the identifier.
  static constexpr std::size_t kByteLength = 16;

  /// Creates the nil identifier, which has sixteen zero bytes.
  constexpr Guid() noexcept = default;

  /// Parses the text form. Accepts lower-case and upper-case digits. Any other string, such as an
  /// empty string or one with braces, results in the nil identifier.
  explicit Guid(std::string_view text) noexcept;

  /// Creates an identifier with a copy of `bytes`.
  explicit constexpr Guid(std::span<const std::uint8_t, kByteLength> bytes) noexcept {
    std::ranges::copy(bytes, bytes_.begin());
  }

  /// Returns the bytes in the order of the text form. The reference is valid until the object is
  /// destroyed.
  [[nodiscard]] constexpr const std::array<std::uint8_t, kByteLength>& GuidToBytes()
      const noexcept {
    return bytes_;
  }

  /// Returns the text form in lower case. Throws `std::bad_alloc` if memory runs out.
  [[nodiscard]] std::string AsUTF8String() const;

  /// Appends the text form in lower case to `out`. If memory runs out, throws `std::bad_alloc` and
  /// leaves `out` unchanged.
  void AppendTo(std::string& out) const;

  /// Returns whether both identifiers have the same bytes.
  friend constexpr bool operator==(const Guid&, const Guid&) noexcept = default;
  /// Compares the bytes from first to last. The text forms have the same order.
  friend constexpr std::strong_ordering operator<=>(const Guid& a, const Guid& b) noexcept {
    const std::strong_ordering leading = a.LeadingBits() <=> b.LeadingBits();
    return leading != 0 ? leading : a.Bits<kByteLength / 2>() <=> b.Bits<kByteLength / 2>();
  }

  /// Returns the first eight bytes as a number, with the most significant byte first. If two
  /// numbers differ, they have the same order as their identifiers.
  [[nodiscard]] constexpr std::uint64_t LeadingBits() const noexcept { return Bits<0>(); }

 private:
  // The expression contains no loop, so that compilers generate one load and one byte swap.
  template <std::size_t kFirst>
  [[nodiscard]] constexpr std::uint64_t Bits() const noexcept {
    const auto bits = [this](std::size_t index, unsigned shift) {
      return std::uint64_t{bytes_[kFirst + index]} << shift;
    };
    return bits(0, 56) | bits(1, 48) | bits(2, 40) | bits(3, 32) | bits(4, 24) | bits(5, 16) |
           bits(6, 8) | bits(7, 0);
  }

  std::array<std::uint8_t, kByteLength> bytes_{};
};

class Murmur3MixerState;
template <class State>
class MixHashGuidT;

/// The class that computes all identities. <orncore/utility/MixHashGuid.h> defines it.
using GuidMixer = MixHashGuidT<Murmur3MixerState>;

}  // namespace orncore::utility

/// Allows a `Guid` as the key of an unordered container.
template <>
struct std::hash<orncore::utility::Guid> {
  /// Returns the first `sizeof(std::size_t)` bytes of `guid` as a number. They need no further
  /// hashing, because identifiers are hashes. The result depends on the byte order of the machine,
  /// so do not persist it.
  [[nodiscard]] std::size_t operator()(const orncore::utility::Guid& guid) const noexcept {
    std::size_t result;
    std::memcpy(&result, guid.GuidToBytes().data(), sizeof result);
    return result;
  }
};

#endif  // ORNCORE_UTILITY_GUID_H_
