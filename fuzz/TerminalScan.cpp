#include "fuzz/TerminalScan.h"

#include <algorithm>
#include <cstdint>

#include <unicode/uchar.h>
#include <unicode/utf8.h>

#include "fuzz/Property.h"

namespace fuzz {
namespace {

// Returns the code point at the offset and moves the offset past it. Aborts the process if the
// bytes at the offset are not well-formed UTF-8.
UChar32 ReadCharacter(std::string_view text, std::size_t& offset) {
  const auto* const bytes = reinterpret_cast<const std::uint8_t*>(text.data());
  auto next = static_cast<std::int32_t>(offset);
  UChar32 character = 0;
  U8_NEXT(bytes, next, static_cast<std::int32_t>(text.size()), character);
  Require(character >= 0, "output is well-formed UTF-8");
  offset = static_cast<std::size_t>(next);
  return character;
}

// Returns whether the code point is a joiner or a presentation selector. These code points are
// invisible, but they change the appearance of visible characters.
bool IsShaping(UChar32 character) {
  return character == 0x200C || character == 0x200D || character == 0xFE0E || character == 0xFE0F;
}

}  // namespace

bool IsInvisible(char32_t codePoint) {
  const auto character = static_cast<UChar32>(codePoint);
  if (u_hasBinaryProperty(character, UCHAR_DEFAULT_IGNORABLE_CODE_POINT) != 0) return true;
  // Some format characters are visible, for example the Arabic number sign.
  return u_charType(character) == U_FORMAT_CHAR &&
         u_hasBinaryProperty(character, UCHAR_PREPENDED_CONCATENATION_MARK) == 0;
}

namespace {

void RequireHarmless(UChar32 character) {
  if (character >= 0x20 && character < 0x7F) return;
  Require(u_charType(character) != U_CONTROL_CHAR, "no control character is written");
  Require(u_hasBinaryProperty(character, UCHAR_BIDI_CONTROL) == 0,
          "no direction control is written");
  Require(
      u_charType(character) != U_LINE_SEPARATOR && u_charType(character) != U_PARAGRAPH_SEPARATOR,
      "no line or paragraph separator is written");
  Require(u_charType(character) != U_SURROGATE &&
              u_hasBinaryProperty(character, UCHAR_NONCHARACTER_CODE_POINT) == 0,
          "no surrogate or noncharacter is written");
  Require(!IsInvisible(static_cast<char32_t>(character)) || IsShaping(character),
          "no invisible character is written");
}

bool IsUrlByte(char c) {
  return c > 0x20 && c < 0x7F;
}

// Interprets the output as a terminal does: tracks whether a style and a hyperlink are active.
// Aborts the process if a character or an escape sequence is not allowed. Also aborts the process
// if a style or a hyperlink is active at the end of a line.
class Terminal {
 public:
  explicit Terminal(std::string_view output) : rest_(output) {}

  std::string Read() {
    while (!rest_.empty()) {
      if (rest_.front() == '\x1B') {
        ReadSequence();
      } else if (rest_.front() == '\n') {
        Require(!isStyled_ && !isLinked_, "every line ends with styles and links off");
        CopyText(1);
      } else {
        std::size_t length = 0;
        RequireHarmless(ReadCharacter(rest_, length));
        CopyText(length);
      }
    }
    Require(!isStyled_ && !isLinked_, "the output ends with styles and links off");
    return std::move(plain_);
  }

 private:
  void CopyText(std::size_t length) {
    plain_ += rest_.substr(0, length);
    rest_.remove_prefix(length);
  }

  void ReadSequence() {
    if (rest_.starts_with("\x1B[")) {
      ReadStyle();
    } else {
      Require(rest_.starts_with("\x1B]8;"), "styles and links are the only escape sequences");
      ReadLink();
    }
  }

  void ReadStyle() {
    const std::size_t end = rest_.find_first_not_of("0123456789;", 2);
    Require(end != std::string_view::npos && end > 2 && rest_[end] == 'm',
            "a style sequence is complete");
    isStyled_ = rest_.substr(2, end - 2) != "0";
    rest_.remove_prefix(end + 1);
  }

  void ReadLink() {
    const std::size_t parameters = 4;
    const std::size_t target = rest_.find(';', parameters);
    Require(target != std::string_view::npos, "a link sequence is complete");
    const std::string_view id = rest_.substr(parameters, target - parameters);
    Require(id.empty() || id.starts_with("id="), "the only parameter of a link is its id");
    const std::size_t end = rest_.find("\x1B\\", target);
    Require(end != std::string_view::npos, "a link sequence has a terminator");
    const std::string_view url = rest_.substr(target + 1, end - target - 1);
    Require(std::ranges::all_of(url, IsUrlByte), "a link consists of printable ASCII characters");
    Require(url.empty() || url.starts_with("https://"), "a link starts with https://");
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
  for (std::size_t offset = 0; offset < output.size();) {
    const UChar32 character = ReadCharacter(output, offset);
    if (character != '\n' && character != '\t') RequireHarmless(character);
  }
}

}  // namespace fuzz
