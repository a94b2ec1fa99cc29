// Files that people name on a command line.
#ifndef HOSTS_COMMON_TEXTFILE_H_
#define HOSTS_COMMON_TEXTFILE_H_

#include <filesystem>
#include <string>

#include <orncore/config/TopLevel.h>

namespace hosts::common {

/// All bytes of a regular file. Throws `orncore::config::ResultError`, whose text names the file
/// and the reason, for anything else and for what cannot be read.
std::string ReadTextFile(const std::filesystem::path& file);

/// Why a file could not be read, for people: the reason alone, without the file's name.
std::string ReasonOf(const orncore::config::ResultError& failure);

}  // namespace hosts::common

#endif  // HOSTS_COMMON_TEXTFILE_H_
