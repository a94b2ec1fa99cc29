#include <string>

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include "tests/conformance/ResultComparison.h"

namespace conformance {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

std::vector<std::string> Differences(std::string_view expected, std::string_view got) {
  std::vector<std::string> lines;
  for (const Difference& difference :
       CompareJson(nlohmann::json::parse(expected), nlohmann::json::parse(got))) {
    lines.push_back(difference.path + ' ' + difference.expected + ' ' + difference.got);
  }
  return lines;
}

TEST(ResultComparison, ReturnsNothingForEqualValues) {
  const std::string_view texts[] = {"null", "[]", R"([{"a":[1,"x"],"b":null}])", "-1"};
  for (const std::string_view text : texts) EXPECT_THAT(Differences(text, text), IsEmpty());
  EXPECT_THAT(Differences(R"({"a":1,"b":2})", R"({"b":2,"a":1})"), IsEmpty());
}

TEST(ResultComparison, ReturnsThePathOfEachDifference) {
  EXPECT_THAT(Differences(R"([null,{"a":[1,2],"b":"x"}])", R"([null,{"a":[1,3],"b":"y"}])"),
              ElementsAre("/1/a/1 2 3", R"(/1/b "x" "y")"));
}

TEST(ResultComparison, ReportsAValueThatOnlyOneSideHas) {
  EXPECT_THAT(Differences(R"({"a":1,"b":2})", R"({"b":2,"c":3})"),
              ElementsAre("/a 1 nothing", "/c nothing 3"));
  EXPECT_THAT(Differences("[1,2]", "[1]"), ElementsAre("/1 2 nothing"));
  EXPECT_THAT(Differences("[]", "[null]"), ElementsAre("/0 nothing null"));
}

TEST(ResultComparison, DistinguishesTypes) {
  const std::pair<std::string_view, std::string_view> cases[] = {
      {"null", "false"}, {"0", "false"}, {"\"1\"", "1"},
      {"[]", "{}"},      {"[]", "null"}, {"\"\"", "null"}};
  for (const auto& [expected, got] : cases) {
    EXPECT_THAT(Differences(expected, got), testing::SizeIs(1)) << expected << ' ' << got;
  }
}

TEST(ResultComparison, ShortensLongStringsAroundTheDifference) {
  const std::string same(1000, 'x');
  const auto differences = CompareJson(same + "a" + same, same + "b" + same);
  ASSERT_EQ(differences.size(), 1U);
  EXPECT_EQ(differences[0].path, "");
  EXPECT_EQ(differences[0].expected,
            "..." + std::string(60, 'x') + 'a' + std::string(139, 'x') + "...");
  EXPECT_EQ(differences[0].got, "..." + std::string(60, 'x') + 'b' + std::string(139, 'x') + "...");
}

TEST(ResultComparison, PrintsOnlyAscii) {
  EXPECT_THAT(Differences("\"\xE2\x80\xA8\"", "\"\x7F\""), ElementsAre(R"( "\u2028" "\u007f")"));
}

}  // namespace
}  // namespace conformance
