// The program's standard streams: what kind of terminal is there, and writing that notices failure.
#ifndef HOSTS_CONSOLE_STANDARDSTREAMS_H_
#define HOSTS_CONSOLE_STANDARDSTREAMS_H_

#include <cstddef>
#include <optional>
#include <string_view>

#include "hosts/console/Commands.h"
#include "hosts/console/TerminalPanel.h"

namespace hosts::console {

/// Nobody reads what is written any more. That is no error to speak of: the reader has what it
/// wanted.
class ReaderGone : public ToolError {
 public:
  ReaderGone() : ToolError(ExitStatus::kOutput, "Nobody reads standard output any more.") {}
};

/// Writes the bytes as they are. Throws `ReaderGone`, or `ToolError` for any other failure;
/// `outcome`, a sentence, then tells what has or has not been done all the same.
void WriteOutput(std::string_view text, std::string_view outcome = {});

/// Writes one line to standard error, with the program's name before it and nothing in it that acts
/// on a terminal. A failure to write is passed over: there is nobody left to tell.
void ReportError(std::string_view message);

/// Whether somebody types commands and reads their output.
bool IsInteractive();

/// What standard output can do. Without a given width a terminal is asked for its own, 80 when it
/// does not know, and anything else never wraps.
TerminalLook LookOfOutput(ColorMode color, std::optional<std::size_t> width);

}  // namespace hosts::console

#endif  // HOSTS_CONSOLE_STANDARDSTREAMS_H_
