// Memory that runs out while a data file is checked: on the console's thread, and on the one that
// reads the file and parses it. The command says or logs that it failed and comes back; the next
// one works.
#include <array>
#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <iostream>
#include <new>
#include <optional>
#include <string>
#include <thread>
#include <utility>

#include <gtest/gtest.h>
#include <unistd.h>

#include <orncore/config/InitializerRegistrar.h>
#include <orncore/console/CommandRegistry.h>
#include <orncore/debug/Log.h>
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

// Up to four buffers stay for the next reading, and the queue of the reading thread keeps a piece.
constexpr std::ptrdiff_t kKeptForLater = 5;

constexpr std::size_t kAllocationsOfStart = 40;

constexpr char kFailAt[] = "FAULT_TESTS_FAIL_AT";
constexpr char kFailAll[] = "FAULT_TESTS_FAIL_ALL";

/// A console that needs no memory of its own.
class FixedStreamBuffer : public std::basic_streambuf<char16_t> {
 public:
  FixedStreamBuffer() { setp(units_.data(), units_.data() + units_.size()); }

  std::string Text() const {
    return orncore::string::UTF16to8({pbase(), static_cast<std::size_t>(pptr() - pbase())});
  }

 private:
  std::array<char16_t, 4096> units_{};
};

/// How one execution went.
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
    if (!test_support::AreAllocationsReplaced()) GTEST_SKIP() << "another allocator is in place";
  }

  /// Runs the command while the n-th allocation of any thread fails; 0: none.
  Execution Validate(std::size_t n, FailureExtent extent) {
    FixedStreamBuffer buffer;
    std::basic_ostream<char16_t> stream(&buffer);
    Execution execution;
    loggedLines_ = 0;
    // A wait that never ends shall not take the whole test run with it.
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

  void ExpectFinished() {
    const Execution execution = Validate(0, FailureExtent::kOne);
    EXPECT_EQ(execution.result, 0);
    EXPECT_EQ(execution.output, "Reading What's New file at \"" + file_ + "\" finished\n");
    EXPECT_EQ(execution.loggedLines, 0);
  }

  /// The failure came out in one of the ways that there are.
  void ExpectSaidOrLogged(const Execution& execution) const {
    if (execution.hasThrown) {
      // The registry's copy of the argument, before the command is reached.
      EXPECT_EQ(execution.output, "");
      return;
    }
    EXPECT_EQ(execution.result, 0);
    const bool isSaid = execution.output == "Failed to read What's New file at \"" + file_ +
                                                "\" with result: " + std::to_string(-ENOMEM) + "\n";
    EXPECT_TRUE(isSaid || execution.output.empty()) << execution.output;
    EXPECT_TRUE(isSaid || execution.loggedLines > 0) << "nothing was said and nothing logged";
  }

  /// The allocations of a process at rest: threads let go of what they hold shortly after the
  /// command has come back.
  static std::ptrdiff_t SettledAllocations() {
    std::ptrdiff_t settled = LiveAllocations();
    for (int rest = 0; rest < 50; ++rest) {
      std::this_thread::sleep_for(std::chrono::milliseconds(1));
      if (std::exchange(settled, LiveAllocations()) != settled) rest = 0;
    }
    return settled;
  }

  test_support::TemporaryFolder folder_;
  std::string file_;
  std::u16string line_;
  int loggedLines_ = 0;
};

TEST_F(MemoryOfCommandTest, ComesBackAndWorksAgain) {
  ExpectFinished();
  const std::ptrdiff_t before = SettledAllocations();
  for (const FailureExtent extent : {FailureExtent::kOne, FailureExtent::kAllFrom}) {
    bool hasFailed = true;
    std::size_t n = 0;
    while (hasFailed && !HasFailure()) {
      ++n;
      const Execution execution = Validate(n, extent);
      hasFailed = execution.hasFailed;
      SCOPED_TRACE(testing::Message() << "allocation " << n
                                      << (extent == FailureExtent::kOne ? "" : " and all after"));
      if (hasFailed) ExpectSaidOrLogged(execution);
      ExpectFinished();
    }
    std::cout << n - 1 << " allocations failed in turn\n";
  }
  EXPECT_LE(SettledAllocations(), before + kKeptForLater) << "something leaked";
}

// The first command of a process starts the threads that read; that has to be tried in processes of
// its own.
TEST_F(MemoryOfCommandTest, DISABLED_OneFirstCommand) {
  const std::size_t n = std::strtoul(std::getenv(kFailAt), nullptr, 10);
  const bool isAll = std::getenv(kFailAll) != nullptr;
  const Execution execution = Validate(n, isAll ? FailureExtent::kAllFrom : FailureExtent::kOne);
  if (execution.hasFailed) {
    ExpectSaidOrLogged(execution);
    std::cout << "an allocation failed\n";
  }
  ExpectFinished();
}

TEST_F(MemoryOfCommandTest, ComesBackAsTheFirstOfAProcess) {
  for (const bool isAll : {false, true}) {
    test_support::ProgramResult result;
    std::size_t n = 0;
    int processes = 0;
    do {
      // The threads are started early on; what comes later is as with every command.
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
    EXPECT_GT(processes, 10) << "the first command must allocate more often than that";
  }
}

}  // namespace
}  // namespace faults
