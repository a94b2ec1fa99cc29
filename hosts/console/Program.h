// Runs the program `ornwhatsnew`.
#ifndef HOSTS_CONSOLE_PROGRAM_H_
#define HOSTS_CONSOLE_PROGRAM_H_

namespace hosts::console {

/// Runs the program with the command line `argv` and returns the exit status. Reads and writes the
/// standard streams of the process. Initialises the contexts of the process and shuts them down.
/// Writes error messages to standard error. Makes the process ignore SIGPIPE and SIGXFSZ, even
/// after the function returns.
int RunProgram(int argc, const char* const* argv) noexcept;

}  // namespace hosts::console

#endif  // HOSTS_CONSOLE_PROGRAM_H_
