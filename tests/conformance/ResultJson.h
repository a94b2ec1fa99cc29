// What the library gave, as JSON. Texts become well-formed UTF-8 whatever they hold: an ill-formed
// sequence or an unpaired surrogate stands as U+FFFD.
#ifndef TESTS_CONFORMANCE_RESULTJSON_H_
#define TESTS_CONFORMANCE_RESULTJSON_H_

#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <nlohmann/json_fwd.hpp>

#include <ornwhatsnew/FeatureListData.h>
#include <ornwhatsnew/utility/SharedTypes.h>

#include "hosts/common/PanelJson.h"

namespace conformance {

/// The value as one line of ASCII. A line separator or a terminal's control character inside a text
/// would break the line for whoever reads it, so that everything beyond ASCII is escaped.
std::string LineOf(const nlohmann::json& value);

using hosts::common::RatingItemsJson;
using hosts::common::RunsJson;
using hosts::common::TextJson;

/// The pieces of a persisted list in ascending byte order, duplicates kept; an empty text has none.
nlohmann::json SortedPiecesJson(std::string_view persistedList);

/// A persisted value: the two lists as their sorted pieces, any other as a text.
nlohmann::json PersistedValueJson(std::string_view key, std::string_view value);

/// Setter calls, each `[key, value]`.
nlohmann::json WritesJson(std::span<const std::pair<std::string, std::string>> writes);

/// The order of the keys, and all items by key.
nlohmann::json ItemsJson(const ornwhatsnew::FeatureListData& list);

}  // namespace conformance

#endif  // TESTS_CONFORMANCE_RESULTJSON_H_
