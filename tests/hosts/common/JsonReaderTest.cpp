#include <functional>
#include <limits>
#include <string>

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include "hosts/common/JsonReader.h"

namespace hosts::common {
namespace {

using ::testing::ElementsAre;
using ::testing::Pair;

using Limits = std::numeric_limits<std::int64_t>;

/// Calls `read` with a reader of the document `json`. Returns the error message, or an empty string
/// if `read` succeeds.
std::string ErrorOf(std::string_view json, const std::function<void(const JsonReader&)>& read) {
  const JsonDocument document = JsonDocument::Parse(json, "file.json");
  try {
    read(JsonReader(document));
  } catch (const JsonError& error) {
    return error.what();
  }
  return "";
}

std::int64_t IntegerOf(std::string_view json, std::int64_t minimum, std::int64_t maximum) {
  const JsonDocument document = JsonDocument::Parse(json, "file.json");
  return JsonReader(document).Integer(minimum, maximum);
}

TEST(JsonReader, ReadsEachType) {
  const JsonDocument document =
      JsonDocument::Parse(R"({"text":"a\u0000b","yes":true,"number":-7,"array":[1,"x"]})", "x");
  const JsonReader reader(document);
  EXPECT_EQ(reader.Member("text").Text(), std::string("a\0b", 3));
  EXPECT_TRUE(reader.Member("yes").Boolean());
  EXPECT_EQ(reader.Member("number").Integer32(), -7);
  const auto elements = reader.Member("array").Elements();
  ASSERT_EQ(elements.size(), 2U);
  EXPECT_EQ(elements[1].Text(), "x");
}

TEST(JsonReader, ReportsTheExpectedTypeAndTheValueFound) {
  const auto text = [](const JsonReader& reader) { reader.Member("a").Text(); };
  const struct {
    std::string_view json;
    std::string_view found;
  } cases[] = {
      {R"({"a":null})", "null"},
      {R"({"a":false})", "false"},
      {R"({"a":12})", "the number 12"},
      {R"({"a":1.5})", "the number 1.5"},
      {R"({"a":[]})", "an array of 0 elements"},
      {R"({"a":[1]})", "an array of one element"},
      {R"({"a":{"b":1,"c":2}})", "an object of 2 members"},
  };
  for (const auto& [json, found] : cases) {
    EXPECT_EQ(ErrorOf(json, text), "file.json: /a: expected a string, found " + std::string(found));
  }
  EXPECT_EQ(ErrorOf(R"("a\"\n")", [](const JsonReader& reader) { reader.Boolean(); }),
            R"(file.json: expected true or false, found the string "a\"\n")");
}

// The JSON library does not escape DEL or U+0080 to U+009F when it quotes a string, so the reader
// must escape them.
TEST(JsonReader, EscapesControlCharactersInQuotations) {
  EXPECT_EQ(ErrorOf("\"\x7F\xC2\x9B\"", [](const JsonReader& reader) { reader.Boolean(); }),
            R"(file.json: expected true or false, found the string "\u007f\u009b")");
  EXPECT_EQ(ErrorOf("{\"\x7F\":0}", [](const JsonReader& reader) { reader.RequireObject({"a"}); }),
            R"(file.json: unknown member "\u007f"; known members: "a")");
}

TEST(JsonReader, ShortensLongStringsInMessages) {
  const std::string json = '"' + std::string(5000, 'x') + '"';
  EXPECT_EQ(
      ErrorOf(json, [](const JsonReader& reader) { reader.Boolean(); }),
      "file.json: expected true or false, found the string \"" + std::string(60, 'x') + "\"...");
}

TEST(JsonReader, AcceptsOnlyIntegersInTheRange) {
  EXPECT_EQ(IntegerOf("0", 0, 255), 0);
  EXPECT_EQ(IntegerOf("255", 0, 255), 255);
  EXPECT_EQ(IntegerOf("-1", -1, -1), -1);
  EXPECT_EQ(IntegerOf("-9223372036854775808", Limits::min(), Limits::max()), Limits::min());
  EXPECT_EQ(IntegerOf("9223372036854775807", Limits::min(), Limits::max()), Limits::max());

  const std::string_view bad[] = {
      "256",   "-1",    "1.0",  "1e2", "9223372036854775808", "18446744073709551615",
      "1e300", "\"1\"", "true", "null"};
  for (const std::string_view json : bad) {
    EXPECT_THAT(ErrorOf(json, [](const JsonReader& reader) { reader.Integer(0, 255); }),
                ::testing::StartsWith("file.json: expected an integer from 0 to 255, found "))
        << json;
  }
  EXPECT_NE(ErrorOf("9223372036854775808",
                    [](const JsonReader& reader) { reader.Integer(0, Limits::max()); }),
            "");
  EXPECT_NE(ErrorOf("2147483648", [](const JsonReader& reader) { reader.Integer32(); }), "");
}

TEST(JsonReader, RejectsUnknownMembersAndListsTheKnownOnes) {
  const auto read = [](const JsonReader& reader) { reader.Member("b").RequireObject({"x", "y"}); };
  EXPECT_EQ(ErrorOf(R"({"b":{"x":1,"z":2}})", read),
            R"(file.json: /b: unknown member "z"; known members: "x", "y")");
  EXPECT_EQ(ErrorOf(R"({"b":{"y":1}})", read), "");
  EXPECT_EQ(ErrorOf(R"({"b":[]})", read),
            "file.json: /b: expected an object, found an array of 0 elements");
}

TEST(JsonReader, ReportsThePathOfTheValue) {
  const auto read = [](const JsonReader& reader) {
    reader.Member("a").Elements()[1].Member("b/~").Elements()[2].Text();
  };
  EXPECT_EQ(ErrorOf(R"({"a":[{},{"b/~":["","",3]}]})", read),
            "file.json: /a/1/b~1~0/2: expected a string, found the number 3");
}

TEST(JsonReader, FindsMembers) {
  const JsonDocument document = JsonDocument::Parse(R"({"a/b":null})", "file.json");
  const JsonReader reader(document);
  EXPECT_TRUE(reader.Find("a/b").has_value());
  EXPECT_FALSE(reader.Find("c").has_value());
  EXPECT_EQ(ErrorOf("{}", [](const JsonReader& object) { object.Member("c"); }),
            R"(file.json: the member "c" is missing)");
  EXPECT_EQ(ErrorOf("7", [](const JsonReader& number) { number.Find("c"); }),
            "file.json: expected an object, found the number 7");
}

TEST(JsonReader, ReadsObjectsOfStrings) {
  const JsonDocument document = JsonDocument::Parse(R"({"b":"2","a":"1"})", "file.json");
  EXPECT_THAT(JsonReader(document).Texts(), ElementsAre(Pair("a", "1"), Pair("b", "2")));
  EXPECT_EQ(ErrorOf(R"({"a":1})", [](const JsonReader& reader) { reader.Texts(); }),
            "file.json: /a: expected a string, found the number 1");
  EXPECT_EQ(ErrorOf("[]", [](const JsonReader& reader) { reader.Texts(); }),
            "file.json: expected an object whose values are strings, found an array of 0 elements");
}

}  // namespace
}  // namespace hosts::common
