// Parses the program's command line.
#ifndef HOSTS_CONSOLE_ARGUMENTS_H_
#define HOSTS_CONSOLE_ARGUMENTS_H_

#include <string>
#include <variant>

#include "hosts/console/Commands.h"

namespace hosts::console {

/// The text to print instead of running a command: help, the version, or an error message.
struct Answer {
  std::string text;
  bool isError = false;
};

/// A parsed command line: the arguments of a command, or the text to print instead.
using Request = std::variant<Answer, ShowArguments, StatusArguments, WhyArguments, RateArguments,
                             StateShowArguments, StateResetArguments, ImportArguments, AddArguments,
                             MessagesArguments, ConsoleArguments, LintArguments, PreviewArguments>;

/// Parses the command line `argv`, which begins with the program's name. Returns the arguments of
/// the command. If the user requests help or the version, or if the command line is invalid,
/// returns an `Answer`.
Request ParseArguments(int argc, const char* const* argv);

}  // namespace hosts::console

#endif  // HOSTS_CONSOLE_ARGUMENTS_H_
