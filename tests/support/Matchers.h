// Helpers that read lists and styled texts for expectations.
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

/// Returns the keys of a list in display order.
std::vector<std::string> KeyOrder(const ornwhatsnew::FeatureListData& list);

/// Returns the item with a key. Throws `std::logic_error` if there is none.
const ornwhatsnew::FeatureListItem& ItemOf(const ornwhatsnew::FeatureListData& list,
                                           std::string_view key);

/// Returns the descriptions of an item's changes, in order.
std::vector<std::string> ChangeDescriptions(const ornwhatsnew::FeatureListItem& item);

/// Returns the sorted elements of a persisted list; an empty string has none.
std::vector<std::string> SortedPieces(std::string_view persistedList);

/// The results of a display call: the text as UTF-8, its runs and its rating records.
struct Display {
  std::string text;
  ornwhatsnew::StyleRunMap runs;
  ornwhatsnew::RatingMap ratingItems;

  /// Returns the text of each run of a style, in recorded order. A run that extends past the end of
  /// the text is cut there.
  std::vector<std::string> Pieces(ornwhatsnew::StyleID style) const;
  /// Returns the string of each run of a style, in recorded order.
  std::vector<std::string> Strings(ornwhatsnew::StyleID style) const;
};

/// Returns the results of one display call.
Display Format(ornwhatsnew::FeatureListData& list, ornwhatsnew::DisplayOptions options = {},
               std::string_view ratingPlaceholder = "");

/// Matches a UTF-16 text by its UTF-8 form.
MATCHER_P(IsText, expected, "") {
  const std::string actual = orncore::string::UTF16to8(arg);
  *result_listener << "which is \"" << actual << '"';
  return actual == expected;
}

}  // namespace test_support

#endif  // TESTS_SUPPORT_MATCHERS_H_
