// Reads text files, and formats messages about files that cannot be read.
#ifndef HOSTS_COMMON_TEXTFILE_H_
#define HOSTS_COMMON_TEXTFILE_H_

#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>

#include <orncore/config/TopLevel.h>
#include <orncore/filesupport/File.h>

namespace hosts::common {

/// Returns all bytes of a regular file. Throws `orncore::config::ResultError` if the file cannot be
/// read, is not a regular file, or has more than `maxBytes` bytes.
std::string ReadTextFile(const std::filesystem::path& file,
                         std::size_t maxBytes = orncore::filesupport::kMaxFileBytes);

/// Returns the result of `ReadTextFile`. If `ReadTextFile` fails, throws `ToolError` with the
/// status `kInput` and a message such as "cannot open 'x.csv': No such file or directory".
std::string ReadInputFile(const std::filesystem::path& file,
                          std::size_t maxBytes = orncore::filesupport::kMaxFileBytes);

/// The byte order mark of UTF-8, with which some spreadsheet programs begin a file.
inline constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

/// Returns `text` without a byte order mark at its start.
std::string_view WithoutByteOrderMark(std::string_view text);

/// Returns the message for a file that `ReadTextFile` could not read, such as
/// "cannot open 'x.csv': No such file or directory".
std::string OpenErrorMessage(const std::filesystem::path& file,
                             const orncore::config::ResultError& error);

}  // namespace hosts::common

#endif  // HOSTS_COMMON_TEXTFILE_H_
