#include "hosts/common/StateFile.h"

#include <cerrno>
#include <sstream>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>

#include <orncore/config/TopLevel.h>

#include "hosts/common/FileDescriptor.h"
#include "hosts/common/FileLock.h"
#include "hosts/common/FileReplacement.h"
#include "hosts/common/PrivateFolder.h"
#include "hosts/common/StateFormat.h"
#include "hosts/common/TextFile.h"

namespace hosts::common {
namespace {

constexpr std::string_view kElsewhere = ", or name a file elsewhere with --state";

std::string Named(const std::filesystem::path& file) {
  return "the state store '" + file.native() + "'";
}

/// Returns advice for the user after a read or a write has failed with `error`.
std::string_view AdviceFor(const std::error_code& error) {
  if (error == std::errc::no_space_on_device || error.value() == EDQUOT) {
    return "free some space and try again";
  }
  if (error == std::errc::file_too_large) return "increase the file size limit and try again";
  if (error == std::errc::permission_denied || error == std::errc::operation_not_permitted) {
    return "check the permissions of the file and its folder";
  }
  if (error == std::errc::read_only_file_system) return "make the file system writable";
  if (error == std::errc::io_error) return "check the disk and try again";
  return "check the path and try again";
}

[[noreturn]] void FailReading(const std::filesystem::path& file, int error) {
  const auto refuse = [&file](const std::string& reason,
                              const std::string& advice = "move the file, or name another one") {
    throw StateStoreError("cannot use " + Named(file) + ": " + reason + "; " + advice +
                          " with --state");
  };
  if (error == EISDIR) refuse("it is a folder", "name a file");
  if (error == EOPNOTSUPP) refuse("it is not a regular file");
  if (error == EFBIG) refuse("it is larger than 64 MiB");
  const std::error_code code(error, std::generic_category());
  throw StateStoreError("cannot read " + Named(file) + ": " + code.message() + "; " +
                        std::string(AdviceFor(code)) + std::string(kElsewhere));
}

[[noreturn]] void FailWriting(const std::filesystem::path& file, const std::system_error& error) {
  throw StateStoreError("cannot write " + Named(file) + ": " + error.what() + "; " +
                        std::string(AdviceFor(error.code())) + std::string(kElsewhere));
}

std::string InSeconds(std::chrono::milliseconds time) {
  std::ostringstream text;
  text << std::chrono::duration<double>(time).count() << " s";
  return std::move(text).str();
}

FileLock LockFor(const PrivateFolder& folder, const std::filesystem::path& file,
                 std::chrono::milliseconds patience) {
  auto lock = FileLock::Acquire(folder, file.filename().native() + ".lock", patience);
  if (lock) return *std::move(lock);
  throw StateStoreError(
      "cannot lock " + Named(file) + " within " + InSeconds(patience) +
      ": another program has locked it; wait for that program or end it, and try again");
}

[[noreturn]] void FailReplaced(const std::filesystem::path& file, std::string_view replaced) {
  throw StateStoreError("cannot write " + Named(file) +
                        ": another program has deleted or replaced " + std::string(replaced) +
                        "; try again");
}

/// Opens the store `file`, which is in `folder`. Returns `std::nullopt` if it does not exist.
std::optional<FileDescriptor> OpenStore(const PrivateFolder& folder,
                                        const std::filesystem::path& file) {
  try {
    return folder.Open(file.filename(), O_RDONLY);
  } catch (const std::system_error& error) {
    const int number = error.code().value();
    if (number == ENOENT) return std::nullopt;
    // ENXIO means that the store is a socket. ELOOP means that another program has replaced the
    // store with a symbolic link.
    FailReading(file, number == ENXIO || number == ELOOP ? EOPNOTSUPP : number);
  }
}

/// Returns the values in the open store. The path `file` is only for messages, because another
/// program may have replaced the file or its folder.
StateValues ReadOpenStore(const FileDescriptor& store, const std::filesystem::path& file) {
  struct stat status {};
  if (::fstat(store.Number(), &status) != 0) FailReading(file, errno);
  if (S_ISDIR(status.st_mode)) FailReading(file, EISDIR);
  if (!S_ISREG(status.st_mode)) FailReading(file, EOPNOTSUPP);
  std::string text;
  try {
    text = ReadToEnd(store.Number(), kMaximumStateSize, Named(file));
  } catch (const std::system_error& error) {
    FailReading(file, error.code().value());
  }
  if (text.size() > kMaximumStateSize) FailReading(file, EFBIG);
  return ParseState(text, file);
}

/// Returns whether the name of the store still belongs to the file that was read. If there was no
/// file, returns whether there is still none.
bool IsStoreInPlace(const PrivateFolder& folder, const std::string& name,
                    const std::optional<FileDescriptor>& store) {
  if (store) return folder.IsNameOf(name, *store);
  struct stat status {};
  return ::fstatat(folder.Descriptor(), name.c_str(), &status, AT_SYMLINK_NOFOLLOW) != 0 &&
         errno == ENOENT;
}

/// Implements `ChangeStateFile` for a path without symbolic links.
StateValues ChangeResolved(const std::filesystem::path& file, std::chrono::milliseconds patience,
                           const std::function<void(StateValues&)>& change) {
  const PrivateFolder folder(file.parent_path());
  const FileLock lock = LockFor(folder, file, patience);
  const std::optional<FileDescriptor> store = OpenStore(folder, file);
  const StateValues before = store ? ReadOpenStore(*store, file) : StateValues();
  StateValues after = before;
  change(after);
  if (after == before) {
    // Sync the folder. The program that wrote these values may have been killed before it synced
    // the folder.
    folder.Sync();
    return after;
  }
  const FileReplacement replacement(folder, file.filename());
  if (store) replacement.CopyModeAndOwner(*store);
  replacement.Write(FormatState(after, file));
  if (!IsStoreInPlace(folder, file.filename(), store)) FailReplaced(file, "the file");
  if (!lock.IsInPlace()) FailReplaced(file, "its lock file");
  if (!replacement.Commit()) FailReplaced(file, "the file");
  // If another program has replaced the lock file, a third program may have read the old store and
  // could overwrite the new store.
  if (!lock.IsInPlace()) FailReplaced(file, "its lock file");
  return after;
}

}  // namespace

std::optional<StateValues> ReadStateFile(const std::filesystem::path& file) {
  try {
    return ParseState(ReadTextFile(file, kMaximumStateSize), file);
  } catch (const orncore::config::ResultError& error) {
    if (error.Result() == -ENOENT) return std::nullopt;
    FailReading(file, -error.Result());
  }
}

StateValues ChangeStateFile(const std::filesystem::path& file, std::chrono::milliseconds patience,
                            const std::function<void(StateValues&)>& change) {
  try {
    return ChangeResolved(ResolveLinks(file), patience, change);
  } catch (const std::system_error& error) {
    FailWriting(file, error);
  }
}

}  // namespace hosts::common
