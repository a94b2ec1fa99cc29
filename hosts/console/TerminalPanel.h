// The whole panel as a terminal shows it.
#ifndef HOSTS_CONSOLE_TERMINALPANEL_H_
#define HOSTS_CONSOLE_TERMINALPANEL_H_

#include <cstddef>
#include <span>
#include <string>

#include "hosts/common/StyledSegments.h"

namespace hosts::console {

/// What the terminal can do.
struct TerminalLook {
  std::size_t width = 0;       ///< columns to wrap at; 0 never wraps
  bool isStyled = false;       ///< colours and attributes, or plain text
  bool hasHyperlinks = false;  ///< hyperlinks, or their targets in the text
};

/// Lays out the panel's segments: tabs at a paragraph's start become its indent, with hanging
/// indents behind bullets; features are set apart by a blank line; markers of a paragraph's start
/// are dropped. Without hyperlinks the target of one that is to be clicked stands behind its text
/// in angle brackets.
///
/// The result ends with a line feed. No character of the segments acts on the terminal, and every
/// line ends with all styles and hyperlinks off. Takes time linear in the text.
std::string RenderTerminalPanel(std::span<const common::StyledSegment> segments,
                                const TerminalLook& look);

}  // namespace hosts::console

#endif  // HOSTS_CONSOLE_TERMINALPANEL_H_
