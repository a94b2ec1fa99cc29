#include "hosts/common/FileLock.h"

#include <algorithm>
#include <cerrno>
#include <thread>

#include <fcntl.h>
#include <sys/file.h>

namespace hosts::common {
namespace {

/// The time between two attempts to lock the file. It is about as long as one write of the state
/// store to a local disk.
constexpr std::chrono::milliseconds kRetryInterval{5};

}  // namespace

std::optional<FileLock> FileLock::Acquire(const PrivateFolder& folder, const std::string& name,
                                          std::chrono::milliseconds patience) {
  using Clock = std::chrono::steady_clock;
  const Clock::time_point deadline = Clock::now() + patience;
  FileLock lock(folder, name);
  while (!lock.TryLock()) {
    const Clock::duration left = deadline - Clock::now();
    if (left <= Clock::duration::zero()) return std::nullopt;
    std::this_thread::sleep_for(std::min<Clock::duration>(left, kRetryInterval));
  }
  return lock;
}

bool FileLock::IsInPlace() const {
  return folder_->IsNameOf(name_, file_);
}

FileLock::FileLock(const PrivateFolder& folder, const std::string& name)
    : folder_(&folder), name_(name), file_(folder.Open(name, O_RDWR | O_CREAT)) {}

bool FileLock::TryLock() const {
  const int result =
      RetryInterrupted([this] { return ::flock(file_.Number(), LOCK_EX | LOCK_NB); });
  if (result != 0 && errno != EWOULDBLOCK) ThrowSystemError("cannot lock", folder_->PathOf(name_));
  return result == 0;
}

}  // namespace hosts::common
