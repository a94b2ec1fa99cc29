// Builds records and data files for tests from only the fields that matter to a test.
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

/// One change row of a data file: its ten columns in file order.
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
///     DataFile().ChangesSince("25.0").Row({.groupingID = "EPIC-1", .description =
///     "Faster"}).Text()
class DataFile {
 public:
  DataFile();

  /// Adds a row of ten fields. Quotes a field that contains a comma.
  DataFile& Row(const ChangeRow& row);
  /// Adds the row that sets the changes-since version.
  DataFile& ChangesSince(std::string_view version);
  /// Adds a line unchanged, for rows of any other form.
  DataFile& Line(std::string_view line);

  const std::string& Text() const { return text_; }

  /// The usual header row, without a line end.
  static std::string_view Header();

 private:
  std::string text_;
};

/// Returns the text of a data file with a header and these rows.
std::string DataFileText(std::initializer_list<ChangeRow> rows);

/// Returns a change with the unchanged fields of the row. The parser would convert some to lower
/// case.
std::shared_ptr<ornwhatsnew::FeatureListDetail> MakeDetail(const ChangeRow& row);

/// The five strings of an item.
struct ItemTexts {
  std::string groupingKey = {};
  std::string internalKey = {};
  std::string name = {};
  std::string description = {};
  std::int32_t visibility = 0;
};

/// Returns an item with a change for each row, in order.
std::shared_ptr<ornwhatsnew::FeatureListItem> MakeItem(const ItemTexts& texts,
                                                       const std::vector<ChangeRow>& changes = {});

}  // namespace test_support

#endif  // TESTS_SUPPORT_BUILDERS_H_
