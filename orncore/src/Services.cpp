#include <orncore/Services.h>

#include <orncore/appstatemanager/AppStateManager.h>
#include <orncore/config/ClientInfo.h>
#include <orncore/config/Localizer.h>
#include <orncore/debug/DebugDatabase.h>
#include <orncore/debug/Log.h>

namespace orncore {

void ResetServices() {
  config::Localizer::Get().SetDictionary(nullptr);
  config::SetClientInfo(nullptr);
  debug::DebugDatabase::Instance().SetStore(nullptr);
  debug::SetLogSink({});
  appstatemanager::SetTerminationQuery({});
}

}  // namespace orncore
