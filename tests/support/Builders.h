// Builds changes, items and data files for tests. A test sets only the fields that it needs; the
// others are empty.
#ifndef TESTS_SUPPORT_BUILDERS_H_
#define TESTS_SUPPORT_BUILDERS_H_

#include <cstdint>
#include <initializer_list>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <ornwhatsnew/FeatureListDetail.h>
#include <ornwhatsnew/FeatureListItem.h>

namespace test_support {

/// A safe link, which hosts may open.
inline constexpr char kURL[] = "https://a.example/1";

/// The ten fields of a change row, in column order.
struct ChangeRow {
  std::string version = {};
  std::string groupingID = {};
  std::string storyID = {};
  std::string salience = {};
  std::string ratingRequest = {};
  std::string firstVersion = {};
  std::string platform = {};
  std::string url = {};
  std::string sha = {};
  std::string description = {};
};

/// Builds the text of a data file line by line. The first line is the header row.
///
///     DataFile().ChangesSince("25.0").Row({.groupingID = "EPIC-1"}).Text()
class DataFile {
 public:
  DataFile();

  /// Adds a row with ten fields. Puts quotes around each field that contains a comma. Does not
  /// escape quotes or newlines in a field.
  DataFile& Row(const ChangeRow& row);
  /// Adds a row that sets the changes-since version to `version`.
  DataFile& ChangesSince(std::string_view version);
  /// Adds `line` unchanged, and a newline. Use it for rows that `Row` cannot write.
  DataFile& Line(std::string_view line);

  /// Returns the text of the data file. Every line ends with a newline.
  const std::string& Text() const { return text_; }

  /// Returns the header row that the constructor adds, without its newline.
  static std::string_view Header();

 private:
  std::string text_;
};

/// Returns the text of a data file that consists of the header row and `rows`.
std::string DataFileText(std::initializer_list<ChangeRow> rows);

/// Returns a change with exactly the fields of `row`. Unlike a list that parses a data file, does
/// not convert fields to lower case.
std::shared_ptr<ornwhatsnew::FeatureListDetail> MakeDetail(const ChangeRow& row);

/// The constructor arguments of an item. Tests can omit any of them.
struct ItemTexts {
  std::string groupingKey = {};
  std::string internalKey = {};
  std::string name = {};
  std::string description = {};
  std::int32_t visibility = 0;
};

/// Returns an item that is constructed from `texts` and contains a change for each of `changes`, in
/// the same order.
std::shared_ptr<ornwhatsnew::FeatureListItem> MakeItem(const ItemTexts& texts,
                                                       const std::vector<ChangeRow>& changes = {});

}  // namespace test_support

#endif  // TESTS_SUPPORT_BUILDERS_H_
