#include <string>

#include <gtest/gtest.h>

#include <orncore/string/Replace.h>

#include "ornwhatsnew/src/panel/TextTemplate.h"
#include "tests/support/RandomSource.h"

namespace ornwhatsnew {
namespace {

using Marks = TextTemplate::Marks;
using test_support::RandomSource;

constexpr std::uint64_t kSeed = 20251120;

UTF16String Fill(const TextTemplate& pattern, std::u16string_view first,
                 std::u16string_view second = {}) {
  UTF16String filled = u"what stood here before";
  pattern.Fill(filled, first, second);
  return filled;
}

TEST(TextTemplate, FillsEveryMark) {
  EXPECT_EQ(Fill(TextTemplate(u"(v@0-v@1)@0", Marks::kBoth), u"24", u"25"), u"(v24-v25)24");
}

TEST(TextTemplate, TakesTheSecondMarkForTextUnlessItIsOne) {
  EXPECT_EQ(Fill(TextTemplate(u"@0@1"), u"24", u"25"), u"24@1");
}

TEST(TextTemplate, KeepsWhatIsNoMark) {
  for (const char16_t* text : {u"", u"@", u"@@", u"@2", u"a@", u"@@@", u"@\x00e4", u"0@"}) {
    EXPECT_EQ(Fill(TextTemplate(text, Marks::kBoth), u"x", u"y"), text);
  }
}

TEST(TextTemplate, NeverSearchesWhatWasInserted) {
  EXPECT_EQ(Fill(TextTemplate(u"@0 and @1", Marks::kBoth), u"@1", u"@0"), u"@1 and @0");
  EXPECT_EQ(Fill(TextTemplate(u"@@00"), u"@"), u"@@0");
}

TEST(TextTemplate, FilledGivesATextOfItsOwn) {
  const TextTemplate pattern(u"<@0>");
  EXPECT_EQ(pattern.Filled(u"a"), u"<a>");
  EXPECT_EQ(pattern.Filled(u""), u"<>");
}

// Texts in which marks, near-marks, halves of surrogate pairs and NUL come close together.
UTF16String RandomText(RandomSource& random) {
  constexpr char16_t kUnits[] = {u'@', u'@', u'0', u'1', u'2', u'x', 0, 0xD83C, 0xDF3F};
  UTF16String text;
  for (std::size_t count = random.Below(12); count > 0; --count) text += random.Pick(kUnits);
  return text;
}

TEST(TextTemplate, GivesWhatReplacingTheMarksGives) {
  RandomSource random(kSeed);
  for (int round = 0; round < 20'000; ++round) {
    const UTF16String text = RandomText(random);
    const UTF16String first = RandomText(random);
    const UTF16String second = RandomText(random);
    const orncore::string::Replacement both[] = {{u"@0", first}, {u"@1", second}};
    UTF16String expected;
    orncore::string::AppendReplacing(text, both, expected);
    ASSERT_EQ(Fill(TextTemplate(text, Marks::kBoth), first, second), expected)
        << "round " << round << ", seed " << kSeed;

    expected.clear();
    orncore::string::AppendReplacing(text, std::span(both).first(1), expected);
    ASSERT_EQ(TextTemplate(text).Filled(first), expected) << "round " << round;
  }
}

}  // namespace
}  // namespace ornwhatsnew
