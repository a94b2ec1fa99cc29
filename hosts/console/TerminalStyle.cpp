#include "hosts/console/TerminalStyle.h"

#include <array>
#include <utility>

namespace hosts::console {
namespace {

using namespace ornwhatsnew;

/// The terminal attributes of each style, in the order in which `StyleStart` writes them. All other
/// styles, such as those of descriptions and changes, are plain text. The only colours are red,
/// magenta and bright blue. In common palettes, yellow, cyan and green are hard to read on white,
/// and blue is hard to read on black.
constexpr std::array<std::pair<StyleID, std::string_view>, 10> kAttributes = {{
    {kStyleFeatureTitle, "1"},
    {kStyleHeader, "35"},
    {kStyleInternalCode, "2"},
    {kStyleCommitLink, "2;4"},
    {kStyleHotSpot, "4;94"},
    {kStyleIssueLink, "4"},
    {kStyleUnlockLabel, "94"},
    {kStyleUnlockLabelBox, "7"},
    {kStyleInternalWarning, "3;31"},
    {kStyleRatingPlaceholder, "3;94"},
}};

}  // namespace

std::string StyleStart(const common::StyleSet& styles) {
  std::string attributes;
  for (const auto& [style, code] : kAttributes) {
    if (!styles.Has(style)) continue;
    if (!attributes.empty()) attributes += ';';
    attributes += code;
  }
  return attributes.empty() ? std::string() : "\x1B[" + attributes + "m";
}

std::string HyperlinkStart(std::string_view link, std::size_t number) {
  return "\x1B]8;id=" + std::to_string(number) + ";" + std::string(link) + "\x1B\\";
}

}  // namespace hosts::console
