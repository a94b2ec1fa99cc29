// The services of this module that a host replaces, and the way back.
//
// | service              | how a host replaces it                            | without          |
// |----------------------|---------------------------------------------------|------------------|
// | dictionary           | config::Localizer::Get().SetDictionary            | default texts    |
// | client information   | config::SetClientInfo                             | 25.1, 42, Mac    |
// | debug entries        | debug::DebugDatabase::Instance().SetStore         | empty, in memory |
// | log                  | debug::SetLogSink                                 | standard error   |
// | termination          | appstatemanager::SetTerminationQuery              | false            |
//
// Console commands and initializers are registered, not replaced: console/CommandRegistry.h,
// config/InitializerRegistrar.h.
#ifndef ORNCORE_SERVICES_H_
#define ORNCORE_SERVICES_H_

#include <orncore/Export.h>

namespace orncore {

/// Puts every service above back to what it was at the start. Registered commands and initializers
/// stay. Not while another thread uses a service.
ORN_EXPORT void ResetServices();

}  // namespace orncore

#endif  // ORNCORE_SERVICES_H_
