// Describes the services that a host can replace, and restores their defaults.
//
//   Service             Function that replaces it                      Default
//   ------------------  ---------------------------------------------  -----------------------
//   beta features       ornappsupport::feature::SetFeatureService      no features
//   permission          ornappsupport::feature::SetFeatureService      no permission
//   usage logging       analytics::SDMUsageLogger::SetLoggingQuery     on
//   panel links         ornappsupport::links::SetPanelLinks            the default PanelLinks
//   dictionary          orncore::config::Localizer::SetDictionary      the default texts
//   client information  orncore::config::SetClientInfo                 25.1, build 42, Mac
//   debug entries       orncore::debug::DebugDatabase::SetStore        empty, in memory
//   log                 orncore::debug::SetLogSink                     standard error
//   termination         orncore::appstatemanager::SetTerminationQuery  not terminating
//
// Console commands and initialisers are not services. orncore/console/CommandRegistry.h and
// orncore/config/InitializerRegistrar.h explain how to register them.
#ifndef ORNAPPSUPPORT_SERVICES_H_
#define ORNAPPSUPPORT_SERVICES_H_

#include <orncore/Export.h>

namespace ornappsupport {

/// Restores the defaults of all services that a host can replace, for example between tests. Does
/// not change the registered commands and initialisers.
///
/// Do not call this function while a list or another thread uses a service. If memory runs out,
/// throws `std::bad_alloc`. Some services then have their defaults, and the others are unchanged.
ORN_EXPORT void ResetServices();

}  // namespace ornappsupport

#endif  // ORNAPPSUPPORT_SERVICES_H_
