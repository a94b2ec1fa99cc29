// Loads the input files that the user names on the command line, and checks the output file.
#ifndef HOSTS_CONSOLE_WHATSNEWLOADING_H_
#define HOSTS_CONSOLE_WHATSNEWLOADING_H_

#include <cstddef>
#include <filesystem>
#include <memory>
#include <span>
#include <string_view>

#include <ornwhatsnew/FeatureListData.h>

namespace hosts::console {

/// The maximum size, in bytes, of a file that a command for authors reads. The limit bounds the
/// memory for lists of findings, cells and errors, which take up to a hundred times as much memory
/// as the file.
inline constexpr std::size_t kMaximumAuthorFile = std::size_t{16} << 20;

/// The file name that selects standard output.
inline constexpr std::string_view kStandardOutput = "-";

/// Throws `ToolError` if `output` is one of the files `inputs`, because the output would replace
/// this file. Also throws `ToolError` if `output` has the name of the configuration file of `lint`,
/// because the output is not a valid configuration.
void RequireUsableOutput(const std::filesystem::path& output,
                         std::span<const std::filesystem::path> inputs);

/// Reads the host description in `file` and its dictionary files, and configures the services of
/// this process from them. Throws `common::JsonError` if one of these files cannot be used.
void InstallHostFile(const std::filesystem::path& file);

/// Returns a list with the changes of the data file. The list reads and writes its state through
/// the callbacks. Throws `ToolError` if the file cannot be read, whereas `GetWhatsNew` returns a
/// list without changes in this case.
std::shared_ptr<ornwhatsnew::FeatureListData> LoadWhatsNew(const std::filesystem::path& file,
                                                           ornwhatsnew::StateGetter getter,
                                                           ornwhatsnew::StateSetter setter);

}  // namespace hosts::console

#endif  // HOSTS_CONSOLE_WHATSNEWLOADING_H_
