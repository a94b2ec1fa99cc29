// Replaces a file as a whole. Readers find the old or the new content, even after a power failure.
#ifndef HOSTS_COMMON_FILEREPLACEMENT_H_
#define HOSTS_COMMON_FILEREPLACEMENT_H_

#include <string>
#include <string_view>

#include "hosts/common/FileDescriptor.h"
#include "hosts/common/PrivateFolder.h"

namespace hosts::common {

/// The new content of a file, which is in a temporary file next to it until `Commit`. The name of
/// the temporary file is the name of the file and ".tmp". Only one replacement of a file may exist
/// at a time; use a `FileLock`. All functions throw `std::system_error` on failure.
class FileReplacement {
 public:
  /// Creates an empty temporary file for the file `name` in `folder`, which must outlive this
  /// object. Deletes the temporary file of a program that was killed.
  FileReplacement(const PrivateFolder& folder, const std::string& name);

  /// Deletes the temporary file unless `Commit` has renamed it.
  ~FileReplacement();
  FileReplacement(const FileReplacement&) = delete;
  FileReplacement& operator=(const FileReplacement&) = delete;

  /// Writes `bytes` to the temporary file and waits until they are on the disk. The temporary file
  /// receives the mode of the file that it will replace and, if possible, its owner. Fails if the
  /// user must not write to that file.
  void Write(std::string_view bytes) const;

  /// Replaces the file and waits until the disk contains its new name. If only this wait fails, the
  /// file is replaced, but a power failure can restore the old one.
  void Commit();

 private:
  void KeepModeAndOwner() const;

  const PrivateFolder& folder_;
  std::string name_;
  std::string temporaryName_;
  FileDescriptor file_;
  bool isCommitted_ = false;
};

}  // namespace hosts::common

#endif  // HOSTS_COMMON_FILEREPLACEMENT_H_
