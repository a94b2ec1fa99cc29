#include "hosts/console/TerminalStyle.h"

#include <algorithm>
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

constexpr std::size_t kMaximumLinkLength = 2000;
constexpr std::string_view kScheme = "https://";

bool IsUrlCharacter(char character) {
  constexpr std::string_view kMarks = "-._~:/?#[]@!$&'()*+,;=%";
  const bool isAlphanumeric = (character >= 'a' && character <= 'z') ||
                              (character >= 'A' && character <= 'Z') ||
                              (character >= '0' && character <= '9');
  return isAlphanumeric || kMarks.find(character) != std::string_view::npos;
}

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

bool IsSafeHyperlink(std::string_view link) {
  return link.starts_with(kScheme) && link.size() > kScheme.size() &&
         link.size() <= kMaximumLinkLength && std::ranges::all_of(link, IsUrlCharacter);
}

std::string HyperlinkStart(std::string_view link, std::size_t number) {
  return "\x1B]8;id=" + std::to_string(number) + ";" + std::string(link) + "\x1B\\";
}

}  // namespace hosts::console
