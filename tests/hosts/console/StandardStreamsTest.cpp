#include "hosts/console/StandardStreams.h"

#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>

#include <gtest/gtest.h>
#include <poll.h>
#include <sys/time.h>
#include <unistd.h>

namespace hosts::console {
namespace {

std::atomic<int> signals = 0;
std::atomic<int> writeEnd = -1;

/// Makes the pipe readable at the third signal. The signals before it only interrupt the wait.
extern "C" void WriteAtThirdSignal(int) {
  if (++signals == 3) static_cast<void>(::write(writeEnd, "x", 1) == 1);
}

TEST(StandardStreams, WaitingContinuesAfterASignal) {
  std::array<int, 2> ends{};
  ASSERT_EQ(0, ::pipe(ends.data()));
  writeEnd = ends[1];
  struct sigaction action {};
  action.sa_handler = WriteAtThirdSignal;
  struct sigaction before {};
  ASSERT_EQ(0, ::sigaction(SIGALRM, &action, &before));
  const itimerval everyMillisecond = {{0, 1000}, {0, 1000}};
  ASSERT_EQ(0, ::setitimer(ITIMER_REAL, &everyMillisecond, nullptr));

  EXPECT_TRUE(ShouldRepeat(EAGAIN, ends[0], POLLIN));
  EXPECT_GE(signals, 3);

  const itimerval never{};
  ASSERT_EQ(0, ::setitimer(ITIMER_REAL, &never, nullptr));
  ASSERT_EQ(0, ::sigaction(SIGALRM, &before, nullptr));
  for (const int end : ends) ::close(end);
}

}  // namespace
}  // namespace hosts::console
