// Loads the files that the user names on the command line.
#ifndef HOSTS_CONSOLE_WHATSNEWLOADING_H_
#define HOSTS_CONSOLE_WHATSNEWLOADING_H_

#include <filesystem>
#include <memory>
#include <optional>

#include <ornwhatsnew/FeatureListData.h>

namespace hosts::console {

/// Reads a host description and configures the process's services from it. Throws
/// `common::JsonError`.
void InstallHostFile(const std::filesystem::path& file);

/// Loads the data file into a list. Throws `ToolError` if the file cannot be read, while
/// `GetWhatsNew` would return a list without changes.
std::shared_ptr<ornwhatsnew::FeatureListData> LoadWhatsNew(const std::filesystem::path& file,
                                                           ornwhatsnew::StateGetter getter,
                                                           ornwhatsnew::StateSetter setter);

/// Returns `named`, or the location of the user's default store if `named` is absent. Throws
/// `common::StateStoreError` if there is no default location.
std::filesystem::path StateLocation(const std::optional<std::filesystem::path>& named);

}  // namespace hosts::console

#endif  // HOSTS_CONSOLE_WHATSNEWLOADING_H_
