// Merges a persisted list of two writers. Lists of identities and of versions only grow, so a
// writer adds its new elements to the stored list and never removes elements that another program
// has added in the meantime.
#ifndef HOSTS_COMMON_PERSISTEDLISTMERGE_H_
#define HOSTS_COMMON_PERSISTEDLISTMERGE_H_

#include <string_view>

#include <ornwhatsnew/utility/SharedTypes.h>

namespace hosts::common {

/// Returns every element of `kept` and every element of `written` that is not in `before`, the list
/// as the writer read it. Elements of `before` are not added again, so that the writer does not
/// undo a reset between reading and writing. The result is in the canonical form of persisted
/// lists: each element once, in ascending byte order, separated by one space.
ornwhatsnew::UTF8String MergePersistedLists(std::string_view kept, std::string_view before,
                                            std::string_view written);

}  // namespace hosts::common

#endif  // HOSTS_COMMON_PERSISTEDLISTMERGE_H_
