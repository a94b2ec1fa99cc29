// Converts the result of a display to JSON, for scripts and for tests that compare results.
#ifndef HOSTS_COMMON_PANELJSON_H_
#define HOSTS_COMMON_PANELJSON_H_

#include <memory>
#include <span>
#include <string>
#include <string_view>

#include <ornwhatsnew/utility/SharedTypes.h>
#include <nlohmann/json_fwd.hpp>

namespace hosts::common {

/// Returns the value as indented ASCII text that ends with a newline. Escapes all other characters,
/// so that no string in it can send control characters to a terminal.
std::string ToJsonText(const nlohmann::json& value);

/// Returns `text` as a JSON string. Replaces ill-formed UTF-8 and unpaired surrogates with U+FFFD.
nlohmann::json TextJson(std::string_view text);
nlohmann::json TextJson(std::u16string_view text);

/// Returns the runs of one style in recorded order, each as `[start, length, string]`.
nlohmann::json RunsJson(std::span<const ornwhatsnew::StyleRun> runs);

/// Returns an object with the runs of each style. Its member names are the style numbers.
nlohmann::json RunsJson(const ornwhatsnew::StyleRunMap& runs);

/// Returns an object with the features of the rating map by key, each as `{"internalKey", "name",
/// "description", "customRating", "visibility"}`. Returns null for a null pointer.
nlohmann::json RatingItemsJson(const std::shared_ptr<const ornwhatsnew::RatingMap>& items);

/// Returns the text, the runs and the rating map in one object: `{"text", "runs", "ratingItems"}`.
nlohmann::json PanelJson(std::u16string_view text, const ornwhatsnew::StyleRunMap& runs,
                         const std::shared_ptr<const ornwhatsnew::RatingMap>& items);

}  // namespace hosts::common

#endif  // HOSTS_COMMON_PANELJSON_H_
