// The lines of standard input.
#ifndef HOSTS_CONSOLE_INPUTLINES_H_
#define HOSTS_CONSOLE_INPUTLINES_H_

#include <optional>
#include <string>

namespace hosts::console {

/// Reads standard input line by line and distinguishes its end from a read error. It reads ahead,
/// so use one object for the whole input, from one thread at a time. (`std::getline` does not
/// report read errors.)
class InputLines {
 public:
  /// Returns the next line without its newline, or nothing at the end of the input. The last line
  /// need not end with a newline. Throws `ToolError` if standard input cannot be read.
  std::optional<std::string> Next();

 private:
  /// Reads the next block into the buffer. Returns false at the end of the input.
  bool ReadMore();

  std::string buffer_;
};

}  // namespace hosts::console

#endif  // HOSTS_CONSOLE_INPUTLINES_H_
