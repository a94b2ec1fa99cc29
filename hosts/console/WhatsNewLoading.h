// From the files that the user names to a list that can be asked and shown.
#ifndef HOSTS_CONSOLE_WHATSNEWLOADING_H_
#define HOSTS_CONSOLE_WHATSNEWLOADING_H_

#include <filesystem>
#include <memory>
#include <optional>

#include <ornwhatsnew/FeatureListData.h>

namespace hosts::console {

/// Makes the process's services answer as the file describes. Throws
/// `common::HostDescriptionError`.
void InstallHostFile(const std::filesystem::path& file);

/// Loads the data file. Throws `ToolError` when it cannot be read: the library would show a list
/// without changes.
std::shared_ptr<ornwhatsnew::FeatureListData> LoadWhatsNew(const std::filesystem::path& file,
                                                           ornwhatsnew::StateGetter getter,
                                                           ornwhatsnew::StateSetter setter);

/// The location that the user named, or else the user's own store.
std::filesystem::path StateLocation(const std::optional<std::filesystem::path>& named);

}  // namespace hosts::console

#endif  // HOSTS_CONSOLE_WHATSNEWLOADING_H_
