// Locks a file, so that the programs that write a shared file wait for each other.
#ifndef HOSTS_COMMON_FILELOCK_H_
#define HOSTS_COMMON_FILELOCK_H_

#include <chrono>
#include <optional>
#include <string>

#include "hosts/common/FileDescriptor.h"
#include "hosts/common/PrivateFolder.h"

namespace hosts::common {

/// An exclusive advisory lock on a file. It is released by the destructor, or when the process
/// ends. The class never reads, writes or deletes the file.
class FileLock {
 public:
  /// Locks the file `name` in `folder`, which must outlive the lock. Creates the file if it does
  /// not exist. Returns `std::nullopt` if another program still holds the lock after `patience`.
  /// Throws `std::system_error` if the file cannot be opened or locked.
  static std::optional<FileLock> Acquire(const PrivateFolder& folder, const std::string& name,
                                         std::chrono::milliseconds patience);

  /// Returns whether the name still refers to the locked file. If another program has deleted or
  /// replaced that file, the lock is useless, because a third program may have locked the new file.
  /// Returns false if a system call fails.
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
