// Explains to an author which changes and features of a data file a display shows, and why it hides
// the others.
#ifndef HOSTS_AUTHOR_WHY_WHYREPORT_H_
#define HOSTS_AUTHOR_WHY_WHYREPORT_H_

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include <ornwhatsnew/FeatureListData.h>
#include <ornwhatsnew/utility/SharedTypes.h>

#include "hosts/author/why/HidingReason.h"

namespace hosts::author {

/// The visibility of all items and changes of a data file in a display.
///
/// Each `Explain` function returns lines of text for a terminal. It escapes invisible characters of
/// the data. It throws `OptionError` if the file does not have the given line, or if no feature or
/// section has the given key.
class WhyReport {
 public:
  /// Queries the host. `list` must contain exactly the changes of the data file `text`. Both must
  /// outlive the report, and the list must not change. `fileName` is the name of the file for
  /// messages. For `userVersions`, see `ChangeReasons`.
  WhyReport(const ornwhatsnew::FeatureListData& list, std::string fileName, std::string_view text,
            const ornwhatsnew::DisplayOptions& options, std::vector<std::string> userVersions);

  /// Returns a table of all features, sections and changes in display order, with totals. Omits
  /// sections without changes. Adds a line if a row is lost because the library uses it as the
  /// header. Adds a line with the number of skipped rows if there are any.
  std::string ExplainAll() const;

  /// Returns text that states whether the change on the line `line` is shown, and each reason why
  /// it is not. If the line contains no change, describes the line.
  std::string ExplainLine(std::size_t line) const;

  /// Returns text that states whether the feature or section with the key `key` is shown, and each
  /// reason why it is not. A table of its changes follows.
  std::string ExplainKey(const std::string& key) const;

 private:
  /// Parses `text_`. Sets `lines` in each element of `items_`, and sets `lostRow_`.
  void ReadDataFile();
  std::string ExplainChange(const ExplainedItem& item, std::size_t index) const;
  std::string ExplainOtherRow(std::size_t line) const;
  [[noreturn]] void Fail(const std::string& reason) const;
  std::string PlaceOf(std::size_t line) const;
  std::string QuotedText(const std::string& text) const;

  const ornwhatsnew::FeatureListData& list_;
  std::string fileName_;
  std::string_view text_;
  std::vector<std::string> userVersions_;
  /// The output line about a row that is lost because the library uses it as the header. Empty if
  /// there is no such row.
  std::string lostRow_;
  /// The features and sections in display order.
  std::vector<ExplainedItem> items_;
};

}  // namespace hosts::author

#endif  // HOSTS_AUTHOR_WHY_WHYREPORT_H_
