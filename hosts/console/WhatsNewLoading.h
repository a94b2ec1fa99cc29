// Loads the files that the user names on the command line.
#ifndef HOSTS_CONSOLE_WHATSNEWLOADING_H_
#define HOSTS_CONSOLE_WHATSNEWLOADING_H_

#include <cstddef>
#include <filesystem>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include <orncore/filesupport/File.h>
#include <ornwhatsnew/FeatureListData.h>

namespace hosts::console {

/// The maximum size in bytes of a file that a command for authors reads. Lists of findings, cells
/// and errors need up to a hundred times as much memory as the file.
inline constexpr std::size_t kMaximumAuthorFile = std::size_t{16} << 20;

/// The name of a file that selects standard output.
inline constexpr std::string_view kStandardOutput = "-";

/// Returns the bytes of a regular file. Throws `ToolError` if the file cannot be read or has more
/// than `maxBytes` bytes.
std::string ReadInputFile(const std::filesystem::path& file,
                          std::size_t maxBytes = orncore::filesupport::kMaxFileBytes);

/// Throws `ToolError` if `output` is one of the files `inputs`, which the output would replace, or
/// if `output` has the name of the configuration of `lint`, which could then not be read.
void RequireUsableOutput(const std::filesystem::path& output,
                         std::span<const std::filesystem::path> inputs);

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
