#include <ornwhatsnew/utility/TextHelpers.h>

#include <limits>
#include <string>

#include <gtest/gtest.h>

#include "tests/support/PlainText.h"
#include "tests/support/RandomSource.h"

namespace ornwhatsnew {
namespace {

using test_support::kSeed;
using test_support::RandomSource;

std::string Encode(char32_t codePoint) {
  const auto byte = [](char32_t value) { return static_cast<char>(value); };
  if (codePoint < 0x80) return {byte(codePoint)};
  if (codePoint < 0x800) return {byte(0xC0 | codePoint >> 6), byte(0x80 | (codePoint & 0x3F))};
  if (codePoint < 0x10000) {
    return {byte(0xE0 | codePoint >> 12), byte(0x80 | (codePoint >> 6 & 0x3F)),
            byte(0x80 | (codePoint & 0x3F))};
  }
  return {byte(0xF0 | codePoint >> 18), byte(0x80 | (codePoint >> 12 & 0x3F)),
          byte(0x80 | (codePoint >> 6 & 0x3F)), byte(0x80 | (codePoint & 0x3F))};
}

TEST(TextHelpers, ZStringBeginsWithThreeDollarsAndASlash) {
  EXPECT_TRUE(IsZString("$$$/"));
  EXPECT_TRUE(IsZString("$$$/path/key=Default"));
  for (const char* text : {"", "$", "$$/", "$$$", " $$$/a=b", "$$$a/=b"}) {
    EXPECT_FALSE(IsZString(text)) << text;
  }
}

TEST(TextHelpers, HashablePortionOfAKeyWithoutDefaultIsTheWholeKey) {
  EXPECT_EQ(ExtractHashablePortion("$$$/x/y"), "$$$/x/y");
  EXPECT_EQ(ExtractHashablePortion("$$$/private/x"), "$$$/private/x");
}

TEST(TextHelpers, HashablePortionOfPlainTextIsTheWholeText) {
  EXPECT_EQ(ExtractHashablePortion("plain=text"), "plain=text");
  EXPECT_EQ(ExtractHashablePortion(""), "");
}

TEST(TextHelpers, HashablePortionOmitsThePrivatePrefix) {
  EXPECT_EQ(ExtractHashablePortion("$$$/private/x=Y"), "$$$/x");
  EXPECT_EQ(ExtractHashablePortion("$$$/private/a/b=Text"), "$$$/a/b");
  EXPECT_EQ(ExtractHashablePortion("$$$/private/=Text"), "$$$/");
}

TEST(TextHelpers, HashablePortionEndsBeforeTheFirstEqualsSign) {
  EXPECT_EQ(ExtractHashablePortion("$$$/a=b=c"), "$$$/a");
  EXPECT_EQ(ExtractHashablePortion("$$$/=x"), "$$$/");
}

TEST(TextHelpers, PrivatePrefixMustBeAtTheBeginningAndBeforeTheEqualsSign) {
  EXPECT_EQ(ExtractHashablePortion("$$$/a/private/b=c"), "$$$/a/private/b");
  EXPECT_EQ(ExtractHashablePortion("$$$/private=/c"), "$$$/private");
  EXPECT_EQ(ExtractHashablePortion("$$$/Private/b=c"), "$$$/Private/b");
}

TEST(TextHelpers, HashablePortionMatchesThePlainImplementation) {
  RandomSource random(kSeed);
  for (int i = 0; i < 2000; ++i) {
    const std::string text = (random.Flip() ? "$$$/" : "") + random.HostileText(8);
    EXPECT_EQ(ExtractHashablePortion(text), test_support::PlainHashablePortion(text)) << text;
  }
}

TEST(TextHelpers, CaseInsensitiveEqualComparesLowerCasedCharacters) {
  const struct {
    const char* a;
    const char* b;
    bool equal;
  } cases[] = {
      {"", "", true},
      {"Mac", "mAC", true},
      {"Mac", "Mac ", false},
      {"Mac", "Man", false},
      {"[", "{", false},  // differ by 32 like letters, but are not letters
      {"@", "`", false},
      {"\xC3\x89", "\xC3\xA9", true},    // E and e with acute
      {"\xE2\x84\xAA", "K", true},       // Kelvin sign
      {"\xC4\xB0", "i\xCC\x87", true},   // I with dot becomes two characters
      {"\xC4\xB0", "i", false},          // the combining dot is missing
      {"\xC3\x9F", "ss", false},         // lower-casing is not case folding
      {"\xCE\xA3", "\xCF\x82", false},   // a single sigma is not final
      {"A\xCE\xA3", "a\xCF\x82", true},  // a sigma that ends a word is final
      {"\xFF", "\xEF\xBF\xBD", true},    // ill-formed bytes count as U+FFFD
      {"\xE2\x82", "\x80", true},        // each side becomes one U+FFFD
      {"\xF0\x90\x90\x80", "\xF0\x90\x90\xA8", true},
  };
  for (const auto& [a, b, equal] : cases) {
    EXPECT_EQ(CaseInsensitiveEqual(a, b), equal) << a << " and " << b;
    EXPECT_EQ(CaseInsensitiveEqual(b, a), equal) << b << " and " << a;
  }
}

TEST(TextHelpers, CaseInsensitiveEqualDoesNotStopAtANul) {
  using namespace std::string_view_literals;
  EXPECT_FALSE(CaseInsensitiveEqual("a\0b"sv, "a\0c"sv));
  EXPECT_TRUE(CaseInsensitiveEqual("a\0B"sv, "A\0b"sv));
}

TEST(TextHelpers, CaseInsensitiveEqualMatchesThePlainImplementation) {
  RandomSource random(kSeed);
  for (int i = 0; i < 5000; ++i) {
    const std::string a = random.HostileText(3);
    const std::string b = random.Flip() ? test_support::PlainLower8(a) : random.HostileText(3);
    EXPECT_EQ(CaseInsensitiveEqual(a, b), test_support::PlainEqualIgnoringCase(a, b))
        << a << " and " << b;
  }
}

TEST(TextHelpers, LowerCase8MatchesThePlainImplementationForEveryCharacter) {
  for (char32_t codePoint = 0; codePoint <= 0x10FFFF; ++codePoint) {
    const std::string text = Encode(codePoint);
    ASSERT_EQ(LowerCase8(text), test_support::PlainLower8(text))
        << std::hex << static_cast<std::uint32_t>(codePoint);
  }
}

TEST(TextHelpers, LowerCase8ReplacesIllFormedBytes) {
  EXPECT_EQ(LowerCase8("A\xFF"), "a\xEF\xBF\xBD");
  EXPECT_EQ(LowerCase8("\xED\xA0\x80"), "\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD");
}

TEST(TextHelpers, LowerCase8MatchesThePlainImplementationForRandomTexts) {
  RandomSource random(kSeed);
  for (int i = 0; i < 5000; ++i) {
    const std::string text = random.HostileText(6);
    EXPECT_EQ(LowerCase8(text), test_support::PlainLower8(text)) << text;
  }
}

TEST(TextHelpers, SectionKeysMatchInAnyLetterCase) {
  for (const char* key :
       {"MISC", "misc", "BUGFIX", "BugFix", "INTERNAL", "Internal", "UNREVIEWED", "Unreviewed"}) {
    EXPECT_TRUE(IsSpecialCaseSection(key)) << key;
  }
  for (const char* key : {"", "MISC ", "MISCELLANEOUS", "EPIC-1", "Changes-Since"}) {
    EXPECT_FALSE(IsSpecialCaseSection(key)) << key;
  }
}

TEST(TextHelpers, OnlyInternalAndUnreviewedAreInternalSections) {
  EXPECT_TRUE(IsInternalSpecialCaseSection("INTERNAL"));
  EXPECT_TRUE(IsInternalSpecialCaseSection("internal"));
  EXPECT_TRUE(IsInternalSpecialCaseSection("Unreviewed"));
  EXPECT_FALSE(IsInternalSpecialCaseSection("BUGFIX"));
  EXPECT_FALSE(IsInternalSpecialCaseSection("MISC"));
  EXPECT_FALSE(IsInternalSpecialCaseSection(""));
}

TEST(TextHelpers, VersionNumberMultipliesByAThousandPerComponent) {
  const struct {
    const char* version;
    std::int64_t number;
  } cases[] = {
      {"", 0},
      {".", 0},
      {"2000", 2000},
      {"25.1", 25001},
      {"25.1.0", 25001000},
      {"25.1.3", 25001003},
      {"25.1.0.123", 25001000123},
      {"1.x.3", 1000003},
      {"1..3", 1000003},
      {"1.2.", 1002000},
      {" 1.2", 2},
      {"1.2000", 3000},  // carries into the preceding component
      {"-1.5", -995},
      {"+1.+5", 1005},
      {"1.-5", 995},
      {"1.0x10", 1000},
      {"9223372036854775807", std::numeric_limits<std::int64_t>::max()},
      {"-9223372036854775808", std::numeric_limits<std::int64_t>::min()},
      {"9223372036854775808", 0},  // out of range
      {"000000000000000000000000000025", 25},
  };
  for (const auto& [version, number] : cases) EXPECT_EQ(VersionNumber(version), number) << version;
}

TEST(TextHelpers, VersionNumberWrapsAround) {
  // 1000^7 is 10^21, which is 3875820019684212736 modulo 2^64.
  EXPECT_EQ(VersionNumber("1.0.0.0.0.0.0.0"), 3875820019684212736);
  EXPECT_EQ(VersionNumber("1.9223372036854775807"), std::numeric_limits<std::int64_t>::min() + 999);
  EXPECT_EQ(VersionNumber("9223372036854775807.0"), -1000);
}

TEST(TextHelpers, VersionNumberMatchesThePlainImplementation) {
  RandomSource random(kSeed);
  constexpr const char* kParts[] = {
      ".", "0", "7", "12", "999", "1000", "-", "+", "x", "\xC2\xB2", "9223372036854775807"};
  for (int i = 0; i < 5000; ++i) {
    std::string version;
    for (std::size_t parts = random.Below(24); parts > 0; --parts) version += random.Pick(kParts);
    EXPECT_EQ(VersionNumber(version), test_support::PlainVersionNumber(version)) << version;
  }
}

}  // namespace
}  // namespace ornwhatsnew
