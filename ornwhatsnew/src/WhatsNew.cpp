#include <ornwhatsnew/WhatsNew.h>

#include <utility>

namespace ornwhatsnew {

std::shared_ptr<FeatureListData> GetWhatsNew(const UTF16String& path,
                                             const ornui::utility::ResourceManager* resources,
                                             StateGetter getter, StateSetter setter) {
  return std::make_shared<FeatureListData>(path, resources, std::move(getter), std::move(setter));
}

}  // namespace ornwhatsnew
