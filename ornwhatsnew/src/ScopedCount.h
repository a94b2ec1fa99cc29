// Counts running operations, for debug assertions.
#ifndef ORNWHATSNEW_SRC_SCOPEDCOUNT_H_
#define ORNWHATSNEW_SRC_SCOPEDCOUNT_H_

namespace ornwhatsnew {

/// Increments a counter in its constructor and decrements it in its destructor. The counter must
/// outlive the object.
class ScopedCount {
 public:
  explicit ScopedCount(int& count) : count_(count) { ++count_; }
  ~ScopedCount() { --count_; }
  ScopedCount(const ScopedCount&) = delete;
  ScopedCount& operator=(const ScopedCount&) = delete;

 private:
  int& count_;
};

}  // namespace ornwhatsnew

#endif  // ORNWHATSNEW_SRC_SCOPEDCOUNT_H_
