// Checks whether the application is terminating, through a query that the host supplies.
//
// The host sets the query once at startup:
//
//   orncore::appstatemanager::SetTerminationQuery([] { return theApplication->IsQuitting(); });
#ifndef ORNCORE_APPSTATEMANAGER_APPSTATEMANAGER_H_
#define ORNCORE_APPSTATEMANAGER_APPSTATEMANAGER_H_

#include <functional>

#include <orncore/Export.h>

namespace orncore::appstatemanager {

/// Calls the host's query on the calling thread and returns its result. Returns false if there is
/// no query. Exceptions from the query propagate to the caller.
///
/// Safe to call from any thread if the query is safe to call from any thread.
ORN_EXPORT bool IsTerminating();

/// Replaces the query, which returns whether the application is terminating. An empty function
/// removes it. A call to `IsTerminating` on another thread may still use the previous query.
///
/// If memory runs out, throws `std::bad_alloc` and keeps the previous query. Safe to call from any
/// thread.
ORN_EXPORT void SetTerminationQuery(std::function<bool()> query);

}  // namespace orncore::appstatemanager

#endif  // ORNCORE_APPSTATEMANAGER_APPSTATEMANAGER_H_
