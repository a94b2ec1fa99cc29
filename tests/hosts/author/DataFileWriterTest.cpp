#include "hosts/author/DataFileWriter.h"

#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include "hosts/author/InputError.h"

namespace hosts::author {
namespace {

using ornwhatsnew::ColumnIndex;
using ornwhatsnew::DataColumn;
using ornwhatsnew::DataRowKind;

constexpr std::string_view kHeader = "h1,h2,h3,h4,h5,h6,h7,h8,h9,h10\n";

DataFields Change(std::string_view message) {
  DataFields fields;
  fields[ColumnIndex(DataColumn::kGroupingID)] = "MISC";
  fields[ColumnIndex(DataColumn::kDescription)] = message;
  return fields;
}

template <class Error>
std::string ErrorOf(std::string_view dataFile, const DataFields& fields) {
  try {
    AppendChange(dataFile, fields);
  } catch (const Error& error) {
    return error.what();
  }
  return "";
}

TEST(DataFileWriter, QuotesFieldsWithCommas) {
  EXPECT_EQ(",MISC,,,,,,,,plain", FormatRow(Change("plain")));
  EXPECT_EQ(",MISC,,,,,,,,\"a, b\"", FormatRow(Change("a, b")));
}

TEST(DataFileWriter, ReturnsTheKindOfARow) {
  EXPECT_EQ(DataRowKind::kChange, KindOfRow(Change("a, b")));
  DataFields fields = Change("");
  fields[ColumnIndex(DataColumn::kGroupingID)] = "changes-since";
  EXPECT_EQ(DataRowKind::kChangesSince, KindOfRow(fields));
  EXPECT_EQ(DataRowKind::kSkipped, KindOfRow(DataFields()));
  EXPECT_EQ(std::nullopt, KindOfRow(Change("\"")));
  EXPECT_EQ(std::nullopt, KindOfRow(Change("a\nb")));
  EXPECT_EQ(std::nullopt, KindOfRow(Change("\xFF")));
}

TEST(DataFileWriter, AppendsAChange) {
  const std::string header(kHeader);
  const std::string crlf = header.substr(0, header.size() - 1) + "\r\n";
  const struct {
    std::string dataFile;
    std::string expected;
  } cases[] = {
      {header, header + ",MISC,,,,,,,,new\n"},
      {header + "1,Changes-Since", header + "1,Changes-Since\n,MISC,,,,,,,,new\n"},
      {"\xEF\xBB\xBF" + header, "\xEF\xBB\xBF" + header + ",MISC,,,,,,,,new\n"},
      {crlf, crlf + ",MISC,,,,,,,,new\r\n"},
      {crlf + "1,MISC,,,,,,,,old", crlf + "1,MISC,,,,,,,,old\r\n,MISC,,,,,,,,new\r\n"},
      {"", HeaderRow() + "\n,MISC,,,,,,,,new\n"},
      {"\xEF\xBB\xBF", "\xEF\xBB\xBF" + HeaderRow() + "\n,MISC,,,,,,,,new\n"},
  };
  for (const auto& testCase : cases) {
    EXPECT_EQ(testCase.expected, AppendChange(testCase.dataFile, Change("new")))
        << testCase.dataFile;
  }
}

TEST(DataFileWriter, RefusesWhatTheLibraryWouldNotReadAsAChange) {
  EXPECT_NE(std::string::npos, ErrorOf<OptionError>(kHeader, Change("5\"")).find("double quote"));
  EXPECT_NE(std::string::npos, ErrorOf<OptionError>(kHeader, Change("a\nb")).find("line break"));
  EXPECT_NE(std::string::npos, ErrorOf<OptionError>(kHeader, Change("\xFF")).find("UTF-8"));
  EXPECT_NE(std::string::npos, ErrorOf<OptionError>(kHeader, DataFields()).find("grouping ID"));
  DataFields fields = Change("");
  fields[ColumnIndex(DataColumn::kGroupingID)] = "Changes-Since";
  EXPECT_NE(std::string::npos, ErrorOf<OptionError>(kHeader, fields).find("no change"));
}

TEST(DataFileWriter, RefusesAFileThatWouldLoseTheChange) {
  EXPECT_NE(std::string::npos,
            ErrorOf<InputError>("App Version,Message\n", Change("a")).find("header"));
  EXPECT_NE(std::string::npos, ErrorOf<InputError>("\n", Change("a")).find("header"));
  EXPECT_NE(std::string::npos,
            ErrorOf<InputError>("App Version;Grouping ID;Message\n", Change("a")).find("header"));
  EXPECT_NE(std::string::npos,
            ErrorOf<InputError>(std::string(kHeader) + "\xFC", Change("a")).find("import"));
}

}  // namespace
}  // namespace hosts::author
