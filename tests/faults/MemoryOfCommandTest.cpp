// Makes allocations fail while ValidateWhatsNew checks a data file. The failures occur on the
// console thread and on the thread that reads and parses the file. The command must end and report
// the failure, and the next command must succeed. A further test makes the registration of the
// command fail.
#include <array>
#include <cerrno>
#include <cstdlib>
#include <iostream>
#include <new>
#include <optional>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <orncore/config/InitializerRegistrar.h>
#include <orncore/console/CommandRegistry.h>
#include <orncore/debug/Log.h>
#include <orncore/filesupport/AsyncRead.h>
#include <orncore/string/Conversion.h>

#include "tests/faults/FaultWorld.h"
#include "tests/support/Allocations.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/TemporaryFolder.h"

namespace faults {
namespace {

using orncore::config::EInitializerContextFlags;
using orncore::console::CommandRegistry;
using test_support::AllocationFailure;
using test_support::FailureExtent;
using test_support::FailureThreads;
using test_support::LiveAllocations;

// The first command of a process makes at most this number of allocations before the reading thread
// starts.
constexpr std::size_t kAllocationsOfStart = 40;

// The environment variables that select the failing allocations in a child process.
constexpr char kFailAt[] = "FAULT_TESTS_FAIL_AT";
constexpr char kFailAll[] = "FAULT_TESTS_FAIL_ALL";

/// A stream buffer of fixed size. It does not allocate memory, so a failed allocation does not
/// affect the output.
class FixedStreamBuffer : public std::basic_streambuf<char16_t> {
 public:
  FixedStreamBuffer() { setp(units_.data(), units_.data() + units_.size()); }

  std::string Text() const {
    return orncore::string::UTF16to8({pbase(), static_cast<std::size_t>(pptr() - pbase())});
  }

 private:
  std::array<char16_t, 4096> units_{};
};

/// The results of one execution of the command.
struct Execution {
  std::optional<int> result;
  bool hasThrown = false;
  std::string output;
  int loggedLines = 0;
  bool hasFailed = false;
};

class MemoryOfCommandTest : public FaultTest {
 protected:
  MemoryOfCommandTest() {
    orncore::config::InitializeContexts(EInitializerContextFlags::kConsole);
    orncore::debug::SetLogSink([this](std::string_view) { ++loggedLines_; });
    file_ = folder_.Write("a data file whose name is long.csv", LoadedData());
    line_ = orncore::string::UTF8to16("ValidateWhatsNew " + file_);
  }
  ~MemoryOfCommandTest() override {
    orncore::config::ShutdownContexts(EInitializerContextFlags::kConsole);
  }

  void SetUp() override {
    if (!test_support::AreAllocationsReplaced()) GTEST_SKIP() << "another allocator is in use";
  }

  /// Runs the command and makes the n-th allocation fail. Counts the allocations of all threads.
  /// With `kAllFrom`, all later allocations also fail. If `n` is 0, no allocation fails.
  Execution Validate(std::size_t n, FailureExtent extent) {
    FixedStreamBuffer buffer;
    std::basic_ostream<char16_t> stream(&buffer);
    Execution execution;
    loggedLines_ = 0;
    // If the command never returns, SIGALRM ends this process, so that the test run can continue.
    ::alarm(60);
    {
      AllocationFailure failure(n, extent, FailureThreads::kAll);
      try {
        execution.result = CommandRegistry::Instance().RunLine(line_, stream);
      } catch (const std::bad_alloc&) {
        execution.hasThrown = true;
      }
      execution.hasFailed = failure.HasHappened();
    }
    ::alarm(0);
    execution.output = buffer.Text();
    execution.loggedLines = loggedLines_;
    return execution;
  }

  /// Runs the command without failures and expects that it succeeds.
  void ExpectSuccess() {
    const Execution execution = Validate(0, FailureExtent::kOne);
    EXPECT_EQ(execution.result, 0);
    EXPECT_EQ(execution.output, "Reading What's New file at \"" + file_ + "\" finished\n");
    EXPECT_EQ(execution.loggedLines, 0);
  }

  /// Expects that the registry threw, or that the command printed or logged its failure.
  void ExpectReported(const Execution& execution) const {
    if (execution.hasThrown) {
      // Only the registry can throw, when it copies the argument text before it calls the command.
      // The command reports its failures and does not throw.
      EXPECT_EQ(execution.output, "");
      return;
    }
    EXPECT_EQ(execution.result, 0);
    const bool isPrinted = execution.output == "Failed to read What's New file at \"" + file_ +
                                                   "\" with result: " + std::to_string(-ENOMEM) +
                                                   "\n";
    EXPECT_TRUE(isPrinted || execution.output.empty()) << execution.output;
    EXPECT_TRUE(isPrinted || execution.loggedLines > 0)
        << "the failure was neither printed nor logged";
  }

  /// Waits until the reading thread has ended, because the thread may free memory after the command
  /// has returned. Returns the number of live allocations.
  static std::ptrdiff_t LiveAllocationsWithoutThread() {
    orncore::filesupport::GetDefaultExecutor().Join();
    return LiveAllocations();
  }

  test_support::TemporaryFolder folder_;
  std::string file_;
  std::u16string line_;
  int loggedLines_ = 0;
};

TEST_F(MemoryOfCommandTest, ReportsAFailureAndWorksAgain) {
  { SCOPED_TRACE("GoogleTest keeps the memory of its first trace"); }
  ExpectSuccess();
  const std::ptrdiff_t before = LiveAllocationsWithoutThread();
  for (const FailureExtent extent : {FailureExtent::kOne, FailureExtent::kAllFrom}) {
    bool hasFailed = true;
    std::size_t n = 0;
    while (hasFailed && !HasFailure()) {
      ++n;
      const Execution execution = Validate(n, extent);
      hasFailed = execution.hasFailed;
      SCOPED_TRACE(testing::Message()
                   << "allocation " << n
                   << (extent == FailureExtent::kOne ? "" : " and all later ones"));
      if (hasFailed) ExpectReported(execution);
      ExpectSuccess();
    }
    std::cout << n - 1 << " allocations failed in turn\n";
  }
  EXPECT_EQ(LiveAllocationsWithoutThread(), before) << "memory leaked";
}

TEST_F(MemoryOfCommandTest, LogsTheNameOfTheInitializerThatCannotRegisterTheCommand) {
  orncore::config::ShutdownContexts(EInitializerContextFlags::kConsole);
  std::vector<std::string> log;
  orncore::debug::SetLogSink([&log](std::string_view line) { log.emplace_back(line); });
  {
    const AllocationFailure failure(1, FailureExtent::kOne, FailureThreads::kThis);
    EXPECT_FALSE(orncore::config::InitializeContexts(EInitializerContextFlags::kConsole));
  }
  orncore::debug::SetLogSink({});
  EXPECT_THAT(log, testing::Contains("initializer \"ornwhatsnew.FeatureListData\" failed"));
}

// The first command of a process starts the reading thread. Therefore
// ReportsAFailureOfTheFirstCommandInAProcess runs this test in new processes.
TEST_F(MemoryOfCommandTest, DISABLED_OneFirstCommand) {
  const std::size_t n = std::strtoul(std::getenv(kFailAt), nullptr, 10);
  const bool isAll = std::getenv(kFailAll) != nullptr;
  const Execution execution = Validate(n, isAll ? FailureExtent::kAllFrom : FailureExtent::kOne);
  if (execution.hasFailed) {
    ExpectReported(execution);
    std::cout << "an allocation failed\n";
  }
  ExpectSuccess();
}

TEST_F(MemoryOfCommandTest, ReportsAFailureOfTheFirstCommandInAProcess) {
  for (const bool isAll : {false, true}) {
    test_support::ProgramResult result;
    std::size_t n = 0;
    int processes = 0;
    do {
      // Make each of the first `kAllocationsOfStart` allocations fail in turn. Of the later
      // allocations, test only every seventh, because they are the same in every command.
      // ReportsAFailureAndWorksAgain makes each of them fail.
      n += n < kAllocationsOfStart ? 1 : 7;
      ++processes;
      test_support::ProgramCall call;
      call.arguments = {"--gtest_filter=*DISABLED_OneFirstCommand",
                        "--gtest_also_run_disabled_tests"};
      call.environment = {{kFailAt, std::to_string(n)}};
      if (isAll) call.environment[kFailAll] = "1";
      result = test_support::RunProgram("/proc/self/exe", call);
      EXPECT_EQ(result.exitStatus, 0) << "allocation " << n << '\n'
                                      << result.output << result.errors;
      EXPECT_NE(result.output.find("[  PASSED  ] 1 test."), std::string::npos)
          << "the process ran no test\n"
          << result.output;
    } while (!HasFailure() && result.output.find("an allocation failed") != std::string::npos);
    EXPECT_GT(processes, 10) << "the first command must make more allocations";
  }
}

}  // namespace
}  // namespace faults
