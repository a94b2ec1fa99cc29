#include <ornappsupport/Services.h>

#include <memory>
#include <string>

#include <gtest/gtest.h>

#include <ornappsupport/analytics/SDMUsageLogger.h>
#include <ornappsupport/feature/FeatureService.h>
#include <ornappsupport/links/PanelLinks.h>
#include <orncore/appstatemanager/AppStateManager.h>
#include <orncore/config/ClientInfo.h>
#include <orncore/config/Localizer.h>
#include <orncore/console/CommandRegistry.h>
#include <orncore/debug/DebugDatabase.h>
#include <orncore/debug/Log.h>

namespace ornappsupport {
namespace {

namespace config = orncore::config;
namespace console = orncore::console;
using orncore::debug::DebugDatabase;

TEST(Services, RestoresTheDefaultsOfThisModule) {
  auto service = std::make_shared<feature::FixedFeatureService>();
  service->Add("a", feature::BetaFeature("", u"", u"", feature::VisibilityInAllClientApps::kPublic),
               true, true);
  service->SetInternalFeaturesAllowed(true);
  feature::SetFeatureService(service);
  analytics::SDMUsageLogger::SetLoggingQuery([] { return false; });
  links::PanelLinks panelLinks;
  panelLinks.issuePrefix = u"MAP";
  ASSERT_TRUE(links::SetPanelLinks(panelLinks));

  ResetServices();

  EXPECT_TRUE(feature::GetConstBetaFeatureMap().empty());
  EXPECT_FALSE(feature::IsEntitlementSetToInternalFeaturesAllowed());
  EXPECT_TRUE(analytics::SDMUsageLogger::IsLogging());
  EXPECT_EQ(links::GetPanelLinks().issuePrefix, u"ORN");
  EXPECT_EQ(service.use_count(), 1);
}

TEST(Services, RestoresTheDefaultsOfOrncore) {
  int lines = 0;
  config::Localizer::Get().SetDictionary(
      std::make_shared<config::MapDictionary>(config::MapDictionary::Texts{{"k", "translated"}}));
  config::SetClientInfo(std::make_shared<config::FixedClientInfo>(u"1", u"2", "Win"));
  DebugDatabase::Instance().SetEntry("k", "v");
  orncore::debug::SetLogSink([&lines](std::string_view) { ++lines; });
  orncore::appstatemanager::SetTerminationQuery([] { return true; });

  ResetServices();

  EXPECT_EQ(config::Localizer::Get().ZString("k=default"), u"default");
  EXPECT_EQ(config::GetClientVersion(), u"25.1");
  EXPECT_EQ(config::GetClientBuildNumber(), u"42");
  EXPECT_EQ(config::GetClientPlatform(), "Mac");
  EXPECT_EQ(DebugDatabase::Instance().GetEntry("k"), "");
  EXPECT_FALSE(orncore::appstatemanager::IsTerminating());
  testing::internal::CaptureStderr();
  orncore::debug::Log("to standard error");
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "to standard error\n");
  EXPECT_EQ(lines, 0);
}

TEST(Services, KeepsRegisteredCommands) {
  auto& registry = console::CommandRegistry::Instance();
  ASSERT_TRUE(registry.RegisterCommandFunction(
      u"kept", u"", [](const console::UTF16String&, console::UTF16OutputStream&) { return 0; }));
  ResetServices();
  EXPECT_TRUE(registry.UnregisterCommand(u"kept"));
}

}  // namespace
}  // namespace ornappsupport
