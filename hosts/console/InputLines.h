// The lines of standard input.
#ifndef HOSTS_CONSOLE_INPUTLINES_H_
#define HOSTS_CONSOLE_INPUTLINES_H_

#include <optional>
#include <string>

namespace hosts::console {

/// Reads standard input line by line, and tells its end from a failure to read. One object at a
/// time, since it reads ahead; one thread at a time.
class InputLines {
 public:
  /// The next line without its line feed; nothing at the end of the input. A last line need not end
  /// with one. Throws `ToolError` when standard input cannot be read.
  std::optional<std::string> Next();

 private:
  /// Takes what there is to read; false at the end.
  bool ReadMore();

  std::string ahead_;
};

}  // namespace hosts::console

#endif  // HOSTS_CONSOLE_INPUTLINES_H_
