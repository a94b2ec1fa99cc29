// Converts the result of a display to JSON, for scripts and for tests that compare results.
#ifndef HOSTS_COMMON_PANELJSON_H_
#define HOSTS_COMMON_PANELJSON_H_

#include <memory>
#include <span>
#include <string>
#include <string_view>

#include <ornwhatsnew/PanelLayout.h>
#include <ornwhatsnew/utility/SharedTypes.h>
#include <nlohmann/json_fwd.hpp>

namespace hosts::common {

/// Returns `value` as indented ASCII text that ends with a newline. Escapes control characters and
/// non-ASCII characters, so that no string in `value` can send control characters to a terminal.
std::string ToJsonText(const nlohmann::json& value);

/// Returns `text` as a JSON string. Replaces ill-formed UTF-8 and unpaired surrogates with U+FFFD.
nlohmann::json TextJson(std::string_view text);
nlohmann::json TextJson(std::u16string_view text);

/// Returns an array with the runs of one style, in the order of `runs`. Each element is an array
/// `[start, length, string]`.
nlohmann::json RunsJson(std::span<const ornwhatsnew::StyleRun> runs);

/// Returns an object that maps each style number to the array of the runs with this style.
nlohmann::json RunsJson(const ornwhatsnew::StyleRunMap& runs);

/// Returns an object with a member for each feature in the rating map. The name of the member is
/// the key of the feature. Its value is an object with the members "internalKey", "name",
/// "description", "customRating" and "visibility", or a JSON null if the item is null. Returns a
/// JSON null if `items` is null.
nlohmann::json RatingItemsJson(const std::shared_ptr<const ornwhatsnew::RatingMap>& items);

/// Returns an array of the style runs' strings that are safe links (`orncore::string::IsSafeLink`).
/// Each link occurs once, and the links are in ascending order.
nlohmann::json SafeLinksJson(const ornwhatsnew::StyleRunMap& runs);

/// Returns an array with an object for each paragraph. Its members "kind", "indentLevel", "bullet",
/// "hasText", "itemKey", "isSection" and "text" are those of `ornwhatsnew::LayoutParagraph`.
/// "spans" is an array of objects with the members "text", "style" (a number, or null) and "link".
/// The paragraph of a rating request also has the member "rating": an object with the title, the
/// question and the description of the request.
nlohmann::json ParagraphsJson(const ornwhatsnew::PanelLayout& layout);

/// Returns an object with the members "text", "runs", "safeLinks", "ratingItems" and "paragraphs".
/// `text` is the panel's text, `runs` are its style runs, `items` is the rating map of the same
/// display, and `layout` is the layout of the same panel. A script that opens links or writes a web
/// page must use only the links in "safeLinks".
nlohmann::json PanelJson(std::u16string_view text, const ornwhatsnew::StyleRunMap& runs,
                         const std::shared_ptr<const ornwhatsnew::RatingMap>& items,
                         const ornwhatsnew::PanelLayout& layout);

}  // namespace hosts::common

#endif  // HOSTS_COMMON_PANELJSON_H_
