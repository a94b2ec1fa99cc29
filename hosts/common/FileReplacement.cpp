#include "hosts/common/FileReplacement.h"

#include <cerrno>
#include <cstdio>
#include <random>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace hosts::common {
namespace {

std::string NameOfTemporaryFile(const std::string& name, TemporaryName temporaryName) {
  if (temporaryName == TemporaryName::kFixed) return name + ".tmp";
  return "ornwhatsnew-" + std::to_string(std::random_device()()) + ".tmp";
}

/// Creates the file `name`. If `temporaryName` is `kFixed`, first deletes an existing file with
/// this name. Does not truncate that file instead, because the name may be a link to a file that
/// the user needs.
FileDescriptor CreateTemporaryFile(const PrivateFolder& folder, const std::string& name,
                                   TemporaryName temporaryName) {
  const bool isFixed = temporaryName == TemporaryName::kFixed;
  if (isFixed && ::unlinkat(folder.Descriptor(), name.c_str(), 0) != 0 && errno != ENOENT) {
    ThrowSystemError("cannot delete", folder.PathOf(name));
  }
  return folder.Open(name, O_WRONLY | O_CREAT | O_EXCL);
}

}  // namespace

FileReplacement::FileReplacement(const PrivateFolder& folder, const std::string& name,
                                 TemporaryName temporaryName)
    : folder_(folder),
      name_(name),
      temporaryName_(NameOfTemporaryFile(name, temporaryName)),
      file_(CreateTemporaryFile(folder_, temporaryName_, temporaryName)) {}

FileReplacement::~FileReplacement() {
  // Check that the name still belongs to the temporary file of this object. If another program has
  // deleted the lock file, a third program may be writing its own temporary file under the same
  // name.
  if (folder_.IsNameOf(temporaryName_, file_)) {
    ::unlinkat(folder_.Descriptor(), temporaryName_.c_str(), 0);
  }
}

void FileReplacement::CopyModeAndOwner(const FileDescriptor& replaced) const {
  struct stat from {};
  struct stat to {};
  if (::fstat(replaced.Number(), &from) != 0 || ::fstat(file_.Number(), &to) != 0) {
    ThrowSystemError("cannot read the mode of", folder_.PathOf(name_));
  }
  // Check the permission to write to the file, because a rename does not need it. A user who
  // withdraws this permission expects that the file does not change.
  if (::faccessat(folder_.Descriptor(), name_.c_str(), W_OK, AT_EACCESS) != 0) {
    ThrowSystemError("cannot write", folder_.PathOf(name_));
  }
  constexpr auto kUnchanged = static_cast<uid_t>(-1);
  const bool hasGroup =
      from.st_gid == to.st_gid || ::fchown(file_.Number(), kUnchanged, from.st_gid) == 0;
  const mode_t mode = from.st_mode & (hasGroup ? 0777U : 0707U);
  if (::fchmod(file_.Number(), mode) != 0) {
    ThrowSystemError("cannot set the mode of", folder_.PathOf(temporaryName_));
  }
  // Ignore a failure, because only root can set the owner. For any other user, the new file belongs
  // to that user.
  if (from.st_uid != to.st_uid) {
    static_cast<void>(::fchown(file_.Number(), from.st_uid, static_cast<gid_t>(-1)));
  }
}

void FileReplacement::SetModeOfNewFiles() const {
  if (::fchmod(file_.Number(), 0666U & ~ReadUmask()) != 0) {
    ThrowSystemError("cannot set the mode of", folder_.PathOf(temporaryName_));
  }
}

void FileReplacement::Write(std::string_view bytes) const {
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

bool FileReplacement::Commit() const {
  const int folder = folder_.Descriptor();
  if (::renameat(folder, temporaryName_.c_str(), folder, name_.c_str()) != 0) {
    ThrowSystemError("cannot replace", folder_.PathOf(name_));
  }
  folder_.Sync();
  return folder_.IsNameOf(name_, file_);
}

}  // namespace hosts::common
