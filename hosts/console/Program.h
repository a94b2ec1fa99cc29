// The program `ornwhatsnew`, from its command line to its exit status.
#ifndef HOSTS_CONSOLE_PROGRAM_H_
#define HOSTS_CONSOLE_PROGRAM_H_

namespace hosts::console {

/// Runs the program on the process's standard streams; returns its exit status. Starts and ends the
/// process's contexts. Nothing is thrown: errors are reported on standard error.
int RunProgram(int argc, const char* const* argv) noexcept;

}  // namespace hosts::console

#endif  // HOSTS_CONSOLE_PROGRAM_H_
