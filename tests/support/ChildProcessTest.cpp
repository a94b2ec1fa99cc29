#include "tests/support/ChildProcess.h"

#include <array>
#include <cstddef>

#include <gtest/gtest.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace test_support {
namespace {

/// Makes the system end the calling process if the process calls `kill`. Returns whether the system
/// supports this.
bool ForbidKill() {
  std::array<sock_filter, 4> filter = {
      sock_filter BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
      sock_filter BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SYS_kill, 0, 1),
      sock_filter BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_KILL_PROCESS),
      sock_filter BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
  };
  const sock_fprog program = {filter.size(), filter.data()};
  return ::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 &&
         ::prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program) == 0;
}

// If `ChildProcess` called `kill` after `Wait`, it would end all processes of the user. The test
// therefore forbids calls to `kill`, and first checks that they are forbidden.
TEST(ChildProcess, SendsNoSignalAfterTheEndOfTheProgram) {
  if (!InChildProcess(&ForbidKill)) GTEST_SKIP() << "the system cannot forbid calls to kill";
  ASSERT_FALSE(InChildProcess([] { return ForbidKill() && ::kill(::getpid(), 0) == 0; }));
  EXPECT_TRUE(InChildProcess([] {
    ChildProcess program("/bin/true", {});
    const bool hasSucceeded = program.Wait().exitStatus == 0;
    if (!ForbidKill()) return false;
    program.Kill();
    program.Interrupt();
    return hasSucceeded;
  }));
}

}  // namespace
}  // namespace test_support
