#include "tests/support/RandomSource.h"

#include <string_view>

namespace test_support {

namespace {

using namespace std::string_view_literals;

constexpr std::string_view kFragments[] = {
    ","sv,
    "\""sv,
    "\n"sv,
    "\r"sv,
    "\t"sv,
    " "sv,
    "."sv,
    "\\"sv,
    "\0"sv,
    "a"sv,
    "Z"sv,
    "25"sv,
    "word"sv,
    "Headline"sv,
    "$$$/"sv,
    "private/"sv,
    "="sv,
    "@0"sv,
    "#{endl}"sv,
    "^B"sv,
    "\xEF\xBB\xBF"sv,      // byte order mark
    "\xE2\x80\xA8"sv,      // line separator, U+2028
    "\xE2\x80\xA9"sv,      // paragraph separator, U+2029
    "\xC3\x89"sv,          // capital E with acute accent
    "\xC4\xB0"sv,          // capital I with dot; its lower case has two characters
    "\xE2\x84\xAA"sv,      // Kelvin sign; its lower case is ASCII
    "\xCE\xA3"sv,          // capital sigma; its lower case depends on the context
    "\xE6\x97\xA5"sv,      // a character of three bytes
    "\xF0\x90\x90\x80"sv,  // a character of four bytes that has a lower case
    "\xF0\x9F\x98"sv,      // truncated sequence
    "\xC3"sv,              // truncated sequence
    "\x80"sv,              // continuation byte without a lead byte
    "\xED\xA0\x80"sv,      // an encoded surrogate
    "\xF5\x80\x80\x80"sv,  // beyond U+10FFFF
    "a text of sixteen or more"sv,
};

constexpr char16_t kUnits[] = {u'a',   u'Z',   u' ',   u'@',   u'0',   0,      0x00E9,
                               0x0130, 0x03A3, 0x65E5, 0xFEFF, 0xFFFD, 0xFFFF, 0xD800,
                               0xD83D, 0xDBFF, 0xDC00, 0xDE00, 0xDFFF};

}  // namespace

std::string RandomSource::HostileText(std::size_t maxFragments) {
  std::string text;
  for (std::size_t count = Below(maxFragments + 1); count > 0; --count) text += Pick(kFragments);
  return text;
}

std::u16string RandomSource::HostileUTF16(std::size_t maxUnits) {
  std::u16string text;
  for (std::size_t count = Below(maxUnits + 1); count > 0; --count) text += Pick(kUnits);
  return text;
}

}  // namespace test_support
