// Loads the files that the user names on the command line.
#ifndef HOSTS_CONSOLE_WHATSNEWLOADING_H_
#define HOSTS_CONSOLE_WHATSNEWLOADING_H_

#include <filesystem>
#include <memory>
#include <optional>
#include <string>

#include <ornwhatsnew/FeatureListData.h>

namespace hosts::console {

/// Returns the bytes of a regular file. Throws `ToolError` if the file cannot be read.
std::string ReadInputFile(const std::filesystem::path& file);

/// Reads the host description in `file` and configures the services of this process from it. Throws
/// `common::JsonError` if the file cannot be read or is not a host description.
void InstallHostFile(const std::filesystem::path& file);

/// Returns a list with the changes of the data file. The list reads and writes its state through
/// the callbacks. Throws `ToolError` if the file cannot be read. Unlike this function,
/// `GetWhatsNew` would then return a list without changes.
std::shared_ptr<ornwhatsnew::FeatureListData> LoadWhatsNew(const std::filesystem::path& file,
                                                           ornwhatsnew::StateGetter getter,
                                                           ornwhatsnew::StateSetter setter);

/// Returns `named`, or the location of the user's default store if `named` is absent. Throws
/// `common::StateStoreError` if there is no default location.
std::filesystem::path StateLocation(const std::optional<std::filesystem::path>& named);

}  // namespace hosts::console

#endif  // HOSTS_CONSOLE_WHATSNEWLOADING_H_
