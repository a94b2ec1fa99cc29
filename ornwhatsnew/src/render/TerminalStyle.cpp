#include "ornwhatsnew/src/render/TerminalStyle.h"

namespace ornwhatsnew {

// The only colours are red, magenta and bright blue. In common palettes, yellow, cyan and green are
// hard to read on white, and blue is hard to read on black.
std::string_view StyleStart(std::optional<StyleID> style) {
  if (!style) return {};
  switch (*style) {
    case kStyleFeatureTitle:
      return "\x1B[1m";
    case kStyleHeader:
      return "\x1B[35m";
    case kStyleInternalCode:
      return "\x1B[2m";
    case kStyleCommitLink:
      return "\x1B[2;4m";
    case kStyleHotSpot:
      return "\x1B[4;94m";
    case kStyleIssueLink:
      return "\x1B[4m";
    case kStyleUnlockLabel:
      return "\x1B[94;7m";
    case kStyleInternalWarning:
      return "\x1B[3;31m";
    case kStyleRatingPlaceholder:
      return "\x1B[3;94m";
    default:
      return {};
  }
}

std::string HyperlinkStart(std::string_view link, std::size_t number) {
  return "\x1B]8;id=" + std::to_string(number) + ";" + std::string(link) + "\x1B\\";
}

}  // namespace ornwhatsnew
