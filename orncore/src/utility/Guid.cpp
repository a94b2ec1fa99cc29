#include <orncore/utility/Guid.h>

namespace orncore::utility {
namespace {

// For each byte, the position of its first digit in the text form.
constexpr std::array<std::uint8_t, Guid::kByteLength> kDigitPositions = {
    0, 2, 4, 6, 9, 11, 14, 16, 19, 21, 24, 26, 28, 30, 32, 34};
constexpr std::array<std::uint8_t, 4> kHyphenPositions = {8, 13, 18, 23};

constexpr std::string_view kDigits = "0123456789abcdef";
constexpr std::uint8_t kNoDigit = 0xFF;

constexpr std::array<std::uint8_t, 256> MakeDigitValues() {
  std::array<std::uint8_t, 256> values{};
  values.fill(kNoDigit);
  for (std::uint8_t value = 0; value < 16; ++value) {
    const auto digit = static_cast<std::uint8_t>(kDigits[value]);
    values[digit] = value;
    if (value >= 10) values[digit - 'a' + 'A'] = value;
  }
  return values;
}

constexpr std::array<std::uint8_t, 256> kDigitValues = MakeDigitValues();

std::uint8_t DigitValue(char digit) {
  return kDigitValues[static_cast<std::uint8_t>(digit)];
}

}  // namespace

Guid::Guid(std::string_view text) noexcept {
  if (text.size() != kTextLength) return;
  for (const std::size_t position : kHyphenPositions) {
    if (text[position] != '-') return;
  }
  std::array<std::uint8_t, kByteLength> bytes;
  std::uint8_t allValues = 0;  // greater than 15 if any character is not a hexadecimal digit
  for (std::size_t i = 0; i < kByteLength; ++i) {
    const std::uint8_t high = DigitValue(text[kDigitPositions[i]]);
    const std::uint8_t low = DigitValue(text[kDigitPositions[i] + 1U]);
    allValues |= high | low;
    bytes[i] = static_cast<std::uint8_t>(high << 4 | low);
  }
  if (allValues < 16) bytes_ = bytes;
}

std::string Guid::AsUTF8String() const {
  std::string text;
  AppendTo(text);
  return text;
}

void Guid::AppendTo(std::string& out) const {
  std::array<char, kTextLength> text;
  for (const std::size_t position : kHyphenPositions) text[position] = '-';
  for (std::size_t i = 0; i < kByteLength; ++i) {
    text[kDigitPositions[i]] = kDigits[bytes_[i] >> 4];
    text[kDigitPositions[i] + 1U] = kDigits[bytes_[i] & 0x0F];
  }
  out.append(text.data(), text.size());
}

}  // namespace orncore::utility
