#include <ornappsupport/analytics/SDMUsageLogger.h>

#include <memory>
#include <utility>

#include <orncore/utility/NoDestructor.h>

namespace ornappsupport::analytics {
namespace {

using Query = std::function<bool()>;

// Null for none. Each call holds the query it asks, which may put another in its place meanwhile.
std::shared_ptr<const Query>& TheQuery() {
  static orncore::utility::NoDestructor<std::shared_ptr<const Query>> query;
  return *query;
}

}  // namespace

bool SDMUsageLogger::IsLogging() {
  const auto query = TheQuery();
  return !query || (*query)();
}

void SDMUsageLogger::SetLoggingQuery(std::function<bool()> query) {
  std::shared_ptr<const Query> held;
  if (query) held = std::make_shared<const Query>(std::move(query));
  TheQuery().swap(held);
}

}  // namespace ornappsupport::analytics
