// The program's standard streams: output with error checks, and the terminal's properties.
#ifndef HOSTS_CONSOLE_STANDARDSTREAMS_H_
#define HOSTS_CONSOLE_STANDARDSTREAMS_H_

#include <cstddef>
#include <optional>
#include <string_view>

#include "hosts/console/Commands.h"
#include "hosts/console/TerminalPanel.h"

namespace hosts::console {

/// Writes the bytes unchanged. Throws `ToolError` on failure; its message ends with `outcome`, a
/// sentence about what was or was not stored. If the reader has closed the pipe, the message is
/// empty.
void WriteOutput(std::string_view text, std::string_view outcome = {});

/// Writes "ornwhatsnew: " and the message as one line to standard error, safe for a terminal. A
/// failure to write is ignored.
void ReportError(std::string_view message);

/// Whether both standard input and standard output are terminals.
bool IsInteractive();

/// Returns what standard output supports. Without `width`, a terminal's own width is used (80 if it
/// is unknown), and output that is not a terminal is not wrapped.
TerminalLook DetectTerminalLook(ColorMode color, std::optional<std::size_t> width);

}  // namespace hosts::console

#endif  // HOSTS_CONSOLE_STANDARDSTREAMS_H_
