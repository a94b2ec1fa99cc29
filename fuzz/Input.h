// Splits the input of one execution into parts.
//
// Most inputs are a line of switches, then parts that are separated by the byte FF. UTF-8 never
// contains this byte. All other bytes may occur in a part, so a part may be ill-formed.
#ifndef FUZZ_INPUT_H_
#define FUZZ_INPUT_H_

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace fuzz {

/// Reads the parts of an input in order. Does not copy the bytes, which must outlive this object.
class Input {
 public:
  Input(const std::uint8_t* data, std::size_t size)
      : rest_(reinterpret_cast<const char*>(data), size) {}

  /// Removes and returns the text before the next line feed, or the rest if there is none. Also
  /// removes the line feed.
  std::string_view ReadLine() { return ReadUntil('\n'); }
  /// Removes and returns the text before the next byte FF, or the rest if there is none. Also
  /// removes the byte FF.
  std::string_view ReadPart() { return ReadUntil('\xFF'); }
  /// Removes and returns all remaining parts, at least one, which may be empty.
  std::vector<std::string_view> ReadParts();

  /// Returns the bytes that have not been read yet.
  std::string_view Rest() const { return rest_; }

 private:
  std::string_view ReadUntil(char end);

  std::string_view rest_;
};

/// Returns switch `n` of a line, counted from 0, or 0 if the line is shorter. A switch is one byte
/// whose bits are flags. In readable inputs, `@` (0x40) sets none of the lower five bits, and `A`
/// to `Z` set the bits of 1 to 26.
inline unsigned Switch(std::string_view line, std::size_t n) {
  return n < line.size() ? static_cast<unsigned char>(line[n]) : 0U;
}

}  // namespace fuzz

#endif  // FUZZ_INPUT_H_
