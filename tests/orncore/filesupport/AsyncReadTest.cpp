#include <orncore/filesupport/AsyncRead.h>

#include <atomic>
#include <cerrno>
#include <chrono>
#include <condition_variable>
#include <latch>
#include <mutex>
#include <optional>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <orncore/config/TopLevel.h>
#include <orncore/debug/Log.h>
#include <orncore/string/Conversion.h>

#include "tests/orncore/filesupport/FileFixture.h"
#include "tests/support/Threads.h"

namespace orncore::filesupport {
namespace {

namespace fs = std::filesystem;
using std::chrono::steady_clock;
using testing::ElementsAre;

constexpr auto kNoDeadline = steady_clock::time_point::max();
constexpr auto kPastDeadline = steady_clock::time_point::min();
constexpr std::uintmax_t kLargeFile = std::uintmax_t{2} << 30;

File FileAt(const fs::path& path) {
  return File(string::UTF8to16(path.native()));
}

void WaitForStop(const std::stop_token& stop) {
  std::mutex mutex;
  std::condition_variable_any wake;
  std::unique_lock lock(mutex);
  wake.wait(lock, stop, [] { return false; });
}

class AsyncReadTest : public FileFixture {
 protected:
  // Submits a task that blocks the executor's thread until `Release` or `Join` is called.
  void Block() {
    executor_.Submit([this](const std::stop_token& stop) {
      const std::stop_callback releaseAtStop(stop, [this] { Release(); });
      released_.wait(false);
    });
  }
  void Release() {
    released_ = true;
    released_.notify_all();
  }

  // Starts a read. The continuation stores the outcome and the ID of the thread that runs it, and
  // rethrows a failure.
  UntypedFuture Read(const fs::path& path) { return Read(FileAt(path)); }
  UntypedFuture Read(const File& file) {
    return ReadFileToRecycledMemory(file, executor_, [this](const ReadOutcome& outcome) {
      thread_ = std::this_thread::get_id();
      outcome_ = outcome;
      if (outcome.failure) std::rethrow_exception(outcome.failure);
    });
  }

  // Reads `file`, expects a failure, and returns the result code of the failure.
  int ResultOf(const File& file) {
    UntypedFuture done = Read(file);
    EXPECT_THROW(WaitForUntypedUntil(done, kNoDeadline, true), config::ResultError);
    EXPECT_EQ(outcome_->memory, nullptr);
    return config::ExtractResultFromException(outcome_->failure);
  }

  std::atomic<bool> released_ = false;
  std::optional<ReadOutcome> outcome_;
  std::thread::id thread_;
  Executor executor_;  // last, so that its destructor joins the thread first
};

TEST_F(AsyncReadTest, PassesTheBytesToTheContinuation) {
  UntypedFuture done = Read(folder_.Write("file", "some bytes"));
  EXPECT_TRUE(WaitForUntypedUntil(done, kNoDeadline, true));
  EXPECT_EQ(Text(*outcome_->memory), "some bytes");
  EXPECT_EQ(outcome_->failure, nullptr);
}

TEST_F(AsyncReadTest, RunsTheContinuationOnTheExecutorThread) {
  std::thread::id executorThread;
  executor_.Submit([&](const std::stop_token&) { executorThread = std::this_thread::get_id(); });
  UntypedFuture done = Read(folder_.Write("file", "x"));
  EXPECT_TRUE(WaitForUntypedUntil(done, kNoDeadline, true));
  EXPECT_EQ(thread_, executorThread);
  EXPECT_NE(thread_, std::this_thread::get_id());
}

TEST_F(AsyncReadTest, PassesAFailureToTheContinuation) {
  EXPECT_EQ(ResultOf(FileAt(folder_.Path() / "missing")), -ENOENT);
  EXPECT_EQ(ResultOf(FileAt(folder_.Path())), -EISDIR);
  EXPECT_EQ(ResultOf(FileAt(MakeFifo())), -EOPNOTSUPP);
  EXPECT_EQ(ResultOf(File(u"")), -ENOENT);
}

TEST_F(AsyncReadTest, FailsForAPathWithAnUnpairedSurrogate) {
  folder_.Write("\xEF\xBF\xBD", "the name is a replacement character");
  EXPECT_EQ(ResultOf(File(string::UTF8to16(folder_.Path().native()) + u"/\xD800")), -EILSEQ);
}

TEST_F(AsyncReadTest, TheWaitRethrowsTheExceptionOfTheContinuation) {
  UntypedFuture done =
      ReadFileToRecycledMemory(FileAt(folder_.Write("file", "x")), executor_,
                               [](const ReadOutcome&) { throw std::out_of_range("own type"); });
  EXPECT_THROW(WaitForUntypedUntil(done, kNoDeadline, true), std::out_of_range);
}

TEST_F(AsyncReadTest, FailsForAnEmptyContinuation) {
  UntypedFuture done = ReadFileToRecycledMemory(FileAt(folder_.Write("file", "x")), executor_, {});
  EXPECT_THROW(WaitForUntypedUntil(done, kNoDeadline, true), std::bad_function_call);
}

TEST_F(AsyncReadTest, DestroysTheContinuationBeforeTheWaitReturns) {
  const auto owned = std::make_shared<int>();
  UntypedFuture done = ReadFileToRecycledMemory(FileAt(folder_.Write("file", "x")), executor_,
                                                [owned](const ReadOutcome&) {});
  WaitForUntypedUntil(done, kNoDeadline, true);
  EXPECT_EQ(owned.use_count(), 1);
}

TEST_F(AsyncReadTest, DoesNotCancelAtTheDeadlineUnlessRequested) {
  Block();
  UntypedFuture done = Read(folder_.Write("file", "x"));
  EXPECT_FALSE(WaitForUntypedUntil(done, kPastDeadline, false));
  EXPECT_FALSE(WaitForUntypedUntil(done, steady_clock::now(), false));
  Release();
  EXPECT_TRUE(WaitForUntypedUntil(done, kNoDeadline, false));
  EXPECT_EQ(Text(*outcome_->memory), "x");
}

// The file is so large that the stop request arrives long before the end of the read.
TEST_F(AsyncReadTest, CancelsAReadInProgressAtTheDeadlineIfRequested) {
  const fs::path path = folder_.Write("sparse", "");
  fs::resize_file(path, kLargeFile);
  UntypedFuture done = Read(path);
  EXPECT_THROW(WaitForUntypedUntil(done, kPastDeadline, true), config::FutureCancelled);
  EXPECT_EQ(outcome_->memory, nullptr);
  EXPECT_EQ(config::ExtractResultFromException(outcome_->failure), 0);
}

TEST_F(AsyncReadTest, APastDeadlineDoesNotCancelACompletedRead) {
  UntypedFuture done = Read(folder_.Write("file", "x"));
  std::latch read(1);
  executor_.Submit([&read](const std::stop_token&) { read.count_down(); });
  read.wait();
  EXPECT_TRUE(WaitForUntypedUntil(done, kPastDeadline, true));
  EXPECT_EQ(Text(*outcome_->memory), "x");
}

TEST_F(AsyncReadTest, JoinCancelsReadsThatHaveNotBegun) {
  Block();
  UntypedFuture done = Read(folder_.Write("file", "x"));
  executor_.Join();
  try {
    WaitForUntypedUntil(done, kPastDeadline, false);
    FAIL() << "the read was not cancelled";
  } catch (const config::FutureCancelled& failure) {
    EXPECT_STREQ(failure.what(), "Future Is Cancelled");
  }
}

TEST_F(AsyncReadTest, JoinCancelsAReadInProgress) {
  const fs::path path = folder_.Write("sparse", "");
  fs::resize_file(path, kLargeFile);
  UntypedFuture done = Read(path);
  executor_.Join();
  EXPECT_THROW(WaitForUntypedUntil(done, kPastDeadline, false), config::FutureCancelled);
}

TEST_F(AsyncReadTest, CompletesEveryReadFromSeveralThreads) {
  constexpr int kThreads = 4;
  constexpr int kReads = 50;
  const fs::path path = folder_.Write("file", std::string(100'000, 'x'));
  std::atomic<int> completed = 0;
  {
    std::vector<std::jthread> threads;
    for (int thread = 0; thread < kThreads; ++thread) {
      threads.emplace_back([&] {
        for (int read = 0; read < kReads; ++read) {
          UntypedFuture done = ReadFileToRecycledMemory(
              FileAt(path), executor_, [&completed](const ReadOutcome& outcome) {
                if (outcome.memory->Bytes().size() == 100'000) ++completed;
              });
          EXPECT_TRUE(WaitForUntypedUntil(done, kNoDeadline, true));
        }
      });
    }
  }
  EXPECT_EQ(completed, kThreads * kReads);
}

TEST(Executor, RunsTasksInOrderAndFinishesThemWhenDestroyed) {
  std::vector<int> order;
  std::vector<int> expected;
  {
    Executor executor;
    for (int i = 0; i < 100; ++i) {
      executor.Submit([&order, i](const std::stop_token&) { order.push_back(i); });
      expected.push_back(i);
    }
  }
  EXPECT_EQ(order, expected);
}

TEST(Executor, RunsEveryTaskOfSeveralThreads) {
  int runs = 0;  // not atomic, because all tasks run on one thread
  {
    Executor executor;
    std::vector<std::jthread> threads;
    for (int thread = 0; thread < 4; ++thread) {
      threads.emplace_back([&] {
        for (int i = 0; i < 500; ++i) executor.Submit([&runs](const std::stop_token&) { ++runs; });
      });
    }
  }
  EXPECT_EQ(runs, 4 * 500);
}

TEST(Executor, JoinRequestsAStopAndEndsTheThread) {
  Executor executor;
  bool ended = false;
  executor.Submit([&ended](const std::stop_token& stop) {
    WaitForStop(stop);
    ended = true;
  });
  executor.Join();
  EXPECT_TRUE(ended);
}

TEST(Executor, JoinWaitsInEveryThreadThatCallsIt) {
  Executor executor;
  std::latch running(1);
  std::atomic<bool> ended = false;
  executor.Submit([&](const std::stop_token& stop) {
    running.count_down();
    WaitForStop(stop);
    // Give the other threads time to call `Join`.
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    ended = true;
  });
  running.wait();
  std::atomic<int> earlyReturns = 0;
  const auto join = [&] {
    executor.Join();
    earlyReturns += ended ? 0 : 1;
  };
  test_support::RunOnThreads(join, join);
  EXPECT_EQ(earlyReturns, 0);
}

TEST(Executor, RunsEveryTaskOnceIfThreadsSubmitDuringJoin) {
  constexpr int kTasks = 500;
  std::atomic<int> runs = 0;
  {
    Executor executor;
    test_support::RunOnThreads(
        [&] {
          for (int task = 0; task < kTasks; ++task) {
            executor.Submit([&runs](const std::stop_token&) { ++runs; });
          }
        },
        [&executor] { executor.Join(); });
  }
  EXPECT_EQ(runs, test_support::kThreadCount * kTasks);
}

TEST(Executor, RestartsAfterJoin) {
  Executor executor;
  executor.Join();
  for (int i = 0; i < 2; ++i) {
    std::latch ran(1);
    bool isStopRequested = true;
    executor.Submit([&](const std::stop_token& stop) {
      isStopRequested = stop.stop_requested();
      ran.count_down();
    });
    ran.wait();
    EXPECT_FALSE(isStopRequested);
    executor.Join();
  }
}

TEST(Executor, LogsTheExceptionOfATaskAndContinues) {
  std::vector<std::string> lines;
  debug::SetLogSink([&lines](std::string_view line) { lines.emplace_back(line); });
  bool ran = false;
  {
    Executor executor;
    executor.Submit([](const std::stop_token&) { throw std::runtime_error("the task failed"); });
    executor.Submit([&ran](const std::stop_token&) { ran = true; });
  }
  debug::SetLogSink({});
  EXPECT_THAT(lines, ElementsAre(testing::HasSubstr("the task failed")));
  EXPECT_TRUE(ran);
}

TEST(Executor, StartsNoThreadBeforeTheFirstTask) {
  const fs::path threads = "/proc/self/task";
  if (!fs::exists(threads)) GTEST_SKIP() << "this system has no folder " << threads;
  const auto count = [&threads] {
    return std::distance(fs::directory_iterator(threads), fs::directory_iterator());
  };
  const auto before = count();
  Executor executor;
  EXPECT_EQ(count(), before);
  std::latch running(1);
  executor.Submit([&](const std::stop_token& stop) {
    running.count_down();
    WaitForStop(stop);
  });
  running.wait();
  EXPECT_GT(count(), before);  // a sanitizer can start another thread
}

TEST(DefaultExecutor, HasOneInstancePerProcess) {
  EXPECT_EQ(&GetDefaultExecutor(), &GetDefaultExecutor());
}

}  // namespace
}  // namespace orncore::filesupport
