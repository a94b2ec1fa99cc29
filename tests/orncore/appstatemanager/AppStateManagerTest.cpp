#include <orncore/appstatemanager/AppStateManager.h>

#include <atomic>
#include <memory>

#include <gtest/gtest.h>

#include "tests/support/Threads.h"

namespace orncore::appstatemanager {
namespace {

class AppStateManagerTest : public testing::Test {
 protected:
  ~AppStateManagerTest() override { SetTerminationQuery({}); }
};

TEST_F(AppStateManagerTest, IsNotTerminatingWithoutAQuery) {
  EXPECT_FALSE(IsTerminating());
}

TEST_F(AppStateManagerTest, RunsTheQueryAtEveryCall) {
  bool terminating = false;
  SetTerminationQuery([&terminating] { return terminating; });
  EXPECT_FALSE(IsTerminating());
  terminating = true;
  EXPECT_TRUE(IsTerminating());
}

TEST_F(AppStateManagerTest, AnEmptyQueryRestoresTheDefault) {
  SetTerminationQuery([] { return true; });
  SetTerminationQuery({});
  EXPECT_FALSE(IsTerminating());
}

TEST_F(AppStateManagerTest, AQueryMayReplaceItself) {
  SetTerminationQuery([owned = std::make_shared<bool>(true)] {
    const std::weak_ptr<bool> held = owned;
    SetTerminationQuery({});
    EXPECT_FALSE(held.expired());
    return *owned;
  });
  EXPECT_EQ(IsTerminating(), true);
  EXPECT_FALSE(IsTerminating());
}

TEST_F(AppStateManagerTest, SeveralThreadsMayQueryDuringAReplacement) {
  constexpr int kCalls = 500;
  std::atomic<int> calls = 0;
  std::atomic<int> positiveResults = 0;
  const auto query = [&calls] { return ++calls > 0; };
  SetTerminationQuery(query);
  test_support::RunOnThreads(
      [&positiveResults] {
        for (int call = 0; call < kCalls; ++call) positiveResults += IsTerminating() ? 1 : 0;
      },
      [&query] { SetTerminationQuery(query); });
  EXPECT_EQ(calls, test_support::kThreadCount * kCalls);
  EXPECT_EQ(positiveResults, test_support::kThreadCount * kCalls);
}

}  // namespace
}  // namespace orncore::appstatemanager
