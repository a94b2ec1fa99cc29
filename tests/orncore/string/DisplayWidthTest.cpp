#include <orncore/string/DisplayWidth.h>

#include <string>

#include <gtest/gtest.h>

namespace orncore::string {
namespace {

struct WidthCase {
  std::u16string text;
  std::size_t columns;
};

class DisplayWidthTest : public testing::TestWithParam<WidthCase> {};

TEST_P(DisplayWidthTest, CountsColumns) {
  EXPECT_EQ(GetParam().columns, DisplayWidth(GetParam().text));
}

INSTANTIATE_TEST_SUITE_P(
    Cases, DisplayWidthTest,
    testing::Values(WidthCase{u"", 0}, WidthCase{u"abc", 3}, WidthCase{u"\u00A0\u2022\u2014", 3},
                    WidthCase{u"\u6C34\u3042\uFF21", 6}, WidthCase{u"e\u0301\u0323", 1},
                    WidthCase{u"\U0001F600", 2}, WidthCase{u"\u2764", 1},
                    WidthCase{u"\u2764\uFE0F", 2}, WidthCase{u"1\uFE0F\u20E3", 2},
                    WidthCase{u"a\uFE0F", 2}, WidthCase{u"a\uFE0F\uFE0F", 2},
                    WidthCase{u"a\u0301\uFE0F", 1}, WidthCase{u"\uFE0F", 0},
                    WidthCase{u"\U0001F600\uFE0F", 2}, WidthCase{u"\U0001F468\u200D\U0001F469", 4},
                    // The Arabic number sign is a format character, but it is visible.
                    WidthCase{u"\u200B\u0600", 1},
                    // Both strings represent the same Hangul syllable. The first one consists of
                    // three letters.
                    WidthCase{u"\u1112\u1161\u11AB", 2}, WidthCase{u"\uD55C", 2},
                    WidthCase{std::u16string(1, char16_t{0xD800}), 1}));

}  // namespace
}  // namespace orncore::string
