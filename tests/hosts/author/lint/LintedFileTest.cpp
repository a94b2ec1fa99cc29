#include "hosts/author/lint/LintedFile.h"

#include <string>
#include <string_view>
#include <utility>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/hosts/author/lint/LintTestFiles.h"

namespace hosts::author {
namespace {

using ornwhatsnew::DataColumn;
using ornwhatsnew::kDataColumns;

TEST(LintedFile, ValuesOfMissingColumnsAreEmpty) {
  InstallNoLintHost();
  const LintedFile file("data.csv", kHeaderRows);
  ASSERT_EQ(file.Rows().size(), 2U);
  EXPECT_EQ(file.Rows()[1].Value(DataColumn::kGroupingID), "Changes-Since");
  EXPECT_EQ(file.Rows()[1].Value(DataColumn::kStoryID), "");
}

TEST(LintedFile, KeepsTheValuesOfEarlierRows) {
  InstallNoLintHost();
  const std::string text = kHeaderRows +
                           "4\".\"3,M\"IS\"C,O\"R\"N-1,,,,,,,O\"n\"e\n"
                           "5\".\"4,B\"UGFI\"X,O\"R\"N-2,,,,,,,T\"w\"o\n";
  const LintedFile file("data.csv", text);
  const LintRow& row = file.Rows().at(2);
  EXPECT_EQ(row.Value(DataColumn::kVersion), "4.3");
  EXPECT_EQ(row.Value(DataColumn::kGroupingID), "MISC");
  EXPECT_EQ(row.Value(DataColumn::kStoryID), "ORN-1");
  EXPECT_EQ(row.Value(DataColumn::kDescription), "One");
}

TEST(LintedFile, ColumnNamesComeFromTheHeader) {
  InstallNoLintHost();
  LintedFile file("data.csv", std::string_view("version,group,,,,,,,,text\n"));
  EXPECT_EQ(file.ColumnName(0), "version");
  EXPECT_EQ(file.ColumnName(2), kDataColumns[2].header);
  EXPECT_EQ(file.ColumnName(9), "text");
  EXPECT_EQ(file.ColumnName(10), "");
  file.IgnoreHeaderNames();
  EXPECT_EQ(file.ColumnName(0), kDataColumns[0].header);
  EXPECT_EQ(LintedFile("data.csv", std::string_view()).ColumnName(0), kDataColumns[0].header);
}

TEST(LintedFile, PlaceExcludesTheFirstByteOrderMarkAndTheLineEnd) {
  InstallNoLintHost();
  const std::string text = "\uFEFFv,g,,,,,,,,\r\r\n\uFEFFv,g\r\n";
  const LintedFile file("data.csv", text);
  const auto columnsOf = [&file](std::size_t index, std::size_t begin, std::size_t end) {
    const Place place = file.PlaceOf(file.Rows().at(index), begin, end);
    return std::pair(place.column, place.endColumn);
  };
  EXPECT_EQ(columnsOf(0, 0, 16), std::pair(1UL, 12UL));
  EXPECT_EQ(columnsOf(0, 5, 6), std::pair(3UL, 4UL));
  EXPECT_EQ(columnsOf(1, 0, 7), std::pair(1UL, 5UL));
  EXPECT_EQ(columnsOf(1, 3, 4), std::pair(2UL, 3UL));
}

TEST(LintedFile, FeaturesComeFromTheInstalledHost) {
  common::HostDescription description = common::ReadHostDescription(TestFile("host.json").native());
  description.terminating = true;
  description.debug["key"] = "value";
  const LintHost host = InstallLintHost("host.json", description);
  EXPECT_TRUE(host.description.internalFeaturesAllowed);
  EXPECT_FALSE(host.description.terminating);
  EXPECT_TRUE(host.description.debug.empty());
  EXPECT_TRUE(LintedFile("data.csv", std::string_view()).Items().contains("MAP-7"));
  InstallNoLintHost();
  EXPECT_FALSE(LintedFile("data.csv", std::string_view()).Items().contains("MAP-7"));
}

}  // namespace
}  // namespace hosts::author
