#include <orncore/appstatemanager/AppStateManager.h>

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
  constexpr int kCalls = 2'000;
  test_support::ThreadCounter calls;
  test_support::ThreadCounter positiveResults;
  const auto query = [&calls] {
    calls.Add(1);
    return true;
  };
  SetTerminationQuery(query);
  test_support::RunOnThreads(
      [&positiveResults] {
        for (int call = 0; call < kCalls; ++call) positiveResults.Add(IsTerminating() ? 1 : 0);
      },
      [&query] { SetTerminationQuery(query); });
  EXPECT_EQ(calls.Value(), test_support::kThreadCount * kCalls);
  EXPECT_EQ(positiveResults.Value(), test_support::kThreadCount * kCalls);
}

}  // namespace
}  // namespace orncore::appstatemanager
