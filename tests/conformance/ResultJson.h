// The library's results as JSON. An ill-formed UTF-8 sequence or an unpaired surrogate becomes
// U+FFFD.
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

/// Returns the value as one line of ASCII. All other characters are escaped, because a line
/// separator or a control character would break the line on a terminal.
std::string LineOf(const nlohmann::json& value);

using hosts::common::RatingItemsJson;
using hosts::common::RunsJson;
using hosts::common::TextJson;

/// How results give a persisted list.
enum class ListForm {
  kSorted,  ///< its elements in ascending byte order, with duplicates; an empty string has none
  kText,    ///< the string as it was written
};

/// Returns a persisted list in the given form.
nlohmann::json PersistedListJson(std::string_view persistedList, ListForm form);

/// Returns a persisted value: the two lists in the given form, any other value as a string.
nlohmann::json PersistedValueJson(std::string_view key, std::string_view value, ListForm form);

/// Returns setter calls, each `[key, value]`.
nlohmann::json WritesJson(std::span<const std::pair<std::string, std::string>> writes,
                          ListForm form);

/// Returns the ordered keys, and all items by key.
nlohmann::json ItemsJson(const ornwhatsnew::FeatureListData& list);

}  // namespace conformance

#endif  // TESTS_CONFORMANCE_RESULTJSON_H_
