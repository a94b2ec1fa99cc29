// Renders the panel as lines for a terminal.
#ifndef HOSTS_CONSOLE_TERMINALPANEL_H_
#define HOSTS_CONSOLE_TERMINALPANEL_H_

#include <cstddef>
#include <span>
#include <string>

#include "hosts/common/StyledSegments.h"

namespace hosts::console {

/// Selects the line width of the panel, and whether it has styles and hyperlinks for a terminal.
struct TerminalLook {
  std::size_t width = 0;       ///< the width of a line in columns; 0: no wrapping
  bool isStyled = false;       ///< true: colours and attributes; false: plain text
  bool hasHyperlinks = false;  ///< true: hyperlinks; false: link targets in the text
};

/// Returns the panel's segments as lines for a terminal. Tabs at the start of a paragraph become
/// its indent. If a bullet follows them, the other lines of the paragraph have a hanging indent. An
/// empty line separates features.
///
/// A safe link (`ornwhatsnew::IsSafeLink`) becomes a hyperlink if `look` has hyperlinks. Any other
/// link is plain text. If it has the style `kStyleHotSpot`, its target follows its text in angle
/// brackets, unless the text is the target.
///
/// The result ends with a newline. Control characters in the segments are replaced or removed. All
/// styles and hyperlinks are switched off at the end of every line. Takes linear time.
std::string RenderTerminalPanel(std::span<const common::StyledSegment> segments,
                                const TerminalLook& look);

}  // namespace hosts::console

#endif  // HOSTS_CONSOLE_TERMINALPANEL_H_
