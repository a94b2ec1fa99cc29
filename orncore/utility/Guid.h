// A 128-bit identifier and its text form.
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

/// Sixteen bytes that identify a content.
///
/// The text form is the bytes in order as lower-case hexadecimal digits, grouped 8-4-4-4-12:
///
///     01 23 45 67 89 ab cd ef 01 23 45 67 89 ab cd ef
///     01234567-89ab-cdef-0123-456789abcdef
///
/// It has 36 ASCII characters and no space, so it can be stored in lists that spaces separate.
///
/// Threads: one thread at a time for each object.
class ORN_EXPORT Guid {
 public:
  /// The length of the text form in characters (bytes).
  static constexpr std::size_t kTextLength = 36;
  /// The number of bytes of the identifier.
  static constexpr std::size_t kByteLength = 16;

  /// Creates the nil identifier: sixteen zero bytes.
  constexpr Guid() noexcept = default;

  /// Parses the text form, in either letter case. Any other string, such as one with braces or the
  /// empty string, gives the nil identifier.
  explicit Guid(std::string_view text) noexcept;

  /// Creates the identifier with these bytes.
  explicit constexpr Guid(std::span<const std::uint8_t, kByteLength> bytes) noexcept {
    std::ranges::copy(bytes, bytes_.begin());
  }

  /// Returns the bytes, in the order of the text form.
  [[nodiscard]] constexpr const std::array<std::uint8_t, kByteLength>& GuidToBytes()
      const noexcept {
    return bytes_;
  }

  /// Returns the text form.
  [[nodiscard]] std::string AsUTF8String() const;

  /// Appends the text form to `out`. Throws `std::bad_alloc` and leaves `out` unchanged if memory
  /// runs out.
  void AppendTo(std::string& out) const;

  /// Returns whether all bytes are zero.
  [[nodiscard]] constexpr bool IsNil() const noexcept { return *this == Guid(); }

  /// Compares all bytes.
  friend constexpr bool operator==(const Guid&, const Guid&) noexcept = default;
  /// Compares in the order of the bytes, which is also the order of the text forms.
  friend constexpr std::strong_ordering operator<=>(const Guid& a, const Guid& b) noexcept {
    const std::strong_ordering leading = a.LeadingBits() <=> b.LeadingBits();
    return leading != 0 ? leading : a.Bits<kByteLength / 2>() <=> b.Bits<kByteLength / 2>();
  }

  /// Returns the first eight bytes as a number, most significant byte first, so that the numbers
  /// have the order of the identifiers.
  [[nodiscard]] constexpr std::uint64_t LeadingBits() const noexcept { return Bits<0>(); }

 private:
  // Without a loop, so that compilers generate a single load and byte swap.
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

}  // namespace orncore::utility

/// Uses the first bytes unchanged, because an identifier is a hash already.
template <>
struct std::hash<orncore::utility::Guid> {
  /// Returns the hash of `guid`.
  [[nodiscard]] std::size_t operator()(const orncore::utility::Guid& guid) const noexcept {
    std::size_t result;
    std::memcpy(&result, guid.GuidToBytes().data(), sizeof result);
    return result;
  }
};

#endif  // ORNCORE_UTILITY_GUID_H_
