#include <ornappsupport/analytics/SDMUsageLogger.h>

#include <utility>

#include "orncore/src/utility/ServiceHolder.h"

namespace ornappsupport::analytics {
namespace {

orncore::utility::FunctionHolder<bool()> loggingQuery;

}  // namespace

bool SDMUsageLogger::IsLogging() {
  const auto query = loggingQuery.Get();
  return !query || (*query)();
}

void SDMUsageLogger::SetLoggingQuery(std::function<bool()> query) {
  loggingQuery.Set(std::move(query));
}

}  // namespace ornappsupport::analytics
