// Reads a data file for `ornwhatsnew lint` with the library's own functions.
#ifndef HOSTS_AUTHOR_LINT_LINTEDFILE_H_
#define HOSTS_AUTHOR_LINT_LINTEDFILE_H_

#include <cstddef>
#include <deque>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include <ornwhatsnew/DataFileReader.h>
#include <ornwhatsnew/FeatureListData.h>
#include <ornwhatsnew/FeatureListDetail.h>
#include <ornwhatsnew/FeatureListItem.h>
#include <ornwhatsnew/VisibilityExplanation.h>
#include <ornwhatsnew/utility/SharedTypes.h>

#include "hosts/author/lint/Finding.h"

namespace hosts::author {

/// A row with at least one field. If the row is a change, it also has the library's objects for
/// this change.
struct LintRow {
  /// The row from the reader, except that the values of missing columns are empty instead of
  /// inherited. Its views are valid while the `LintedFile` exists.
  ornwhatsnew::DataRow data;
  /// The change, which its item owns. Null if the row is not a change.
  const ornwhatsnew::FeatureListDetail* change = nullptr;
  /// The item of the change. Null if the row is not a change.
  const ornwhatsnew::FeatureListItem* item = nullptr;
  /// The identity under which the change counts as seen.
  ornwhatsnew::Guid identity;
  /// If true, a finding explains what is wrong with the whole row, and most of the later rules
  /// ignore the row.
  bool isExplained = false;

  std::string_view Value(ornwhatsnew::DataColumn column) const { return data.Value(column); }
  /// Returns true if neither the grouping ID nor the story ID is the key of an item. The row must
  /// be a change.
  bool IsUnmatched() const { return change->DetailInternalCouldNotMatchBetaFeature(); }
};

/// Some rows of a `LintedFile`, which owns them.
using LintRows = std::vector<const LintRow*>;

/// Maps the key of each item to rows of this item.
using RowsByKey = std::unordered_map<std::string_view, LintRows>;

/// The rows and the items of a data file. The features come from the feature service of the
/// process. Not copyable, because the rows contain pointers and views to data that the object owns.
class LintedFile {
 public:
  /// Reads `text`, which must outlive the object. `name` is the path of the file for messages.
  LintedFile(std::string name, std::string_view text);
  LintedFile(std::string name, std::string&& text) = delete;
  LintedFile(const LintedFile&) = delete;
  LintedFile& operator=(const LintedFile&) = delete;

  const std::string& Name() const { return name_; }
  std::string_view Text() const { return text_; }
  std::vector<LintRow>& Rows() { return rows_; }
  const std::vector<LintRow>& Rows() const { return rows_; }
  const ornwhatsnew::FeatureMap& Items() const { return list_.GetFeatureItems(); }
  /// Returns which rules hide the items and the changes from the user of the host, in a display
  /// without options.
  std::vector<ornwhatsnew::ItemVisibility> ExplainVisibility() const {
    return list_.ExplainVisibility({});
  }
  /// Returns the changes, grouped by the keys of their items, in file order. Omits items without
  /// changes. The pointers and the keys are valid until the `LintedFile` is changed or destroyed.
  RowsByKey ChangesByKey() const;
  /// Returns the number of change rows.
  std::size_t ChangeCount() const { return changeCount_; }

  /// Returns the index of the header in `Rows()`, or the number of rows if there is no header.
  std::size_t HeaderIndex() const { return headerIndex_; }
  /// Returns the name of a column in the header of the file. Returns the name that ornwhatsnew(5)
  /// lists if the header has no name for the column, if there is no header, or after
  /// `IgnoreHeaderNames`. Shortens a long name. Returns an empty string if `index` is not the index
  /// of a column.
  std::string ColumnName(std::size_t index) const;
  /// Makes `ColumnName` return the names that ornwhatsnew(5) lists. Call this function if names in
  /// the header are missing or wrong.
  void IgnoreHeaderNames() { usesHeaderNames_ = false; }

  /// Returns the offset in the file of the first byte of `row`.
  std::size_t OffsetOf(const LintRow& row) const;
  /// Returns the position of the bytes of `row` from `begin` up to, but not including, `end`.
  Place PlaceOf(const LintRow& row, std::size_t begin, std::size_t end) const;

 private:
  /// Adds `change` to its item, and sets the members of `row` that refer to the change.
  void AddChange(std::shared_ptr<ornwhatsnew::FeatureListDetail> change, LintRow& row);
  /// Returns a view of the value of `row` in `column`. The view is valid while this object exists.
  /// Copies the value, except for the description of a change, which the change contains.
  std::string_view Keep(const LintRow& row, ornwhatsnew::DataColumn column);

  std::string name_;
  std::string_view text_;
  ornwhatsnew::FeatureListData list_;
  std::vector<LintRow> rows_;
  /// Values that differ from the bytes of the file, for example because the library removed a
  /// quote. Does not contain the descriptions of changes, which the changes themselves contain.
  std::deque<std::string> cleanedValues_;
  std::size_t headerIndex_ = 0;
  std::size_t changeCount_ = 0;
  bool usesHeaderNames_ = true;
};

}  // namespace hosts::author

#endif  // HOSTS_AUTHOR_LINT_LINTEDFILE_H_
