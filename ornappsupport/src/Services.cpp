#include <ornappsupport/Services.h>

#include <ornappsupport/analytics/SDMUsageLogger.h>
#include <ornappsupport/feature/FeatureService.h>
#include <ornappsupport/links/PanelLinks.h>
#include <orncore/appstatemanager/AppStateManager.h>
#include <orncore/config/ClientInfo.h>
#include <orncore/config/Localizer.h>
#include <orncore/debug/DebugDatabase.h>
#include <orncore/debug/Log.h>

namespace ornappsupport {

void ResetServices() {
  feature::SetFeatureService(nullptr);
  analytics::SDMUsageLogger::SetLoggingQuery({});
  links::SetPanelLinks({});
  orncore::config::Localizer::Get().SetDictionary(nullptr);
  orncore::config::SetClientInfo(nullptr);
  orncore::debug::DebugDatabase::Instance().SetStore(nullptr);
  orncore::debug::SetLogSink({});
  orncore::appstatemanager::SetTerminationQuery({});
}

}  // namespace ornappsupport
