#include "hosts/common/FileReplacement.h"

#include <cerrno>
#include <cstdio>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace hosts::common {
namespace {

/// Creates the file `name`. If a file of this name exists, it is usually the temporary file of a
/// killed program. The function deletes the name instead of truncating the file, because the name
/// may be a link to another file.
FileDescriptor CreateAnew(const PrivateFolder& folder, const std::string& name) {
  if (::unlinkat(folder.Descriptor(), name.c_str(), 0) != 0 && errno != ENOENT) {
    ThrowSystemError("cannot delete", folder.PathOf(name));
  }
  return folder.Open(name, O_WRONLY | O_CREAT | O_EXCL);
}

}  // namespace

FileReplacement::FileReplacement(const PrivateFolder& folder, const std::string& name)
    : folder_(folder),
      name_(name),
      temporaryName_(name + ".tmp"),
      file_(CreateAnew(folder_, temporaryName_)) {}

FileReplacement::~FileReplacement() {
  if (!isCommitted_) ::unlinkat(folder_.Descriptor(), temporaryName_.c_str(), 0);
}

void FileReplacement::Write(std::string_view bytes) const {
  KeepModeAndOwner();
  while (!bytes.empty()) {
    const ssize_t count =
        RetryInterrupted([&] { return ::write(file_.Number(), bytes.data(), bytes.size()); });
    if (count < 0) ThrowSystemError("cannot write", folder_.PathOf(temporaryName_));
    bytes.remove_prefix(static_cast<std::size_t>(count));
  }
  // Without this sync, a power failure after the rename could leave an empty file.
  if (RetryInterrupted([this] { return ::fsync(file_.Number()); }) != 0) {
    ThrowSystemError("cannot sync", folder_.PathOf(temporaryName_));
  }
}

void FileReplacement::Commit() {
  const int folder = folder_.Descriptor();
  if (::renameat(folder, temporaryName_.c_str(), folder, name_.c_str()) != 0) {
    ThrowSystemError("cannot replace", folder_.PathOf(name_));
  }
  isCommitted_ = true;
  folder_.Sync();
}

void FileReplacement::KeepModeAndOwner() const {
  struct stat replaced {};
  if (::fstatat(folder_.Descriptor(), name_.c_str(), &replaced, AT_SYMLINK_NOFOLLOW) != 0) {
    if (errno == ENOENT) return;
    ThrowSystemError("cannot read the mode of", folder_.PathOf(name_));
  }
  // A rename needs no permission to write to the file. A user who removes this permission expects
  // the file not to change.
  if (::faccessat(folder_.Descriptor(), name_.c_str(), W_OK, AT_EACCESS) != 0) {
    ThrowSystemError("cannot write", folder_.PathOf(name_));
  }
  // Only root can change the owner of a file. If another user replaces the file, the new file
  // belongs to that user.
  if (::fchown(file_.Number(), replaced.st_uid, replaced.st_gid) != 0 && errno != EPERM) {
    ThrowSystemError("cannot set the owner of", folder_.PathOf(temporaryName_));
  }
  if (::fchmod(file_.Number(), replaced.st_mode & 0777U) != 0) {
    ThrowSystemError("cannot set the mode of", folder_.PathOf(temporaryName_));
  }
}

}  // namespace hosts::common
