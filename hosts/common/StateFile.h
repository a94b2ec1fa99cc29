// Reads and changes the file of a `StateStore`.
#ifndef HOSTS_COMMON_STATEFILE_H_
#define HOSTS_COMMON_STATEFILE_H_

#include <chrono>
#include <filesystem>
#include <functional>
#include <optional>

#include "hosts/common/StateStore.h"

namespace hosts::common {

/// Returns the values in `file`, or `std::nullopt` if the file does not exist. Does not wait for
/// other programs and writes nothing. Throws `StateStoreError` if the file cannot be read, or if
/// `ParseState` rejects its content.
std::optional<StateValues> ReadStateFile(const std::filesystem::path& file);

/// Reads the values in `file`, an absolute path, and calls `change` to modify them. A missing file
/// has no values. If `change` has modified the values, creates or replaces the file. Returns the
/// new values. Creates missing folders. If `file` is a symbolic link, replaces the file to which
/// the link points.
///
/// While the function reads and writes, it holds a lock on a second file, whose name is the name of
/// the file followed by ".lock". Other programs wait for this lock before they write. The function
/// waits at most `patience` for this lock.
///
/// Throws `StateStoreError` on failure, and if another program replaces the file or the lock file
/// during the call. The file is then unchanged, with two exceptions. If only the sync of its folder
/// fails, the file already has its new content. If another program replaces the file or the lock
/// file during the rename, the content of the file is unspecified.
StateValues ChangeStateFile(const std::filesystem::path& file, std::chrono::milliseconds patience,
                            const std::function<void(StateValues&)>& change);

}  // namespace hosts::common

#endif  // HOSTS_COMMON_STATEFILE_H_
