// Declares `GetWhatsNew`, the main function of the library, which creates and loads a list.
#ifndef ORNWHATSNEW_WHATSNEW_H_
#define ORNWHATSNEW_WHATSNEW_H_

#include <memory>

#include <orncore/Export.h>
#include <ornwhatsnew/FeatureListData.h>
#include <ornwhatsnew/utility/SharedTypes.h>

namespace ornui::utility {
class ResourceManager;
}  // namespace ornui::utility

namespace ornwhatsnew {

/// Returns a list that is loaded from a data file, the resource `path` of type "csv". The list
/// contains an item for each of the host's beta features and for each section. If the resource
/// cannot be loaded, the items have no changes.
///
/// `resources` must not be null. The list uses it only during this call. `getter` and `setter` read
/// and write the state. If either is empty, the list uses neither of them and persists its state in
/// the debug database.
///
/// The caller owns the list. It is not thread-safe: use one list from one thread at a time.
/// Exceptions from allocations, the getter, services and `resources` propagate to the caller.
ORN_EXPORT std::shared_ptr<FeatureListData> GetWhatsNew(
    const UTF16String& path, const ornui::utility::ResourceManager* resources, StateGetter getter,
    StateSetter setter);

}  // namespace ornwhatsnew

#endif  // ORNWHATSNEW_WHATSNEW_H_
