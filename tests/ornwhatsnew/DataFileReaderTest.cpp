#include <ornwhatsnew/DataFileReader.h>

#include <algorithm>
#include <ostream>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/PlainText.h"
#include "tests/support/RandomSource.h"

namespace ornwhatsnew {

void PrintTo(DataRowKind kind, std::ostream* stream) {
  constexpr const char* kNames[] = {"header", "changes-since", "change", "skipped"};
  *stream << kNames[static_cast<int>(kind)];
}

namespace {

using test_support::kSeed;
using test_support::RandomSource;
using testing::ElementsAre;
using testing::IsEmpty;

using Kind = DataRowKind;
using Reason = DataRowSkipReason;

constexpr char kHeaderRow[] = "version,grouping,,,,,,,,\n";

// A copy of a `DataRow`. Tests need copies, because each call to `Next` overwrites the row that the
// previous call returned.
struct ReadRow {
  Kind kind;
  Reason reason;
  std::size_t line;
  std::string text;
  std::size_t fieldCount;
  std::vector<std::string> values;
};

std::vector<ReadRow> Read(std::string_view text) {
  DataFileReader reader(text);
  std::vector<ReadRow> rows;
  while (const DataRow* row = reader.Next()) {
    rows.push_back({row->kind,
                    row->skipReason,
                    row->lineNumber,
                    std::string(row->text),
                    row->fieldCount,
                    {row->values.begin(), row->values.end()}});
    EXPECT_EQ(row->kind == Kind::kSkipped, row->skipReason != Reason::kNone);
  }
  EXPECT_EQ(reader.Next(), nullptr) << "Next must keep returning null at the end";
  return rows;
}

std::vector<Kind> Kinds(std::string_view text) {
  std::vector<Kind> kinds;
  for (const ReadRow& row : Read(text)) kinds.push_back(row.kind);
  return kinds;
}

// Returns the first ten fields of `row`, which is the text of one row.
std::vector<std::string> Fields(std::string_view row) {
  const ReadRow read = Read(row).at(0);
  return {read.values.begin(), read.values.begin() + static_cast<std::ptrdiff_t>(std::min(
                                                         read.fieldCount, kDataColumnCount))};
}

// Returns the reader's current values after the last row of `text`.
std::vector<std::string> LastValues(std::string_view text) {
  return Read(text).back().values;
}

TEST(DataFileReader, EmptyTextHasNoRows) {
  EXPECT_THAT(Kinds(""), IsEmpty());
}

TEST(DataFileReader, FinalNewlineYieldsABlankRow) {
  EXPECT_THAT(Kinds(kHeaderRow), ElementsAre(Kind::kHeader, Kind::kSkipped));
  EXPECT_EQ(Read(kHeaderRow)[1].reason, Reason::kBlank);
  EXPECT_EQ(Read(kHeaderRow)[1].fieldCount, 0U);
}

TEST(DataFileReader, CountsLinesFromOne) {
  const auto rows = Read("a\n\nb");
  ASSERT_EQ(rows.size(), 3U);
  EXPECT_EQ(rows[0].line, 1U);
  EXPECT_EQ(rows[2].line, 3U);
  EXPECT_EQ(rows[2].text, "b");
}

TEST(DataFileReader, FirstRowThatIsNotSkippedIsTheHeader) {
  EXPECT_THAT(Kinds("2.1,Changes-Since\n2.2,Changes-Since"),
              ElementsAre(Kind::kHeader, Kind::kChangesSince));
  EXPECT_THAT(Kinds("25.1,EPIC-1,,,,,,,,Change\n25.1,EPIC-1,,,,,,,,Change"),
              ElementsAre(Kind::kHeader, Kind::kChange));
}

TEST(DataFileReader, SkipsARowWithAnotherFieldCountBeforeTheHeader) {
  EXPECT_THAT(Kinds("a,b,c\n1,EPIC-1,,,,,,,,\n1,EPIC-1,,,,,,,,"),
              ElementsAre(Kind::kSkipped, Kind::kHeader, Kind::kChange));
}

TEST(DataFileReader, SkipsARowWithoutAGroupingIDBeforeTheHeader) {
  EXPECT_THAT(Kinds("1,,,,,,,,,\n1,EPIC-1,,,,,,,,"), ElementsAre(Kind::kSkipped, Kind::kHeader));
}

TEST(DataFileReader, ReportsWhyARowIsSkipped) {
  const auto rows = Read(std::string(kHeaderRow) +
                         "\n"
                         "\r\n"
                         "\"\"\n"
                         "1,EPIC-1,,,,,,,\n"
                         "1,EPIC-1,,,,,,,,,\n"
                         "1,,STORY,,,,,,,");
  EXPECT_EQ(rows[1].reason, Reason::kBlank);
  EXPECT_EQ(rows[2].reason, Reason::kBlank);
  EXPECT_EQ(rows[3].reason, Reason::kFieldCount);
  EXPECT_EQ(rows[4].reason, Reason::kFieldCount);
  EXPECT_EQ(rows[4].fieldCount, 9U);
  EXPECT_EQ(rows[5].reason, Reason::kFieldCount);
  EXPECT_EQ(rows[5].fieldCount, 11U);
  EXPECT_EQ(rows[6].reason, Reason::kNoGroupingID);
}

TEST(DataFileReader, ChangesSinceRowMayHaveAnyFieldCount) {
  for (const char* row : {"2.1,Changes-Since", "2.1,changes-since,,,,,,,,",
                          "2.1,CHANGES-SINCE,,,,,,,,,,,,", "2.1,\"Changes-Since\""}) {
    const auto rows = Read(kHeaderRow + std::string(row));
    EXPECT_EQ(rows[1].kind, Kind::kChangesSince) << row;
    EXPECT_EQ(rows[1].values[0], "2.1") << row;
  }
}

TEST(DataFileReader, ShortRowInheritsItsMissingFields) {
  EXPECT_THAT(LastValues(std::string(kHeaderRow) + "1,2,3,4,5,6,7,8,9,10\na,b"),
              ElementsAre("a", "b", "3", "4", "5", "6", "7", "8", "9", "10"));
}

TEST(DataFileReader, SkippedRowOverwritesTheCurrentValues) {
  EXPECT_THAT(LastValues(std::string(kHeaderRow) + "x,y,z\n"),
              ElementsAre("x", "y", "z", "", "", "", "", "", "", ""));
}

TEST(DataFileReader, RowOfTwoQuotesHasOneEmptyField) {
  const auto rows = Read("a,Changes-Since\n\"\"");
  EXPECT_EQ(rows[1].fieldCount, 1U);
  EXPECT_EQ(rows[1].values[0], "");
  EXPECT_EQ(rows[1].kind, Kind::kChangesSince);  // column 2 inherits the keyword
}

TEST(DataFileReader, BlankRowAfterAChangesSinceRowRepeatsIt) {
  const auto rows = Read(std::string(kHeaderRow) + "2.1,Changes-Since\n");
  EXPECT_EQ(rows[2].kind, Kind::kChangesSince);
  EXPECT_EQ(rows[2].values[0], "2.1");
}

TEST(DataFileReader, OneFieldRowAfterAChangesSinceRowSetsAnotherVersion) {
  const auto rows = Read(std::string(kHeaderRow) + "2.1,Changes-Since\n3.0");
  EXPECT_EQ(rows[2].kind, Kind::kChangesSince);
  EXPECT_EQ(rows[2].values[0], "3.0");
}

TEST(DataFileReader, BlankRowAfterAChangeIsSkipped) {
  EXPECT_THAT(Kinds(std::string(kHeaderRow) + "1,EPIC-1,,,,,,,,\n\n"),
              ElementsAre(Kind::kHeader, Kind::kChange, Kind::kSkipped, Kind::kSkipped));
}

TEST(DataFileReader, CarriageReturnsBeforeNewlinesDoNotAffectTheRows) {
  const std::string plain =
      std::string(kHeaderRow) + "2.1,Changes-Since\n\n1,EPIC-1,,,,,,,,\"a,b\"\n\nx\n";
  std::string withReturns;
  for (const char c : plain) withReturns += c == '\n' ? std::string("\r\n") : std::string(1, c);
  const auto expected = Read(plain);
  const auto rows = Read(withReturns);
  ASSERT_EQ(rows.size(), expected.size());
  for (std::size_t i = 0; i < rows.size(); ++i) {
    EXPECT_EQ(rows[i].kind, expected[i].kind) << i;
    EXPECT_EQ(rows[i].fieldCount, expected[i].fieldCount) << i;
    EXPECT_EQ(rows[i].values, expected[i].values) << i;
  }
}

TEST(DataFileReader, SplitsFieldsAtCommasOutsideQuotes) {
  EXPECT_THAT(Fields("a,\"b,c\",d"), ElementsAre("a", "b,c", "d"));
  EXPECT_THAT(Fields("a\"b,c\"d,e"), ElementsAre("ab,cd", "e"));
  EXPECT_THAT(Fields(","), ElementsAre("", ""));
}

TEST(DataFileReader, RemovesDoubledQuotes) {
  EXPECT_THAT(Fields("\"say \"\"hi, you\"\"\",b"), ElementsAre("say hi, you", "b"));
}

TEST(DataFileReader, OpenQuoteEndsAtTheEndOfTheRow) {
  const auto rows = Read("a,\"b,c\nd,e");
  EXPECT_EQ(rows[0].fieldCount, 2U);
  EXPECT_EQ(rows[0].values[1], "b,c");
  EXPECT_EQ(rows[1].fieldCount, 2U);
}

TEST(DataFileReader, BackslashIsAnOrdinaryCharacter) {
  EXPECT_THAT(Fields("a\\,b\\\",\\c"), ElementsAre("a\\", "b\\,\\c"));
  EXPECT_THAT(Fields("\\n\\\\"), ElementsAre("\\n\\\\"));
}

TEST(DataFileReader, KeepsSpacesAndTabsAroundFields) {
  EXPECT_THAT(Fields(" a ,\tb\t"), ElementsAre(" a ", "\tb\t"));
}

TEST(DataFileReader, NulIsAnOrdinaryCharacter) {
  using namespace std::string_literals;
  EXPECT_THAT(Fields("a\0b,c"s), ElementsAre("a\0b"s, "c"));
}

TEST(DataFileReader, IllFormedBytesBecomeReplacementCharacters) {
  EXPECT_THAT(Fields("\xFF,\xE2\x82"), ElementsAre("\xEF\xBF\xBD", "\xEF\xBF\xBD"));
}

TEST(DataFileReader, RemovedQuoteJoinsTheBytesOfACharacter) {
  EXPECT_THAT(Fields("\xC3\"\x89\""), ElementsAre("\xC3\x89"));
}

TEST(DataFileReader, RemovesCarriageReturnsInsideFields) {
  EXPECT_THAT(Fields("a\rb,\"\rc\",\r"), ElementsAre("ab", "c", ""));
}

TEST(DataFileReader, RemovesTheByteOrderMarkOfTheHeader) {
  const auto rows = Read(
      "\xEF\xBB\xBF"
      "v,Changes-Since,,,,,,,,\n\n");
  EXPECT_EQ(rows[0].kind, Kind::kHeader);
  EXPECT_EQ(rows[0].values[0], "v");
  EXPECT_EQ(rows[1].values[0], "v");
}

TEST(DataFileReader, RemovesOnlyOneByteOrderMark) {
  EXPECT_EQ(Read("\xEF\xBB\xBF\xEF\xBB\xBF,x,,,,,,,,")[0].values[0], "\xEF\xBB\xBF");
}

TEST(DataFileReader, RemovesAByteOrderMarkInQuotes) {
  EXPECT_EQ(Read("\"\xEF\xBB\xBF\"v,x,,,,,,,,")[0].values[0], "v");
}

TEST(DataFileReader, KeepsTheByteOrderMarkOfASkippedFirstRow) {
  const auto rows = Read(
      "\xEF\xBB\xBF"
      "title\nv,x,,,,,,,,");
  EXPECT_EQ(rows[0].kind, Kind::kSkipped);
  EXPECT_EQ(rows[0].values[0],
            "\xEF\xBB\xBF"
            "title");
  EXPECT_EQ(rows[1].kind, Kind::kHeader);
}

TEST(DataFileReader, KeepsAByteOrderMarkAfterTheHeader) {
  const auto rows = Read(std::string(kHeaderRow) +
                         "\xEF\xBB\xBF"
                         "1,EPIC-1,,,,,,,,");
  EXPECT_EQ(rows[1].values[0],
            "\xEF\xBB\xBF"
            "1");
}

TEST(FindDataFields, ReturnsTheBytesOfEachField) {
  const std::string row = "ab,\"c,d\",,e";
  std::vector<std::string> fields;
  for (const DataField& field : FindDataFields(row)) {
    fields.push_back(row.substr(field.begin, field.end - field.begin));
  }
  EXPECT_THAT(fields, ElementsAre("ab", "\"c,d\"", "", "e"));
}

TEST(FindDataFields, ReturnsFieldsBeyondTheTenth) {
  const std::vector<DataField> fields = FindDataFields("0,1,2,3,4,5,6,7,8,9,10,11");
  ASSERT_EQ(fields.size(), 12U);
  EXPECT_EQ(fields[11].begin, 23U);
  EXPECT_EQ(fields[11].end, 25U);
}

TEST(FindDataFields, ReportsAnOpenQuote) {
  const std::vector<DataField> fields = FindDataFields("a,\"b\"\"c\" 5\" disk, x");
  ASSERT_EQ(fields.size(), 2U);
  EXPECT_EQ(fields[0].openQuote, std::nullopt);
  EXPECT_EQ(fields[1].openQuote, 10U);
}

TEST(FindDataFields, ClosedQuotesAreNotOpen) {
  EXPECT_EQ(FindDataFields("\"b\"\"c\"").at(0).openQuote, std::nullopt);
  EXPECT_EQ(FindDataFields("ab,cd,\"e").at(1).openQuote, std::nullopt);
}

TEST(FindDataFields, BlankRowHasNoFields) {
  EXPECT_THAT(FindDataFields(""), IsEmpty());
  EXPECT_THAT(FindDataFields("\r"), IsEmpty());
}

TEST(DataFileReader, KeepsOnlyTenFields) {
  const auto rows = Read("0,1,2,3,4,5,6,7,8,9,10,11");
  EXPECT_EQ(rows[0].fieldCount, 12U);
  EXPECT_EQ(rows[0].values[9], "9");
}

TEST(DataFileReader, ColumnsHaveTheirHeaderTexts) {
  std::vector<std::string_view> headers;
  for (const DataColumnInfo& column : kDataColumns) headers.push_back(column.header);
  EXPECT_THAT(headers, testing::ElementsAre(
                           "App Version", "Grouping ID (Jira Epic / BUGFIX / INTERNAL / MISC)",
                           "Jira ID (Story / Task / Bug)", "Salience", "Ask User For Rating",
                           "Earliest Relevant Change Version", "Only Relevant Platform",
                           "URL To Discussion Thread", "Changelist ID", "Public/Internal message"));
}

TEST(DataFileReader, ReturnsValuesByColumn) {
  const std::string text = "0,1,2,3,4,5,6,7,8,9";
  DataFileReader reader(text);
  const DataRow* row = reader.Next();
  EXPECT_EQ(row->Value(DataColumn::kVersion), "0");
  EXPECT_EQ(row->Value(DataColumn::kStoryID), "2");
  EXPECT_EQ(row->Value(DataColumn::kDescription), "9");
}

// Compares the offsets of the fields in random rows with those of a simple scan. In the scan, a
// field begins at the start of the row and after each comma outside quotes.
TEST(DataFileReader, OffsetsMatchACharacterByCharacterScan) {
  RandomSource random(kSeed);
  for (int i = 0; i < 3000; ++i) {
    std::string row = random.HostileText(30);
    std::erase(row, '\n');
    if (row.find_first_not_of('\r') == std::string::npos) continue;
    std::vector<std::size_t> begins = {0};
    bool quoted = false;
    for (std::size_t at = 0; at < row.size(); ++at) {
      if (row[at] == '"') quoted = !quoted;
      if (row[at] == ',' && !quoted) begins.push_back(at + 1);
    }
    ASSERT_EQ(Read(row).at(0).fieldCount, begins.size()) << row;
    const std::vector<DataField> fields = FindDataFields(row);
    ASSERT_TRUE(std::ranges::equal(fields, begins, {}, &DataField::begin)) << row;
    ASSERT_EQ(fields.back().openQuote.has_value(), quoted) << row;
  }
}

// Compares the reader with Boost's tokenizer for every string of up to six bytes from `kBytes`.
TEST(DataFileReader, SplitsShortTextsLikeTheBoostTokenizer) {
  constexpr std::string_view kBytes = ",\"\\\nx";
  std::size_t texts = 1;
  for (std::size_t length = 0; length <= 6; ++length, texts *= kBytes.size()) {
    for (std::size_t number = 0; number < texts; ++number) {
      std::string text;
      for (std::size_t rest = number; text.size() < length; rest /= kBytes.size()) {
        text += kBytes[rest % kBytes.size()];
      }
      const std::vector<std::string> expected = test_support::PlainCut(text, "\n", "");
      DataFileReader reader(text);
      for (const std::string& expectedRow : expected) {
        const DataRow* const row = reader.Next();
        ASSERT_NE(row, nullptr) << text;
        ASSERT_EQ(row->text, expectedRow) << text;
        const std::vector<std::string> fields = test_support::PlainCut(expectedRow, ",", "\"");
        ASSERT_EQ(row->fieldCount, fields.size()) << text;
        ASSERT_TRUE(std::equal(fields.begin(), fields.end(), row->values.begin())) << text;
      }
      ASSERT_EQ(reader.Next(), nullptr) << text;
    }
  }
}

}  // namespace
}  // namespace ornwhatsnew
