#include <orncore/filesupport/AsyncRead.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstdlib>
#include <future>
#include <latch>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <boost/thread/thread.hpp>

#include <orncore/config/TopLevel.h>
#include <orncore/debug/Log.h>
#include <orncore/string/Conversion.h>

#include "tests/orncore/filesupport/FileFixture.h"

namespace orncore::filesupport {
namespace {

namespace fs = std::filesystem;
using std::chrono::steady_clock;
using testing::ElementsAre;

constexpr auto kForEver = steady_clock::time_point::max();
constexpr auto kNever = steady_clock::time_point::min();

// Keeps an executor of one thread busy until it is let go.
class Blocker {
 public:
  explicit Blocker(Executor& executor) {
    executor.Submit([running = running_, letGo = letGo_] {
      running->count_down();
      letGo->wait();
    });
    running_->wait();
  }
  ~Blocker() { LetGo(); }
  Blocker(const Blocker&) = delete;
  Blocker& operator=(const Blocker&) = delete;

  void LetGo() {
    if (!std::exchange(gone_, true)) letGo_->count_down();
  }

 private:
  std::shared_ptr<std::latch> running_ = std::make_shared<std::latch>(1);
  std::shared_ptr<std::latch> letGo_ = std::make_shared<std::latch>(1);
  bool gone_ = false;
};

File FileAt(const fs::path& path) {
  return File(string::UTF8to16(path.native()));
}

class AsyncReadTest : public FileFixture {
 protected:
  static int ResultOf(const fs::path& path) {
    return config::ExtractResultFromException(ReadFileToRecycledMemory(FileAt(path)).Failure());
  }

  static bool IsCancelled(const UntypedFuture& future) {
    try {
      WaitForUntypedUntil(future, kForEver, false);
      return false;
    } catch (const FutureCancelled&) {
      return true;
    }
  }
};

TEST_F(AsyncReadTest, ReadsAFile) {
  const ReadFuture read = ReadFileToRecycledMemory(FileAt(folder_.Write("file", "some bytes")));
  EXPECT_EQ(Text(*read.Get()), "some bytes");
  EXPECT_EQ(Text(*read.Get()), "some bytes");
  EXPECT_EQ(read.Failure(), nullptr);
  EXPECT_TRUE(read.IsReady());
}

TEST_F(AsyncReadTest, ReadsAnEmptyFile) {
  const auto memory = ReadFileToRecycledMemory(FileAt(folder_.Write("empty", ""))).Get();
  ASSERT_NE(memory, nullptr);
  EXPECT_TRUE(memory->Bytes().empty());
}

TEST_F(AsyncReadTest, FailsWithTheNegatedErrorNumber) {
  EXPECT_EQ(ResultOf(folder_.Path() / "missing"), -ENOENT);
  EXPECT_EQ(ResultOf(folder_.Path()), -EISDIR);
  EXPECT_EQ(ResultOf(MakeFifo()), -EOPNOTSUPP);
  EXPECT_EQ(ResultOf("/dev/zero"), -EOPNOTSUPP);
  EXPECT_EQ(ResultOf(MakeSocket()), -EOPNOTSUPP);
  EXPECT_EQ(ResultOf(""), -ENOENT);
}

TEST_F(AsyncReadTest, FailsOnANameThatIsNoText) {
  folder_.Write("\xEF\xBF\xBD", "the stand-in's file");
  const UTF16String path = string::UTF8to16(folder_.Path().native()) + u"/\xD800";
  EXPECT_EQ(config::ExtractResultFromException(ReadFileToRecycledMemory(File(path)).Failure()),
            -EILSEQ);
}

TEST_F(AsyncReadTest, ThrowsTheFailureOfTheRead) {
  const ReadFuture read = ReadFileToRecycledMemory(FileAt(folder_.Path() / "missing"));
  EXPECT_THROW(read.Get(), config::ResultError);
  EXPECT_THROW(read.Get(), config::ResultError);
  EXPECT_THROW(WaitForUntypedUntil(read, kForEver, true), config::ResultError);
}

TEST_F(AsyncReadTest, RunsAContinuationOnTheExecutor) {
  const ReadFuture read = ReadFileToRecycledMemory(FileAt(folder_.Write("file", "x")));
  Executor executor;
  std::thread::id ranOn;
  std::string text;
  const UntypedFuture done = read.Then(executor, [&](const ReadFuture& finished) {
    ranOn = std::this_thread::get_id();
    text = Text(*finished.Get());
  });
  EXPECT_TRUE(WaitForUntypedUntil(done, kForEver, true));
  std::thread::id executorThread;
  std::promise<void> known;
  executor.Submit([&] {
    executorThread = std::this_thread::get_id();
    known.set_value();
  });
  known.get_future().wait();
  EXPECT_EQ(text, "x");
  EXPECT_EQ(ranOn, executorThread);
  EXPECT_NE(ranOn, std::this_thread::get_id());
}

TEST_F(AsyncReadTest, RunsAContinuationOfAFailedRead) {
  int result = 0;
  const UntypedFuture done = ReadFileToRecycledMemory(FileAt(folder_.Path() / "missing"))
                                 .Then(GetDefaultExecutor(), [&result](const ReadFuture& finished) {
                                   result = config::ExtractResultFromException(finished.Failure());
                                 });
  EXPECT_TRUE(WaitForUntypedUntil(done, kForEver, true));
  EXPECT_EQ(result, -ENOENT);
}

TEST_F(AsyncReadTest, RunsAContinuationOfACompletedRead) {
  const ReadFuture read = ReadFileToRecycledMemory(FileAt(folder_.Write("file", "x")));
  read.Get();
  bool ran = false;
  const UntypedFuture done =
      read.Then(GetDefaultExecutor(), [&ran](const ReadFuture&) { ran = true; });
  EXPECT_TRUE(WaitForUntypedUntil(done, kForEver, true));
  EXPECT_TRUE(ran);
}

TEST_F(AsyncReadTest, RunsSeveralContinuations) {
  const fs::path path = folder_.Write("file", "x");
  Blocker blocker(GetDefaultExecutor());
  const ReadFuture read = ReadFileToRecycledMemory(FileAt(path));
  std::atomic<int> runs = 0;
  std::vector<UntypedFuture> all;
  for (int i = 0; i < 5; ++i) {
    all.push_back(read.Then(GetDefaultExecutor(), [&runs](const ReadFuture&) { ++runs; }));
  }
  blocker.LetGo();
  for (const UntypedFuture& done : all) EXPECT_TRUE(WaitForUntypedUntil(done, kForEver, true));
  EXPECT_EQ(runs, 5);
}

TEST_F(AsyncReadTest, HandsOutWhatAContinuationThrows) {
  const ReadFuture read = ReadFileToRecycledMemory(FileAt(folder_.Write("file", "x")));
  const UntypedFuture done = read.Then(
      GetDefaultExecutor(), [](const ReadFuture&) { throw std::out_of_range("its own type"); });
  EXPECT_THROW(WaitForUntypedUntil(done, kForEver, true), std::out_of_range);
  EXPECT_NE(done.Failure(), nullptr);
  EXPECT_EQ(Text(*read.Get()), "x");
}

TEST_F(AsyncReadTest, FailsAnEmptyContinuation) {
  const UntypedFuture done =
      ReadFileToRecycledMemory(FileAt(folder_.Write("file", "x"))).Then(GetDefaultExecutor(), {});
  EXPECT_THROW(WaitForUntypedUntil(done, kForEver, true), std::bad_function_call);
}

TEST_F(AsyncReadTest, ACopyStandsForTheSameCompletion) {
  Executor executor;
  const ReadFuture read = ReadFileToRecycledMemory(FileAt(folder_.Write("file", "x")));
  UntypedFuture future = read;
  future = read.Then(executor, [](const ReadFuture&) { throw std::runtime_error("continuation"); });
  EXPECT_THROW(WaitForUntypedUntil(future, kForEver, false), std::runtime_error);
  future = read;
  EXPECT_TRUE(WaitForUntypedUntil(future, kForEver, false));
}

TEST_F(AsyncReadTest, CancelsAReadThatHasNotBegun) {
  const fs::path path = folder_.Write("file", "x");
  const Blocker blocker(GetDefaultExecutor());
  const ReadFuture read = ReadFileToRecycledMemory(FileAt(path));
  EXPECT_FALSE(read.IsReady());
  read.Cancel();
  EXPECT_TRUE(read.IsReady());
  EXPECT_TRUE(IsCancelled(read));
  EXPECT_EQ(config::ExtractResultFromException(read.Failure()), 0);
  read.Cancel();
}

TEST_F(AsyncReadTest, LeavesACompletedReadAsItIs) {
  const ReadFuture read = ReadFileToRecycledMemory(FileAt(folder_.Write("file", "x")));
  read.Get();
  read.Cancel();
  EXPECT_EQ(Text(*read.Get()), "x");
}

TEST_F(AsyncReadTest, CancellingTheContinuationCancelsTheRead) {
  const fs::path path = folder_.Write("file", "x");
  Blocker blocker(GetDefaultExecutor());
  const ReadFuture read = ReadFileToRecycledMemory(FileAt(path));
  std::string message;
  const UntypedFuture done =
      read.Then(GetDefaultExecutor(), [&message](const ReadFuture& finished) {
        try {
          finished.Get();
        } catch (const std::exception& exception) {
          message = exception.what();
          throw;
        }
      });
  done.Cancel();
  EXPECT_TRUE(read.IsReady());
  EXPECT_FALSE(done.IsReady());
  blocker.LetGo();
  EXPECT_TRUE(IsCancelled(done));
  EXPECT_EQ(message, "Future Is Cancelled");
}

TEST_F(AsyncReadTest, LeavesTheReadAloneWhenTheDeadlinePasses) {
  const fs::path path = folder_.Write("file", "x");
  Blocker blocker(GetDefaultExecutor());
  const ReadFuture read = ReadFileToRecycledMemory(FileAt(path));
  EXPECT_FALSE(WaitForUntypedUntil(read, kNever, false));
  EXPECT_FALSE(
      WaitForUntypedUntil(read, steady_clock::now() + std::chrono::milliseconds(5), false));
  EXPECT_FALSE(read.IsReady());
  blocker.LetGo();
  EXPECT_TRUE(WaitForUntypedUntil(read, kForEver, false));
}

TEST_F(AsyncReadTest, CancelsTheReadWhenTheDeadlinePasses) {
  const fs::path path = folder_.Write("file", "x");
  const Blocker blocker(GetDefaultExecutor());
  const ReadFuture read = ReadFileToRecycledMemory(FileAt(path));
  EXPECT_FALSE(WaitForUntypedUntil(read, kNever, true));
  EXPECT_TRUE(read.IsReady());
  EXPECT_TRUE(IsCancelled(read));
}

TEST_F(AsyncReadTest, WaitsForTheEndOfACancelledContinuation) {
  const fs::path path = folder_.Write("file", "x");
  Executor executor;
  std::latch entered(1);
  std::latch mayEnd(1);
  std::atomic<bool> ended = false;
  const UntypedFuture done =
      ReadFileToRecycledMemory(FileAt(path)).Then(executor, [&](const ReadFuture&) {
        entered.count_down();
        mayEnd.wait();
        ended = true;
      });
  entered.wait();
  std::jthread releaser([&] {
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    mayEnd.count_down();
  });
  EXPECT_FALSE(WaitForUntypedUntil(done, kNever, true));
  EXPECT_TRUE(ended);
}

TEST_F(AsyncReadTest, TakesACompletionBeforeAPassedDeadline) {
  const ReadFuture read = ReadFileToRecycledMemory(FileAt(folder_.Write("file", "x")));
  read.Get();
  EXPECT_TRUE(WaitForUntypedUntil(read, kNever, true));
  EXPECT_EQ(Text(*read.Get()), "x");
}

TEST_F(AsyncReadTest, WaitsToTheEndOnAnInterruptedThread) {
  const fs::path path = folder_.Write("file", "x");
  using Wait = std::function<void(const ReadFuture&, const UntypedFuture&)>;
  const std::vector<Wait> waits = {
      [](const ReadFuture&, const UntypedFuture& done) { done.Failure(); },
      [](const ReadFuture& read, const UntypedFuture&) { read.Get(); },
      [](const ReadFuture&, const UntypedFuture& done) {
        WaitForUntypedUntil(done, kForEver, true);
      },
      [](const ReadFuture&, const UntypedFuture& done) { WaitForUntypedUntil(done, kNever, true); },
      [](const ReadFuture&, const UntypedFuture&) { Executor().Submit([] {}); }};
  for (const Wait& wait : waits) {
    Blocker blocker(GetDefaultExecutor());
    const ReadFuture read = ReadFileToRecycledMemory(FileAt(path));
    const UntypedFuture done = read.Then(GetDefaultExecutor(), [](const ReadFuture&) {});
    std::latch interrupted(1);
    bool waited = false;
    bool stillRequested = false;
    boost::thread thread([&] {
      interrupted.wait();
      wait(read, done);
      waited = true;
      stillRequested = boost::this_thread::interruption_requested();
    });
    thread.interrupt();
    interrupted.count_down();
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    blocker.LetGo();
    thread.join();
    EXPECT_TRUE(waited);
    EXPECT_TRUE(stillRequested);
    EXPECT_EQ(done.Failure(), nullptr);
  }
}

TEST_F(AsyncReadTest, StandsReadsAndCancellationsFromManyThreads) {
  const fs::path path = folder_.Write("file", std::string(100'000, 'x'));
  std::vector<std::jthread> threads;
  for (int t = 0; t < 4; ++t) {
    threads.emplace_back([&path] {
      for (int i = 0; i < 50; ++i) {
        const ReadFuture read = ReadFileToRecycledMemory(FileAt(path));
        std::atomic<int> runs = 0;
        const UntypedFuture done =
            read.Then(GetDefaultExecutor(), [&runs](const ReadFuture&) { ++runs; });
        if (i % 3 == 0) done.Cancel();
        EXPECT_TRUE(WaitForUntypedUntil(done, kForEver, true));
        EXPECT_EQ(runs, 1);
        const int result = config::ExtractResultFromException(read.Failure());
        EXPECT_EQ(result, 0);
      }
    });
  }
}

TEST(Executor, RunsFunctionsInOrderAndFinishesThemAtItsEnd) {
  std::vector<int> order;
  {
    Executor executor;
    for (int i = 0; i < 100; ++i) executor.Submit([&order, i] { order.push_back(i); });
  }
  EXPECT_EQ(order.size(), 100U);
  EXPECT_TRUE(std::ranges::is_sorted(order));
}

TEST(Executor, HasAThreadEvenForNone) {
  bool ran = false;
  {
    Executor executor(0);
    executor.Submit([&ran] { ran = true; });
  }
  EXPECT_TRUE(ran);
}

TEST(Executor, RunsFunctionsSideBySide) {
  std::latch both(2);  // outlives the functions
  Executor executor(2);
  for (int i = 0; i < 2; ++i) executor.Submit([&both] { both.arrive_and_wait(); });
  both.wait();
}

TEST(Executor, LogsWhatAFunctionThrows) {
  std::vector<std::string> lines;
  debug::SetLogSink([&lines](std::string_view line) { lines.emplace_back(line); });
  bool ranOn = false;
  {
    Executor executor;
    executor.Submit([] { throw std::runtime_error("lost otherwise"); });
    executor.Submit([&ranOn] { ranOn = true; });
  }
  debug::SetLogSink({});
  EXPECT_THAT(lines, ElementsAre(testing::HasSubstr("lost otherwise")));
  EXPECT_TRUE(ranOn);
}

TEST(Executor, StartsNoThreadBeforeTheFirstFunction) {
  const fs::path threads = "/proc/self/task";
  if (!fs::exists(threads)) GTEST_SKIP() << "no list of threads on this system";
  const auto count = [&threads] {
    return std::distance(fs::directory_iterator(threads), fs::directory_iterator());
  };
  const auto before = count();
  std::latch running(1);
  std::latch mayEnd(1);  // like the other, outlives the function
  Executor executor;
  EXPECT_EQ(count(), before);
  executor.Submit([&] {
    running.count_down();
    mayEnd.wait();
  });
  running.wait();
  EXPECT_GT(count(), before);  // a sanitizer may add a thread of its own to the first
  mayEnd.count_down();
}

TEST(DefaultExecutor, IsOneForTheProcess) {
  EXPECT_EQ(&GetDefaultExecutor(), &GetDefaultExecutor());
}

TEST(DefaultExecutorDeathTest, LetsTheProcessEndWhateverItDoes) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  const auto endWhileBusy = [] {
    std::latch running(1);
    GetDefaultExecutor().Submit([&running] {
      running.count_down();
      std::this_thread::sleep_for(std::chrono::hours(1));
    });
    running.wait();
    ReadFileToRecycledMemory(File(u"/nowhere")).Then(GetDefaultExecutor(), [](const ReadFuture&) {
      std::abort();
    });
    std::exit(3);
  };
  EXPECT_EXIT(endWhileBusy(), testing::ExitedWithCode(3), "");
}

}  // namespace
}  // namespace orncore::filesupport
