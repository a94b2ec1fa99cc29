// Marks that something is under way in a list: a walk over its items, or a call of the host's.
#ifndef ORNWHATSNEW_SRC_COUNTEDSCOPE_H_
#define ORNWHATSNEW_SRC_COUNTEDSCOPE_H_

namespace ornwhatsnew {

/// Counts itself for as long as it lives.
class CountedScope {
 public:
  explicit CountedScope(int& count) : count_(count) { ++count_; }
  ~CountedScope() { --count_; }
  CountedScope(const CountedScope&) = delete;
  CountedScope& operator=(const CountedScope&) = delete;

 private:
  int& count_;
};

}  // namespace ornwhatsnew

#endif  // ORNWHATSNEW_SRC_COUNTEDSCOPE_H_
