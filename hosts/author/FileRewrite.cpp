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

std::string QuotedPath(const fs::path& file) {
  return "'" + file.native() + "'";
}

/// Returns the result of `step`. If `step` throws `std::system_error`, throws a new exception with
/// the same code and with a message that begins with `problem` and `file`. The original message
/// contains the absolute path of the file, its folder or its temporary file, but authors expect the
/// path that they wrote.
template <class Step>
auto WithNamedPath(std::string_view problem, const fs::path& file, const Step& step) {
  try {
    return step();
  } catch (const std::system_error& error) {
    Fail(error.code().value(), std::string(problem) + " " + QuotedPath(file));
  }
}

/// Returns the absolute path of `file` without symbolic links. Throws if `file` is empty or if
/// `ResolveLinks` throws. Also throws if the folder does not exist, because `PrivateFolder` would
/// create it.
fs::path ResolvedPath(const fs::path& file) {
  if (file.empty()) Fail(ENOENT, "cannot open ''");
  fs::path resolved = WithNamedPath("cannot open", file,
                                    [&file] { return common::ResolveLinks(fs::absolute(file)); });
  std::error_code error;
  if (!fs::exists(resolved.parent_path(), error)) {
    Fail(error ? error.value() : ENOENT, "cannot open the folder of " + QuotedPath(file));
  }
  return resolved;
}

/// A file that an author names, and the open folder that contains it. Error messages contain the
/// path that the author wrote.
class AuthorFile {
 public:
  explicit AuthorFile(const fs::path& file) : AuthorFile(file, ResolvedPath(file)) {}

  const common::PrivateFolder& Folder() const { return folder_; }
  const std::string& Name() const { return name_; }

  /// Opens the file for reading. Returns `std::nullopt` if it does not exist. Throws if it cannot
  /// be opened, or if it is not a regular file, because a rename would replace a device such as
  /// /dev/null.
  std::optional<common::FileDescriptor> OpenExisting() const {
    struct stat status {};
    if (::fstatat(folder_.Descriptor(), name_.c_str(), &status, AT_SYMLINK_NOFOLLOW) != 0) {
      if (errno == ENOENT) return std::nullopt;
      Fail(errno, "cannot open " + QuotedPath(named_));
    }
    if (!S_ISREG(status.st_mode)) {
      Fail(S_ISDIR(status.st_mode) ? EISDIR : EINVAL,
           "cannot write " + QuotedPath(named_) + ", which is not a regular file");
    }
    return Open();
  }

  common::FileDescriptor Open() const {
    return WithNamedPath("cannot open", named_, [this] { return folder_.Open(name_, O_RDONLY); });
  }

  std::string ReadBytes() const {
    try {
      return common::ReadTextFile(folder_.PathOf(name_));
    } catch (const orncore::config::ResultError& error) {
      Fail(-error.Result(), "cannot open " + QuotedPath(named_));
    }
  }

  /// Locks the file. Throws if the file does not exist, is not a regular file, or cannot be opened
  /// or locked. Also throws if another program still holds the lock after `kPatience`.
  common::FileLock Lock() const {
    for (;;) {
      // Check that the file exists, because `Acquire` would create it.
      if (!OpenExisting()) Fail(ENOENT, "cannot open " + QuotedPath(named_));
      auto lock = WithNamedPath("cannot write", named_, [this] {
        return common::FileLock::Acquire(folder_, name_, kPatience);
      });
      if (!lock) {
        Fail(EBUSY, "cannot write " + QuotedPath(named_) + ", which another program is changing");
      }
      // The previous owner of the lock may have replaced the file. If so, lock the new file.
      if (lock->IsInPlace()) return *std::move(lock);
    }
  }

  [[noreturn]] void FailReplaced() const {
    Fail(EBUSY, "cannot write " + QuotedPath(named_) + ", which another program has replaced");
  }

 private:
  AuthorFile(const fs::path& file, const fs::path& resolved)
      : named_(file),
        folder_(WithNamedPath("cannot open the folder of", file,
                              [&] { return common::PrivateFolder(resolved.parent_path()); })),
        name_(resolved.filename()) {}

  fs::path named_;
  common::PrivateFolder folder_;
  std::string name_;
};

}  // namespace

void WriteWholeFile(const fs::path& file, std::string_view bytes) {
  const AuthorFile target(file);
  if (target.OpenExisting()) {
    return ChangeWholeFile(file, [bytes](std::string_view) { return std::string(bytes); });
  }
  const bool isInPlace = WithNamedPath("cannot write", file, [&] {
    const common::FileReplacement replacement(target.Folder(), target.Name(),
                                              common::TemporaryName::kUnique);
    replacement.SetModeOfNewFiles();
    replacement.Write(bytes);
    return replacement.Commit();
  });
  if (!isInPlace) target.FailReplaced();
}

void ChangeWholeFile(const fs::path& file,
                     const std::function<std::string(std::string_view)>& change) {
  const AuthorFile target(file);
  const common::FileLock lock = target.Lock();
  const common::FileDescriptor opened = target.Open();
  const std::string changed = change(target.ReadBytes());
  const bool isWritten = WithNamedPath("cannot write", file, [&] {
    const common::FileReplacement replacement(target.Folder(), target.Name(),
                                              common::TemporaryName::kUnique);
    replacement.CopyModeAndOwner(opened);
    replacement.Write(changed);
    if (!lock.IsInPlace()) return false;
    // Ignore whether the new file is still in place. As soon as the rename has succeeded, another
    // program may lock the new file and replace it.
    static_cast<void>(replacement.Commit());
    return true;
  });
  if (!isWritten) target.FailReplaced();
}

void ReplaceWholeFile(const fs::path& file, std::string_view before, std::string_view after) {
  ChangeWholeFile(file, [&](std::string_view bytes) {
    if (bytes != before) {
      Fail(EBUSY, "cannot write " + QuotedPath(file) + ", which another program has changed");
    }
    return std::string(after);
  });
}

}  // namespace hosts::author
