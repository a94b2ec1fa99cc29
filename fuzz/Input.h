// The bytes of one execution, taken apart from the front.
//
// Inputs are readable: a line of switches, then parts set apart by the byte FF, which no UTF-8 text
// has. Ill-formed text can be written with any other byte.
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

  /// What stands before the next line feed, which is dropped; all when there is none.
  std::string_view TakeLine() { return TakeUntil('\n'); }
  /// What stands before the next byte FF, which is dropped; all when there is none.
  std::string_view TakePart() { return TakeUntil('\xFF'); }
  /// All parts that are left, at least one.
  std::vector<std::string_view> TakeParts();

  std::string_view Rest() const { return rest_; }

 private:
  std::string_view TakeUntil(char end);

  std::string_view rest_;
};

/// The n-th switch of a line, 0 when the line is shorter. Switches are bits of a byte; `@` (40 hex)
/// has none of the lower five, and letters and digits make up the others.
inline unsigned Switch(std::string_view line, std::size_t n) {
  return n < line.size() ? static_cast<unsigned char>(line[n]) : 0U;
}

}  // namespace fuzz

#endif  // FUZZ_INPUT_H_
