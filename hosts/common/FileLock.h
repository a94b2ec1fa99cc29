// Locks a file, so that the programs that write a shared file wait for each other.
#ifndef HOSTS_COMMON_FILELOCK_H_
#define HOSTS_COMMON_FILELOCK_H_

#include <chrono>
#include <optional>
#include <string>

#include "hosts/common/FileDescriptor.h"
#include "hosts/common/PrivateFolder.h"

namespace hosts::common {

/// An exclusive advisory lock on a lock file. The destructor releases it, and so does the end of
/// the process. The lock file is never read, written or deleted.
class FileLock {
 public:
  /// Locks the file `name` in `folder`, which must outlive the lock. Creates the file if it does
  /// not exist. Returns `std::nullopt` if another program still holds the lock after `patience`.
  /// Throws `std::system_error` if the file cannot be opened or locked.
  static std::optional<FileLock> Acquire(const PrivateFolder& folder, const std::string& name,
                                         std::chrono::milliseconds patience);

  /// Returns whether the locked file still has its name. If another program has deleted or replaced
  /// it, a third program may hold a lock on the new file.
  bool IsInPlace() const;

 private:
  FileLock(const PrivateFolder& folder, const std::string& name);
  bool TryLock() const;

  const PrivateFolder* folder_;
  std::string name_;
  FileDescriptor file_;
};

}  // namespace hosts::common

#endif  // HOSTS_COMMON_FILELOCK_H_
