#include <string>

#include <gtest/gtest.h>

#include "hosts/common/ControlCharacters.h"

namespace hosts::common {
namespace {

TEST(ControlCharacters, AreFoundAndReplaced) {
  for (const std::string& character :
       {std::string(1, '\0'), std::string("\n"), std::string("\x1F"), std::string("\x7F"),
        std::string("\u0080"), std::string("\u009F"), std::string("\u2028"),
        std::string("\u2029")}) {
    const std::string text = "25" + character + "1";
    EXPECT_TRUE(HasControlCharacters(text)) << text;
    EXPECT_EQ("25\uFFFD1", WithoutControlCharacters(text));
  }
}

TEST(ControlCharacters, OtherCharactersAreUnchanged) {
  for (const std::string text :
       {"", "25.1.0.42", " ~", "\u00A0\u2027\u202A", "\u6C34\U0001F600", "\uFFFD"}) {
    EXPECT_FALSE(HasControlCharacters(text)) << text;
    EXPECT_EQ(text, WithoutControlCharacters(text));
  }
}

TEST(ControlCharacters, IllFormedTextIsReplaced) {
  EXPECT_EQ("\uFFFD1", WithoutControlCharacters("\x9B"
                                                "1"));
}

}  // namespace
}  // namespace hosts::common
