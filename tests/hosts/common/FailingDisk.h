// Simulates a disk that fails. It is an SQLite VFS that forwards every operation to the system's
// VFS, except the operations that must fail.
#ifndef TESTS_HOSTS_COMMON_FAILINGDISK_H_
#define TESTS_HOSTS_COMMON_FAILINGDISK_H_

#include <memory>

namespace hosts::common {

/// The kind of failure.
enum class DiskFault {
  kFull,    ///< no space left: writes and syncs fail, truncation and deletion succeed
  kBroken,  ///< every operation that changes or syncs a file fails
};

/// The number of operations that fail.
enum class DiskFaultExtent {
  kOnce,      ///< one operation fails
  kFromThen,  ///< that operation and all later ones fail, until `Repair`
};

/// While an object of this class exists, every database that this process opens is on this disk. A
/// failing write writes the first half of its bytes, as on a disk that becomes full. Any other
/// failing operation does nothing. A sync that does not fail is only counted, because the tests do
/// not simulate power failures.
///
/// Only one object may exist at a time. Not thread-safe. Close all databases before the object is
/// destroyed.
class FailingDisk {
 public:
  FailingDisk();
  ~FailingDisk();
  FailingDisk(const FailingDisk&) = delete;
  FailingDisk& operator=(const FailingDisk&) = delete;

  /// Makes the n-th operation from now on fail; 1 is the next one. Counts only operations that the
  /// fault affects.
  void FailAt(int n, DiskFault fault, DiskFaultExtent extent);

  /// Stops all failures.
  void Repair();

  /// Returns the number of operations that have failed since `FailAt`.
  int Failures() const;

 private:
  class Layer;
  std::unique_ptr<Layer> layer_;
};

}  // namespace hosts::common

#endif  // TESTS_HOSTS_COMMON_FAILINGDISK_H_
