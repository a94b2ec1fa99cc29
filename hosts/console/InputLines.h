// Reads the lines of standard input.
#ifndef HOSTS_CONSOLE_INPUTLINES_H_
#define HOSTS_CONSOLE_INPUTLINES_H_

#include <optional>
#include <string>

namespace hosts::console {

/// Reads standard input line by line. Unlike `std::getline`, it reports read errors. Use one object
/// for the whole input, because the object buffers bytes that follow the current line. Not
/// thread-safe.
class InputLines {
 public:
  /// Returns the next line without its newline, or `std::nullopt` at the end of the input. The last
  /// line need not end with a newline. If standard input is non-blocking, waits for more bytes.
  /// Throws `ToolError` if standard input cannot be read.
  std::optional<std::string> Next();

 private:
  /// Reads the next block into the buffer. Returns false at the end of the input.
  bool ReadMore();

  std::string buffer_;
};

}  // namespace hosts::console

#endif  // HOSTS_CONSOLE_INPUTLINES_H_
