#include "hosts/author/SpreadsheetReader.h"

#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "hosts/author/InputError.h"

namespace hosts::author {
namespace {

using Texts = std::vector<std::vector<std::string>>;

Texts TextsOf(const Spreadsheet& table) {
  Texts texts;
  for (const SpreadsheetRow& row : table.rows) {
    texts.emplace_back();
    for (const SpreadsheetCell& cell : row) texts.back().push_back(cell.text);
  }
  return texts;
}

TEST(SpreadsheetReader, SelectsTheSeparatorByTheColumnNames) {
  const Texts expected = {{"Platform", "Message"}, {"Mac", "a, b; c\td"}};
  const struct {
    std::string_view text;
    char separator;
  } cases[] = {
      {"Platform,Message\nMac,\"a, b; c\td\"\n", ','},
      {"Platform;Message\nMac;\"a, b; c\td\"\n", ';'},
      {"Platform\tMessage\nMac\t\"a, b; c\td\"\n", '\t'},
      {"\"Platform\";\"Message\"\n\"Mac\";\"a, b; c\td\"\n", ';'},
      {"sep=;\nPlatform;Message\nMac;\"a, b; c\td\"\n", ';'},
      {"sep=|\r\nPlatform|Message\r\nMac|\"a, b; c\td\"\r\n", '|'},
      {"sep=~\nPlatform~Message\nMac~\"a, b; c\td\"\n", '~'},
      {"\n\r\nPlatform;Message\nMac;\"a, b; c\td\"", ';'},
  };
  for (const auto& testCase : cases) {
    const Spreadsheet table = ReadSpreadsheet(testCase.text);
    EXPECT_EQ(testCase.separator, table.separator) << testCase.text;
    EXPECT_EQ(expected, TextsOf(table)) << testCase.text;
  }
}

TEST(SpreadsheetReader, ReadsQuotedFields) {
  EXPECT_EQ((Texts{{"a\nb", " c ", "\"d\"", ""}}),
            TextsOf(ReadSpreadsheet("\"a\nb\", c ,\"\"\"d\"\"\",")));
  EXPECT_EQ((Texts{{"a\r\n\r\nb"}, {"c"}}), TextsOf(ReadSpreadsheet("\"a\r\n\r\nb\"\r\nc\r\n")));
  EXPECT_EQ((Texts{{"", ""}, {" "}}), TextsOf(ReadSpreadsheet(",\n \n")));
  EXPECT_EQ(Texts(), TextsOf(ReadSpreadsheet("")));
  EXPECT_EQ(Texts(), TextsOf(ReadSpreadsheet("\n\n")));
}

TEST(SpreadsheetReader, ReadsLongFields) {
  const std::string longText(300'000, 'x');
  EXPECT_EQ((Texts{{longText, "y"}}), TextsOf(ReadSpreadsheet(longText + ",y")));
}

TEST(SpreadsheetReader, CountsLines) {
  const Spreadsheet table = ReadSpreadsheet("a,b\r\n\r\n\"c\nd\",e\rf,\"g\n\"\nh");
  std::vector<std::vector<std::size_t>> lines;
  for (const SpreadsheetRow& row : table.rows) {
    lines.emplace_back();
    for (const SpreadsheetCell& cell : row) lines.back().push_back(cell.line);
  }
  EXPECT_EQ((std::vector<std::vector<std::size_t>>{{1, 1}, {3, 4}, {5, 5}, {7}}), lines);
  EXPECT_EQ(2U, ReadSpreadsheet("sep=,\na").rows.front().front().line);
}

TEST(SpreadsheetReader, ReportsTheLineOfAWrongQuote) {
  const struct {
    std::string_view text;
    std::size_t line;
  } cases[] = {
      {"a,b\nc,5\" screen\n", 2},
      {"a,b\n\"c\"d,e\n", 2},
      {"a,b\nc,\"d\ne\nf", 2},
      {"a\n\n\"b", 3},
  };
  for (const auto& testCase : cases) {
    try {
      ReadSpreadsheet(testCase.text);
      ADD_FAILURE() << testCase.text;
    } catch (const InputError& error) {
      EXPECT_EQ(testCase.line, error.Line()) << testCase.text;
    }
  }
}

}  // namespace
}  // namespace hosts::author
