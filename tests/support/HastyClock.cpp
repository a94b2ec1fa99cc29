#include "tests/support/HastyClock.h"

#include <atomic>
#include <ctime>

#include <sys/syscall.h>
#include <unistd.h>

namespace test_support {
namespace {

constexpr std::time_t kBetweenLooks = 25 * 60 * 60;

thread_local bool isHasty = false;
std::atomic<int> looks = 0;

}  // namespace

HastyClock::HastyClock() {
  looks = 0;
  isHasty = true;
}

HastyClock::~HastyClock() {
  isHasty = false;
}

void HastyClock::WaitForLooks(int count) const {
  for (int seen = looks; seen < count; seen = looks) looks.wait(seen);
}

}  // namespace test_support

// What every clock of the program asks, those of the C++ library too.
extern "C" __attribute__((visibility("default"))) int clock_gettime(clockid_t clock,
                                                                    timespec* now) noexcept {
  using test_support::looks;
  const long result = ::syscall(SYS_clock_gettime, clock, now);
  if (test_support::isHasty && clock == CLOCK_MONOTONIC && result == 0) {
    now->tv_sec += ++looks * test_support::kBetweenLooks;
    looks.notify_all();
  }
  return static_cast<int>(result);
}
