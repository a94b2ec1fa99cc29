// Writes files that authors name on a command line, as a whole or not at all.
#ifndef HOSTS_AUTHOR_FILEREWRITE_H_
#define HOSTS_AUTHOR_FILEREWRITE_H_

#include <filesystem>
#include <functional>
#include <string>
#include <string_view>

namespace hosts::author {

/// Writes `bytes` to `file`. Replaces an existing file and keeps its mode. If `file` is a symbolic
/// link, writes the file that it leads to. On failure, throws `std::system_error`, and the file is
/// unchanged, unless only the sync of its folder has failed. While the function runs, the folder
/// contains a temporary file, whose name is the name of the file followed by ".tmp". The function
/// fails if a file with the temporary name already exists, because it may belong to the user.
void WriteWholeFile(const std::filesystem::path& file, std::string_view bytes);

/// Reads `file`, calls `change` with its bytes, and writes the result like `WriteWholeFile`. Locks
/// the file during the call, so that programs that call this function at the same time lose no
/// change. Throws `std::system_error` on failure, for example if the file does not exist, or if
/// another program replaces it during the call. An exception that `change` throws propagates, and
/// the file is then unchanged.
void ChangeWholeFile(const std::filesystem::path& file,
                     const std::function<std::string(std::string_view)>& change);

}  // namespace hosts::author

#endif  // HOSTS_AUTHOR_FILEREWRITE_H_
