#include <ornappsupport/Services.h>

#include <memory>

#include <gtest/gtest.h>

#include <ornappsupport/analytics/SDMUsageLogger.h>
#include <ornappsupport/feature/FeatureService.h>

namespace ornappsupport {
namespace {

TEST(Services, PutsEverythingBack) {
  auto service = std::make_shared<feature::FixedFeatureService>();
  service->Add("a", feature::BetaFeature("", u"", u"", feature::VisibilityInAllClientApps::kPublic),
               true, true);
  service->SetInternalFeaturesAllowed(true);
  feature::SetFeatureService(service);
  analytics::SDMUsageLogger::SetLoggingQuery([] { return false; });

  ResetServices();

  EXPECT_TRUE(feature::GetConstBetaFeatureMap().empty());
  EXPECT_FALSE(feature::IsEntitlementSetToInternalFeaturesAllowed());
  EXPECT_TRUE(analytics::SDMUsageLogger::IsLogging());
  EXPECT_EQ(service.use_count(), 1);
}

}  // namespace
}  // namespace ornappsupport
