// Whether the user lets the application log its use.
//
// A host tells by a function of its own, once, at start:
//
//   ornappsupport::analytics::SDMUsageLogger::SetLoggingQuery([] { return prefs.LogUsage(); });
#ifndef ORNAPPSUPPORT_ANALYTICS_SDMUSAGELOGGER_H_
#define ORNAPPSUPPORT_ANALYTICS_SDMUSAGELOGGER_H_

#include <functional>

#include <orncore/Export.h>

namespace ornappsupport::analytics {

/// The host's usage logger, as far as anyone here asks for it.
///
/// Threads: IsLogging is safe from any (if the query is) while none replaces the query.
class ORN_EXPORT SDMUsageLogger {
 public:
  SDMUsageLogger() = delete;

  /// Whether usage logging is on: asks the host's query anew at every call; true without one. What
  /// the query throws passes through.
  static bool IsLogging();

  /// Replaces the query; empty: none, as at the start.
  static void SetLoggingQuery(std::function<bool()> query);
};

}  // namespace ornappsupport::analytics

#endif  // ORNAPPSUPPORT_ANALYTICS_SDMUSAGELOGGER_H_
