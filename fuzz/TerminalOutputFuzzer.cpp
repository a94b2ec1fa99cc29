// Door: text from files on its way to a terminal.
//
// Input: a line with two switches (the width in columns; 1 without colours and links), then parts,
// each a segment of the panel: two bytes that choose styles and link, and its text.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <unicode/brkiter.h>
#include <unicode/uchar.h>

#include "fuzz/Input.h"
#include "fuzz/Property.h"
#include "fuzz/TerminalScan.h"
#include "hosts/console/DisplayWidth.h"
#include "hosts/console/TerminalPanel.h"
#include "hosts/console/TerminalText.h"
#include "tests/support/PlainText.h"

namespace fuzz {
namespace {

using hosts::common::StyledSegment;
using hosts::console::SafeForTerminal;
using hosts::console::TerminalLook;
using hosts::console::Whitespace;
using ornwhatsnew::StyleID;
using test_support::PlainUTF16to8;
using test_support::PlainUTF8to16;

StyledSegment SegmentOf(std::string_view part) {
  StyledSegment segment;
  segment.styles.Set(static_cast<StyleID>(Switch(part, 0) & 0x0F), true);
  if ((Switch(part, 0) & 0x10) != 0) segment.styles.Set(StyleID::kStyleUnlockLabelBox, true);
  segment.text = part.substr(std::min<std::size_t>(2, part.size()));
  switch (Switch(part, 1) & 0x03) {
    case 0:
      break;
    case 1:
      segment.link = segment.text;
      break;
    case 2:
      segment.link = "https://a.example/" + segment.text;
      break;
    default:
      segment.link = "https://a.example/?q=1&r=%20";
  }
  return segment;
}

// The text without anything that layout may add or take away: blanks of all kinds.
std::string WithoutBlanks(std::string_view text) {
  std::u16string kept;
  for (const char16_t unit : PlainUTF8to16(text)) {
    if (u_isUWhiteSpace(unit) == 0) kept += unit;
  }
  return PlainUTF16to8(kept);
}

void RequireSafeText(std::string_view text) {
  const std::string shown = SafeForTerminal(text, Whitespace::kShow);
  RequireHarmlessText(shown);
  Require(shown.find_first_of("\n\t") == std::string::npos, "line ends and tabs are shown");
  RequireHarmlessText(SafeForTerminal(text, Whitespace::kKeep));
  RequireEqual(PlainUTF16to8(SafeForTerminal(PlainUTF8to16(text), Whitespace::kShow)), shown,
               "a text is made safe alike from UTF-8 and from UTF-16");
}

// Whether readers take it for one character, however many parts it is joined of. What cannot be
// broken stands alone on a line, even where that is too narrow.
bool IsOneCharacter(std::u16string_view text) {
  UErrorCode status = U_ZERO_ERROR;
  const std::unique_ptr<icu::BreakIterator> characters(
      icu::BreakIterator::createCharacterInstance(icu::Locale::getRoot(), status));
  const icu::UnicodeString copy(text.data(), static_cast<std::int32_t>(text.size()));
  characters->setText(copy);
  characters->first();
  return characters->next() == copy.length();
}

void RequireWidth(std::string_view plain, std::size_t width) {
  if (width == 0) return;
  for (const std::string& line : test_support::PlainSplit(plain, '\n')) {
    const std::u16string text = PlainUTF8to16(line);
    if (hosts::console::DisplayWidth(text) <= width) continue;
    const std::u16string_view behindIndent =
        std::u16string_view(text).substr(std::min(text.find_first_not_of(u' '), text.size()));
    Require(IsOneCharacter(behindIndent), "no line is wider than the terminal");
  }
}

void Run(Input input) {
  const std::string_view switches = input.TakeLine();
  const bool isStyled = (Switch(switches, 1) & 0x01) == 0;
  const bool isMixed = (Switch(switches, 1) & 0x02) != 0;
  const TerminalLook look{.width = Switch(switches, 0) % 128,
                          .isStyled = isStyled,
                          .hasHyperlinks = isStyled != isMixed};
  std::vector<StyledSegment> segments;
  std::string expected;
  for (const std::string_view part : input.TakeParts()) {
    segments.push_back(SegmentOf(part));
    RequireSafeText(segments.back().text);
    expected += SafeForTerminal(segments.back().text, Whitespace::kKeep);
  }

  const std::string output = hosts::console::RenderTerminalPanel(segments, look);
  Require(output.ends_with('\n'), "the output ends with a line feed");
  Require(look.isStyled || look.hasHyperlinks || output.find('\x1B') == std::string::npos,
          "plain text has no escape sequences");
  const std::string plain = RequireHarmlessPanel(output);
  RequireWidth(plain, look.width);
  if (look.hasHyperlinks) {
    RequireEqual(WithoutBlanks(plain), WithoutBlanks(expected), "nothing is lost or added");
  }
}

}  // namespace
}  // namespace fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::Run(fuzz::Input(data, size));
  return 0;
}
