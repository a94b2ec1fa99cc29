#include <string>

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <orncore/string/Conversion.h>

#include "hosts/common/JsonDocument.h"

namespace hosts::common {
namespace {

using ::testing::AllOf;
using ::testing::HasSubstr;

/// Parses `text`. Returns the error message, or an empty string if `text` is valid.
std::string JsonErrorOf(std::string_view text) {
  try {
    JsonDocument::Parse(text, "file.json");
  } catch (const JsonError& error) {
    return error.what();
  }
  return "";
}

std::string Nested(std::size_t depth) {
  return std::string(depth, '[') + std::string(depth, ']');
}

TEST(JsonDocument, BuildsTheSameValueAsNlohmannJson) {
  const std::string_view texts[] = {"null",
                                    "true",
                                    "-9223372036854775808",
                                    "18446744073709551615",
                                    "1.5e3",
                                    "\"\\u0000\\ud83d\\ude00\"",
                                    "[]",
                                    "{}",
                                    R"([1,[2,{"a":[]}],"x"])",
                                    R"({"a":{"b":[{"c":null}]},"d":"","":0})",
                                    "\xEF\xBB\xBF[1]"};
  for (const std::string_view text : texts) {
    EXPECT_EQ(JsonDocument::Parse(text, "x").Value(), nlohmann::json::parse(text)) << text;
  }
}

TEST(JsonDocument, ReportsLineAndColumnOfInvalidJson) {
  const struct {
    std::string_view text;
    std::string_view location;
  } cases[] = {
      {"", "line 1, column 1"},
      {"{\"a\": nul}", "line 1, column 10"},
      {"{\n  \"a\": 1,\n}", "line 3, column 1"},
      {"[1]\n\n[2]", "line 3, column 1"},
      {"[\"\xC3\xA9\xC3\xA9\" x]", "line 1, column 7"},
      {"{\"a\": NaN}", "line 1, column 7"},
      {"[-Infinity]", "line 1, column 3"},
      {"[01]", "line 1, column 3"},
      {"[\"\\ud800\"]", "line 1, column 9"},
      {"[\"open", "line 1, column 7"},
      {"[\"line\nbreak\"]", "line 1, column 7"},
      {"// note\n[]", "line 1, column 1"},
  };
  for (const auto& [text, location] : cases) {
    const std::string error = JsonErrorOf(text);
    EXPECT_THAT(error, HasSubstr("file.json: " + std::string(location) + ": not valid JSON: "))
        << text;
  }
}

TEST(JsonDocument, ReportsIllFormedUTF8InWellFormedMessages) {
  const std::string_view texts[] = {"[\"\xFF\"]", "\xFF", "[\"\xED\xA0\x80\"]", "{\"\xC3\":1}"};
  for (const std::string_view text : texts) {
    const std::string error = JsonErrorOf(text);
    EXPECT_THAT(error, HasSubstr("not valid JSON"));
    EXPECT_TRUE(orncore::string::IsWellFormedUTF8(error)) << error;
  }
}

TEST(JsonDocument, RejectsNumbersBeyondTheRangeOfADouble) {
  EXPECT_THAT(JsonErrorOf("[1e400]"), HasSubstr("not valid JSON: number overflow"));
}

TEST(JsonDocument, ShortensLongMessages) {
  const std::string text = "[\"" + std::string(100'000, 'x');
  EXPECT_LT(JsonErrorOf(text).size(), 400U);
  EXPECT_THAT(JsonErrorOf(text),
              AllOf(HasSubstr("not valid JSON: syntax error"), HasSubstr(" ... ")));
}

TEST(JsonDocument, WritesMessagesOnOneLine) {
  EXPECT_EQ(JsonErrorOf("{\"a\n").find('\n'), std::string::npos);
  EXPECT_EQ(JsonMessage("a\nb", "/c\nd\x7F", ""), "a\\u000ab: /c\\u000ad\\u007f");
  EXPECT_EQ(JsonMessage("a\xC2\x9B", "", "\xC3\xA9\xC2\t"), "a\\u009b: \xC3\xA9\\xc2\\u0009");
}

// In messages, nlohmann-json quotes invalid input. It does not escape DEL or the characters U+0080
// to U+009F.
TEST(JsonDocument, EscapesControlCharactersThatTheParserQuotes) {
  EXPECT_THAT(JsonErrorOf("{\x7F}"), HasSubstr("\\u007f"));
  EXPECT_THAT(JsonErrorOf("[\"\xC2\x9B\" x"), HasSubstr("\\u009b"));
}

TEST(JsonDocument, LimitsTheDepth) {
  EXPECT_EQ(JsonErrorOf(Nested(JsonDocument::kMaximumDepth)), "");
  EXPECT_THAT(JsonErrorOf(Nested(JsonDocument::kMaximumDepth + 1)),
              HasSubstr("nested more than 100 deep"));
  EXPECT_THAT(JsonErrorOf(std::string(1'000'000, '[')), HasSubstr("nested more than 100 deep"));
  EXPECT_THAT(JsonErrorOf(R"({"a":[0,)" + std::string(99, '[')),
              HasSubstr("file.json: /a/1/0/0/0"));
}

TEST(JsonDocument, LimitsTheElementsOfAllArraysTogether) {
  const auto parse = [](std::string_view text) {
    JsonDocument::Parse(text, "file.json", JsonDocument::kMaximumDepth, 3);
  };
  EXPECT_NO_THROW(parse(R"({"a":[1,2],"b":[{"c":{},"d":0}],"e":{}})"));
  for (const char* text : {"[1,2,3,4]", "[[],[],[[]]]", R"({"a":[1,2],"b":[1,2]})"}) {
    EXPECT_THROW(parse(text), JsonError) << text;
  }
  try {
    parse(R"({"a":[1,2],"b":[1,2]})");
  } catch (const JsonError& error) {
    EXPECT_STREQ(error.what(), "file.json: /b: all arrays together have more than 3 elements");
  }
}

// nlohmann-json treats a NUL as the end of the text.
TEST(JsonDocument, RejectsNul) {
  const struct {
    std::string text;
    std::string_view location;
  } cases[] = {{std::string("{}\0{\"a\":1}", 10), "line 1, column 3"},
               {std::string("{}\0", 3), "line 1, column 3"},
               {std::string("\0{}", 3), "line 1, column 1"},
               {std::string("{\n\"a\": \"\0\"}", 11), "line 2, column 7"},
               {std::string("{\0}\0", 4), "line 1, column 2"}};
  for (const auto& [text, location] : cases) {
    EXPECT_EQ(JsonErrorOf(text), "file.json: " + std::string(location) +
                                     ": not valid JSON: the text contains a NUL character");
  }
}

TEST(JsonDocument, ReportsTheFirstOfManyDuplicates) {
  std::string text = "{";
  for (int i = 0; i < 1000; ++i) text += R"("a":{"b":1,"b":2},)";
  EXPECT_EQ(JsonErrorOf(text), R"(file.json: /a: duplicate member "b"; keep only one)");
}

TEST(JsonDocument, ShortensPathsInMessages) {
  const std::string name = "\"" + std::string(5000, 'x') + "\":";
  EXPECT_EQ(JsonErrorOf("{" + name + R"({"e":1,"e":2}})"),
            "file.json: /" + std::string(100, 'x') + R"(...: duplicate member "e"; keep only one)");
  std::string deep;
  for (int i = 0; i < 100; ++i) deep += "{" + name;
  EXPECT_LT(JsonErrorOf(deep + "{").size(), 400U);
  EXPECT_THAT(JsonErrorOf(deep + "{"), HasSubstr(" ... xxx"));
  EXPECT_EQ(JsonPath("/a", std::string(99, 'x') + "\u00E9"), "/a/" + std::string(99, 'x') + "...");
  EXPECT_EQ(JsonPath("/a", std::string(98, 'x') + "\u00E9"),
            "/a/" + std::string(98, 'x') + "\u00E9");
}

TEST(JsonDocument, ShortensQuotationsBetweenCharacters) {
  EXPECT_EQ(JsonQuoted(std::string(59, 'x') + "\u00E9"), '"' + std::string(59, 'x') + "\"...");
  EXPECT_EQ(JsonQuoted(std::string(58, 'x') + "\u00E9"), '"' + std::string(58, 'x') + "\u00E9\"");
}

TEST(JsonDocument, RejectsDuplicateMembers) {
  EXPECT_EQ(JsonErrorOf(R"({"a":[0,{"b":1,"c":2,"b":3}]})"),
            R"(file.json: /a/1: duplicate member "b"; keep only one)");
  EXPECT_EQ(JsonErrorOf(R"({"d/~":{"e":1,"e":2}})"),
            R"(file.json: /d~1~0: duplicate member "e"; keep only one)");
  EXPECT_EQ(JsonErrorOf(R"({"a":{},"a":{}})"), R"(file.json: duplicate member "a"; keep only one)");
  EXPECT_EQ(JsonErrorOf(R"({"a":{"b":1},"c":{"b":1}})"), "");
}

}  // namespace
}  // namespace hosts::common
