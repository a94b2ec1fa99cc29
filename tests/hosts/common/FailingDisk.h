// A disk that fails when it is told to. It stands between the database engine and the system, as
// one of the engine's own file systems, and hands on everything but the operations that are to
// fail.
#ifndef TESTS_HOSTS_COMMON_FAILINGDISK_H_
#define TESTS_HOSTS_COMMON_FAILINGDISK_H_

#include <memory>

namespace hosts::common {

/// What is wrong with the disk.
enum class DiskFault {
  kFull,    ///< there is no room: writing and syncing fail, truncating and deleting do not
  kBroken,  ///< nothing works that alters a file or makes it last
};

/// For how long.
enum class DiskFaultExtent {
  kOnce,      ///< one operation fails
  kFromThen,  ///< that one and every one after it, until the disk is mended
};

/// While it lives, every database that this process opens lies on this disk. A write that fails has
/// written the first half of its bytes, as when the room ends in the middle; any other operation
/// that fails has done nothing. A sync that does not fail is only counted, since no power is cut.
///
/// One at a time, and one thread at a time. What was opened on it must be closed before it goes.
class FailingDisk {
 public:
  FailingDisk();
  ~FailingDisk();
  FailingDisk(const FailingDisk&) = delete;
  FailingDisk& operator=(const FailingDisk&) = delete;

  /// Of the operations that the fault concerns, the n-th from here on fails (1: the next).
  void FailAt(int n, DiskFault fault, DiskFaultExtent extent);

  /// From here on nothing fails.
  void Mend();

  /// How many operations have failed since `FailAt`.
  int Failures() const;

 private:
  class Layer;
  std::unique_ptr<Layer> layer_;
};

}  // namespace hosts::common

#endif  // TESTS_HOSTS_COMMON_FAILINGDISK_H_
