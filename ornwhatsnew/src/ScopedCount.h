// Counts the running operations of a kind, for debug assertions.
#ifndef ORNWHATSNEW_SRC_SCOPEDCOUNT_H_
#define ORNWHATSNEW_SRC_SCOPEDCOUNT_H_

namespace ornwhatsnew {

/// Adds one to a count as long as the object lives. The count must outlive it.
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
