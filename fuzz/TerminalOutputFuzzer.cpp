// Fuzzes the functions that write text from files to a terminal.
//
// The input consists of a line of two switches and of a layout (LayoutInput.h). The switches are:
//
//   0  the width in columns, modulo 128; 0 means no limit
//   1  flags: 0x01 switches styles off. Hyperlinks are on if styles are on. 0x02 inverts this rule:
//      hyperlinks are on if styles are off.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include <orncore/string/DisplayWidth.h>
#include <orncore/string/SafeLink.h>
#include <orncore/string/SafeText.h>
#include <ornwhatsnew/PanelRenderers.h>
#include <unicode/brkiter.h>
#include <unicode/uchar.h>

#include "fuzz/Input.h"
#include "fuzz/LayoutInput.h"
#include "fuzz/Property.h"
#include "fuzz/TerminalScan.h"
#include "ornwhatsnew/src/render/LinkTarget.h"
#include "tests/support/PlainText.h"

namespace fuzz {
namespace {

using orncore::string::EscapeInvisible;
using orncore::string::SafeForTerminal;
using ornwhatsnew::PanelLayout;
using ornwhatsnew::PrintedLinkTarget;
using ornwhatsnew::StyleID;
using ornwhatsnew::TerminalOptions;
using test_support::PlainUTF16to8;
using test_support::PlainUTF8to16;

// Returns the visible character that must replace `character` in terminal output, or `character`
// itself if there is none. REQUIRES: `character` is neither a newline nor a tab.
UChar32 PlainReplacement(UChar32 character) {
  if (character < 0x20) return 0x2400 + character;
  if (character == 0x7F) return 0x2421;
  const bool isReplaced = (character >= 0x80 && character < 0xA0) ||
                          u_charType(character) == U_SURROGATE ||
                          u_hasBinaryProperty(character, UCHAR_NONCHARACTER_CODE_POINT) != 0;
  return isReplaced ? 0xFFFD : character;
}

// Returns the visible characters that a terminal must show for `text`, in order. Omits white space,
// because wrapping adds and removes it. Omits invisible characters, because the library keeps only
// some of them.
std::string VisibleCharacters(std::string_view text) {
  const std::u16string utf16 = PlainUTF8to16(text);
  const icu::UnicodeString characters(utf16.data(), static_cast<std::int32_t>(utf16.size()));
  icu::UnicodeString visible;
  for (std::int32_t i = 0; i < characters.length(); i = characters.moveIndex32(i, 1)) {
    const UChar32 character = characters.char32At(i);
    if (IsInvisible(static_cast<char32_t>(character)) || character == '\n' || character == '\t')
      continue;
    const UChar32 shown = PlainReplacement(character);
    if (u_isUWhiteSpace(shown) == 0) visible.append(shown);
  }
  std::string utf8;
  return visible.toUTF8String(utf8);
}

// Returns `escaped` with each escape sequence replaced by the bytes that it represents.
std::string WithoutEscapes(std::string_view escaped) {
  std::string text;
  while (!escaped.empty()) {
    if (escaped.front() != '\\') {
      text += escaped.front();
      escaped.remove_prefix(1);
      continue;
    }
    const char kind = escaped[1];
    const std::size_t digits = kind == 'x' ? 2 : kind == 'u' ? 4 : 8;
    const auto value = std::stoul(std::string(escaped.substr(2, digits)), nullptr, 16);
    if (kind == 'x') {
      text += static_cast<char>(value);
    } else {
      icu::UnicodeString(static_cast<UChar32>(value)).toUTF8String(text);
    }
    escaped.remove_prefix(2 + digits);
  }
  return text;
}

void RequireSafeText(std::string_view text) {
  const std::string shown = PlainUTF16to8(SafeForTerminal(PlainUTF8to16(text)));
  RequireHarmlessText(shown);
  RequireEqual(VisibleCharacters(shown), VisibleCharacters(text), "each visible character is kept");

  const std::string escaped = EscapeInvisible(text);
  RequireHarmlessText(escaped);
  Require(escaped.find_first_of("\n\t") == std::string::npos, "a message is one line");
  RequireEqual(EscapeInvisible(escaped), escaped, "escaping a second time has no effect");
  if (text.find('\\') == std::string_view::npos) {
    RequireEqual(WithoutEscapes(escaped), std::string(text),
                 "an escape sequence represents the escaped bytes");
  }
}

// Checks that the printed target of `link` contains only visible ASCII characters, but no angle
// brackets or double quotes. If the link is safe, the target must equal it. Otherwise, the target
// must have at most `kMaximumPrintedTarget` bytes.
void RequireOneTarget(const std::string& link) {
  const std::string target = PrintedLinkTarget(link);
  Require(std::ranges::all_of(target, [](char c) { return c > 0x20 && c < 0x7F; }),
          "a target consists of visible ASCII characters");
  Require(target.find_first_of("<>\"") == std::string::npos, "a target has no brackets or quotes");
  if (orncore::string::IsSafeLink(link)) {
    RequireEqual(target, link, "the target of a safe link is unchanged");
    return;
  }
  Require(target.size() <= ornwhatsnew::kMaximumPrintedTarget, "a target is short");
}

// Checks that the host name in the printed target of a composed link ends with `kComposedHost`.
// Finds the host name in the same way as a browser.
void RequireVisibleHost(const std::string& link) {
  const std::string target = PrintedLinkTarget(link);
  std::string_view rest = target;
  Require(rest.starts_with("https://"), "a target shows its scheme");
  rest.remove_prefix(std::min(rest.find_first_not_of("/\\", rest.find(':') + 1), rest.size()));
  rest = rest.substr(0, rest.find_first_of("/?#\\"));
  rest.remove_prefix(rest.rfind('@') + 1);
  rest = rest.substr(0, rest.find(':'));
  if (rest.starts_with("...")) rest.remove_prefix(3);
  if (rest.ends_with("...")) rest.remove_suffix(3);
  Require(rest == kComposedHost || rest.ends_with("h." + std::string(kComposedHost)),
          "a target shows its host");
}

// Returns the text that the terminal must show. Adds the printed target after each link in the
// style `kStyleHotSpot`. Adds nothing if the link equals the text of its span, or if the renderer
// writes a hyperlink.
std::string ExpectedText(const PanelLayout& layout, const TerminalOptions& options) {
  std::u16string expected;
  for (const ornwhatsnew::LayoutParagraph& paragraph : layout.paragraphs) {
    expected += paragraph.bullet;
    for (const auto& [range, style, link] : paragraph.spans) {
      const std::u16string text = layout.text.substr(range.begin, range.length);
      expected += text;
      const bool hasTarget = style == StyleID::kStyleHotSpot && !link.empty() && link != text;
      if (!hasTarget || (options.hasHyperlinks && orncore::string::IsSafeLink(link))) continue;
      expected += PlainUTF8to16("<" + PrintedLinkTarget(PlainUTF16to8(link)) + ">");
    }
    if (!paragraph.rating) continue;
    const std::u16string& question = layout.ratingRequests[*paragraph.rating].question;
    expected += question.empty() ? ornwhatsnew::kDefaultRatingQuestion : question;
  }
  return PlainUTF16to8(expected);
}

// Returns whether the text is one grapheme. A line may be wider than the terminal only if it has
// one grapheme after its indent.
bool IsOneGrapheme(std::u16string_view text) {
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
    if (orncore::string::DisplayWidth(text) <= width) continue;
    const std::u16string_view afterIndent =
        std::u16string_view(text).substr(std::min(text.find_first_not_of(u' '), text.size()));
    Require(IsOneGrapheme(afterIndent), "no line is wider than the terminal");
  }
}

void Run(Input input) {
  const std::string_view switches = input.ReadLine();
  const bool hasStyles = (Switch(switches, 1) & 0x01) == 0;
  const bool isMixed = (Switch(switches, 1) & 0x02) != 0;
  const TerminalOptions options{.width = Switch(switches, 0) % 128,
                                .hasStyles = hasStyles,
                                .hasHyperlinks = hasStyles != isMixed};
  for (const std::string_view part : Input(input).ReadParts()) {
    RequireSafeText(PartText(part));
    RequireOneTarget(PartLink(part));
    if (HasComposedLink(part)) RequireVisibleHost(PartLink(part));
  }

  const PanelLayout layout = ReadLayout(input);
  const std::string output = ornwhatsnew::RenderTerminalText(layout, options);
  Require(output.ends_with('\n'), "the output ends with a newline");
  Require(options.hasStyles || options.hasHyperlinks || output.find('\x1B') == std::string::npos,
          "plain text has no escape sequences");
  const std::string plain = RequireHarmlessPanel(output);
  RequireWidth(plain, options.width);
  RequireEqual(VisibleCharacters(plain), VisibleCharacters(ExpectedText(layout, options)),
               "each visible character is shown once, in order");
}

}  // namespace
}  // namespace fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::Run(fuzz::Input(data, size));
  return 0;
}
