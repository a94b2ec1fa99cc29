// Merges the persisted lists of two programs. Lists of identities and of versions only grow. A
// writer therefore adds its new elements to the stored list and never removes an element that
// another program added.
#ifndef HOSTS_COMMON_PERSISTEDLISTMERGE_H_
#define HOSTS_COMMON_PERSISTEDLISTMERGE_H_

#include <string_view>

#include <ornwhatsnew/utility/SharedTypes.h>

namespace hosts::common {

/// Returns the elements of `kept`, the stored list, and the elements of `written` that are not in
/// `before`. `before` is the list as the writer read it. Its elements are not added again, because
/// another program may have reset the store since. The result is in the canonical form of persisted
/// lists: each element once, in ascending byte order, separated by one space.
ornwhatsnew::UTF8String MergePersistedLists(std::string_view kept, std::string_view before,
                                            std::string_view written);

}  // namespace hosts::common

#endif  // HOSTS_COMMON_PERSISTEDLISTMERGE_H_
