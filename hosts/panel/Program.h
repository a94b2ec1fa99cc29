// Runs the program `ornwhatsnew-panel`.
#ifndef HOSTS_PANEL_PROGRAM_H_
#define HOSTS_PANEL_PROGRAM_H_

namespace hosts::panel {

/// Runs the program with the command line `argv`. Returns `common::ExitStatus::kDone` on success.
/// On failure, returns the `common::ExitStatus` of the error.
///
/// Reads all files before it connects to the window system, so that it can report errors without a
/// window system. Writes error messages to standard error, and one line to standard output for each
/// rating. Makes the process ignore SIGPIPE and SIGXFSZ, even after the function returns.
int RunProgram(int argc, const char* const* argv) noexcept;

}  // namespace hosts::panel

#endif  // HOSTS_PANEL_PROGRAM_H_
