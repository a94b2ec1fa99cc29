#include "hosts/author/FileRewrite.h"

#include <cerrno>
#include <chrono>
#include <optional>
#include <system_error>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>

#include <orncore/config/TopLevel.h>

#include "hosts/common/FileDescriptor.h"
#include "hosts/common/FileLock.h"
#include "hosts/common/FileReplacement.h"
#include "hosts/common/PrivateFolder.h"
#include "hosts/common/TextFile.h"

namespace hosts::author {
namespace {

namespace fs = std::filesystem;

/// The maximum time to wait for another program that changes the same file.
constexpr std::chrono::seconds kPatience{5};

[[noreturn]] void Fail(int error, const std::string& problem) {
  throw std::system_error(error, std::generic_category(), problem);
}

std::string Quoted(const fs::path& file) {
  return "'" + file.native() + "'";
}

/// Returns the path of `file` without symbolic links. Throws if its folder does not exist, because
/// `PrivateFolder` would create the folder.
fs::path ResolvedPath(const fs::path& file) {
  fs::path resolved = common::ResolveLinks(fs::absolute(file));
  if (!fs::exists(resolved.parent_path())) {
    Fail(ENOENT, "cannot open the folder " + Quoted(resolved.parent_path()));
  }
  return resolved;
}

/// Opens the file `name`. Returns `std::nullopt` if it does not exist. Throws if it is not a
/// regular file, because a rename would replace a device such as /dev/null.
std::optional<common::FileDescriptor> OpenExisting(const common::PrivateFolder& folder,
                                                   const std::string& name) {
  struct stat status {};
  if (::fstatat(folder.Descriptor(), name.c_str(), &status, AT_SYMLINK_NOFOLLOW) != 0) {
    if (errno == ENOENT) return std::nullopt;
    common::ThrowSystemError("cannot open", folder.PathOf(name));
  }
  if (!S_ISREG(status.st_mode)) {
    Fail(S_ISDIR(status.st_mode) ? EISDIR : EINVAL,
         "cannot write " + Quoted(folder.PathOf(name)) + ", which is not a regular file");
  }
  return folder.Open(name, O_RDONLY);
}

std::string ReadBytes(const fs::path& file) {
  try {
    return common::ReadTextFile(file);
  } catch (const orncore::config::ResultError& error) {
    Fail(-error.Result(), "cannot open " + Quoted(file));
  }
}

[[noreturn]] void FailReplaced(const fs::path& file) {
  Fail(EBUSY, "cannot write " + Quoted(file) + ", which another program has replaced");
}

/// Locks the existing file `file` in `folder`.
common::FileLock Lock(const common::PrivateFolder& folder, const fs::path& file) {
  const std::string name = file.filename();
  for (;;) {
    // Check that the file exists, because `Acquire` would create it.
    if (!OpenExisting(folder, name)) Fail(ENOENT, "cannot open " + Quoted(file));
    auto lock = common::FileLock::Acquire(folder, name, kPatience);
    if (!lock) Fail(EBUSY, "cannot write " + Quoted(file) + ", which another program is changing");
    // The program that held the lock before may have replaced the file. If so, lock the new file.
    if (lock->IsInPlace()) return *std::move(lock);
  }
}

}  // namespace

void WriteWholeFile(const fs::path& file, std::string_view bytes) {
  const fs::path resolved = ResolvedPath(file);
  const common::PrivateFolder folder(resolved.parent_path());
  const std::string name = resolved.filename();
  if (OpenExisting(folder, name)) {
    return ChangeWholeFile(file, [bytes](std::string_view) { return std::string(bytes); });
  }
  const common::FileReplacement replacement(folder, name, common::TemporaryName::kUnique);
  replacement.SetModeOfNewFiles();
  replacement.Write(bytes);
  if (!replacement.Commit()) FailReplaced(resolved);
}

void ChangeWholeFile(const fs::path& file,
                     const std::function<std::string(std::string_view)>& change) {
  const fs::path resolved = ResolvedPath(file);
  const common::PrivateFolder folder(resolved.parent_path());
  const common::FileLock lock = Lock(folder, resolved);
  const std::string name = resolved.filename();
  const common::FileDescriptor opened = folder.Open(name, O_RDONLY);
  const common::FileReplacement replacement(folder, name, common::TemporaryName::kUnique);
  const std::string changed = change(ReadBytes(resolved));
  replacement.CopyModeAndOwner(opened);
  replacement.Write(changed);
  if (!lock.IsInPlace()) FailReplaced(resolved);
  // Ignore whether the new file is still in place. As soon as the rename has succeeded, another
  // program may lock the new file and replace it.
  static_cast<void>(replacement.Commit());
}

void ReplaceWholeFile(const fs::path& file, std::string_view before, std::string_view after) {
  ChangeWholeFile(file, [&](std::string_view bytes) {
    if (bytes != before) {
      Fail(EBUSY, "cannot write " + Quoted(file) + ", which another program has changed");
    }
    return std::string(after);
  });
}

}  // namespace hosts::author
