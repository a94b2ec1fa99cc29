#include "tests/hosts/common/FailingDisk.h"

#include <map>
#include <stdexcept>

#include <sqlite3.h>

namespace hosts::common {
namespace {

enum class Operation { kWrite, kSync, kTruncate, kDelete };

/// What fails, and how far it has come.
class FaultPlan {
 public:
  FaultPlan() = default;
  FaultPlan(int n, DiskFault fault, DiskFaultExtent extent)
      : first_(n), fault_(fault), extent_(extent) {}

  /// What the operation is to answer; SQLITE_OK when it is to be done.
  int Answer(Operation operation) {
    if (!Concerns(operation)) return SQLITE_OK;
    ++operations_;
    const bool isBefore = first_ == 0 || operations_ < first_;
    const bool isAfter = operations_ > first_ && extent_ == DiskFaultExtent::kOnce;
    if (isBefore || isAfter) return SQLITE_OK;
    ++failures_;
    return fault_ == DiskFault::kFull ? SQLITE_FULL : AnswerWhenBroken(operation);
  }

  void Stop() { first_ = 0; }

  int Failures() const { return failures_; }

 private:
  bool Concerns(Operation operation) const {
    const bool needsRoom = operation == Operation::kWrite || operation == Operation::kSync;
    return needsRoom || fault_ == DiskFault::kBroken;
  }

  static int AnswerWhenBroken(Operation operation) {
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

  // 0: nothing fails.
  int first_ = 0;
  int operations_ = 0;
  int failures_ = 0;
  DiskFault fault_ = DiskFault::kFull;
  DiskFaultExtent extent_ = DiskFaultExtent::kOnce;
};

/// The functions of a kind of file, ours in front of the system's.
struct LayeredMethods : sqlite3_io_methods {
  const sqlite3_io_methods* system = nullptr;
};

const sqlite3_io_methods& SystemMethods(const sqlite3_file* file) {
  return *static_cast<const LayeredMethods*>(file->pMethods)->system;
}

}  // namespace

/// The engine calls plain functions, so that what they need is kept for the one disk there is.
class FailingDisk::Layer {
 public:
  Layer() : system_(sqlite3_vfs_find(nullptr)) {
    if (current_ != nullptr || system_ == nullptr) throw std::logic_error("no place for a disk");
    layer_ = *system_;
    layer_.zName = "failing disk";
    layer_.pNext = nullptr;
    layer_.xOpen = Open;
    layer_.xDelete = Delete;
    if (sqlite3_vfs_register(&layer_, 1) != SQLITE_OK) throw std::runtime_error("no disk");
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
    const int answer = current_->plan_.Answer(Operation::kDelete);
    return answer == SQLITE_OK ? current_->system_->xDelete(current_->system_, name, 0) : answer;
  }

  static int Write(sqlite3_file* file, const void* bytes, int count, sqlite3_int64 offset) {
    const int answer = current_->plan_.Answer(Operation::kWrite);
    const int room = answer == SQLITE_OK ? count : count / 2;
    const int result = SystemMethods(file).xWrite(file, bytes, room, offset);
    return answer == SQLITE_OK ? result : answer;
  }

  static int Truncate(sqlite3_file* file, sqlite3_int64 size) {
    const int answer = current_->plan_.Answer(Operation::kTruncate);
    return answer == SQLITE_OK ? SystemMethods(file).xTruncate(file, size) : answer;
  }

  static int Sync(sqlite3_file*, int) { return current_->plan_.Answer(Operation::kSync); }

  /// An open file stays the system's own; only the table of its functions is exchanged.
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

void FailingDisk::Mend() {
  layer_->Plan().Stop();
}

int FailingDisk::Failures() const {
  return layer_->Plan().Failures();
}

}  // namespace hosts::common
