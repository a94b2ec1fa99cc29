// Whether the user lets the application log its use.
//
// A host sets a query once, at start:
//
//   ornappsupport::analytics::SDMUsageLogger::SetLoggingQuery([] { return prefs.LogUsage(); });
#ifndef ORNAPPSUPPORT_ANALYTICS_SDMUSAGELOGGER_H_
#define ORNAPPSUPPORT_ANALYTICS_SDMUSAGELOGGER_H_

#include <functional>

#include <orncore/Export.h>

namespace ornappsupport::analytics {

/// Answers whether the host's usage logging is on.
///
/// Threads: safe to use from any thread. The query must be safe to call from the threads that call
/// `IsLogging`.
class ORN_EXPORT SDMUsageLogger {
 public:
  SDMUsageLogger() = delete;

  /// Calls the host's query and returns its result; true if there is no query. Passes on what the
  /// query throws.
  static bool IsLogging();

  /// Replaces the query. An empty function removes it.
  static void SetLoggingQuery(std::function<bool()> query);
};

}  // namespace ornappsupport::analytics

#endif  // ORNAPPSUPPORT_ANALYTICS_SDMUSAGELOGGER_H_
