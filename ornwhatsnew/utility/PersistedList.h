// Defines the keys under which a list persists its state, and the format of the persisted lists.
//
// A persisted list is a string of elements, separated by single spaces. The elements are in
// ascending byte order and without duplicates, so that equal states give equal strings.
#ifndef ORNWHATSNEW_UTILITY_PERSISTEDLIST_H_
#define ORNWHATSNEW_UTILITY_PERSISTEDLIST_H_

#include <string_view>
#include <vector>

#include <orncore/Export.h>
#include <ornwhatsnew/utility/SharedTypes.h>

namespace ornwhatsnew {

// Static objects of the host must not use the keys in their constructors, which can run before the
// keys are initialised. Such a constructor can call the functions below with its own strings.

/// The key of the identities of all items and changes that the user has seen or rated. The value is
/// a persisted list.
extern ORN_EXPORT const UTF8String kAllSeenItemsKey;
/// The key of the full version in which the user last opened the panel.
extern ORN_EXPORT const UTF8String kLastVersionSeenKey;
/// The key of all full versions in which the user opened the panel. The value is a persisted list.
extern ORN_EXPORT const UTF8String kAllVersionsSeenKey;

/// Returns the elements of a persisted list as views into `list`. An empty string has no elements.
/// Does not merge spaces: adjacent spaces, and a space at the start or the end of `list`, give
/// empty elements.
ORN_EXPORT std::vector<std::string_view> SplitPersistedList(std::string_view list);

/// Returns the value that a program should store under `key`, so that programs that share a store
/// do not overwrite each other's elements. `stored` is the value that is in the store now. `read`
/// is the value that the program read, and `written` is the new value of the program.
///
/// For `kAllSeenItemsKey` and `kAllVersionsSeenKey`, the result is a persisted list. It contains
/// the elements of `stored`, and the elements of `written` that are not in `read`. Does not restore
/// elements of `read` that are missing from `stored`, because another program may have reset the
/// store in the meantime. For any other key, returns `written`.
ORN_EXPORT UTF8String MergePersistedValue(std::string_view key, std::string_view stored,
                                          std::string_view read, std::string_view written);

}  // namespace ornwhatsnew

#endif  // ORNWHATSNEW_UTILITY_PERSISTEDLIST_H_
