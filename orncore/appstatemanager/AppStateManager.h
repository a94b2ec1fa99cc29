// Whether the application is terminating.
//
// A host sets a query once, at start:
//
//   orncore::appstatemanager::SetTerminationQuery([] { return theApplication->IsQuitting(); });
#ifndef ORNCORE_APPSTATEMANAGER_APPSTATEMANAGER_H_
#define ORNCORE_APPSTATEMANAGER_APPSTATEMANAGER_H_

#include <functional>

#include <orncore/Export.h>

namespace orncore::appstatemanager {

/// Calls the host's query and returns its result; false if there is no query. Passes on what the
/// query throws. Safe to call from any thread, if the query is.
ORN_EXPORT bool IsTerminating();

/// Replaces the query. An empty function removes it. Safe to call from any thread.
ORN_EXPORT void SetTerminationQuery(std::function<bool()> query);

}  // namespace orncore::appstatemanager

#endif  // ORNCORE_APPSTATEMANAGER_APPSTATEMANAGER_H_
