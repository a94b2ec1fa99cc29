#include <orncore/config/ClientInfo.h>

#include <memory>

#include <gtest/gtest.h>

#include "tests/support/Threads.h"

namespace orncore::config {
namespace {

class ClientInfoTest : public testing::Test {
 protected:
  ~ClientInfoTest() override { SetClientInfo(nullptr); }
};

TEST_F(ClientInfoTest, HasDefaults) {
  EXPECT_EQ(GetClientVersion(), u"25.1");
  EXPECT_EQ(GetClientBuildNumber(), u"42");
  EXPECT_EQ(GetClientPlatform(), "Mac");
}

TEST_F(ClientInfoTest, ReturnsTheValuesOfTheHost) {
  SetClientInfo(std::make_shared<FixedClientInfo>(u"1.2.3", u"", "Win"));
  EXPECT_EQ(GetClientVersion(), u"1.2.3");
  EXPECT_EQ(GetClientBuildNumber(), u"");
  EXPECT_EQ(GetClientPlatform(), "Win");
}

TEST_F(ClientInfoTest, NullRestoresTheDefaults) {
  SetClientInfo(std::make_shared<FixedClientInfo>(u"1", u"2", "3"));
  SetClientInfo(nullptr);
  EXPECT_EQ(GetClientVersion(), u"25.1");
  EXPECT_EQ(GetClientBuildNumber(), u"42");
  EXPECT_EQ(GetClientPlatform(), "Mac");
}

TEST_F(ClientInfoTest, QueriesTheHostAtEveryCall) {
  class Counter final : public ClientInfo {
   public:
    UTF16String GetClientVersion() const override { return UTF16String(++calls, u'x'); }
    UTF16String GetClientBuildNumber() const override { return UTF16String(++calls, u'x'); }
    UTF8String GetClientPlatform() const override { return UTF8String(++calls, 'x'); }
    mutable std::size_t calls = 0;
  };
  SetClientInfo(std::make_shared<Counter>());
  EXPECT_EQ(GetClientVersion(), u"x");
  EXPECT_EQ(GetClientVersion(), u"xx");
  EXPECT_EQ(GetClientBuildNumber(), u"xxx");
  EXPECT_EQ(GetClientPlatform(), "xxxx");
}

TEST_F(ClientInfoTest, AClientInfoMayReplaceItselfDuringAQuery) {
  class SelfReplacing final : public ClientInfo,
                              public std::enable_shared_from_this<SelfReplacing> {
   public:
    UTF16String GetClientVersion() const override { return ReplaceSelf().version_; }
    UTF16String GetClientBuildNumber() const override { return ReplaceSelf().buildNumber_; }
    UTF8String GetClientPlatform() const override { return ReplaceSelf().platform_; }

   private:
    const SelfReplacing& ReplaceSelf() const {
      const auto self = weak_from_this();
      SetClientInfo(nullptr);
      EXPECT_FALSE(self.expired());
      return *this;
    }

    UTF16String version_ = u"1.2.3";
    UTF16String buildNumber_ = u"7";
    UTF8String platform_ = "Win";
  };
  const auto install = [] { SetClientInfo(std::make_shared<SelfReplacing>()); };
  install();
  EXPECT_EQ(GetClientVersion(), u"1.2.3");
  install();
  EXPECT_EQ(GetClientBuildNumber(), u"7");
  install();
  EXPECT_EQ(GetClientPlatform(), "Win");
  EXPECT_EQ(GetClientPlatform(), "Mac");
}

TEST_F(ClientInfoTest, SeveralThreadsMayQueryDuringAReplacement) {
  constexpr int kCalls = 2'000;
  const auto set = [] { SetClientInfo(std::make_shared<FixedClientInfo>(u"1.2.3", u"7", "Win")); };
  set();
  test_support::ThreadCounter completeResults;
  test_support::RunOnThreads(
      [&completeResults] {
        for (int call = 0; call < kCalls; ++call) {
          const bool isComplete = GetClientVersion() == u"1.2.3" &&
                                  GetClientBuildNumber() == u"7" && GetClientPlatform() == "Win";
          completeResults.Add(isComplete ? 1 : 0);
        }
      },
      set);
  EXPECT_EQ(completeResults.Value(), test_support::kThreadCount * kCalls);
}

}  // namespace
}  // namespace orncore::config
