#include "hosts/author/SpreadsheetImport.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include <orncore/string/Conversion.h>
#include <ornwhatsnew/DataFileReader.h>
#include <ornwhatsnew/FeatureListData.h>

#include "hosts/author/ColumnNames.h"
#include "hosts/author/DataFileWriter.h"
#include "hosts/author/TextEncoding.h"
#include "tests/support/RandomSource.h"

namespace hosts::author {
namespace {

using ornwhatsnew::ColumnIndex;
using ornwhatsnew::DataColumn;
using ornwhatsnew::kDataColumnCount;
using ornwhatsnew::kDataColumns;
using test_support::RandomSource;

ImportResult Import(std::string_view text) {
  return ImportSpreadsheet(ReadSpreadsheet(text));
}

/// Returns the rows after the header row of the imported data file.
std::string RowsOf(const ImportResult& result) {
  EXPECT_TRUE(result.dataFile.starts_with(HeaderRow() + "\n"));
  return result.dataFile.substr(HeaderRow().size() + 1);
}

/// Returns remarks as lines of the form "LINE: MESSAGE".
std::string Lines(const std::vector<Remark>& remarks) {
  std::string lines;
  for (const Remark& remark : remarks) {
    lines += std::to_string(remark.line) + ": " + remark.message + "\n";
  }
  return lines;
}

TEST(SpreadsheetImport, FindsColumnsByTheirNames) {
  const ImportResult result = Import(
      "public/INTERNAL message;app version ;Platform;\"Grouping ID\n(Jira Epic / BUGFIX / INTERNAL "
      "/ MISC)\"\n"
      "Text, with a comma;4.3;Mac;MISC\n");
  EXPECT_EQ("", Lines(result.errors));
  EXPECT_EQ("", Lines(result.changes));
  EXPECT_EQ("4.3,MISC,,,,,Mac,,,\"Text, with a comma\"\n", RowsOf(result));
}

TEST(SpreadsheetImport, FindsEveryColumnByBothNames) {
  constexpr std::array<const char*, kDataColumnCount> kShortNames = {
      "App Version",   "Grouping ID", "Jira ID", "Salience", "Rating",
      "First Version", "Platform",    "URL",     "Commit",   "Message"};
  for (std::size_t column = 0; column < kDataColumnCount; ++column) {
    EXPECT_EQ(static_cast<DataColumn>(column), FindColumn(kDataColumns[column].header));
    EXPECT_EQ(static_cast<DataColumn>(column), FindColumn(kShortNames[column]));
  }
  EXPECT_EQ(std::nullopt, FindColumn(""));
  EXPECT_EQ(std::nullopt, FindColumn("Messages"));
}

TEST(SpreadsheetImport, OmitsBlankRowsAndBlankColumns) {
  const ImportResult result =
      Import(",,\n\nGrouping ID,Message,\n,,,,\nMISC,a,\nBUGFIX\n\"\",,\nChanges-Since,,\n");
  EXPECT_EQ("", Lines(result.errors));
  EXPECT_EQ(",MISC,,,,,,,,a\n,BUGFIX,,,,,,,,\n,Changes-Since,,,,,,,,\n", RowsOf(result));
}

TEST(SpreadsheetImport, FindsTheSeparatorBelowBlankRows) {
  const ImportResult result = Import(";\n;\nGrouping ID;Message\nMISC;a, b\n");
  EXPECT_EQ("", Lines(result.errors));
  EXPECT_EQ(",MISC,,,,,,,,\"a, b\"\n", RowsOf(result));
}

TEST(SpreadsheetImport, ReportsReplacementsWithTheirLine) {
  const ImportResult result = Import(
      "Grouping ID,Message,Rating\n"
      "MISC,plain,\n"
      "MISC,\"a \"\"b\"\"\nc\",\"A 5\"\" screen?\"\n");
  EXPECT_EQ("", Lines(result.errors));
  EXPECT_EQ(
      "3: in the column 'Public/Internal message', replaced 1 '\"' by '“', 1 '\"' by '”', 1 line "
      "break by a space\n"
      "4: in the column 'Ask User For Rating', replaced 1 '\"' by '″'\n",
      Lines(result.changes));
  EXPECT_EQ(",MISC,,,,,,,,plain\n,MISC,,,A 5″ screen?,,,,,a “b” c\n", RowsOf(result));
}

TEST(SpreadsheetImport, ReportsWhatADataFileCannotContain) {
  const struct {
    std::string_view table;
    std::string_view error;
  } cases[] = {
      {"", "1: the table is empty"},
      {",,\n\n", "1: the table is empty"},
      {"MISC,Text\n", "1: the column 'MISC' is unknown"},
      {"Grouping ID,Salience\n", "does not name the column 'Public/Internal message'"},
      {"Message,Salience\n", "does not name the column 'Grouping ID"},
      {"Grouping ID,Message,Message\n", "1: there are two columns named 'Public/Internal message'"},
      {"Grouping ID,Message,Owner\nMISC,a,b\n", "1: the column 'Owner' is unknown"},
      {"Grouping ID,Message,\nMISC,a,b\n", "2: the value 'b' is in column 3"},
      {"Grouping ID,Message\nMISC,a,b\n",
       "2: the value 'b' is in column 3, which has no name in the first row; name the column or "
       "remove the value"},
      {"Grouping ID,Message\n,a\n", "2: the row has no value in the column 'Grouping ID"},
      {"Grouping ID,Message\nChanges-Since,a\n",
       "2: the library ignores the value in the column 'Public/Internal message' of a "
       "Changes-Since "
       "row; remove the value"},
      {"Grouping ID,Message,URL\nMISC,a,\"b\nc\"\n", "2: the value in the column 'URL To"},
      {"Grouping ID,Message\n\"a\"\"b\",c\n", "2: the value in the column 'Grouping ID"},
      {"Grouping ID,Message\nMISC,\x1B[1m\n", "2: the value in the column 'Public/Internal"},
  };
  for (const auto& testCase : cases) {
    const std::string errors = Lines(Import(testCase.table).errors);
    EXPECT_NE(std::string::npos, errors.find(testCase.error)) << testCase.table << errors;
  }
}

TEST(SpreadsheetImport, ReportsAllErrors) {
  const ImportResult result = Import("Grouping ID,Message,\n,a,b\nMISC,c,\n,d,\n");
  EXPECT_EQ(2U, result.errors.size()) << Lines(result.errors);
  EXPECT_EQ(2U, result.errorCount);
}

TEST(SpreadsheetImport, CountsAllErrorsButListsOnlyTheFirstOnes) {
  std::string table = "Grouping ID,Message\n";
  for (int i = 0; i < 1'500; ++i) table += ",a\n";
  const ImportResult result = Import(table);
  EXPECT_EQ(1'000U, result.errors.size());
  EXPECT_EQ(1'500U, result.errorCount);
}

/// A random table, and the expected fields of each row after the import.
struct RandomTable {
  std::string text;
  std::vector<DataFields> rows;
};

/// Returns the expected result of `ConvertText`. Supports only strings that `RandomCell` creates.
std::string PlainConversion(std::string_view text) {
  std::string result;
  const auto endsWithAny = [&result](std::initializer_list<std::string_view> ends) {
    return std::ranges::any_of(ends, [&](std::string_view end) { return result.ends_with(end); });
  };
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char next = i + 1 < text.size() ? text[i + 1] : ' ';
    if (text[i] == '\r' && next == '\n') continue;
    if (text[i] == '\r' || text[i] == '\n') {
      result += ' ';
    } else if (text[i] != '"') {
      result += text[i];
    } else if (endsWithAny({"0", "1", "5"})) {
      result += "″";
    } else if ((result.empty() || endsWithAny({" ", "\t", "(", "/", "=", "-", "—", "“"})) &&
               std::string_view(" \t\r\n").find(next) == std::string_view::npos) {
      result += "“";
    } else {
      result += "”";
    }
  }
  return result;
}

std::string RandomCell(RandomSource& random, bool isText) {
  constexpr std::array kFragments = {"a", "Z",    "0",  "5",    "ü",  " ",    "\t", ",",    ";",
                                     "(", ")",    "/",  "=",    "-",  "—",    "€",  "$$$/", "'",
                                     "“", "sep=", "\"", "\"\"", "\n", "\r\n", "\r"};
  constexpr std::size_t kKeptFragments = kFragments.size() - 5;
  std::string cell;
  for (std::size_t i = random.Below(6); i > 0; --i) {
    cell += kFragments[random.Below(isText ? kFragments.size() : kKeptFragments)];
  }
  return cell;
}

std::string Quoted(const std::string& cell) {
  std::string quoted = "\"";
  for (const char c : cell) quoted += c == '"' ? "\"\"" : std::string(1, c);
  return quoted + "\"";
}

void AppendRow(RandomSource& random, char separator, const std::vector<std::string>& cells,
               std::string& table) {
  const std::string special = std::string("\"\r\n") + separator;
  for (std::size_t i = 0; i < cells.size(); ++i) {
    if (i > 0) table += separator;
    const bool needsQuotes =
        cells[i].find_first_of(special) != std::string::npos || (i == 0 && cells[i].empty());
    table += needsQuotes || random.OneIn(4) ? Quoted(cells[i]) : cells[i];
  }
  table += random.Flip() ? "\n" : "\r\n";
}

RandomTable MakeTable(RandomSource& random) {
  const char separator = random.Pick(std::string(",;\t"));
  std::vector<std::size_t> columns(kDataColumnCount);
  for (std::size_t i = 0; i < columns.size(); ++i) {
    columns[i] = i;
    std::swap(columns[i], columns[random.Below(i + 1)]);
  }
  RandomTable table;
  std::vector<std::string> header;
  for (const std::size_t column : columns) {
    header.emplace_back(random.Flip() ? kDataColumns[column].header : kShortColumnNames[column]);
  }
  AppendRow(random, separator, header, table.text);
  for (std::size_t row = random.Below(5); row > 0; --row) {
    std::vector<std::string> cells;
    DataFields& fields = table.rows.emplace_back();
    for (const std::size_t column : columns) {
      const bool isText = IsTextColumn(static_cast<DataColumn>(column));
      cells.push_back(column == ColumnIndex(DataColumn::kGroupingID) ? "MISC"
                                                                     : RandomCell(random, isText));
      fields[column] = isText ? PlainConversion(cells.back()) : cells.back();
    }
    AppendRow(random, separator, cells, table.text);
  }
  return table;
}

/// Returns `text`, which is UTF-8, in a random encoding: UTF-8 with or without a byte order mark,
/// or UTF-16 with a byte order mark.
std::string RandomEncoding(RandomSource& random, const std::string& text) {
  if (random.Flip()) return random.Flip() ? text : "\xEF\xBB\xBF" + text;
  const bool isBigEndian = random.Flip();
  std::string bytes;
  for (const char16_t unit : u"\uFEFF" + orncore::string::UTF8to16(text)) {
    const char high = static_cast<char>(unit >> 8U);
    const char low = static_cast<char>(unit & 0xFFU);
    bytes += isBigEndian ? high : low;
    bytes += isBigEndian ? low : high;
  }
  return bytes;
}

/// Loads `dataFile` into a list. Returns the descriptions of the changes in the section MISC.
std::vector<std::string> TextsInList(const std::string& dataFile) {
  const ornwhatsnew::FeatureListData list(
      dataFile, [](const std::string&) { return std::string(); },
      [](const std::string&, const std::string&) {});
  std::vector<std::string> texts;
  for (const auto& change : list.GetFeatureItems().at("MISC")->GetAllChanges()) {
    texts.push_back(change->GetDescription());
  }
  return texts;
}

TEST(SpreadsheetImport, YieldsAListWithTheSameTexts) {
  for (std::uint64_t seed = 0; seed < 2000; ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    RandomSource random(seed);
    const RandomTable table = MakeTable(random);
    const ImportResult result =
        Import(DecodeText(RandomEncoding(random, table.text), std::nullopt).text);
    ASSERT_EQ("", Lines(result.errors)) << table.text;
    ornwhatsnew::DataFileReader reader(result.dataFile);
    ASSERT_EQ(ornwhatsnew::DataRowKind::kHeader, reader.Next()->kind);
    std::vector<std::string> texts;
    for (const DataFields& fields : table.rows) {
      const ornwhatsnew::DataRow* const row = reader.Next();
      ASSERT_EQ(ornwhatsnew::DataRowKind::kChange, row->kind);
      EXPECT_TRUE(std::ranges::equal(fields, row->values)) << row->text;
      texts.push_back(fields[ColumnIndex(DataColumn::kDescription)]);
    }
    EXPECT_EQ(texts, TextsInList(result.dataFile));
    if (HasFailure()) return;
  }
}

}  // namespace
}  // namespace hosts::author
