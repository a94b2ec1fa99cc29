#include "tests/support/RandomSource.h"

#include <string_view>

namespace test_support {

namespace {

using namespace std::string_view_literals;

constexpr std::string_view kPieces[] = {
    ","sv,
    "\""sv,
    "\n"sv,
    "\r"sv,
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
    "\xC3\x89"sv,          // E with acute
    "\xC4\xB0"sv,          // I with dot: two characters in lower case
    "\xE2\x84\xAA"sv,      // Kelvin sign: ASCII in lower case
    "\xCE\xA3"sv,          // sigma: depends on what stands around it
    "\xE6\x97\xA5"sv,      // three bytes
    "\xF0\x90\x90\x80"sv,  // four bytes, with a lower case
    "\xF0\x9F\x98"sv,      // cut off
    "\xC3"sv,              // cut off
    "\x80"sv,              // no beginning
    "\xED\xA0\x80"sv,      // a surrogate
    "\xF5\x80\x80\x80"sv,  // beyond Unicode
    "a text of sixteen or more"sv,
};

constexpr char16_t kUnits[] = {u'a',   u'Z',   u' ',   u'@',   u'0',   0,      0x00E9,
                               0x0130, 0x03A3, 0x65E5, 0xFEFF, 0xFFFD, 0xFFFF, 0xD800,
                               0xD83D, 0xDBFF, 0xDC00, 0xDE00, 0xDFFF};

}  // namespace

std::string RandomSource::HostileText(std::size_t maxPieces) {
  std::string text;
  for (std::size_t count = Below(maxPieces + 1); count > 0; --count) text += Pick(kPieces);
  return text;
}

std::u16string RandomSource::HostileUTF16(std::size_t maxUnits) {
  std::u16string text;
  for (std::size_t count = Below(maxUnits + 1); count > 0; --count) text += Pick(kUnits);
  return text;
}

}  // namespace test_support
