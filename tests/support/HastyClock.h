// A day that passes at once, for waits that end only after hours.
#ifndef TESTS_SUPPORT_HASTYCLOCK_H_
#define TESTS_SUPPORT_HASTYCLOCK_H_

namespace test_support {

/// While it lives, the steady clock of the thread that made it goes on by 25 hours with every look
/// at it; the clocks of other threads are right. The system's `clock_gettime` is replaced for that
/// in programs that link this.
///
/// One at a time; made and destroyed on one thread.
class HastyClock {
 public:
  HastyClock();
  ~HastyClock();
  HastyClock(const HastyClock&) = delete;
  HastyClock& operator=(const HastyClock&) = delete;

  /// Waits until its thread has looked so often. For other threads.
  void WaitForLooks(int count) const;
};

}  // namespace test_support

#endif  // TESTS_SUPPORT_HASTYCLOCK_H_
