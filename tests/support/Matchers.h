// Provides functions with which tests check the content of lists and panels.
#ifndef TESTS_SUPPORT_MATCHERS_H_
#define TESTS_SUPPORT_MATCHERS_H_

#include <string>
#include <string_view>
#include <vector>

#include <gmock/gmock.h>

#include <orncore/string/Conversion.h>
#include <ornwhatsnew/FeatureListData.h>
#include <ornwhatsnew/FeatureListItem.h>
#include <ornwhatsnew/utility/SharedTypes.h>

namespace test_support {

/// Returns the keys of a list in key order.
std::vector<std::string> KeyOrder(const ornwhatsnew::FeatureListData& list);

/// Returns the item that has `key`. Throws `std::logic_error` if the list has no such item.
const ornwhatsnew::FeatureListItem& ItemOf(const ornwhatsnew::FeatureListData& list,
                                           std::string_view key);

/// Returns the descriptions of an item's changes, in order.
std::vector<std::string> ChangeDescriptions(const ornwhatsnew::FeatureListItem& item);

/// Returns the elements of the string `persistedList`, sorted. An empty string has no elements.
std::vector<std::string> SortedPieces(std::string_view persistedList);

/// The results of a display. `text` is UTF-8.
struct Display {
  std::string text;
  ornwhatsnew::StyleRunMap runs;
  ornwhatsnew::RatingMap ratingItems;

  /// Returns the part of `text` that each run of a style covers, in the order of the runs.
  /// Truncates a run that extends past the end of `text`. Throws `std::logic_error` if a start or
  /// length is negative, or if a run starts past the end of `text`.
  std::vector<std::string> Pieces(ornwhatsnew::StyleID style) const;
  /// Returns the URL or empty string that each run of a style contains, in the order of the runs.
  /// The strings are UTF-8.
  std::vector<std::string> Strings(ornwhatsnew::StyleID style) const;
};

/// Displays the list and returns all results. `ratingPlaceholder` is UTF-8.
Display Format(ornwhatsnew::FeatureListData& list, ornwhatsnew::DisplayOptions options = {},
               std::string_view ratingPlaceholder = "");

/// Matches a UTF-16 string that equals the UTF-8 string `expected` after conversion.
MATCHER_P(IsText, expected, "") {
  const std::string actual = orncore::string::UTF16to8(arg);
  *result_listener << "which is \"" << actual << '"';
  return actual == expected;
}

}  // namespace test_support

#endif  // TESTS_SUPPORT_MATCHERS_H_
