// Merges the persisted lists of two programs. A writer adds its new identities or versions to the
// stored list. It never removes an element that another program added.
#ifndef HOSTS_COMMON_PERSISTEDLISTMERGE_H_
#define HOSTS_COMMON_PERSISTEDLISTMERGE_H_

#include <string_view>

#include <ornwhatsnew/utility/SharedTypes.h>

namespace hosts::common {

/// Returns a list with the elements of `kept`, and with the elements of `written` that are not in
/// `before`. `kept` is the stored list, `before` is the list that the writer read, and `written` is
/// the list that it writes. Does not add the elements of `before` again, because another program
/// may have reset the store after the read. The result is in the canonical form of persisted lists:
/// each element once, in ascending byte order, separated by one space.
ornwhatsnew::UTF8String MergePersistedLists(std::string_view kept, std::string_view before,
                                            std::string_view written);

}  // namespace hosts::common

#endif  // HOSTS_COMMON_PERSISTEDLISTMERGE_H_
