#include <ornappsupport/analytics/SDMUsageLogger.h>

#include <memory>

#include <gtest/gtest.h>

#include "tests/support/Threads.h"

namespace ornappsupport::analytics {
namespace {

class SDMUsageLoggerTest : public testing::Test {
 protected:
  ~SDMUsageLoggerTest() override { SDMUsageLogger::SetLoggingQuery({}); }
};

TEST_F(SDMUsageLoggerTest, LogsWithoutAQuery) {
  EXPECT_TRUE(SDMUsageLogger::IsLogging());
}

TEST_F(SDMUsageLoggerTest, RunsTheQueryAtEveryCall) {
  bool logging = false;
  SDMUsageLogger::SetLoggingQuery([&logging] { return logging; });
  EXPECT_FALSE(SDMUsageLogger::IsLogging());
  logging = true;
  EXPECT_TRUE(SDMUsageLogger::IsLogging());
}

TEST_F(SDMUsageLoggerTest, AnEmptyQueryRestoresTheDefault) {
  SDMUsageLogger::SetLoggingQuery([] { return false; });
  SDMUsageLogger::SetLoggingQuery({});
  EXPECT_TRUE(SDMUsageLogger::IsLogging());
}

TEST_F(SDMUsageLoggerTest, AQueryMayReplaceItself) {
  SDMUsageLogger::SetLoggingQuery([owned = std::make_shared<bool>(false)] {
    const std::weak_ptr<bool> held = owned;
    SDMUsageLogger::SetLoggingQuery({});
    EXPECT_FALSE(held.expired());
    return *owned;
  });
  EXPECT_EQ(SDMUsageLogger::IsLogging(), false);
  EXPECT_TRUE(SDMUsageLogger::IsLogging());
}

TEST_F(SDMUsageLoggerTest, SeveralThreadsMayQueryDuringAReplacement) {
  constexpr int kCalls = 2'000;
  test_support::ThreadCounter calls;
  test_support::ThreadCounter positiveResults;
  const auto query = [&calls] {
    calls.Add(1);
    return true;
  };
  SDMUsageLogger::SetLoggingQuery(query);
  test_support::RunOnThreads(
      [&positiveResults] {
        for (int call = 0; call < kCalls; ++call)
          positiveResults.Add(SDMUsageLogger::IsLogging() ? 1 : 0);
      },
      [&query] { SDMUsageLogger::SetLoggingQuery(query); });
  EXPECT_EQ(calls.Value(), test_support::kThreadCount * kCalls);
  EXPECT_EQ(positiveResults.Value(), test_support::kThreadCount * kCalls);
}

}  // namespace
}  // namespace ornappsupport::analytics
