// What tests ask of a list and of a styled text, in words instead of loops.
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

/// The keys of a list in display order.
std::vector<std::string> KeyOrder(const ornwhatsnew::FeatureListData& list);

/// The item under a key. Throws `std::logic_error` when there is none.
const ornwhatsnew::FeatureListItem& ItemOf(const ornwhatsnew::FeatureListData& list,
                                           std::string_view key);

/// The descriptions of an item's changes, in order.
std::vector<std::string> ChangeDescriptions(const ornwhatsnew::FeatureListItem& item);

/// The pieces of a persisted list, sorted; an empty text has none.
std::vector<std::string> SortedPieces(std::string_view persistedList);

/// What a display pass gave: the text as UTF-8, its runs and its rating records.
struct Display {
  std::string text;
  ornwhatsnew::StyleRunMap runs;
  ornwhatsnew::RatingMap ratingItems;

  /// The text under each run of a style, in recorded order. A run that leaves the text is cut at
  /// its end.
  std::vector<std::string> Pieces(ornwhatsnew::StyleID style) const;
  /// The string of each run of a style, in recorded order.
  std::vector<std::string> Strings(ornwhatsnew::StyleID style) const;
};

/// One display pass.
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
