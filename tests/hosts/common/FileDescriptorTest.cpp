#include "hosts/common/FileDescriptor.h"

#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <string_view>
#include <system_error>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/time.h>

namespace hosts::common {
namespace {

/// A pipe whose read end is non-blocking.
class Pipe {
 public:
  Pipe() {
    EXPECT_EQ(0, ::pipe2(ends_.data(), O_CLOEXEC));
    EXPECT_EQ(0, ::fcntl(ends_[0], F_SETFL, O_NONBLOCK));
  }
  ~Pipe() { ::close(ends_[0]); }
  Pipe(const Pipe&) = delete;
  Pipe& operator=(const Pipe&) = delete;

  void Write(std::string_view text) const {
    EXPECT_EQ(static_cast<ssize_t>(text.size()), ::write(ends_[1], text.data(), text.size()));
  }
  void CloseForWriting() const { ::close(ends_[1]); }

  int Input() const { return ends_[0]; }
  int Output() const { return ends_[1]; }

 private:
  std::array<int, 2> ends_{};
};

std::atomic<int> signals = 0;
std::atomic<int> writeEnd = -1;

/// Makes the pipe readable at the third signal. The first two signals only interrupt the wait.
extern "C" void WriteAtThirdSignal(int) {
  if (++signals == 3) static_cast<void>(::write(writeEnd, "x", 1) == 1);
}

TEST(FileDescriptor, WaitingContinuesAfterASignal) {
  const Pipe pipe;
  writeEnd = pipe.Output();
  struct sigaction action {};
  action.sa_handler = WriteAtThirdSignal;
  struct sigaction before {};
  ASSERT_EQ(0, ::sigaction(SIGALRM, &action, &before));
  const itimerval everyMillisecond = {{0, 1000}, {0, 1000}};
  ASSERT_EQ(0, ::setitimer(ITIMER_REAL, &everyMillisecond, nullptr));

  std::array<char, 2> bytes{};
  EXPECT_EQ(1, ReadSome(pipe.Input(), bytes));
  EXPECT_EQ('x', bytes[0]);
  EXPECT_GE(signals, 3);

  const itimerval never{};
  ASSERT_EQ(0, ::setitimer(ITIMER_REAL, &never, nullptr));
  ASSERT_EQ(0, ::sigaction(SIGALRM, &before, nullptr));
  pipe.CloseForWriting();
}

TEST(FileDescriptor, AnInterruptedCallIsRepeatedWithoutWaiting) {
  EXPECT_TRUE(ShouldRepeat(EINTR, -1, POLLIN));
}

TEST(FileDescriptor, ReadsToTheEndOfTheInput) {
  const Pipe pipe;
  pipe.Write("some bytes");
  pipe.CloseForWriting();
  EXPECT_EQ("some bytes", ReadToEnd(pipe.Input(), 10, "the pipe"));
  EXPECT_EQ("", ReadToEnd(pipe.Input(), 10, "the pipe"));
}

// The write end remains open, so another read would wait forever.
TEST(FileDescriptor, StopsReadingIfTheInputIsTooLong) {
  const Pipe pipe;
  pipe.Write("some bytes");
  EXPECT_EQ("some bytes", ReadToEnd(pipe.Input(), 9, "the pipe"));
  pipe.CloseForWriting();
}

TEST(FileDescriptor, NamesAnInputThatCannotBeRead) {
  try {
    ReadToEnd(-1, 10, "the input");
    FAIL() << "read from no file";
  } catch (const std::system_error& error) {
    EXPECT_EQ(EBADF, error.code().value());
    EXPECT_STREQ("cannot read the input: Bad file descriptor", error.what());
  }
}

}  // namespace
}  // namespace hosts::common
