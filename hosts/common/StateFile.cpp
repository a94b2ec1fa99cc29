#include "hosts/common/StateFile.h"

#include <cerrno>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>

#include <orncore/config/TopLevel.h>

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

[[noreturn]] void FailReading(const std::filesystem::path& file, int error) {
  const auto refuse = [&file](const std::string& reason) {
    throw StateStoreError("cannot use " + Named(file) + ": " + reason +
                          "; move the file, or name another one with --state");
  };
  if (error == EISDIR) refuse("it is a folder");
  if (error == EOPNOTSUPP) refuse("it is not a regular file");
  if (error == EFBIG) refuse("it is larger than 64 MiB");
  throw StateStoreError("cannot read " + Named(file) + ": " +
                        std::generic_category().message(error) +
                        "; allow reading the file and its folder" + std::string(kElsewhere));
}

/// Returns advice for the user after a write has failed with `error`.
std::string_view AdviceFor(const std::error_code& error) {
  if (error == std::errc::no_space_on_device || error == std::errc::file_too_large ||
      error.value() == EDQUOT) {
    return "free some space and try again";
  }
  if (error == std::errc::permission_denied || error == std::errc::operation_not_permitted ||
      error == std::errc::read_only_file_system) {
    return "allow writing to the file and its folder";
  }
  if (error == std::errc::io_error) return "check the disk and try again";
  return "check the path";
}

[[noreturn]] void FailWriting(const std::filesystem::path& file, const std::system_error& error) {
  throw StateStoreError("cannot write " + Named(file) + ": " + error.what() + "; " +
                        std::string(AdviceFor(error.code())) + std::string(kElsewhere));
}

std::string InSeconds(std::chrono::milliseconds time) {
  const auto tenths = (time.count() + 50) / 100;
  return std::to_string(tenths / 10) + (tenths % 10 == 0 ? "" : "." + std::to_string(tenths % 10)) +
         " s";
}

FileLock LockFor(const PrivateFolder& folder, const std::filesystem::path& file,
                 std::chrono::milliseconds patience) {
  auto lock = FileLock::Acquire(folder, file.filename().native() + ".lock", patience);
  if (lock) return *std::move(lock);
  throw StateStoreError(
      "cannot lock " + Named(file) + " within " + InSeconds(patience) +
      ": another program has locked it; wait for that program or end it, and try again");
}

/// Changes `file`, whose path contains no symbolic links.
StateValues ChangeResolved(const std::filesystem::path& file, std::chrono::milliseconds patience,
                           const std::function<void(StateValues&)>& change) {
  const PrivateFolder folder(file.parent_path());
  const FileLock lock = LockFor(folder, file, patience);
  const StateValues before = ReadStateFile(file).value_or(StateValues());
  StateValues after = before;
  change(after);
  if (after == before) {
    // Sync the folder, because the program that wrote these values may have been killed before it
    // did.
    folder.Sync();
    return after;
  }
  FileReplacement replacement(folder, file.filename());
  replacement.Write(FormatState(after, file));
  if (!lock.IsInPlace()) {
    throw StateStoreError("cannot write " + Named(file) +
                          ": another program has deleted or replaced its lock file; try again");
  }
  replacement.Commit();
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
