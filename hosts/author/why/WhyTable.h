// Formats the tables of `ornwhatsnew why`.
#ifndef HOSTS_AUTHOR_WHY_WHYTABLE_H_
#define HOSTS_AUTHOR_WHY_WHYTABLE_H_

#include <span>
#include <string>

#include <ornwhatsnew/FeatureListData.h>

#include "hosts/author/why/HidingReason.h"

namespace hosts::author {

/// Returns a table with a row for each of `items` and each of their changes. The columns contain
/// line, status, key, text and reasons. Each reason after the first one has a line of its own.
/// `list` owns the items. For `userVersions`, see `ChangeReasons`. Escapes invisible characters of
/// the data, and shortens keys and texts.
std::string WhyTable(const ornwhatsnew::FeatureListData& list,
                     std::span<const std::string> userVersions,
                     std::span<const ExplainedItem* const> items);

/// Returns a table with the same columns as `WhyTable`. It has a row for each change of `item`, and
/// no row for `item` itself.
std::string ChangeTable(const ornwhatsnew::FeatureListData& list,
                        std::span<const std::string> userVersions, const ExplainedItem& item);

}  // namespace hosts::author

#endif  // HOSTS_AUTHOR_WHY_WHYTABLE_H_
