// The program `ornwhatsnew`, from its command line to its exit status.
#ifndef HOSTS_CONSOLE_PROGRAM_H_
#define HOSTS_CONSOLE_PROGRAM_H_

namespace hosts::console {

/// Runs the program on the process's standard streams and returns the exit status. Initializes and
/// shuts down the process's contexts. Writes errors to standard error.
int RunProgram(int argc, const char* const* argv) noexcept;

}  // namespace hosts::console

#endif  // HOSTS_CONSOLE_PROGRAM_H_
