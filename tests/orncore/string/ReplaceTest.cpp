#include <orncore/string/Replace.h>

#include <new>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/Allocations.h"
#include "tests/support/RandomSource.h"

namespace orncore::string {
namespace {

using namespace std::string_literals;
using test_support::kSeed;

// Returns the expected result of `ReplaceInString`: at each position of `text`, replaces the first
// of the patterns that matches there. Ignores empty patterns. If no pattern matches, copies one
// UTF-16 code unit.
std::u16string PlainReplacing(std::u16string_view text, std::span<const Replacement> replacements) {
  std::u16string out;
  while (!text.empty()) {
    const Replacement* fits = nullptr;
    for (const Replacement& replacement : replacements) {
      const bool isHere = !replacement.pattern.empty() && text.starts_with(replacement.pattern);
      if (isHere && fits == nullptr) fits = &replacement;
    }
    if (fits != nullptr) {
      out += fits->text;
      text.remove_prefix(fits->pattern.size());
    } else {
      out += text.front();
      text.remove_prefix(1);
    }
  }
  return out;
}

TEST(Replace, ReplacesEveryOccurrenceOfOnePattern) {
  const struct {
    std::u16string text;
    std::u16string pattern;
    std::u16string replacement;
    std::u16string result;
    std::size_t count;
  } cases[] = {
      {u"25.1.0.123", u".", u"", u"2510123", 3},
      {u"25.1", u",", u"", u"25.1", 0},
      {u"", u".", u"x", u"", 0},
      {u"...", u".", u"", u"", 3},
      {u"a", u"a", u"longer", u"longer", 1},
      {u"aXbXc", u"X", u"--", u"a--b--c", 2},
      {u"XaX", u"X", u"", u"a", 2},
      {u"aaaa", u"aa", u"a", u"aa", 2},  // inserted text is not searched
      {u"aaa", u"aa", u"b", u"ba", 1},   // occurrences do not overlap
      {u"aXa", u"X", u"XX", u"aXXa", 1},
      {u"abc", u"", u"x", u"abc", 0},  // an empty pattern replaces nothing
      {u"", u"", u"x", u"", 0},
      {u"abc", u"abcd", u"x", u"abc", 0},
      {u"a\0b\0"s, u"\0"s, u"."s, u"a.b."s, 2},
      {u"line\r\nend\r\n", u"\r\n", u"\n", u"line\nend\n", 2},
  };
  for (const auto& [text, pattern, replacement, result, count] : cases) {
    std::u16string counted = text;
    EXPECT_EQ(ReplaceAllStringInString(counted, pattern, replacement), count)
        << testing::PrintToString(text);
    EXPECT_EQ(counted, result) << testing::PrintToString(text);
  }
}

TEST(Replace, DoesNotSearchInsertedText) {
  std::u16string text = u"@0 and @1, @0";
  const Replacement replacements[] = {{u"@0", u"@1"}, {u"@1", u"@0 @1"}};
  ReplaceInString(text, replacements);
  EXPECT_EQ(text, u"@1 and @0 @1, @1");
}

TEST(Replace, UsesTheFirstMatchingPattern) {
  const Replacement shortFirst[] = {{u"@1", u"x"}, {u"@10", u"y"}};
  const Replacement longFirst[] = {{u"@10", u"y"}, {u"@1", u"x"}};
  std::u16string text = u"@10 @1";
  ReplaceInString(text, shortFirst);
  EXPECT_EQ(text, u"x0 x");
  text = u"@10 @1";
  ReplaceInString(text, longFirst);
  EXPECT_EQ(text, u"y x");
}

TEST(Replace, FindsPatternsWithDifferentFirstUnits) {
  std::u16string text = u"a^b#c^^";
  const Replacement replacements[] = {{u"^", u"1"}, {u"#", u""}, {u"c^", u"2"}};
  ReplaceInString(text, replacements);
  EXPECT_EQ(text, u"a1b21");
}

TEST(Replace, ReplacesNothingWithoutPatterns) {
  std::u16string text = u"text";
  ReplaceInString(text, std::span<const Replacement>());
  EXPECT_EQ(text, u"text");
  const Replacement empty[] = {{u"", u"x"}, {}};
  ReplaceInString(text, empty);
  EXPECT_EQ(text, u"text");
}

TEST(Replace, SkipsAnEmptyPatternAmongOthers) {
  std::u16string text = u"text";
  const Replacement replacements[] = {{u"", u"x"}, {u"t", u"T"}};
  ReplaceInString(text, replacements);
  EXPECT_EQ(text, u"TexT");
}

TEST(Replace, AcceptsViewsOfTheTextThatItChanges) {
  std::u16string text = u"ab, a text long enough for the heap, ab";
  const std::u16string_view view = text;
  EXPECT_EQ(ReplaceAllStringInString(text, view.substr(0, 2), view.substr(4, 6)), 2U);
  EXPECT_EQ(text, u"a text, a text long enough for the heap, a text");
  const Replacement replacements[] = {{std::u16string_view(text).substr(0, 1), text}};
  std::u16string expected = PlainReplacing(text, replacements);
  ReplaceInString(text, replacements);
  EXPECT_EQ(text, expected);
}

TEST(Replace, MatchesThePlainImplementationForRandomText) {
  SCOPED_TRACE(testing::Message() << "seed " << kSeed);
  std::mt19937 random(kSeed);
  const auto randomText = [&random](std::size_t longest) {
    std::u16string text(random() % (longest + 1), u'\0');
    for (char16_t& unit : text) unit = static_cast<char16_t>(u'a' + random() % 3);
    return text;
  };
  for (int round = 0; round < 5000; ++round) {
    std::vector<std::u16string> texts;
    for (int i = 0; i < 6; ++i) texts.push_back(randomText(3));
    const Replacement replacements[] = {
        {texts[0], texts[1]}, {texts[2], texts[3]}, {texts[4], texts[5]}};
    const std::span<const Replacement> some(replacements, random() % 4);
    const std::u16string text = randomText(30);
    std::u16string changed = text;
    ReplaceInString(changed, some);
    ASSERT_EQ(changed, PlainReplacing(text, some));
  }
}

TEST(Replace, LeavesTheTextUnchangedWhenAnAllocationFails) {
  const std::u16string original = u"@0 and @1, long enough for the heap, and once more @0";
  const Replacement replacements[] = {{u"@0", u"a name that is longer than most"}, {u"@1", u"x"}};
  std::u16string text = original;
  bool hasFailed = true;
  int failures = 0;
  for (std::size_t n = 1; hasFailed; ++n) {
    const test_support::AllocationFailure failure(n, test_support::FailureExtent::kOne,
                                                  test_support::FailureThreads::kThis);
    try {
      ReplaceInString(text, replacements);
    } catch (const std::bad_alloc&) {
      ++failures;
      EXPECT_TRUE(text == original);
    }
    hasFailed = failure.HasHappened();
  }
  if (!test_support::AreAllocationsReplaced())
    GTEST_SKIP() << "allocation failures are not available";
  EXPECT_GE(failures, 1);
  EXPECT_EQ(text, PlainReplacing(original, replacements));
}

}  // namespace
}  // namespace orncore::string
