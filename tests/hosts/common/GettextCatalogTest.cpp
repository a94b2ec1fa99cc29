#include "hosts/common/GettextCatalog.h"

#include <string>
#include <string_view>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/hosts/common/CatalogBytes.h"

namespace hosts::common {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Pair;

std::string ErrorOf(std::string_view bytes) {
  try {
    ParseGettextCatalog(bytes);
  } catch (const CatalogError& error) {
    return error.what();
  }
  return "";
}

TEST(GettextCatalog, ReturnsTheTranslationsByContext) {
  const CatalogEntries entries = {Properties(),
                                  {InContext("$$$/a", "One"), "Eins"},
                                  {InContext("$$$/b", "Two\n"), "Zwölf\n"},
                                  {"without a context", "is ignored"}};
  for (const bool isBigEndian : {false, true}) {
    EXPECT_THAT(ParseGettextCatalog(CatalogBytes(entries, isBigEndian)),
                ElementsAre(Pair("$$$/a", "Eins"), Pair("$$$/b", "Zwölf\n")));
  }
  EXPECT_THAT(ParseGettextCatalog(CatalogBytes({Properties()})), IsEmpty());
}

TEST(GettextCatalog, RefusesOtherCharacterSetsThanUTF8) {
  const CatalogEntries::value_type entry = {InContext("$$$/a", "x"), "gr\xFC\xDF"};
  EXPECT_THAT(ErrorOf(CatalogBytes({Properties("ISO-8859-1"), entry})), HasSubstr("msgconv"));
  EXPECT_THAT(ErrorOf(CatalogBytes({Properties("UTF-8"), entry})), HasSubstr("msgconv"));
  EXPECT_THAT(ErrorOf(CatalogBytes({{"", "no character set"}})), HasSubstr("msgconv"));
  EXPECT_EQ("", ErrorOf(CatalogBytes({Properties("utf-8")})));
}

TEST(GettextCatalog, AcceptsAKeyTwiceWithTheSameTranslation) {
  CatalogEntries entries = {
      Properties(), {InContext("$$$/a", "One"), "Eins"}, {InContext("$$$/a", "Two"), "Eins"}};
  EXPECT_THAT(ParseGettextCatalog(CatalogBytes(entries)), ElementsAre(Pair("$$$/a", "Eins")));
  entries[2].second = "Zwei";
  EXPECT_THAT(ErrorOf(CatalogBytes(entries)), HasSubstr("two translations of the key '$$$/a'"));
}

TEST(GettextCatalog, IgnoresTheHashTable) {
  std::string bytes = CatalogBytes({Properties(), {InContext("$$$/a", "One"), "Eins"}});
  // Set the size of the hash table to two. A search in this table would divide by the size minus
  // two, which is zero.
  bytes[20] = 2;
  EXPECT_THAT(ParseGettextCatalog(bytes), ElementsAre(Pair("$$$/a", "Eins")));
}

TEST(GettextCatalog, RefusesFilesThatAreNoCatalog) {
  const std::string good = CatalogBytes({Properties(), {InContext("$$$/a", "One"), "Eins"}});
  EXPECT_THAT(ErrorOf(""), HasSubstr("too short"));
  EXPECT_THAT(ErrorOf(good.substr(0, 27)), HasSubstr("too short"));
  EXPECT_THAT(ErrorOf("msgid \"\" and more than 28 bytes"), HasSubstr("does not begin"));
  EXPECT_THAT(ErrorOf(CatalogBytes({})), HasSubstr("no header entry"));
  EXPECT_THAT(ErrorOf(CatalogBytes({{"a", "b"}})), HasSubstr("no header entry"));
  const std::string longText(2049, '(');
  EXPECT_THAT(ErrorOf(CatalogBytes({{"", longText}})), HasSubstr("more than 2048 bytes"));
}

TEST(GettextCatalog, AcceptsAHeaderEntryOfTheMaximumSize) {
  auto properties = Properties();
  properties.second.resize(2048, '\n');
  EXPECT_THAT(ParseGettextCatalog(CatalogBytes({properties})), IsEmpty());
}

TEST(GettextCatalog, RefusesStringsThatAreLongerThanTheFile) {
  const std::string longText(200, 'x');
  std::string bytes = CatalogBytes({Properties(), {"a", longText}, {"b", ""}, {"c", ""}});
  // Let the translations of b and c refer to the long string. The table of translations begins at
  // offset 60. It has eight bytes for each entry: the header entry, a, b and c.
  bytes.replace(76, 16, bytes.substr(68, 8) + bytes.substr(68, 8));
  EXPECT_THAT(ErrorOf(bytes), HasSubstr("strings are longer in total than the file"));
}

TEST(GettextCatalog, RefusesAStringThatDoesNotEndWithNUL) {
  std::string bytes = CatalogBytes({Properties(), {InContext("$$$/a", "One"), "Eins"}});
  bytes.back() = 's';
  EXPECT_THAT(ErrorOf(bytes), HasSubstr("does not end with NUL"));
}

TEST(GettextCatalog, RefusesATableOutsideOfTheFile) {
  std::string bytes = CatalogBytes({Properties(), {InContext("$$$/a", "One"), "Eins"}});
  // The bytes 12 to 15 contain the offset of the first table.
  bytes[14] = '\x7F';
  EXPECT_THAT(ErrorOf(bytes), HasSubstr("a table is outside the file"));
}

TEST(GettextCatalog, RefusesEveryDamagedNumberAndEveryPrefix) {
  const std::string good = CatalogBytes({Properties(), {InContext("$$$/a", "One"), "Eins"}});
  for (std::size_t size = 0; size < good.size(); ++size) {
    EXPECT_NE("", ErrorOf(good.substr(0, size))) << size;
  }
  // A number begins at each of these offsets: the number of strings, the offset of a table, the
  // length of a string, or the offset of a string.
  for (const std::size_t offset : {8U, 12U, 16U, 28U, 32U, 36U, 40U, 44U, 48U, 52U, 56U}) {
    std::string bad = good;
    bad[offset + 3] = '\x7F';
    EXPECT_NE("", ErrorOf(bad)) << offset;
  }
}

}  // namespace
}  // namespace hosts::common
