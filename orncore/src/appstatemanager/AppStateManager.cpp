#include <orncore/appstatemanager/AppStateManager.h>

#include <memory>
#include <utility>

#include <orncore/utility/NoDestructor.h>

namespace orncore::appstatemanager {
namespace {

using Query = std::function<bool()>;

// Null for none. Each call holds the query it asks, which may put another in its place meanwhile.
std::shared_ptr<const Query>& TheQuery() {
  static utility::NoDestructor<std::shared_ptr<const Query>> query;
  return *query;
}

}  // namespace

bool IsTerminating() {
  const auto query = TheQuery();
  return query && (*query)();
}

void SetTerminationQuery(std::function<bool()> query) {
  std::shared_ptr<const Query> held;
  if (query) held = std::make_shared<const Query>(std::move(query));
  TheQuery().swap(held);
}

}  // namespace orncore::appstatemanager
