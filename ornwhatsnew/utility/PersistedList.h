// What a list persists through its callbacks: three keys, and the form of the values that are
// lists.
//
// A persisted list is a text of elements that are joined by single spaces. Its elements are in
// ascending byte order, so that equal states are equal texts.
#ifndef ORNWHATSNEW_UTILITY_PERSISTEDLIST_H_
#define ORNWHATSNEW_UTILITY_PERSISTEDLIST_H_

#include <string_view>
#include <vector>

#include <orncore/Export.h>
#include <ornwhatsnew/utility/SharedTypes.h>

namespace ornwhatsnew {

/// Key of the identities of everything that was seen or rated, a persisted list.
extern ORN_EXPORT const UTF8String kAllSeenItemsKey;
/// Key of the version in which What's New was last opened.
extern ORN_EXPORT const UTF8String kLastVersionSeenKey;
/// Key of all versions in which What's New was opened, a persisted list.
extern ORN_EXPORT const UTF8String kAllVersionsSeenKey;

/// Returns the elements of a list as views into `list`. An empty text has no elements. Adjacent
/// spaces are not merged: there is an empty element between them.
ORN_EXPORT std::vector<std::string_view> SplitPersistedList(std::string_view list);

/// Returns the list of the elements, each once, in ascending byte order. An empty element adds
/// nothing to the text, so it is lost.
ORN_EXPORT UTF8String JoinPersistedList(std::vector<std::string_view> elements);

}  // namespace ornwhatsnew

#endif  // ORNWHATSNEW_UTILITY_PERSISTEDLIST_H_
