#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include "hosts/common/MessageText.h"

namespace hosts::common {
namespace {

TEST(MessageText, ALongTextLosesItsMiddle) {
  const std::string text(200, 'x');
  EXPECT_EQ(text, WithoutMiddle(text));
  EXPECT_EQ(std::string(100, 'a') + " ... " + std::string(100, 'b'),
            WithoutMiddle(std::string(100, 'a') + "c" + std::string(100, 'b')));
  // A prefix or a suffix of 100 bytes would split a character.
  EXPECT_EQ(std::string(99, 'a') + " ... " + std::string(99, 'b'),
            WithoutMiddle(std::string(99, 'a') + "\u00E9" + "\u00E9" + std::string(99, 'b')));
}

TEST(MessageText, ALongTextWithoutCharacterStartsLosesAtMostThreeMoreBytesAtEachCut) {
  const std::string kept(97, '\x80');
  EXPECT_EQ(kept + " ... " + kept, WithoutMiddle(std::string(300, '\x80')));
}

TEST(MessageText, APrefixOfTheWholeLengthIsTheWholeText) {
  const std::string_view text = "ab\x80";
  EXPECT_EQ("ab", Prefix(text.substr(0, 2), 2));
}

TEST(MessageText, AQuotedTextIsOneShortLineOfVisibleCharacters) {
  EXPECT_EQ("''", Quoted(""));
  EXPECT_EQ("'a\\u000ab\\u200b'", Quoted("a\nb\u200B"));
  const std::string text(60, 'x');
  EXPECT_EQ("'" + text + "'", Quoted(text));
  EXPECT_EQ("'" + text + "...'", Quoted(text + "y"));
}

TEST(MessageText, ACountHasItsNounInTheSingularOrInThePlural) {
  EXPECT_EQ("0 rows", Counted(0, "row"));
  EXPECT_EQ("one row", Counted(1, "row"));
  EXPECT_EQ("2 rows", Counted(2, "row"));
}

TEST(MessageText, HexDigitsAreTwoUpperCaseDigits) {
  EXPECT_EQ("00", HexDigits('\0'));
  EXPECT_EQ("0A", HexDigits('\n'));
  EXPECT_EQ("FE", HexDigits('\xFE'));
}

}  // namespace
}  // namespace hosts::common
