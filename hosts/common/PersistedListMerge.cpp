#include "hosts/common/PersistedListMerge.h"

#include <algorithm>
#include <iterator>
#include <vector>

#include <ornwhatsnew/utility/PersistedList.h>

namespace hosts::common {

ornwhatsnew::UTF8String MergePersistedLists(std::string_view kept, std::string_view before,
                                            std::string_view written) {
  std::vector<std::string_view> known = ornwhatsnew::SplitPersistedList(before);
  std::vector<std::string_view> added = ornwhatsnew::SplitPersistedList(written);
  std::ranges::sort(known);
  std::ranges::sort(added);
  std::vector<std::string_view> elements = ornwhatsnew::SplitPersistedList(kept);
  std::ranges::set_difference(added, known, std::back_inserter(elements));
  return ornwhatsnew::JoinPersistedList(std::move(elements));
}

}  // namespace hosts::common
