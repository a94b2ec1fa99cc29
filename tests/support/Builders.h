// Records and data files for tests, written with only the fields that a test is about.
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

/// One change row of a data file, its ten columns in file order.
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

/// The text of a data file, line by line; it begins with the header row.
///
///     DataFile().ChangesSince("25.0").Row({.groupingID = "EPIC-1", .description =
///     "Faster"}).Text()
class DataFile {
 public:
  DataFile();

  /// A row of ten fields; a field with a comma stands in quotes.
  DataFile& Row(const ChangeRow& row);
  /// The row that names the version from which changes are counted.
  DataFile& ChangesSince(std::string_view version);
  /// A line as it is, for rows of every other form.
  DataFile& Line(std::string_view line);

  const std::string& Text() const { return text_; }

  /// The header row as authors write it, without a line end.
  static std::string_view Header();

 private:
  std::string text_;
};

/// The text of a data file with a header and these rows.
std::string DataFileText(std::initializer_list<ChangeRow> rows);

/// A change with the row's texts as they stand: nothing is lower-cased as the parser would.
std::shared_ptr<ornwhatsnew::FeatureListDetail> MakeDetail(const ChangeRow& row);

/// The five texts and keys of an item.
struct ItemTexts {
  std::string groupingKey = {};
  std::string internalKey = {};
  std::string name = {};
  std::string description = {};
  std::int32_t visibility = 0;
};

/// An item, with a change added for each row in order.
std::shared_ptr<ornwhatsnew::FeatureListItem> MakeItem(const ItemTexts& texts,
                                                       const std::vector<ChangeRow>& changes = {});

}  // namespace test_support

#endif  // TESTS_SUPPORT_BUILDERS_H_
