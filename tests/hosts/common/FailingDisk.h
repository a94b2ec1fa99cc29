// Simulates a disk that fails. An SQLite VFS forwards every operation to the system's VFS, except
// the operations that must fail.
#ifndef TESTS_HOSTS_COMMON_FAILINGDISK_H_
#define TESTS_HOSTS_COMMON_FAILINGDISK_H_

#include <memory>

namespace hosts::common {

/// The reason why disk operations fail.
enum class DiskFault {
  kFull,    ///< no space is left: writes and syncs fail, truncation and deletion succeed
  kBroken,  ///< every operation that changes or syncs a file fails
};

/// How many disk operations fail.
enum class DiskFaultExtent {
  kOnce,      ///< only one operation fails
  kFromThen,  ///< one operation and all later ones fail, until `Repair` is called
};

/// While an object of this class exists, every database that this process opens is on the failing
/// disk. A write that fails writes the first half of its bytes, as on a disk that becomes full. Any
/// other operation that fails does nothing. A sync that succeeds does nothing either, because the
/// tests do not simulate power failures.
///
/// Only one object may exist at a time. Not thread-safe. Close all databases before the object is
/// destroyed.
class FailingDisk {
 public:
  FailingDisk();
  ~FailingDisk();
  FailingDisk(const FailingDisk&) = delete;
  FailingDisk& operator=(const FailingDisk&) = delete;

  /// Makes the n-th of the following operations fail. If `n` is 1, the next operation fails. Counts
  /// only operations that `fault` affects. `extent` decides whether later operations fail too.
  void FailAt(int n, DiskFault fault, DiskFaultExtent extent);

  /// Makes all following operations succeed.
  void Repair();

  /// Returns the number of operations that have failed since `FailAt`.
  int Failures() const;

 private:
  class Layer;
  std::unique_ptr<Layer> layer_;
};

}  // namespace hosts::common

#endif  // TESTS_HOSTS_COMMON_FAILINGDISK_H_
