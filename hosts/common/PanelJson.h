// JSON output: the result of a display pass, for scripts and for tests that compare results.
#ifndef HOSTS_COMMON_PANELJSON_H_
#define HOSTS_COMMON_PANELJSON_H_

#include <memory>
#include <span>
#include <string>
#include <string_view>

#include <ornwhatsnew/utility/SharedTypes.h>
#include <nlohmann/json_fwd.hpp>

namespace hosts::common {

/// Returns the value as indented text in ASCII. All other characters are escaped, so that no string
/// in it can send control characters to a terminal.
std::string ToJsonText(const nlohmann::json& value);

/// Returns the text as a JSON string. Ill-formed UTF-8 and unpaired surrogates are replaced by
/// U+FFFD.
nlohmann::json TextJson(std::string_view text);
nlohmann::json TextJson(std::u16string_view text);

/// Returns runs of one style, each as `[start, length, string]`, in recorded order.
nlohmann::json RunsJson(std::span<const ornwhatsnew::StyleRun> runs);

/// Returns all runs in an object; the members' names are the style numbers.
nlohmann::json RunsJson(const ornwhatsnew::StyleRunMap& runs);

/// Returns the features of the rating map by key: `{"internalKey", "name", "description",
/// "customRating", "visibility"}`. A null pointer gives null.
nlohmann::json RatingItemsJson(const std::shared_ptr<const ornwhatsnew::RatingMap>& items);

/// Returns all three in one object: `{"text", "runs", "ratingItems"}`.
nlohmann::json PanelJson(std::u16string_view text, const ornwhatsnew::StyleRunMap& runs,
                         const std::shared_ptr<const ornwhatsnew::RatingMap>& items);

}  // namespace hosts::common

#endif  // HOSTS_COMMON_PANELJSON_H_
