// Atomically writes files that authors name on a command line.
#ifndef HOSTS_AUTHOR_FILEREWRITE_H_
#define HOSTS_AUTHOR_FILEREWRITE_H_

#include <filesystem>
#include <functional>
#include <string>
#include <string_view>

namespace hosts::author {

// All functions in this header follow symbolic links. They keep the mode of an existing file as
// `FileReplacement::CopyModeAndOwner` does, and lock an existing file until they return. If another
// program still holds a lock on the file after 5 seconds, they fail. On failure, they throw
// `std::system_error` and leave the file unchanged. However, if only the sync of the folder fails,
// the file already has its new content. A killed program can leave the file
// "ornwhatsnew-NUMBER.tmp" in the folder.

/// Replaces the content of `file` with `bytes`. Creates the file if it does not exist.
void WriteWholeFile(const std::filesystem::path& file, std::string_view bytes);

/// Reads `file`, calls `change` with its bytes, and writes the result. Throws `std::system_error`
/// if the file does not exist, or if another program replaces it during the call. Exceptions from
/// `change` propagate, and the file is then unchanged.
void ChangeWholeFile(const std::filesystem::path& file,
                     const std::function<std::string(std::string_view)>& change);

/// Replaces the content of `file` with `after` if the content is `before`. Otherwise, another
/// program has changed the file, and the function throws `std::system_error`.
void ReplaceWholeFile(const std::filesystem::path& file, std::string_view before,
                      std::string_view after);

}  // namespace hosts::author

#endif  // HOSTS_AUTHOR_FILEREWRITE_H_
