// Whether the application is on its way out.
//
// A host tells by a function of its own, once, at start:
//
//   orncore::appstatemanager::SetTerminationQuery([] { return theApplication->IsQuitting(); });
#ifndef ORNCORE_APPSTATEMANAGER_APPSTATEMANAGER_H_
#define ORNCORE_APPSTATEMANAGER_APPSTATEMANAGER_H_

#include <functional>

#include <orncore/Export.h>

namespace orncore::appstatemanager {

/// Whether the application is terminating: asks the host's query anew at every call; false without
/// one. What the query throws passes through. Safe from any thread (if the query is) while none
/// replaces it.
ORN_EXPORT bool IsTerminating();

/// Replaces the query; empty: none, as at the start. Not while another thread asks.
ORN_EXPORT void SetTerminationQuery(std::function<bool()> query);

}  // namespace orncore::appstatemanager

#endif  // ORNCORE_APPSTATEMANAGER_APPSTATEMANAGER_H_
