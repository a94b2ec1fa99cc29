// Reads the properties of the terminal.
#ifndef HOSTS_CONSOLE_TERMINALDETECTION_H_
#define HOSTS_CONSOLE_TERMINALDETECTION_H_

#include <cstddef>
#include <optional>

#include <ornwhatsnew/PanelRenderers.h>

#include "hosts/console/Commands.h"

namespace hosts::console {

/// Returns how to write the panel to standard output. `color` selects whether to use colours and
/// hyperlinks. With `kAuto`, this depends on whether standard output is a terminal, and on the
/// environment variables TERM and NO_COLOR. `width` is the column at which lines are wrapped. If
/// `width` is absent, the width of the result depends on standard output. For a terminal, it is the
/// width of the terminal, or 80 if that is unknown. For other output, it is 0, which means no
/// wrapping.
ornwhatsnew::TerminalOptions DetectTerminalOptions(ColorMode color,
                                                   std::optional<std::size_t> width);

}  // namespace hosts::console

#endif  // HOSTS_CONSOLE_TERMINALDETECTION_H_
