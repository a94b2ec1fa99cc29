// The services that a host can replace, and how to restore the defaults.
//
// | service            | how a host replaces it                              | default |
// |--------------------|-----------------------------------------------------|----------------------|
// | beta features      | ornappsupport::feature::SetFeatureService           | none, no permission
// | | usage logging      | ornappsupport::analytics::SDMUsageLogger            | on | | |
// ::SetLoggingQuery                                   |                      | | dictionary |
// orncore::config::Localizer::Get().SetDictionary     | the default texts    | | client information
// | orncore::config::SetClientInfo                      | 25.1, 42, Mac        | | debug entries |
// orncore::debug::DebugDatabase::Instance().SetStore  | empty, in memory     | | log |
// orncore::debug::SetLogSink                          | standard error       | | termination |
// orncore::appstatemanager::SetTerminationQuery       | not terminating      |
//
// Console commands and initializers are registered, not replaced: see
// orncore/console/CommandRegistry.h and orncore/config/InitializerRegistrar.h.
#ifndef ORNAPPSUPPORT_SERVICES_H_
#define ORNAPPSUPPORT_SERVICES_H_

#include <orncore/Export.h>

namespace ornappsupport {

/// Restores the default of every service above. Registered commands and initializers stay. Must not
/// be called while another thread uses a service.
ORN_EXPORT void ResetServices();

}  // namespace ornappsupport

#endif  // ORNAPPSUPPORT_SERVICES_H_
