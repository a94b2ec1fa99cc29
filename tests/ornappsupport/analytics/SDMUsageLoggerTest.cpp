#include <ornappsupport/analytics/SDMUsageLogger.h>

#include <memory>

#include <gtest/gtest.h>

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

}  // namespace
}  // namespace ornappsupport::analytics
