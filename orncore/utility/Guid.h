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

/// Sixteen bytes that identify a content. A value: copy it freely; distinct objects may be used by
/// distinct threads.
///
/// The text form is the bytes in their order as lower-case hexadecimal digits, grouped 8-4-4-4-12:
///
///     01 23 45 67 89 ab cd ef 01 23 45 67 89 ab cd ef
///     01234567-89ab-cdef-0123-456789abcdef
///
/// It is 36 ASCII characters and holds no blank, so texts can be joined by blanks.
class ORN_EXPORT Guid {
 public:
  /// Characters (bytes) of the text form.
  static constexpr std::size_t kTextLength = 36;
  /// Bytes of the identifier.
  static constexpr std::size_t kByteLength = 16;

  /// The nil identifier: sixteen zero bytes.
  constexpr Guid() noexcept = default;

  /// Reads the text form, in either letter case. Anything else (another length, a brace, a blank,
  /// the empty text) gives the nil identifier.
  explicit Guid(std::string_view text) noexcept;

  /// The identifier that has these bytes.
  explicit constexpr Guid(std::span<const std::uint8_t, kByteLength> bytes) noexcept {
    std::ranges::copy(bytes, bytes_.begin());
  }

  /// The bytes, in the order of the text.
  [[nodiscard]] constexpr const std::array<std::uint8_t, kByteLength>& GuidToBytes()
      const noexcept {
    return bytes_;
  }

  /// The text form.
  [[nodiscard]] std::string AsUTF8String() const;

  /// Adds the text form behind what `out` holds. If `out` cannot grow, it throws and `out` is
  /// unchanged.
  void AppendTo(std::string& out) const;

  /// Whether all bytes are zero.
  [[nodiscard]] constexpr bool IsNil() const noexcept { return *this == Guid(); }

  /// Equal where all bytes are.
  friend constexpr bool operator==(const Guid&, const Guid&) noexcept = default;
  /// Ordered like the bytes, which is the order of the texts, too.
  friend constexpr std::strong_ordering operator<=>(const Guid& a, const Guid& b) noexcept {
    const std::strong_ordering leading = a.LeadingBits() <=> b.LeadingBits();
    return leading != 0 ? leading : a.Bits<kByteLength / 2>() <=> b.Bits<kByteLength / 2>();
  }

  /// The first eight bytes as a number, the first byte counting most: ordered like the identifiers.
  [[nodiscard]] constexpr std::uint64_t LeadingBits() const noexcept { return Bits<0>(); }

 private:
  // Written out, so that compilers see the one instruction that it is.
  template <std::size_t kFirst>
  [[nodiscard]] constexpr std::uint64_t Bits() const noexcept {
    const auto bits = [this](std::size_t place, unsigned shift) {
      return std::uint64_t{bytes_[kFirst + place]} << shift;
    };
    return bits(0, 56) | bits(1, 48) | bits(2, 40) | bits(3, 32) | bits(4, 24) | bits(5, 16) |
           bits(6, 8) | bits(7, 0);
  }

  std::array<std::uint8_t, kByteLength> bytes_{};
};

}  // namespace orncore::utility

/// The first bytes as they are: an identifier is a hash already, and mixing it again buys nothing.
template <>
struct std::hash<orncore::utility::Guid> {
  /// The identifier's hash.
  [[nodiscard]] std::size_t operator()(const orncore::utility::Guid& guid) const noexcept {
    std::size_t result;
    std::memcpy(&result, guid.GuidToBytes().data(), sizeof result);
    return result;
  }
};

#endif  // ORNCORE_UTILITY_GUID_H_
