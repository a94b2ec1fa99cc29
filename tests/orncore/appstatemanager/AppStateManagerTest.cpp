#include <orncore/appstatemanager/AppStateManager.h>

#include <memory>

#include <gtest/gtest.h>

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

}  // namespace
}  // namespace orncore::appstatemanager
