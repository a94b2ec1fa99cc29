// Writes to the standard streams of the program.
#ifndef HOSTS_COMMON_STANDARDSTREAMS_H_
#define HOSTS_COMMON_STANDARDSTREAMS_H_

#include <string_view>

namespace hosts::common {

/// Writes `text` unchanged to standard output. If standard output is non-blocking, waits until it
/// accepts more bytes. Throws `ToolError` on failure. The error message ends with `outcome`, a
/// clause that says what was or was not stored. If `outcome` is empty and standard output is a pipe
/// that its reader has closed, the error message is empty. REQUIRES: the process ignores SIGPIPE.
void WriteOutput(std::string_view text, std::string_view outcome = {});

/// If standard output is a pipe, waits up to 100 ms, so that a reader that exits early, such as
/// `head`, can close the pipe. If the reader closes the pipe, throws the same `ToolError` as
/// `WriteOutput` for a closed pipe. Returns if the pipe is still open after that time, because its
/// reader may be a pager.
void RequireReader(std::string_view outcome);

/// Writes "PROGRAM: MESSAGE" as one line to standard error. Replaces invisible characters and
/// ill-formed bytes in `message` with escapes (`orncore::string::EscapeInvisible`). Ignores write
/// errors.
void ReportError(std::string_view program, std::string_view message);

/// Returns whether both standard input and standard output are terminals.
bool IsInteractive();

}  // namespace hosts::common

#endif  // HOSTS_COMMON_STANDARDSTREAMS_H_
