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
/// Throws `nlohmann::json::type_error` if a string is not well-formed UTF-8.
std::string ToJsonText(const nlohmann::json& value);

/// Returns `text` as a JSON string. Replaces ill-formed UTF-8 and unpaired surrogates with U+FFFD.
nlohmann::json TextJson(std::string_view text);
nlohmann::json TextJson(std::u16string_view text);

/// Returns an array with the runs of one style, in the order of `runs`. Each element is an array
/// `[start, length, string]` with the start and the length in UTF-8 bytes.
nlohmann::json RunsJson(std::span<const ornwhatsnew::StyleRun> runs);

/// Returns an object that maps each style number to the array of the runs with this style.
nlohmann::json RunsJson(const ornwhatsnew::StyleRunMap& runs);

/// Returns an object with a member for each item in the rating map. The name of the member is the
/// key of the item. Its value is an object with the members "internalKey", "name", "description",
/// "customRating" and "visibility", or a JSON null if the item is null. Returns a JSON null if
/// `items` is null.
nlohmann::json RatingItemsJson(const std::shared_ptr<const ornwhatsnew::RatingMap>& items);

/// Returns an array with those strings of the style runs that are safe links
/// (`orncore::string::IsSafeLink`), without duplicates and in ascending order.
nlohmann::json SafeLinksJson(const ornwhatsnew::StyleRunMap& runs);

/// Returns an array with an object for each paragraph. The members "kind", "indentLevel", "bullet",
/// "hasText", "itemKey" and "isSection" of the object are those of `ornwhatsnew::LayoutParagraph`.
/// "text" is the text of the paragraph. "spans" is an array of objects with the members "text",
/// "style" (a number, or null) and "link". For a rating request, the object also has the member
/// "rating": an object with the members "title", "question" and "description".
nlohmann::json ParagraphsJson(const ornwhatsnew::PanelLayout& layout);

/// Returns an object with the members "text", "runs", "safeLinks", "ratingItems" and "paragraphs".
/// `text`, `runs` and `items` are the results of one display: the panel's text, its style runs and
/// its rating map. `layout` is the layout of the same panel. A script that opens links or writes a
/// web page must use only the links in "safeLinks".
nlohmann::json PanelJson(std::u16string_view text, const ornwhatsnew::StyleRunMap& runs,
                         const std::shared_ptr<const ornwhatsnew::RatingMap>& items,
                         const ornwhatsnew::PanelLayout& layout);

}  // namespace hosts::common

#endif  // HOSTS_COMMON_PANELJSON_H_
