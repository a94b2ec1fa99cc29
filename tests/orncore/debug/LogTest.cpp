#include <orncore/debug/Log.h>

#include <atomic>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/Allocations.h"
#include "tests/support/Threads.h"

namespace orncore::debug {
namespace {

using namespace std::string_literals;

class LogTest : public testing::Test {
 protected:
  ~LogTest() override { SetLogSink({}); }

  // Calls `Log(line)` and returns the bytes that it writes to standard error.
  static std::string WrittenFor(std::string_view line) {
    testing::internal::CaptureStderr();
    Log(line);
    return testing::internal::GetCapturedStderr();
  }
};

TEST_F(LogTest, WritesALineToStandardErrorByDefault) {
  EXPECT_EQ(WrittenFor("something failed"), "something failed\n");
  EXPECT_EQ(WrittenFor(""), "\n");
  EXPECT_EQ(WrittenFor("na\u00EFve \u2713 \u00A0"), "na\u00EFve \u2713 \u00A0\n");
}

TEST_F(LogTest, ReplacesControlCharacters) {
  EXPECT_EQ(WrittenFor("a\nb\rc\td"), "a?b?c?d\n");
  EXPECT_EQ(WrittenFor("\x1B[2J\x7F\0"s), "?[2J??\n");
  EXPECT_EQ(WrittenFor("\xC2\x9B"
                       "2J \xC2\x80 \xC2\x9F"),
            "??2J ?? ??\n");
}

TEST_F(LogTest, KeepsInvalidBytesThatAreNotControlCharacters) {
  EXPECT_EQ(WrittenFor("\xC2"
                       "A \xC2 \xC2\xC2\xA0 \x9B \xC2\x7F"),
            "\xC2"
            "A \xC2 \xC2\xC2\xA0 \x9B \xC2?\n");
}

TEST_F(LogTest, ReportsALostLineWhenMemoryRunsOut) {
  const std::string line(1'000, 'x');
  testing::internal::CaptureStderr();
  {
    const test_support::AllocationFailure failure(1, test_support::FailureExtent::kAllFrom,
                                                  test_support::FailureThreads::kThis);
    Log(line);
    if (!failure.HasHappened()) GTEST_SKIP() << "allocation failures are not available";
  }
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "a log line was lost: out of memory\n");
}

TEST_F(LogTest, PassesLinesToTheSinkUnchanged) {
  std::vector<std::string> lines;
  SetLogSink([&lines](std::string_view line) { lines.emplace_back(line); });
  EXPECT_EQ(WrittenFor("one\n\0two"s), "");
  EXPECT_EQ(WrittenFor(""), "");
  EXPECT_EQ(lines, (std::vector<std::string>{"one\n\0two"s, ""}));
}

TEST_F(LogTest, AnEmptySinkRestoresTheDefault) {
  SetLogSink([](std::string_view) {});
  SetLogSink({});
  EXPECT_EQ(WrittenFor("line"), "line\n");
}

TEST_F(LogTest, WritesTheLineToStandardErrorIfTheSinkThrows) {
  SetLogSink([](std::string_view) { throw std::runtime_error("the sink is broken"); });
  EXPECT_EQ(WrittenFor("kept"), "kept\n");
}

TEST_F(LogTest, TheSinkMayCallTheLog) {
  std::vector<std::string> lines;
  SetLogSink([&lines](std::string_view line) {
    lines.emplace_back(line);
    if (line == "outer") Log("inner");
    if (line == "last") SetLogSink({});
  });
  Log("outer");
  Log("last");
  EXPECT_EQ(lines, (std::vector<std::string>{"outer", "inner", "last"}));
  EXPECT_EQ(WrittenFor("after"), "after\n");
}

TEST_F(LogTest, ReleasesTheOldSink) {
  auto owned = std::make_shared<int>();
  const std::weak_ptr<int> watched = owned;
  SetLogSink([owned = std::move(owned)](std::string_view) {});
  EXPECT_FALSE(watched.expired());
  SetLogSink({});
  EXPECT_TRUE(watched.expired());
}

TEST_F(LogTest, PassesEveryLineOfSeveralThreadsToASink) {
  constexpr int kLines = 500;
  std::atomic<int> lines = 0;
  const auto count = [&lines](std::string_view) { ++lines; };
  SetLogSink(count);
  // If `SetLogSink` did not lock the sink, a concurrent `Log` could cause a data race or lose a
  // line.
  test_support::RunOnThreads(
      [] {
        for (int line = 0; line < kLines; ++line) Log("line");
      },
      [&count] { SetLogSink(count); });
  EXPECT_EQ(lines, test_support::kThreadCount * kLines);
}

}  // namespace
}  // namespace orncore::debug
