// Converts results of the library to JSON. Ill-formed UTF-8 and unpaired surrogates become U+FFFD.
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

/// Returns `value` as JSON on one line. Escapes all characters that are not ASCII, because some of
/// them, such as U+0085, start a new line on a terminal.
std::string LineOf(const nlohmann::json& value);

using hosts::common::RatingItemsJson;
using hosts::common::RunsJson;
using hosts::common::TextJson;

/// The form of persisted lists in results.
enum class ListForm {
  kSorted,  ///< the array of the elements in ascending byte order, with duplicates
  kText,    ///< the string that the library wrote
};

/// Returns a persisted list in the given form.
nlohmann::json PersistedListJson(std::string_view persistedList, ListForm form);

/// Returns the JSON of `value`, which is persisted under `key`. A list of identities or versions is
/// converted to the given form. Any other value becomes a string.
nlohmann::json PersistedValueJson(std::string_view key, std::string_view value, ListForm form);

/// Returns an array with one element `[key, value]` for each setter call. Persisted lists have the
/// given form.
nlohmann::json WritesJson(std::span<const std::pair<std::string, std::string>> writes,
                          ListForm form);

/// Returns an object with two members. `order` is the key order. `items` maps each key to its item,
/// or to null if the entry for the key has no item.
nlohmann::json ItemsJson(const ornwhatsnew::FeatureListData& list);

}  // namespace conformance

#endif  // TESTS_CONFORMANCE_RESULTJSON_H_
