// Defines messages and exceptions for problems in the files and options that authors provide.
#ifndef HOSTS_AUTHOR_INPUTERROR_H_
#define HOSTS_AUTHOR_INPUTERROR_H_

#include <cstddef>
#include <stdexcept>
#include <string>

namespace hosts::author {

/// A message about a line of a file, for example about a problem or a replacement.
struct Remark {
  std::size_t line;     ///< the first line of the file has the number 1
  std::string message;  ///< UTF-8; can contain characters of the file
};

/// Thrown if a file cannot be used. The message contains the reason and usually what to do, but
/// neither the name of the file nor the line.
class InputError : public std::runtime_error {
 public:
  InputError(std::size_t line, const std::string& message)
      : std::runtime_error(message), line_(line) {}

  /// Returns the number of the line, or 0 if the error applies to the whole file.
  std::size_t Line() const noexcept { return line_; }

 private:
  std::size_t line_;
};

/// Thrown if an option or an argument of the command line cannot be used. The message contains the
/// reason and usually what to do.
class OptionError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

}  // namespace hosts::author

#endif  // HOSTS_AUTHOR_INPUTERROR_H_
