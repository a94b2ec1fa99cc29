// Opens folders, and files in them, without following symbolic links. New files and folders are
// private to the user.
#ifndef HOSTS_COMMON_PRIVATEFOLDER_H_
#define HOSTS_COMMON_PRIVATEFOLDER_H_

#include <filesystem>
#include <string>
#include <string_view>

#include <sys/types.h>

#include "hosts/common/FileDescriptor.h"

namespace hosts::common {

/// Throws `std::system_error` for the error in `errno`. The message is `problem`, the quoted path
/// and the system's reason, for example "cannot open '/a/b': Permission denied".
[[noreturn]] void ThrowSystemError(std::string_view problem, const std::filesystem::path& file);

/// Resolves the symbolic links in the absolute path `file`, and returns the result. If `file` is
/// itself a link, returns the path of the file to which the link points. The file and its folder
/// need not exist. Throws `std::system_error` if a link or a folder cannot be resolved, or if ".."
/// follows a missing folder or a file. Also throws it if the path is empty or ends with "/", or if
/// its last component is "." or "..".
std::filesystem::path ResolveLinks(std::filesystem::path file);

/// Returns the umask of the process. The system has no call that only reads the umask, so the
/// function sets it to 077 for a moment.
mode_t ReadUmask();

/// An open folder. All operations refer to the folder that was opened, even if another program
/// moves it or replaces a part of its path. No operation follows symbolic links. All operations
/// except `IsNameOf` throw `std::system_error` on failure.
class PrivateFolder {
 public:
  /// Opens the folder `path`, an absolute path without symbolic links. Creates missing folders with
  /// the mode 0700, regardless of the umask. Does not change existing folders. Sets the umask of
  /// the process to 077 while it creates a folder.
  explicit PrivateFolder(std::filesystem::path path);

  /// Returns the path of the file `name` in this folder, for messages.
  std::filesystem::path PathOf(const std::string& name) const { return path_ / name; }

  /// Returns the file descriptor of the folder.
  int Descriptor() const noexcept { return folder_.Number(); }

  /// Opens the file `name` with the `flags` of open(2). Does not wait if it is a FIFO. If the
  /// flags include O_CREAT, a new file has the mode 0600, regardless of the umask. Sets the umask
  /// of the process to 077 during the call.
  FileDescriptor Open(const std::string& name, int flags) const;

  /// Returns whether `name` is a name of the open file `file`. Returns false if `name` is a
  /// symbolic link to this file, or if a system call fails.
  bool IsNameOf(const std::string& name, const FileDescriptor& file) const;

  /// Waits until all changes to the entries of this folder are on the disk. Does nothing if the
  /// file system cannot sync folders.
  void Sync() const;

 private:
  std::filesystem::path path_;
  FileDescriptor folder_;
};

}  // namespace hosts::common

#endif  // HOSTS_COMMON_PRIVATEFOLDER_H_
