#include "hosts/common/PrivateFolder.h"

#include <mutex>
#include <system_error>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>

namespace hosts::common {
namespace {

namespace fs = std::filesystem;

/// The maximum number of links in a chain of symbolic links. Following a longer chain fails, as in
/// Linux.
constexpr int kMaximumLinks = 40;

/// Sets the umask of the process while the object exists, so that new files and folders have
/// exactly the modes 0600 and 0700. A umask such as 0277 would otherwise withhold the user's own
/// permissions. Changing the mode of a new folder afterwards would be unsafe, because another
/// program could replace the folder in the meantime.
class PrivateUmask {
 public:
  PrivateUmask() : lock_(mutex_), before_(::umask(077)) {}
  ~PrivateUmask() { ::umask(before_); }
  PrivateUmask(const PrivateUmask&) = delete;
  PrivateUmask& operator=(const PrivateUmask&) = delete;

  mode_t Before() const { return before_; }

 private:
  // Without the mutex, two threads could restore their umasks in the wrong order.
  static inline std::mutex mutex_;
  std::lock_guard<std::mutex> lock_;
  mode_t before_;
};

FileDescriptor OpenAt(int folder, const char* name, int flags) {
  return FileDescriptor(
      RetryInterrupted([&] { return ::openat(folder, name, flags | O_CLOEXEC | O_NOFOLLOW); }));
}

/// Opens `folder` again without O_PATH, because a descriptor that was opened with O_PATH cannot be
/// synced. `path` is only for the error message.
FileDescriptor Reopen(const FileDescriptor& folder, const fs::path& path) {
  FileDescriptor reopened = OpenAt(folder.Number(), ".", O_RDONLY | O_DIRECTORY);
  if (reopened.Number() < 0) ThrowSystemError("cannot open the folder", path);
  return reopened;
}

void SyncFolder(const FileDescriptor& folder, const fs::path& path) {
  const int result = RetryInterrupted([&] { return ::fsync(folder.Number()); });
  // Some network file systems cannot sync folders and return EINVAL.
  if (result != 0 && errno != EINVAL) ThrowSystemError("cannot sync the folder", path);
}

void Create(const FileDescriptor& parent, const fs::path& path) {
  {
    const PrivateUmask umask;
    const int result = ::mkdirat(parent.Number(), path.filename().c_str(), 0700);
    // Another program may have created the folder in the meantime.
    if (result != 0 && errno != EEXIST) ThrowSystemError("cannot create the folder", path);
  }
  SyncFolder(Reopen(parent, path.parent_path()), path.parent_path());
}

/// Opens the folder `path`, whose parent folder is open as `parent`. Creates it if it is missing.
FileDescriptor OpenOrCreate(const FileDescriptor& parent, const fs::path& path) {
  // O_PATH does not require permission to read the folder. Users can often enter a folder such as
  // /home without permission to read it.
  constexpr int kFlags = O_PATH | O_DIRECTORY;
  const std::string name = path.filename();
  FileDescriptor folder = OpenAt(parent.Number(), name.c_str(), kFlags);
  if (folder.Number() < 0 && errno == ENOENT) {
    Create(parent, path);
    folder = OpenAt(parent.Number(), name.c_str(), kFlags);
  }
  if (folder.Number() < 0) ThrowSystemError("cannot open the folder", path);
  return folder;
}

/// Opens the folder `path`, and creates missing folders. Opens each folder of the path relative to
/// its parent folder. If another program replaces a folder with a symbolic link, the function
/// therefore fails instead of following the link.
FileDescriptor OpenFolder(const fs::path& path) {
  fs::path opened = path.root_path();
  FileDescriptor folder = OpenAt(AT_FDCWD, opened.c_str(), O_PATH | O_DIRECTORY);
  if (folder.Number() < 0) ThrowSystemError("cannot open the folder", opened);
  for (const fs::path& name : path.relative_path()) {
    opened /= name;
    folder = OpenOrCreate(folder, opened);
  }
  return Reopen(folder, path);
}

std::error_code ErrorCode(int number) {
  return {number, std::generic_category()};
}

void ThrowIf(const std::error_code& error, const fs::path& file) {
  if (error) throw std::system_error(error, "cannot open '" + file.native() + "'");
}

/// Throws if a ".." in `file.parent_path()` does not follow an existing folder. The system cannot
/// open such a path, but `weakly_canonical` would remove the ".." and the name before it. A write
/// would then create a file that a read of the same path does not find.
void RequireFoldersBeforeParents(const fs::path& file) {
  fs::path path;
  for (const fs::path& name : file.parent_path()) {
    path /= name;
    std::error_code error;
    if (name == "..") static_cast<void>(fs::status(path, error));
    ThrowIf(error, file);
  }
}

}  // namespace

void ThrowSystemError(std::string_view problem, const fs::path& file) {
  const std::error_code error = ErrorCode(errno);
  throw std::system_error(error, std::string(problem) + " '" + file.native() + "'");
}

fs::path ResolveLinks(fs::path file) {
  std::error_code error;
  int links = 0;
  while (fs::is_symlink(fs::symlink_status(file, error))) {
    if (++links > kMaximumLinks) ThrowIf(ErrorCode(ELOOP), file);
    const fs::path target = fs::read_symlink(file, error);
    ThrowIf(error, file);
    file = file.parent_path() / target;
  }
  if (error != std::errc::no_such_file_or_directory) ThrowIf(error, file);
  const fs::path name = file.filename();
  if (name.empty() || name == "." || name == "..") ThrowIf(ErrorCode(EISDIR), file);
  RequireFoldersBeforeParents(file);
  const fs::path folder = fs::weakly_canonical(file.parent_path(), error);
  ThrowIf(error, file);
  return folder / name;
}

mode_t ReadUmask() {
  return PrivateUmask().Before();
}

PrivateFolder::PrivateFolder(fs::path path) : path_(std::move(path)), folder_(OpenFolder(path_)) {}

FileDescriptor PrivateFolder::Open(const std::string& name, int flags) const {
  const PrivateUmask umask;
  FileDescriptor file(RetryInterrupted([&] {
    return ::openat(Descriptor(), name.c_str(), flags | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK, 0600);
  }));
  if (file.Number() < 0) ThrowSystemError("cannot open", PathOf(name));
  return file;
}

bool PrivateFolder::IsNameOf(const std::string& name, const FileDescriptor& file) const {
  struct stat opened {};
  struct stat named {};
  return ::fstat(file.Number(), &opened) == 0 &&
         ::fstatat(Descriptor(), name.c_str(), &named, AT_SYMLINK_NOFOLLOW) == 0 &&
         opened.st_dev == named.st_dev && opened.st_ino == named.st_ino;
}

void PrivateFolder::Sync() const {
  SyncFolder(folder_, path_);
}

}  // namespace hosts::common
