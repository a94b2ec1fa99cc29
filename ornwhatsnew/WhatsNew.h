// The entry point: a host calls `GetWhatsNew` and gets its list.
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

/// Loads the What's New list from the data file that the host ships as the resource `path` of type
/// "csv". A resource that cannot be loaded gives a valid list of features without changes.
///
/// `getter` and `setter` keep what the user has seen and rated; when either is empty the state
/// lives in the host's debug database instead. `resources` is only used during the call and must
/// not be null. The list is owned by the caller; use it from one thread at a time. Throws only what
/// an allocation, a callback or the resource manager throws.
ORN_EXPORT std::shared_ptr<FeatureListData> GetWhatsNew(
    const UTF16String& path, const ornui::utility::ResourceManager* resources, StateGetter getter,
    StateSetter setter);

}  // namespace ornwhatsnew

#endif  // ORNWHATSNEW_WHATSNEW_H_
