// Checks whether usage logging is on, with a query that the host supplies.
//
// The host sets the query once at startup:
//
//   ornappsupport::analytics::SDMUsageLogger::SetLoggingQuery([] { return prefs.LogUsage(); });
#ifndef ORNAPPSUPPORT_ANALYTICS_SDMUSAGELOGGER_H_
#define ORNAPPSUPPORT_ANALYTICS_SDMUSAGELOGGER_H_

#include <functional>

#include <orncore/Export.h>

namespace ornappsupport::analytics {

/// Checks whether usage logging is on in the host. If usage logging is off, only internal users can
/// rate features.
///
/// Threads: safe to use from any thread. If a host uses lists on several threads, its query must be
/// safe to call from all of them at the same time.
class ORN_EXPORT SDMUsageLogger {
 public:
  /// The class is not constructible, because all its functions are static.
  SDMUsageLogger() = delete;

  /// Calls the host's query on the calling thread and returns its result. Returns true if there is
  /// no query. Exceptions from the query propagate to the caller.
  static bool IsLogging();

  /// Replaces the query, which returns whether usage logging is on. An empty function removes the
  /// query. A call to `IsLogging` on another thread may still use the previous query.
  ///
  /// If memory runs out, throws `std::bad_alloc` and keeps the previous query.
  static void SetLoggingQuery(std::function<bool()> query);
};

}  // namespace ornappsupport::analytics

#endif  // ORNAPPSUPPORT_ANALYTICS_SDMUSAGELOGGER_H_
