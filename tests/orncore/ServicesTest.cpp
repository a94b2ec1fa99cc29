#include <orncore/Services.h>

#include <memory>
#include <string>

#include <gtest/gtest.h>

#include <orncore/appstatemanager/AppStateManager.h>
#include <orncore/config/ClientInfo.h>
#include <orncore/config/Localizer.h>
#include <orncore/console/CommandRegistry.h>
#include <orncore/debug/DebugDatabase.h>
#include <orncore/debug/Log.h>

namespace orncore {
namespace {

TEST(Services, PutsEverythingBack) {
  int lines = 0;
  config::Localizer::Get().SetDictionary(
      std::make_shared<config::MapDictionary>(config::MapDictionary::Texts{{"k", "translated"}}));
  config::SetClientInfo(std::make_shared<config::FixedClientInfo>(u"1", u"2", "Win"));
  debug::DebugDatabase::Instance().SetEntry("k", "v");
  debug::SetLogSink([&lines](std::string_view) { ++lines; });
  appstatemanager::SetTerminationQuery([] { return true; });

  ResetServices();

  EXPECT_EQ(config::Localizer::Get().ZString("k=default"), u"default");
  EXPECT_EQ(config::GetClientVersion(), u"25.1");
  EXPECT_EQ(config::GetClientBuildNumber(), u"42");
  EXPECT_EQ(config::GetClientPlatform(), "Mac");
  EXPECT_EQ(debug::DebugDatabase::Instance().GetEntry("k"), "");
  EXPECT_FALSE(appstatemanager::IsTerminating());
  testing::internal::CaptureStderr();
  debug::Log("to standard error");
  EXPECT_NE(testing::internal::GetCapturedStderr().find("to standard error"), std::string::npos);
  EXPECT_EQ(lines, 0);
}

TEST(Services, LeavesTheRegistriesAlone) {
  auto& registry = console::CommandRegistry::Instance();
  ASSERT_TRUE(registry.RegisterCommandFunction(
      u"kept", u"", [](const console::UTF16String&, console::UTF16OutputStream&) { return 0; }));
  ResetServices();
  EXPECT_TRUE(registry.UnregisterCommand(u"kept"));
}

}  // namespace
}  // namespace orncore
