// Creates persisted lists. `PersistedList.h` defines their format.
#ifndef ORNWHATSNEW_SRC_RULES_JOINPERSISTEDLIST_H_
#define ORNWHATSNEW_SRC_RULES_JOINPERSISTEDLIST_H_

#include <algorithm>
#include <string_view>
#include <vector>

#include <ornwhatsnew/utility/SharedTypes.h>

namespace ornwhatsnew {

/// Returns a persisted list of the elements, without duplicates. Omits empty elements. An element
/// must not contain a space, because `SplitPersistedList` would split it.
inline UTF8String JoinPersistedList(std::vector<std::string_view> elements) {
  std::ranges::sort(elements);
  elements.erase(std::unique(elements.begin(), elements.end()), elements.end());
  UTF8String list;
  for (const std::string_view element : elements) {
    if (!list.empty()) list += ' ';
    list += element;
  }
  return list;
}

}  // namespace ornwhatsnew

#endif  // ORNWHATSNEW_SRC_RULES_JOINPERSISTEDLIST_H_
