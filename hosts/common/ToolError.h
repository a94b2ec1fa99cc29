// Defines the exit statuses of the programs, and the exception that ends a program.
#ifndef HOSTS_COMMON_TOOLERROR_H_
#define HOSTS_COMMON_TOOLERROR_H_

#include <stdexcept>
#include <string>
#include <string_view>

namespace hosts::common {

/// The exit status of a program. Scripts depend on the numbers, which `--help` lists.
enum class ExitStatus : int {
  kDone = 0,
  kUnexpected = 1,        ///< unexpected error, for example insufficient memory
  kUsage = 2,             ///< the command line is not valid
  kInput = 3,             ///< an input cannot be used: a file, standard input, or `add`'s new row
  kState = 4,             ///< the state store cannot be read or written
  kUnknownKey = 5,        ///< the feature does not exist or cannot be rated
  kOutput = 6,            ///< the output cannot be written
  kCommand = 7,           ///< a console command is unknown or failed
  kLintFindings = 1,      ///< lint: a finding has at least the severity of `--fail-on`
  kLintFailed = 2,        ///< lint: the files could not be checked, for any reason
  kSomethingNew = 10,     ///< `status --exit-status`: something is new
  kSomethingToRate = 11,  ///< `status --exit-status`: something can be rated
  kNewAndToRate = 12,     ///< `status --exit-status`: something is new and something can be rated
};

/// Thrown to end a program with an exit status and an error message. The message is one line: what
/// failed, on which file or argument, and why. If the message is empty, the program prints nothing.
class ToolError : public std::runtime_error {
 public:
  ToolError(ExitStatus status, const std::string& message)
      : std::runtime_error(message), status_(status) {}

  ExitStatus Status() const noexcept { return status_; }

 private:
  ExitStatus status_;
};

/// Calls `run` with the command line of a program, and returns the exit status that `run` returns.
/// If `run` throws, returns the exit status for the exception. Before that, calls `report` with the
/// error message if the message is not empty.
int RunReportingErrors(int argc, const char* const* argv,
                       ExitStatus (*run)(int argc, const char* const* argv),
                       void (*report)(std::string_view message)) noexcept;

}  // namespace hosts::common

#endif  // HOSTS_COMMON_TOOLERROR_H_
