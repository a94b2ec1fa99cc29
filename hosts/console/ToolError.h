// How the program ends, and the errors that end it.
#ifndef HOSTS_CONSOLE_TOOLERROR_H_
#define HOSTS_CONSOLE_TOOLERROR_H_

#include <stdexcept>
#include <string>

namespace hosts::console {

/// The program's exit status; scripts rely on the numbers, and `--help` lists them.
enum class ExitStatus : int {
  kDone = 0,
  kUnexpected = 1,        ///< something that should not happen, such as memory running out
  kUsage = 2,             ///< the command line is not understood
  kInput = 3,             ///< the data file, the host description or standard input cannot be used
  kState = 4,             ///< the state store cannot be read or written
  kUnknownKey = 5,        ///< there is no such feature to rate
  kOutput = 6,            ///< standard output cannot be written
  kCommand = 7,           ///< a console command is unknown or failed
  kSomethingNew = 10,     ///< `status --exit-status`: something is new
  kSomethingToRate = 11,  ///< ... something can be rated
  kNewAndToRate = 12,     ///< ... both
};

/// Ends the program with a message of one line that says what is wrong, where, and what to do.
class ToolError : public std::runtime_error {
 public:
  ToolError(ExitStatus status, const std::string& message)
      : std::runtime_error(message), status_(status) {}

  ExitStatus Status() const noexcept { return status_; }

 private:
  ExitStatus status_;
};

}  // namespace hosts::console

#endif  // HOSTS_CONSOLE_TOOLERROR_H_
