#include "fuzz/TerminalScan.h"

#include <algorithm>
#include <cstdint>

#include <unicode/uchar.h>
#include <unicode/utf8.h>

#include "fuzz/Property.h"

namespace fuzz {
namespace {

// Returns the character at the offset and moves the offset past it.
UChar32 TakeCharacter(std::string_view text, std::size_t& place) {
  const auto* const bytes = reinterpret_cast<const std::uint8_t*>(text.data());
  auto at = static_cast<std::int32_t>(place);
  UChar32 character = 0;
  U8_NEXT(bytes, at, static_cast<std::int32_t>(text.size()), character);
  Require(character >= 0, "output is well-formed UTF-8");
  place = static_cast<std::size_t>(at);
  return character;
}

// Joiners and presentation selectors change visible characters; other invisible ones must be
// removed.
bool IsShaping(UChar32 character) {
  return character == 0x200C || character == 0x200D || character == 0xFE0E || character == 0xFE0F;
}

void RequireHarmless(UChar32 character) {
  if (character >= 0x20 && character < 0x7F) return;
  Require(u_charType(character) != U_CONTROL_CHAR, "no control character is written");
  Require(u_hasBinaryProperty(character, UCHAR_BIDI_CONTROL) == 0, "no direction is changed");
  Require(
      u_charType(character) != U_LINE_SEPARATOR && u_charType(character) != U_PARAGRAPH_SEPARATOR,
      "no other line end is written");
  Require(u_charType(character) != U_SURROGATE &&
              u_hasBinaryProperty(character, UCHAR_NONCHARACTER_CODE_POINT) == 0,
          "no noncharacter is written");
  const bool isInvisible =
      u_hasBinaryProperty(character, UCHAR_DEFAULT_IGNORABLE_CODE_POINT) != 0 ||
      u_charType(character) == U_FORMAT_CHAR;
  Require(!isInvisible || IsShaping(character), "no invisible character is written");
}

bool IsUrlByte(char c) {
  return c > 0x20 && c < 0x7F;
}

// Tracks the styles and hyperlinks of an output.
class Terminal {
 public:
  explicit Terminal(std::string_view output) : rest_(output) {}

  std::string Read() {
    while (!rest_.empty()) {
      if (rest_.front() == '\x1B') {
        TakeSequence();
      } else if (rest_.front() == '\n') {
        Require(!isStyled_ && !isLinked_, "every line ends with styles and links off");
        Take(1);
      } else {
        std::size_t length = 0;
        RequireHarmless(TakeCharacter(rest_, length));
        Take(length);
      }
    }
    Require(!isStyled_ && !isLinked_, "the output ends with styles and links off");
    return std::move(plain_);
  }

 private:
  void Take(std::size_t length) {
    plain_ += rest_.substr(0, length);
    rest_.remove_prefix(length);
  }

  void TakeSequence() {
    if (rest_.starts_with("\x1B[")) {
      TakeStyle();
    } else {
      Require(rest_.starts_with("\x1B]8;"), "there are no sequences but styles and links");
      TakeLink();
    }
  }

  void TakeStyle() {
    const std::size_t end = rest_.find_first_not_of("0123456789;", 2);
    Require(end != std::string_view::npos && end > 2 && rest_[end] == 'm', "a style is complete");
    isStyled_ = rest_.substr(2, end - 2) != "0";
    rest_.remove_prefix(end + 1);
  }

  void TakeLink() {
    const std::size_t parameters = 4;
    const std::size_t target = rest_.find(';', parameters);
    Require(target != std::string_view::npos, "a link is complete");
    const std::string_view id = rest_.substr(parameters, target - parameters);
    Require(id.empty() || id.starts_with("id="), "a link has no other parameter than its number");
    const std::size_t end = rest_.find("\x1B\\", target);
    Require(end != std::string_view::npos, "a link ends");
    const std::string_view url = rest_.substr(target + 1, end - target - 1);
    Require(std::ranges::all_of(url, IsUrlByte), "a link has the characters of a link");
    Require(url.empty() || url.starts_with("https://"), "a link leads to https");
    isLinked_ = !url.empty();
    rest_.remove_prefix(end + 2);
  }

  std::string_view rest_;
  std::string plain_;
  bool isStyled_ = false;
  bool isLinked_ = false;
};

}  // namespace

std::string RequireHarmlessPanel(std::string_view output) {
  return Terminal(output).Read();
}

void RequireHarmlessText(std::string_view output) {
  for (std::size_t place = 0; place < output.size();) {
    const UChar32 character = TakeCharacter(output, place);
    if (character != '\n' && character != '\t') RequireHarmless(character);
  }
}

}  // namespace fuzz
