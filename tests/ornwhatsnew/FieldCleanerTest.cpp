#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "ornwhatsnew/src/datafile/FieldCleaner.h"
#include "tests/support/PlainText.h"
#include "tests/support/RandomSource.h"

namespace ornwhatsnew {
namespace {

using test_support::kSeed;
using test_support::PlainUTF16to8;
using test_support::PlainUTF8to16;
using test_support::RandomSource;
using testing::ElementsAre;

std::string PlainClean(const std::string& field) {
  std::string bytes = field;
  std::erase(bytes, '"');
  std::u16string wide = PlainUTF8to16(bytes);
  std::erase(wide, u'\r');
  return PlainUTF16to8(wide);
}

std::string Clean(const std::string& field) {
  UTF8String buffer = "previous content";
  return std::string(CleanField(field, buffer));
}

// Returns the fields of a row without cleaning them.
std::vector<std::string> SplitRow(std::string_view row) {
  std::vector<std::string> fields;
  for (std::size_t begin = 0; begin <= row.size();) {
    const std::size_t end = FindFieldEnd(row, begin);
    fields.emplace_back(row.substr(begin, end - begin));
    begin = end + 1;
  }
  return fields;
}

TEST(FieldCleaner, EndsFieldsAtCommasOutsideQuotes) {
  EXPECT_THAT(SplitRow("a,,b"), ElementsAre("a", "", "b"));
  EXPECT_THAT(SplitRow(","), ElementsAre("", ""));
  EXPECT_THAT(SplitRow("\"a,b\",c"), ElementsAre("\"a,b\"", "c"));
  EXPECT_THAT(SplitRow("a\"b,c\"d\",\"e,f"), ElementsAre("a\"b,c\"d\",\"e", "f"));
  EXPECT_THAT(SplitRow("a,\"b,c"), ElementsAre("a", "\"b,c"));
}

TEST(FieldCleaner, ReturnsACleanFieldWithoutCopying) {
  UTF8String buffer;
  for (const std::string field : {"", "Faster export", "\xC3\x89\xF0\x9F\x98\x80"}) {
    EXPECT_EQ(CleanField(field, buffer).data(), field.data()) << field;
    EXPECT_EQ(CleanField(field, buffer), field);
  }
}

TEST(FieldCleaner, RemovesAllQuotes) {
  EXPECT_EQ(Clean("\"say \"\"hi\"\"\""), "say hi");
  EXPECT_EQ(Clean("\xC3\"\x89"), "\xC3\x89");
}

TEST(FieldCleaner, RemovesAllCarriageReturns) {
  EXPECT_EQ(Clean("\ra\r\rb\r"), "ab");
  EXPECT_EQ(Clean("\r"), "");
}

TEST(FieldCleaner, DoesNotJoinBytesAcrossARemovedCarriageReturn) {
  EXPECT_EQ(Clean("\xC3\r\x89"), "\xEF\xBF\xBD\xEF\xBF\xBD");
}

TEST(FieldCleaner, ReplacesEachMaximalSubpartOfIllFormedBytes) {
  EXPECT_EQ(Clean("a\xFF"), "a\xEF\xBF\xBD");
  EXPECT_EQ(Clean("\xF0\x9F\x98"), "\xEF\xBF\xBD");
  EXPECT_EQ(Clean("\xE2\x82\xE2\x82\xAC"), "\xEF\xBF\xBD\xE2\x82\xAC");
}

TEST(FieldCleaner, KeepsAllOtherCharacters) {
  using namespace std::string_literals;
  EXPECT_EQ(Clean(" \t\0\x7F\\ "s), " \t\0\x7F\\ "s);
  EXPECT_EQ(Clean("\xEF\xBB\xBF"), "\xEF\xBB\xBF");
}

TEST(FieldCleaner, CleansRandomFieldsLikeAConversionToUTF16AndBack) {
  RandomSource random(kSeed);
  UTF8String buffer;
  for (int i = 0; i < 10000; ++i) {
    std::string field = random.HostileText(8);
    std::erase(field, '\n');
    ASSERT_EQ(CleanField(field, buffer), PlainClean(field)) << "round " << i;
  }
}

TEST(FieldCleaner, LowerCasesAllLetters) {
  UTF8String buffer;
  EXPECT_EQ(LowerField("EPIC-1 @[`{", buffer), "epic-1 @[`{");
  EXPECT_EQ(LowerField("\xC3\x89PIC \xE2\x84\xAA", buffer), "\xC3\xA9pic k");
  EXPECT_EQ(LowerField("\xCE\x91\xCE\xA3", buffer), "\xCE\xB1\xCF\x82");  // final sigma
}

}  // namespace
}  // namespace ornwhatsnew
