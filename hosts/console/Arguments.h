// What the user asks the program to do.
#ifndef HOSTS_CONSOLE_ARGUMENTS_H_
#define HOSTS_CONSOLE_ARGUMENTS_H_

#include <filesystem>
#include <optional>
#include <string>
#include <variant>

#include "hosts/console/Commands.h"

namespace hosts::console {

/// A command line that is answered by a text: help, the version, or an error.
struct Answer {
  std::string text;
  bool isError = false;
};

using Request = std::variant<Answer, ShowArguments, StatusArguments, RateArguments,
                             StateShowArguments, StateResetArguments, ConsoleArguments>;

/// Reads the command line. Never throws for what stands in it: that is answered by a text.
Request ParseArguments(int argc, const char* const* argv);

}  // namespace hosts::console

#endif  // HOSTS_CONSOLE_ARGUMENTS_H_
