#include <string>

#include <gtest/gtest.h>

#include "ornwhatsnew/src/datafile/FieldCleaner.h"
#include "tests/support/PlainText.h"
#include "tests/support/RandomSource.h"

namespace ornwhatsnew {
namespace {

using test_support::PlainLower8;
using test_support::PlainUTF16to8;
using test_support::PlainUTF8to16;
using test_support::RandomSource;

constexpr std::uint64_t kSeed = 20251120;

std::string PlainClean(const std::string& field) {
  std::u16string wide = PlainUTF8to16(field);
  std::erase(wide, u'\r');
  std::erase(wide, u'\n');
  return PlainUTF16to8(wide);
}

std::string Clean(const std::string& field) {
  FieldCleaner cleaner;
  UTF8String buffer = "left over";
  return std::string(cleaner.Clean(field, buffer));
}

TEST(FieldCleaner, CleanFieldIsHandedBackAsItStands) {
  FieldCleaner cleaner;
  UTF8String buffer;
  for (const std::string field : {"", "Faster export", "\xC3\x89\xF0\x9F\x98\x80"}) {
    EXPECT_EQ(cleaner.Clean(field, buffer).data(), field.data()) << field;
    EXPECT_EQ(cleaner.Clean(field, buffer), field);
  }
}

TEST(FieldCleaner, RemovesCarriageReturnsAndLineFeedsWhereverTheyStand) {
  EXPECT_EQ(Clean("\ra\r\nb\n\rc\r"), "abc");
  EXPECT_EQ(Clean("\r"), "");
}

TEST(FieldCleaner, BytesThatARemovalBringsTogetherStayIllFormed) {
  // Broken before the removal, and so two replacement characters behind it.
  EXPECT_EQ(Clean("\xC3\r\x89"), "\xEF\xBF\xBD\xEF\xBF\xBD");
}

TEST(FieldCleaner, ReplacesEachMaximalSubpartOfIllFormedBytes) {
  EXPECT_EQ(Clean("a\xFF"), "a\xEF\xBF\xBD");
  EXPECT_EQ(Clean("\xF0\x9F\x98"), "\xEF\xBF\xBD");
  EXPECT_EQ(Clean("\xE2\x82\xE2\x82\xAC"), "\xEF\xBF\xBD\xE2\x82\xAC");
}

TEST(FieldCleaner, KeepsEverythingElse) {
  using namespace std::string_literals;
  EXPECT_EQ(Clean(" \t\0\x7F\"\\ "s), " \t\0\x7F\"\\ "s);
  EXPECT_EQ(Clean("\xEF\xBB\xBF"), "\xEF\xBB\xBF");
}

TEST(FieldCleaner, CleansAFieldThatStandsInItsBuffer) {
  FieldCleaner cleaner;
  UTF8String buffer = "a\rb\xFF";
  EXPECT_EQ(cleaner.Clean(buffer, buffer), "ab\xEF\xBF\xBD");
}

TEST(FieldCleaner, CleansLikeAConversionThereAndBack) {
  RandomSource random(kSeed);
  FieldCleaner cleaner;
  UTF8String buffer;
  for (int i = 0; i < 10000; ++i) {
    const std::string field = random.HostileText(8);
    ASSERT_EQ(cleaner.Clean(field, buffer), PlainClean(field)) << "round " << i;
  }
}

TEST(FieldCleaner, LowerCaseFieldIsHandedBackAsItStands) {
  UTF8String buffer;
  for (const std::string field : {"", "epic-1 [{`@"}) {
    EXPECT_EQ(LowerField(field, buffer).data(), field.data()) << field;
  }
}

TEST(FieldCleaner, LowersAsciiAndTheRest) {
  UTF8String buffer;
  EXPECT_EQ(LowerField("EPIC-1 @[`{", buffer), "epic-1 @[`{");
  EXPECT_EQ(LowerField("\xC3\x89PIC \xE2\x84\xAA", buffer), "\xC3\xA9pic k");
  EXPECT_EQ(LowerField("\xCE\x91\xCE\xA3", buffer), "\xCE\xB1\xCF\x82");  // final sigma
}

TEST(FieldCleaner, LowersEveryCodePointAsUTF16Would) {
  UTF8String buffer;
  for (char32_t first = 0; first <= 0x10FFFF; first += 16) {
    for (char32_t codePoint = first; codePoint < first + 16; ++codePoint) {
      std::u16string wide;
      if (codePoint >= 0x10000) {
        wide = {static_cast<char16_t>(0xD7C0 + (codePoint >> 10)),
                static_cast<char16_t>(0xDC00 | (codePoint & 0x3FF))};
      } else {
        wide = {static_cast<char16_t>(codePoint)};
      }
      const std::string field = PlainUTF16to8(wide);
      ASSERT_EQ(LowerField(field, buffer), PlainLower8(field))
          << "U+" << std::hex << static_cast<std::uint32_t>(codePoint);
    }
  }
}

TEST(FieldCleaner, LowersRandomCleanFieldsAsUTF16Would) {
  RandomSource random(kSeed);
  UTF8String buffer;
  for (int i = 0; i < 10000; ++i) {
    const std::string field = PlainClean(random.HostileText(8));
    ASSERT_EQ(LowerField(field, buffer), PlainLower8(field)) << "round " << i;
  }
}

}  // namespace
}  // namespace ornwhatsnew
