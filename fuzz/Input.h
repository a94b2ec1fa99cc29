// Splits a fuzzer's input into parts, and reads the line of switches at the start of an input.
//
// The byte 0xFF, which never occurs in UTF-8, separates the parts. A part can contain any other
// bytes, so it can be ill-formed UTF-8.
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

  /// Returns the bytes before the next newline, or all remaining bytes if there is no newline.
  /// Removes these bytes and the newline from the input.
  std::string_view ReadLine() { return ReadUntil('\n'); }
  /// Returns the bytes before the next byte 0xFF, or all remaining bytes if there is no such byte.
  /// Removes these bytes and the byte 0xFF from the input.
  std::string_view ReadPart() { return ReadUntil('\xFF'); }
  /// Removes and returns all remaining parts. If no bytes remain, returns one empty part.
  std::vector<std::string_view> ReadParts();

  /// Returns whether a fuzzer runs its slow checks for this input. The sum of the bytes that have
  /// not been read yet selects about a third of all inputs. If a byte of the input enabled the slow
  /// checks, most inputs would run them, because libFuzzer prefers inputs that execute more code.
  bool HasSlowChecks() const;

  /// Returns the bytes that have not been read yet.
  std::string_view Rest() const { return rest_; }

 private:
  std::string_view ReadUntil(char end);

  std::string_view rest_;
};

/// Returns the switch at index `n` of a line of switches, or 0 if the line is shorter. A switch is
/// one byte that contains flags or a number. Switches in seeds are printable characters. The lower
/// five bits of `@` are 0, and those of `A` to `Z` are the numbers 1 to 26.
inline unsigned Switch(std::string_view line, std::size_t n) {
  return n < line.size() ? static_cast<unsigned char>(line[n]) : 0U;
}

}  // namespace fuzz

#endif  // FUZZ_INPUT_H_
