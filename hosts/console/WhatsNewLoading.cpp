#include "hosts/console/WhatsNewLoading.h"

#include <string>
#include <system_error>
#include <utility>

#include <orncore/config/TopLevel.h>
#include <orncore/filesupport/RegularFile.h>
#include <orncore/string/Conversion.h>
#include <ornui/utility/ResourceManager.h>
#include <ornwhatsnew/WhatsNew.h>

#include "hosts/common/HostDescription.h"
#include "hosts/common/StateStore.h"
#include "hosts/common/TextFile.h"
#include "hosts/console/ToolError.h"

namespace hosts::console {
namespace {

using ornwhatsnew::UTF16String;

/// Resources of a folder that remember whether they were found, which the library does not ask.
class WatchedFolder final : public ornui::utility::ResourceManager {
 public:
  explicit WatchedFolder(std::filesystem::path folder) : folder_(std::move(folder)) {}

  bool LoadResource(const UTF16String& name, const UTF16String& type,
                    std::vector<unsigned char>& bytes) const override {
    isLoaded_ = folder_.LoadResource(name, type, bytes);
    return isLoaded_;
  }

  bool IsLoaded() const { return isLoaded_; }

 private:
  ornui::utility::FolderResourceManager folder_;
  mutable bool isLoaded_ = false;
};

[[noreturn]] void RefuseData(const std::filesystem::path& file, const std::string& reason) {
  throw ToolError(ExitStatus::kInput, "The data file '" + file.native() +
                                          "' cannot be read: " + reason +
                                          ". Name a What's New data file that you may read.");
}

/// Reads the file once more, for the reason why it could not be loaded.
[[noreturn]] void ExplainUnreadable(const std::filesystem::path& file) {
  try {
    orncore::filesupport::ReadRegularFile(file);
  } catch (const orncore::config::ResultError& error) {
    RefuseData(file, common::ReasonOf(error));
  }
  RefuseData(file, "its name is no UTF-8, or it has just been replaced");
}

}  // namespace

void InstallHostFile(const std::filesystem::path& file) {
  common::InstallHost(common::ReadHostDescription(file));
}

std::shared_ptr<ornwhatsnew::FeatureListData> LoadWhatsNew(const std::filesystem::path& file,
                                                           ornwhatsnew::StateGetter getter,
                                                           ornwhatsnew::StateSetter setter) {
  // A folder's resources do not follow links that lead out of it, but the user's own link may lead
  // anywhere.
  std::error_code error;
  const std::filesystem::path target = std::filesystem::canonical(file, error);
  if (error) RefuseData(file, error.message());
  const WatchedFolder folder(target.parent_path());
  const UTF16String name = orncore::string::UTF8to16(target.filename().native());
  std::shared_ptr<ornwhatsnew::FeatureListData> list =
      ornwhatsnew::GetWhatsNew(name, &folder, std::move(getter), std::move(setter));
  if (!folder.IsLoaded()) ExplainUnreadable(file);
  return list;
}

std::filesystem::path StateLocation(const std::optional<std::filesystem::path>& named) {
  return named ? *named : common::DefaultStateLocation();
}

}  // namespace hosts::console
