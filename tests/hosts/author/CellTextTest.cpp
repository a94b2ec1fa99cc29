#include "hosts/author/CellText.h"

#include <string>
#include <string_view>

#include <gtest/gtest.h>

namespace hosts::author {
namespace {

TEST(CellText, ReplacesQuotesAccordingToTheirNeighbours) {
  const struct {
    std::string_view text;
    std::string_view expected;
  } cases[] = {
      {"", ""},
      {"no quote", "no quote"},
      {R"(the "fast" mode)", "the “fast” mode"},
      {R"("Start" is new)", "“Start” is new"},
      {R"(("Start") and "End")", "(“Start”) and “End”"},
      {R"(a 5" screen, 27")", "a 5″ screen, 27″"},
      {R"(the "4" key)", "the “4″ key"},
      {R"(key="value")", "key=“value”"},
      {R"(either/"or")", "either/“or”"},
      {"a \xE2\x80\x94\"b\"", "a —“b”"},
      {R"(""twice"")", "““twice””"},
      {R"(")", "”"},
      {R"(a " b)", "a ” b"},
      {"\"\xE2\x82\xAC\"", "“€”"},
      // A quote after an Arabic-Indic digit becomes an inch mark, as after an ASCII digit.
      {"\xD9\xA5\"", "٥″"},
  };
  for (const auto& testCase : cases) {
    EXPECT_EQ(testCase.expected, ConvertText(testCase.text).text) << testCase.text;
  }
}

TEST(CellText, ReplacesEachLineEndByOneSpace) {
  const struct {
    std::string_view text;
    std::string_view expected;
    std::size_t lineEnds;
  } cases[] = {
      {"a\nb", "a b", 1},
      {"a\r\nb", "a b", 1},
      {"a\rb", "a b", 1},
      {"a\n\nb", "a  b", 2},
      {"a\r\r\nb", "a  b", 2},
      {"a\n", "a ", 1},
      {"a\vb\fc", "a b c", 2},
      {"a\xC2\x85"
       "b",
       "a b", 1},
      {"a\xE2\x80\xA8"
       "b",
       "a b", 1},
      {"a\xE2\x80\xA9"
       "b",
       "a b", 1},
      {"a\tb", "a\tb", 0},
      {"a\n\"b\"", "a “b”", 1},
  };
  for (const auto& testCase : cases) {
    const ConvertedText converted = ConvertText(testCase.text);
    EXPECT_EQ(testCase.expected, converted.text) << testCase.text;
    EXPECT_EQ(testCase.lineEnds, converted.lineEnds) << testCase.text;
  }
}

TEST(CellText, DescribesReplacements) {
  EXPECT_EQ("", DescribeReplacements(ConvertText("nothing to replace")));
  EXPECT_EQ(R"(1 '"' by '“', 1 '"' by '”', 1 '"' by '″', 1 line break by a space)",
            DescribeReplacements(ConvertText("\"a\" 5\"\n")));
  EXPECT_EQ("2 line breaks by spaces", DescribeReplacements(ConvertText("a\n\n")));
}

std::string ProblemWithControlCharacter(const std::string& codePoint) {
  return "contains the control character " + codePoint +
         "; remove it, or check the encoding of the input";
}

TEST(CellText, ReportsWhatADataFileCannotContain) {
  EXPECT_FALSE(ProblemWith(""));
  EXPECT_FALSE(ProblemWith(" a, b\t“c” "));
  const struct {
    std::string_view value;
    std::string problem;
  } cases[] = {
      {"5\"", "contains a double quote, which no field can contain; use '“' and '”', or remove it"},
      {"a\nb", "contains a line break, which no field can contain; remove it"},
      {"a\r", "contains a line break, which no field can contain; remove it"},
      {"\xFF", "is not valid UTF-8; convert it to UTF-8"},
      {std::string_view("a\0", 2), ProblemWithControlCharacter("U+0000")},
      {"\x1B[1m", ProblemWithControlCharacter("U+001B")},
      {"\xC2\x81", ProblemWithControlCharacter("U+0081")},
  };
  for (const auto& testCase : cases) EXPECT_EQ(testCase.problem, ProblemWith(testCase.value));
}

}  // namespace
}  // namespace hosts::author
