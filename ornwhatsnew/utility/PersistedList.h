// What the library persists through its callbacks: under which keys, and the form of its lists,
// pieces joined by a single blank in ascending byte order, so that equal states are equal texts.
#ifndef ORNWHATSNEW_UTILITY_PERSISTEDLIST_H_
#define ORNWHATSNEW_UTILITY_PERSISTEDLIST_H_

#include <string_view>
#include <vector>

#include <orncore/Export.h>
#include <ornwhatsnew/utility/IdentitySet.h>
#include <ornwhatsnew/utility/SharedTypes.h>

namespace ornwhatsnew {

/// Key of the first persisted value: the identities of all that was seen or rated, a list.
extern ORN_EXPORT const UTF8String kAllSeenItemsKey;
/// Key of the second: the version in which the list was last opened.
extern ORN_EXPORT const UTF8String kLastVersionSeenKey;
/// Key of the third: all versions in which it was opened, a list.
extern ORN_EXPORT const UTF8String kAllVersionsSeenKey;

/// The pieces between the blanks of `text`, as views into it. An empty text has none; adjacent
/// blanks are not merged, so there is an empty piece between them.
ORN_EXPORT std::vector<std::string_view> SplitPersistedList(std::string_view text);

/// The text of a list: each piece once, in ascending byte order. An empty piece stands first, adds
/// nothing to the text and so is gone when the text is split again.
ORN_EXPORT UTF8String JoinPersistedList(std::vector<std::string_view> pieces);

/// The identities of a persisted list. A piece that is no identity gives the nil one.
ORN_EXPORT IdentitySet ParseGuidList(std::string_view text);

/// The text of the identities in any of the sets, each once.
ORN_EXPORT UTF8String FormatGuidList(const IdentitySet& some, const IdentitySet& others,
                                     const IdentitySet& more = {});

}  // namespace ornwhatsnew

#endif  // ORNWHATSNEW_UTILITY_PERSISTEDLIST_H_
