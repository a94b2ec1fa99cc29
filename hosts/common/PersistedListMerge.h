// How two writers of one persisted list come together. Lists of identities and of versions only
// grow, so a writer adds what it has learnt to what is kept and never takes away what another
// program has added in the meantime.
#ifndef HOSTS_COMMON_PERSISTEDLISTMERGE_H_
#define HOSTS_COMMON_PERSISTEDLISTMERGE_H_

#include <string_view>

#include <ornwhatsnew/utility/SharedTypes.h>

namespace hosts::common {

/// The list to keep: every piece of `kept`, and every piece of `written` that was not already in
/// `before`, the list as the writer read it. What was known before is not added again, so that a
/// reset between reading and writing is not undone by the writer. The text is in the canonical
/// form of persisted lists: each piece once, in ascending byte order, joined by one blank.
ornwhatsnew::UTF8String MergePersistedLists(std::string_view kept, std::string_view before,
                                            std::string_view written);

}  // namespace hosts::common

#endif  // HOSTS_COMMON_PERSISTEDLISTMERGE_H_
