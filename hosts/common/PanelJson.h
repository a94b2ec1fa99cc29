// What a display pass gives, as JSON: for scripts, and for whoever compares results.
#ifndef HOSTS_COMMON_PANELJSON_H_
#define HOSTS_COMMON_PANELJSON_H_

#include <memory>
#include <span>
#include <string_view>

#include <ornwhatsnew/utility/SharedTypes.h>
#include <nlohmann/json_fwd.hpp>

namespace hosts::common {

/// A JSON string of any text; ill-formed UTF-8 and unpaired surrogates become U+FFFD.
nlohmann::json TextJson(std::string_view text);
nlohmann::json TextJson(std::u16string_view text);

/// Runs of one style, each `[start, length, string]`, in recorded order.
nlohmann::json RunsJson(std::span<const ornwhatsnew::StyleRun> runs);

/// All runs, by the style's number as text.
nlohmann::json RunsJson(const ornwhatsnew::StyleRunMap& runs);

/// The features offered for rating, by key: `{"internalKey", "name", "description", "customRating",
/// "visibility"}`. A null pointer gives null.
nlohmann::json RatingItemsJson(const std::shared_ptr<const ornwhatsnew::RatingMap>& items);

/// The three together: `{"text", "runs", "ratingItems"}`.
nlohmann::json PanelJson(std::u16string_view text, const ornwhatsnew::StyleRunMap& runs,
                         const std::shared_ptr<const ornwhatsnew::RatingMap>& items);

}  // namespace hosts::common

#endif  // HOSTS_COMMON_PANELJSON_H_
