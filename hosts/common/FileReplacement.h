// Replaces a file atomically. Readers find either the complete old content or the complete new
// content, even after a power failure.
#ifndef HOSTS_COMMON_FILEREPLACEMENT_H_
#define HOSTS_COMMON_FILEREPLACEMENT_H_

#include <string>
#include <string_view>

#include "hosts/common/FileDescriptor.h"
#include "hosts/common/PrivateFolder.h"

namespace hosts::common {

/// The name of the temporary file.
enum class TemporaryName {
  /// The name of the file followed by ".tmp". The replacement deletes an existing file with this
  /// name, because a killed program may have left it behind. Only one replacement of a file may
  /// exist at a time; use a `FileLock`.
  kFixed,
  /// "ornwhatsnew-NUMBER.tmp" with a random number. Use this name in a folder with other files of
  /// the user, because one of them may have the fixed name. If the program is killed, the temporary
  /// file remains.
  kUnique,
};

/// The new content of a file. Until `Commit`, it is in a temporary file in the same folder. All
/// functions except the destructor throw `std::system_error` on failure.
class FileReplacement {
 public:
  /// Creates an empty temporary file for the file `name` in `folder`, which must outlive this
  /// object.
  FileReplacement(const PrivateFolder& folder, const std::string& name,
                  TemporaryName temporaryName = TemporaryName::kFixed);

  /// Deletes the temporary file. Does nothing if `Commit` has renamed this file, or if another
  /// program has replaced it.
  ~FileReplacement();
  FileReplacement(const FileReplacement&) = delete;
  FileReplacement& operator=(const FileReplacement&) = delete;

  /// Copies the permissions of `replaced`, the open file that `Commit` will replace, to the
  /// temporary file. Copies the group and the owner if the user may set them. If the group cannot
  /// be set, omits the permissions of the group. Throws if the user does not have permission to
  /// write to the file that `Commit` will replace.
  void CopyModeAndOwner(const FileDescriptor& replaced) const;

  /// Gives the temporary file the mode that the umask of the process allows for a new file. Without
  /// this call or `CopyModeAndOwner`, only the user can read the new file.
  void SetModeOfNewFiles() const;

  /// Writes `bytes` to the temporary file and waits until they are on the disk.
  void Write(std::string_view bytes) const;

  /// Renames the temporary file to the name of the file, and waits until the rename is on the disk.
  /// If only this wait fails, `Commit` throws although it has replaced the file. A power failure
  /// can then restore the old file. Returns false if the name then belongs to another file, because
  /// another program has replaced the temporary file or the new file.
  [[nodiscard]] bool Commit() const;

 private:
  const PrivateFolder& folder_;
  std::string name_;
  std::string temporaryName_;
  FileDescriptor file_;
};

}  // namespace hosts::common

#endif  // HOSTS_COMMON_FILEREPLACEMENT_H_
