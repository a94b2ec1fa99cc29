#include <orncore/string/Conversion.h>

#include <limits>
#include <string>

#include <gtest/gtest.h>

namespace orncore::string {
namespace {

using namespace std::string_literals;

constexpr std::int64_t kMin = std::numeric_limits<std::int64_t>::min();
constexpr std::int64_t kMax = std::numeric_limits<std::int64_t>::max();

TEST(Number, ReadsSignedDecimalIntegers) {
  const struct {
    std::string_view text;
    std::int64_t value;
  } cases[] = {
      {"0", 0},
      {"7", 7},
      {"+7", 7},
      {"-7", -7},
      {"-0", 0},
      {"+0", 0},
      {"007", 7},
      {"00000000000000000000000000000001", 1},
      {"9223372036854775807", kMax},
      {"+9223372036854775807", kMax},
      {"-9223372036854775808", kMin},
  };
  for (const auto& [text, expected] : cases) {
    std::int64_t value = 42;
    EXPECT_TRUE(StringToNumber(text, value)) << text;
    EXPECT_EQ(value, expected) << text;
  }
}

TEST(Number, RejectsOtherTextAndKeepsTheValue) {
  const std::string cases[] = {
      "",
      "+",
      "-",
      "+-1",
      "-+1",
      "++1",
      "--1",
      " 1",
      "1 ",
      "\t1",
      "1\n",
      "x",
      "1x",
      "x1",
      "1.0",
      "1e3",
      "0x10",
      "1,000",
      "1 000",
      "1_000",
      "\0"s,
      "1\0"s,
      "\0001"s,
      "-\0001"s,
      "9223372036854775808",
      "+9223372036854775808",
      "-9223372036854775809",
      "99999999999999999999999999",
      "\xD9\xA1",
      "\xEF\xBC\x91",  // the Arabic-Indic and the full-width digit 1
  };
  for (const std::string& text : cases) {
    std::int64_t value = 42;
    EXPECT_FALSE(StringToNumber(text, value)) << testing::PrintToString(text);
    EXPECT_EQ(value, 42) << testing::PrintToString(text);
  }
}

TEST(Number, ReadsAViewWithoutATerminator) {
  const std::string text = "12345";
  std::int64_t value = 0;
  EXPECT_TRUE(StringToNumber(std::string_view(text).substr(1, 2), value));
  EXPECT_EQ(value, 23);
}

TEST(Number, RejectsTheDefaultView) {
  std::int64_t value = 42;
  EXPECT_FALSE(StringToNumber({}, value));
  EXPECT_EQ(value, 42);
}

}  // namespace
}  // namespace orncore::string
