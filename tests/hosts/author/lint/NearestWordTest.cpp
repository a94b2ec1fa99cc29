#include "hosts/author/lint/NearestWord.h"

#include <array>
#include <span>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

namespace hosts::author {
namespace {

constexpr std::array<std::string_view, 5> kWords = {"MISC", "BUGFIX", "MAP-7", "ORN-1204",
                                                    "Unreviewed"};

TEST(NearestWord, FindsAWordInAnotherLetterCase) {
  EXPECT_EQ(NearestWord("bugfix", kWords), "BUGFIX");
}

TEST(NearestWord, IgnoresSpacesAndKindsOfDashes) {
  EXPECT_EQ(NearestWord("\xC2\xA0MAP\xE2\x80\x93"
                        "7 ",
                        kWords),
            "MAP-7");
}

TEST(Fold, RemovesEveryKindOfSpaceAndInvisibleCharacter) {
  for (const std::string_view removed :
       {" ", "\t", "\u00A0", "\u00AD", "\u2000", "\u200F", "\u2028", "\u2029", "\u202F", "\u205F",
        "\u2060", "\u3000", "\uFEFF"}) {
    EXPECT_EQ(Fold("a" + std::string(removed) + "b"), u"ab") << testing::PrintToString(removed);
  }
}

TEST(Fold, ReplacesEveryKindOfDashWithAHyphen) {
  for (const std::string dash : {"_", "\u2010", "\u2015", "\u2212", "\uFE58", "\uFE63", "\uFF0D"}) {
    EXPECT_EQ(Fold("a" + dash + "b"), u"a-b") << testing::PrintToString(dash);
  }
  EXPECT_EQ(Fold("a\u2016b"), u"a\u2016b");
}

TEST(Fold, KeepsTheCharacterBeforeTheSpaces) {
  EXPECT_EQ(Fold("a\u1FFFb"), u"a\u1FFFb");
}

TEST(NearestWord, FindsAWordWithExchangedOrMissingCharacters) {
  EXPECT_EQ(NearestWord("BUGIFX", kWords), "BUGFIX");
  EXPECT_EQ(NearestWord("Unreviwed", kWords), "Unreviewed");
}

TEST(NearestWord, AllowsMoreDifferencesInALongerWord) {
  const struct {
    std::string_view word;
    std::string_view similar;
    std::string_view different;
  } cases[] = {
      {"ab", "AB", "xb"},
      {"abc", "xbc", "xyc"},
      {"abcde", "xbcde", "xycde"},
      {"abcdef", "xycdef", "xyzdef"},
      {"abcdefghi", "xycdefghi", "xyzdefghi"},
      {"abcdefghij", "xyzdefghij", "wxyzefghij"},
  };
  for (const auto& [word, similar, different] : cases) {
    EXPECT_EQ(NearestWord(similar, std::span(&word, 1)), word);
    EXPECT_EQ(NearestWord(different, std::span(&word, 1)), std::nullopt) << word;
  }
}

TEST(NearestWord, CountsAnExchangeOfAdjacentCharactersAsOneDifference) {
  EXPECT_EQ(NearestWord("IMSC", kWords), "MISC");
  EXPECT_EQ(NearestWord("IMCS", kWords), std::nullopt);
  for (const std::string_view twoDifferences : {"XMSC", "IXSC", "XICS"}) {
    EXPECT_EQ(NearestWord(twoDifferences, kWords), std::nullopt) << twoDifferences;
  }
}

TEST(NearestWord, CountsAMissingOrAnExtraCharacterAsOneDifference) {
  EXPECT_EQ(NearestWord("MSC", kWords), "MISC");
  EXPECT_EQ(NearestWord("MIISC", kWords), "MISC");
  constexpr std::array<std::string_view, 1> kWord = {"abcdef"};
  EXPECT_EQ(NearestWord("xyabcd", kWord), std::nullopt);
}

TEST(NearestWord, PrefersAnEqualWordAndThenTheFirstWord) {
  constexpr std::array<std::string_view, 2> kSimilarWords = {"MAPS", "MAP"};
  EXPECT_EQ(NearestWord("map", kSimilarWords), "MAP");
  constexpr std::array<std::string_view, 2> kEquallySimilarWords = {"abx", "aby"};
  EXPECT_EQ(NearestWord("abz", kEquallySimilarWords), "abx");
}

TEST(NearestWord, ComparesWordsOfAtMost64Characters) {
  for (const std::size_t length : {64U, 65U}) {
    const std::string word(length, 'a');
    const std::string_view view = word;
    EXPECT_EQ(NearestWord("b" + word.substr(1), std::span(&view, 1)).has_value(), length == 64)
        << length;
  }
}

TEST(NearestWord, FindsAWordWithASuffix) {
  EXPECT_EQ(NearestWord("Miscellaneous", kWords), "MISC");
  constexpr std::array<std::string_view, 1> kShortWord = {"abc"};
  EXPECT_EQ(NearestWord("abcxyz", kShortWord), "abc");
  constexpr std::array<std::string_view, 1> kTooShortWord = {"ab"};
  EXPECT_EQ(NearestWord("abxyz", kTooShortWord), std::nullopt);
}

TEST(NearestWord, AllowsOneDifferenceInAKeyWithDigits) {
  EXPECT_EQ(NearestWord("ORN-1205", kWords), "ORN-1204");
  EXPECT_EQ(NearestWord("ORN-1215", kWords), std::nullopt);
  for (const std::string digit : {"0", "9"}) {
    const std::string key = "ORANGE-" + digit;
    const std::string_view word = key;
    EXPECT_EQ(NearestWord("ORANGA-" + digit, std::span(&word, 1)), key);
    EXPECT_EQ(NearestWord("ORANAA-" + digit, std::span(&word, 1)), std::nullopt);
  }
}

TEST(NearestWord, UnrelatedTextHasNoNearestWord) {
  EXPECT_EQ(NearestWord("Export", kWords), std::nullopt);
  EXPECT_EQ(NearestWord("", kWords), std::nullopt);
}

TEST(TrimSpaces, RemovesEveryKindOfSpace) {
  EXPECT_EQ(TrimSpaces(" \t\xC2\xA0x y\xE2\x80\xAF "), "x y");
  EXPECT_EQ(TrimSpaces(" \xC2\xA0"), "");
}

}  // namespace
}  // namespace hosts::author
