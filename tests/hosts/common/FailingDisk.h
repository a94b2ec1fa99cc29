// Simulates a disk that fails. FailingDisk.cpp replaces the functions of the C library that change
// files. While a `FailingDisk` exists, it decides which calls to these functions fail. It records
// the other calls and passes them to the operating system.
#ifndef TESTS_HOSTS_COMMON_FAILINGDISK_H_
#define TESTS_HOSTS_COMMON_FAILINGDISK_H_

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace hosts::common {

/// The reason why calls fail.
enum class DiskFault {
  kFull,    ///< calls that need space fail; deletions and changes of mode or owner succeed
  kBroken,  ///< every call that changes or syncs a file fails
};

/// How many calls fail.
enum class DiskFaultExtent {
  kOnce,      ///< only one call fails
  kFromThen,  ///< one call and all later ones fail, until `Repair` is called
};

/// While an object of this class exists, all files of this process are on the failing disk. A write
/// that fails writes the first half of its bytes, as on a disk that becomes full. Any other call
/// that fails has no effect.
///
/// Only one object may exist at a time. Not thread-safe.
class FailingDisk {
 public:
  FailingDisk();
  ~FailingDisk();
  FailingDisk(const FailingDisk&) = delete;
  FailingDisk& operator=(const FailingDisk&) = delete;

  /// Makes the n-th of the following calls fail. If `n` is 1, the next call fails. Counts only
  /// calls that `fault` affects. `extent` decides whether later calls fail too. Deletes the record
  /// of earlier calls.
  void FailAt(int n, DiskFault fault, DiskFaultExtent extent);

  /// Makes all following calls succeed.
  void Repair() { firstFailure_ = 0; }

  /// Returns the number of calls that have failed since `FailAt`.
  int Failures() const { return failures_; }

  /// Returns the calls to functions that change or sync files, since construction or the last
  /// `FailAt`. Omits the calls that this object made fail. Each element consists of the name of the
  /// function and the name of the file without its folder, for example "fsync state.json". For a
  /// rename, the element contains the new name of the file.
  const std::vector<std::string>& Calls() const { return calls_; }

  /// Calls `action` before each following call that equals `call`. Tests use `action` to simulate
  /// another program at this moment. `call` has the form of an element of `Calls`, or is "flock"
  /// with the name of the locked file. Calls that `action` itself makes do not run `action` again.
  void RunBefore(std::string call, std::function<void()> action);

  /// Runs the action of the last `RunBefore` if `call` equals the call that was passed with the
  /// action. Does nothing while the action runs.
  void RunActionBefore(const std::string& call);

  /// Decides whether a call to `function` for the file `path` must fail. First runs the action that
  /// `RunBefore` set for this call. If the call must fail, returns the error number. Otherwise,
  /// records the call and returns 0.
  int ErrorOf(std::string_view function, const std::string& path);

 private:
  bool MustFail(std::string_view function);

  std::vector<std::string> calls_;
  // The number of the first affected call that fails. If it is 0, no call fails.
  int firstFailure_ = 0;
  int affectedCalls_ = 0;
  int failures_ = 0;
  DiskFault fault_ = DiskFault::kFull;
  DiskFaultExtent extent_ = DiskFaultExtent::kOnce;
  std::string callWithAction_;
  std::function<void()> action_;
  bool isInAction_ = false;
};

}  // namespace hosts::common

#endif  // TESTS_HOSTS_COMMON_FAILINGDISK_H_
