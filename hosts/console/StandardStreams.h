// The program's standard streams: output with error checks, and the terminal's properties.
#ifndef HOSTS_CONSOLE_STANDARDSTREAMS_H_
#define HOSTS_CONSOLE_STANDARDSTREAMS_H_

#include <cstddef>
#include <optional>
#include <string_view>

#include "hosts/console/Commands.h"
#include "hosts/console/TerminalPanel.h"

namespace hosts::console {

/// Writes `text` unchanged to standard output. Throws `ToolError` on failure; its message ends with
/// `outcome`, a sentence about what was or was not stored. If the reader has closed the pipe, the
/// message is empty.
void WriteOutput(std::string_view text, std::string_view outcome = {});

/// Writes "ornwhatsnew: " and the message as one line to standard error. Makes the message safe for
/// a terminal. Ignores write errors.
void ReportError(std::string_view message);

/// Returns whether both standard input and standard output are terminals.
bool IsInteractive();

/// Returns the properties of standard output. If `width` is absent, uses the width of the terminal,
/// or 80 if it is unknown. Output that is not a terminal is then not wrapped.
TerminalLook DetectTerminalLook(ColorMode color, std::optional<std::size_t> width);

}  // namespace hosts::console

#endif  // HOSTS_CONSOLE_STANDARDSTREAMS_H_
