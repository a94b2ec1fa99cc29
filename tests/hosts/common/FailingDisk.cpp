#include "tests/hosts/common/FailingDisk.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdarg>
#include <filesystem>
#include <stdexcept>
#include <system_error>
#include <utility>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace hosts::common {
namespace {

FailingDisk* currentDisk = nullptr;

/// Returns 0 if the failing disk lets the call to `function` succeed, or if there is no failing
/// disk. Otherwise, sets `errno` to the simulated error and returns -1.
int Check(std::string_view function, const std::string& path) {
  const int error = currentDisk == nullptr ? 0 : currentDisk->ErrorOf(function, path);
  if (error == 0) return 0;
  errno = error;
  return -1;
}

std::string PathOf(int file) {
  std::error_code ignored;
  return std::filesystem::read_symlink("/proc/self/fd/" + std::to_string(file), ignored);
}

int Check(std::string_view function, int file) {
  return currentDisk == nullptr ? 0 : Check(function, PathOf(file));
}

std::string CallOf(std::string_view function, const std::filesystem::path& file) {
  return std::string(function) + " " + file.filename().native();
}

bool NeedsSpace(std::string_view function) {
  static constexpr std::array<std::string_view, 5> kFunctions = {"mkdirat", "openat", "write",
                                                                 "fsync", "renameat"};
  return std::ranges::find(kFunctions, function) != kFunctions.end();
}

}  // namespace

FailingDisk::FailingDisk() {
  if (currentDisk != nullptr) throw std::logic_error("a FailingDisk exists already");
  currentDisk = this;
}

FailingDisk::~FailingDisk() {
  currentDisk = nullptr;
}

void FailingDisk::FailAt(int n, DiskFault fault, DiskFaultExtent extent) {
  calls_.clear();
  firstFailure_ = n;
  affectedCalls_ = 0;
  failures_ = 0;
  fault_ = fault;
  extent_ = extent;
}

void FailingDisk::RunBefore(std::string call, std::function<void()> action) {
  callWithAction_ = std::move(call);
  action_ = std::move(action);
}

void FailingDisk::RunActionBefore(const std::string& call) {
  if (isInAction_ || call != callWithAction_) return;
  isInAction_ = true;
  action_();
  isInAction_ = false;
}

int FailingDisk::ErrorOf(std::string_view function, const std::string& path) {
  const std::string call = CallOf(function, path);
  RunActionBefore(call);
  if (!MustFail(function)) {
    calls_.push_back(call);
    return 0;
  }
  ++failures_;
  return fault_ == DiskFault::kFull ? ENOSPC : EIO;
}

bool FailingDisk::MustFail(std::string_view function) {
  if (fault_ == DiskFault::kFull && !NeedsSpace(function)) return false;
  ++affectedCalls_;
  if (firstFailure_ == 0 || affectedCalls_ < firstFailure_) return false;
  return affectedCalls_ == firstFailure_ || extent_ == DiskFaultExtent::kFromThen;
}

}  // namespace hosts::common

// The following functions have the names and signatures of functions of the C library. The linker
// therefore uses them instead of the C library's functions in the whole test program.
// NOLINTBEGIN(readability-identifier-naming, readability-inconsistent-declaration-parameter-name)
using hosts::common::CallOf;
using hosts::common::Check;
using hosts::common::currentDisk;
using hosts::common::PathOf;

extern "C" {

int openat(int folder, const char* path, int flags, ...) {
  mode_t mode = 0;
  if ((flags & O_CREAT) != 0) {
    std::va_list arguments;
    va_start(arguments, flags);
    mode = va_arg(arguments, mode_t);
    va_end(arguments);
    if (Check("openat", path) != 0) return -1;
  }
  return static_cast<int>(::syscall(SYS_openat, folder, path, flags, mode));
}

int mkdirat(int folder, const char* path, mode_t mode) noexcept {
  if (Check("mkdirat", path) != 0) return -1;
  return static_cast<int>(::syscall(SYS_mkdirat, folder, path, mode));
}

ssize_t write(int file, const void* bytes, std::size_t count) {
  if (Check("write", file) == 0) return ::syscall(SYS_write, file, bytes, count);
  const int error = errno;
  ::syscall(SYS_write, file, bytes, count / 2);
  errno = error;
  return -1;
}

int fsync(int file) {
  return Check("fsync", file) != 0 ? -1 : static_cast<int>(::syscall(SYS_fsync, file));
}

int flock(int file, int operation) noexcept {
  // Locking a file does not change the file, so the failing disk neither records the call nor makes
  // the call fail.
  if (currentDisk != nullptr) currentDisk->RunActionBefore(CallOf("flock", PathOf(file)));
  return static_cast<int>(::syscall(SYS_flock, file, operation));
}

int fchmod(int file, mode_t mode) noexcept {
  return Check("fchmod", file) != 0 ? -1 : static_cast<int>(::syscall(SYS_fchmod, file, mode));
}

int fchown(int file, uid_t user, gid_t group) noexcept {
  if (Check("fchown", file) != 0) return -1;
  return static_cast<int>(::syscall(SYS_fchown, file, user, group));
}

int renameat(int oldFolder, const char* oldPath, int newFolder, const char* newPath) noexcept {
  if (Check("renameat", newPath) != 0) return -1;
  return static_cast<int>(::syscall(SYS_renameat2, oldFolder, oldPath, newFolder, newPath, 0));
}

int unlinkat(int folder, const char* path, int flags) noexcept {
  if (Check("unlinkat", path) != 0) return -1;
  return static_cast<int>(::syscall(SYS_unlinkat, folder, path, flags));
}

}  // extern "C"
// NOLINTEND(readability-identifier-naming, readability-inconsistent-declaration-parameter-name)
