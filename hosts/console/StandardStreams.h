// Writes to the program's standard streams and reads the properties of the terminal.
#ifndef HOSTS_CONSOLE_STANDARDSTREAMS_H_
#define HOSTS_CONSOLE_STANDARDSTREAMS_H_

#include <cstddef>
#include <optional>
#include <string_view>

#include <ornwhatsnew/PanelRenderers.h>

#include "hosts/common/FileDescriptor.h"
#include "hosts/console/Commands.h"

namespace hosts::console {

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

/// Writes "ornwhatsnew: " and `message` as one line to standard error. Replaces invisible
/// characters and ill-formed bytes with escapes (`orncore::string::EscapeInvisible`). Ignores write
/// errors.
void ReportError(std::string_view message);

using common::ShouldRepeat;

/// Returns whether both standard input and standard output are terminals.
bool IsInteractive();

/// Returns how to write the panel to standard output. `color` selects whether to use colours and
/// hyperlinks. With `kAuto`, this depends on whether standard output is a terminal, and on the
/// environment variables TERM and NO_COLOR. `width` is the column at which lines are wrapped. If
/// `width` is absent, the width of the result depends on standard output. For a terminal, it is the
/// width of the terminal, or 80 if that is unknown. For other output, it is 0, which means no
/// wrapping.
ornwhatsnew::TerminalOptions DetectTerminalOptions(ColorMode color,
                                                   std::optional<std::size_t> width);

}  // namespace hosts::console

#endif  // HOSTS_CONSOLE_STANDARDSTREAMS_H_
