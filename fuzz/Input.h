// Splits the bytes of one execution into parts, from the front.
//
// Inputs are readable: a line of switches, then parts that are separated by the byte FF, which no
// UTF-8 text contains. Any other byte can be part of ill-formed text.
#ifndef FUZZ_INPUT_H_
#define FUZZ_INPUT_H_

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace fuzz {

/// Views the bytes, which must outlive it.
class Input {
 public:
  Input(const std::uint8_t* data, std::size_t size)
      : rest_(reinterpret_cast<const char*>(data), size) {}

  /// Removes and returns the text up to the next line feed, without it; the rest if there is none.
  std::string_view TakeLine() { return TakeUntil('\n'); }
  /// Removes and returns the text up to the next byte FF, without it; the rest if there is none.
  std::string_view TakePart() { return TakeUntil('\xFF'); }
  /// Returns all remaining parts, at least one.
  std::vector<std::string_view> TakeParts();

  std::string_view Rest() const { return rest_; }

 private:
  std::string_view TakeUntil(char end);

  std::string_view rest_;
};

/// Returns the n-th switch of a line, or 0 if the line is shorter. A switch is a byte of flags; `@`
/// (40 hex) has none of the lower five bits, letters and digits have the others.
inline unsigned Switch(std::string_view line, std::size_t n) {
  return n < line.size() ? static_cast<unsigned char>(line[n]) : 0U;
}

}  // namespace fuzz

#endif  // FUZZ_INPUT_H_
