#include "tests/hosts/common/FailingDisk.h"

#include <map>
#include <stdexcept>

#include <sqlite3.h>

namespace hosts::common {
namespace {

enum class Operation { kWrite, kSync, kTruncate, kDelete };

/// Counts disk operations and decides which ones fail.
class FaultPlan {
 public:
  FaultPlan() = default;
  FaultPlan(int n, DiskFault fault, DiskFaultExtent extent)
      : firstFailure_(n), fault_(fault), extent_(extent) {}

  /// Returns the error code of an operation that must fail, or SQLITE_OK for any other operation.
  int ErrorOf(Operation operation) {
    if (!Affects(operation)) return SQLITE_OK;
    ++operations_;
    const bool isBefore = firstFailure_ == 0 || operations_ < firstFailure_;
    const bool isAfter = operations_ > firstFailure_ && extent_ == DiskFaultExtent::kOnce;
    if (isBefore || isAfter) return SQLITE_OK;
    ++failures_;
    return fault_ == DiskFault::kFull ? SQLITE_FULL : BrokenDiskError(operation);
  }

  void Stop() { firstFailure_ = 0; }

  int Failures() const { return failures_; }

 private:
  bool Affects(Operation operation) const {
    const bool needsSpace = operation == Operation::kWrite || operation == Operation::kSync;
    return needsSpace || fault_ == DiskFault::kBroken;
  }

  static int BrokenDiskError(Operation operation) {
    switch (operation) {
      case Operation::kWrite:
        return SQLITE_IOERR_WRITE;
      case Operation::kSync:
        return SQLITE_IOERR_FSYNC;
      case Operation::kTruncate:
        return SQLITE_IOERR_TRUNCATE;
      case Operation::kDelete:
        return SQLITE_IOERR_DELETE;
    }
    return SQLITE_IOERR;
  }

  // The number of the first operation that fails. If it is 0, no operation fails.
  int firstFailure_ = 0;
  int operations_ = 0;
  int failures_ = 0;
  DiskFault fault_ = DiskFault::kFull;
  DiskFaultExtent extent_ = DiskFaultExtent::kOnce;
};

/// A table of SQLite's file operations. Some of them are replaced by functions that can fail.
/// `system` points to the system's original table.
struct LayeredMethods : sqlite3_io_methods {
  const sqlite3_io_methods* system = nullptr;
};

const sqlite3_io_methods& SystemMethods(const sqlite3_file* file) {
  return *static_cast<const LayeredMethods*>(file->pMethods)->system;
}

}  // namespace

/// Implements the VFS. SQLite calls static functions, which find the object through `current_`.
/// Therefore only one object can exist.
class FailingDisk::Layer {
 public:
  Layer() : system_(sqlite3_vfs_find(nullptr)) {
    if (current_ != nullptr || system_ == nullptr)
      throw std::logic_error("a FailingDisk exists already, or SQLite has no VFS");
    layer_ = *system_;
    layer_.zName = "failing disk";
    layer_.pNext = nullptr;
    layer_.xOpen = Open;
    layer_.xDelete = Delete;
    if (sqlite3_vfs_register(&layer_, 1) != SQLITE_OK)
      throw std::runtime_error("cannot register the VFS");
    current_ = this;
  }

  ~Layer() {
    sqlite3_vfs_unregister(&layer_);
    current_ = nullptr;
  }

  Layer(const Layer&) = delete;
  Layer& operator=(const Layer&) = delete;

  FaultPlan& Plan() { return plan_; }

 private:
  static int Open(sqlite3_vfs*, sqlite3_filename name, sqlite3_file* file, int flags,
                  int* outFlags) {
    sqlite3_vfs* const system = current_->system_;
    const int result = system->xOpen(system, name, file, flags, outFlags);
    if (file->pMethods != nullptr) file->pMethods = &current_->Layered(*file->pMethods);
    return result;
  }

  static int Delete(sqlite3_vfs*, const char* name, int) {
    const int error = current_->plan_.ErrorOf(Operation::kDelete);
    return error == SQLITE_OK ? current_->system_->xDelete(current_->system_, name, 0) : error;
  }

  static int Write(sqlite3_file* file, const void* bytes, int count, sqlite3_int64 offset) {
    const int error = current_->plan_.ErrorOf(Operation::kWrite);
    const int length = error == SQLITE_OK ? count : count / 2;
    const int result = SystemMethods(file).xWrite(file, bytes, length, offset);
    return error == SQLITE_OK ? result : error;
  }

  static int Truncate(sqlite3_file* file, sqlite3_int64 size) {
    const int error = current_->plan_.ErrorOf(Operation::kTruncate);
    return error == SQLITE_OK ? SystemMethods(file).xTruncate(file, size) : error;
  }

  static int Sync(sqlite3_file*, int) { return current_->plan_.ErrorOf(Operation::kSync); }

  /// Returns a table that can replace the function table `system` of an open file. Creates it at
  /// the first call for this `system`.
  const LayeredMethods& Layered(const sqlite3_io_methods& system) {
    LayeredMethods& methods = methods_[&system];
    static_cast<sqlite3_io_methods&>(methods) = system;
    methods.system = &system;
    methods.xWrite = Write;
    methods.xTruncate = Truncate;
    methods.xSync = Sync;
    return methods;
  }

  static Layer* current_;

  sqlite3_vfs* system_;
  sqlite3_vfs layer_{};
  FaultPlan plan_;
  std::map<const sqlite3_io_methods*, LayeredMethods> methods_;
};

FailingDisk::Layer* FailingDisk::Layer::current_ = nullptr;

FailingDisk::FailingDisk() : layer_(std::make_unique<Layer>()) {}

FailingDisk::~FailingDisk() = default;

void FailingDisk::FailAt(int n, DiskFault fault, DiskFaultExtent extent) {
  layer_->Plan() = FaultPlan(n, fault, extent);
}

void FailingDisk::Repair() {
  layer_->Plan().Stop();
}

int FailingDisk::Failures() const {
  return layer_->Plan().Failures();
}

}  // namespace hosts::common
