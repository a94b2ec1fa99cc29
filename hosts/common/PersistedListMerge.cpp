#include "hosts/common/PersistedListMerge.h"

#include <algorithm>
#include <iterator>
#include <vector>

#include <ornwhatsnew/utility/PersistedList.h>

namespace hosts::common {

ornwhatsnew::UTF8String MergePersistedLists(std::string_view kept, std::string_view before,
                                            std::string_view written) {
  std::vector<std::string_view> known = ornwhatsnew::SplitPersistedList(before);
  std::vector<std::string_view> learnt = ornwhatsnew::SplitPersistedList(written);
  std::ranges::sort(known);
  std::ranges::sort(learnt);
  std::vector<std::string_view> pieces = ornwhatsnew::SplitPersistedList(kept);
  std::ranges::set_difference(learnt, known, std::back_inserter(pieces));
  return ornwhatsnew::JoinPersistedList(std::move(pieces));
}

}  // namespace hosts::common
