#include "tests/conformance/Base64.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace conformance {

namespace {

constexpr std::string_view kAlphabet =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr std::size_t kGroup = 4;

/// Appends the bytes that two to four Base64 digits encode. Returns false if a digit is invalid or
/// an unused bit is set.
bool AppendGroup(std::string_view digits, std::string& bytes) {
  std::uint32_t bits = 0;
  for (const char digit : digits) {
    const std::size_t value = kAlphabet.find(digit);
    if (value == std::string_view::npos) return false;
    bits = bits << 6 | static_cast<std::uint32_t>(value);
  }
  const std::size_t unusedBits = digits.size() * 6 % 8;
  if ((bits & ((1U << unusedBits) - 1)) != 0) return false;
  bits >>= unusedBits;
  for (std::size_t byte = digits.size() * 6 / 8; byte-- > 0;) {
    bytes += static_cast<char>(bits >> (byte * 8) & 0xFF);
  }
  return true;
}

}  // namespace

std::optional<std::string> DecodeBase64(std::string_view text) {
  if (text.size() % kGroup != 0) return std::nullopt;
  for (int padding = 0; padding < 2 && text.ends_with('='); ++padding) text.remove_suffix(1);
  if (text.size() % kGroup == 1) return std::nullopt;
  std::string bytes;
  bytes.reserve(text.size() / kGroup * 3 + 2);
  while (!text.empty()) {
    const std::size_t digits = std::min(kGroup, text.size());
    if (!AppendGroup(text.substr(0, digits), bytes)) return std::nullopt;
    text.remove_prefix(digits);
  }
  return bytes;
}

}  // namespace conformance
