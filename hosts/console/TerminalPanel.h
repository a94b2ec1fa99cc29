// Lays out the panel for a terminal.
#ifndef HOSTS_CONSOLE_TERMINALPANEL_H_
#define HOSTS_CONSOLE_TERMINALPANEL_H_

#include <cstddef>
#include <span>
#include <string>

#include "hosts/common/StyledSegments.h"

namespace hosts::console {

/// The properties of the output.
struct TerminalLook {
  std::size_t width = 0;       ///< column at which lines are wrapped; 0 never wraps
  bool isStyled = false;       ///< colours and attributes, or plain text
  bool hasHyperlinks = false;  ///< hyperlinks, or link targets in the text
};

/// Returns the panel's segments as lines for a terminal. Tabs at the start of a paragraph become
/// its indent, with a hanging indent after a bullet. Features are separated by an empty line.
/// Without hyperlinks, the target of a link follows its text in angle brackets.
///
/// The result ends with a newline. It has no control characters from the segments, and every line
/// ends with all styles and hyperlinks off. Takes linear time.
std::string RenderTerminalPanel(std::span<const common::StyledSegment> segments,
                                const TerminalLook& look);

}  // namespace hosts::console

#endif  // HOSTS_CONSOLE_TERMINALPANEL_H_
