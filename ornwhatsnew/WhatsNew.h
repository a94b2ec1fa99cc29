// The entry point: `GetWhatsNew` returns the loaded list.
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

/// Loads the list from the data file that the host ships as the resource `path` of type "csv". If
/// the resource cannot be loaded, the list has the host's features and the sections, without
/// changes.
///
/// `getter` and `setter` persist what the user has seen and rated. If either is empty, the host's
/// debug database does. `resources` must not be null; the list does not keep it. The caller owns
/// the list and uses it from one thread at a time. Throws only what an allocation, a callback, a
/// service or the resource manager throws.
ORN_EXPORT std::shared_ptr<FeatureListData> GetWhatsNew(
    const UTF16String& path, const ornui::utility::ResourceManager* resources, StateGetter getter,
    StateSetter setter);

}  // namespace ornwhatsnew

#endif  // ORNWHATSNEW_WHATSNEW_H_
