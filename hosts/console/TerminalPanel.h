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
  bool isStyled = false;       ///< true: colours and attributes; false: plain text
  bool hasHyperlinks = false;  ///< true: hyperlinks; false: link targets in the text
};

/// Returns the panel's segments as lines for a terminal. Tabs at the start of a paragraph become
/// its indent, with a hanging indent after a bullet. An empty line separates features. Without
/// hyperlinks, the target of a link follows its text in angle brackets.
///
/// The result ends with a newline. It contains no control characters from the segments. Every line
/// ends with all styles and hyperlinks switched off. Takes linear time.
std::string RenderTerminalPanel(std::span<const common::StyledSegment> segments,
                                const TerminalLook& look);

}  // namespace hosts::console

#endif  // HOSTS_CONSOLE_TERMINALPANEL_H_
