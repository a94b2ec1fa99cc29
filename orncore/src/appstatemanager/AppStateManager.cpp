#include <orncore/appstatemanager/AppStateManager.h>

#include <utility>

#include "orncore/src/utility/ServiceHolder.h"

namespace orncore::appstatemanager {
namespace {

utility::FunctionHolder<bool()> terminationQuery;

}  // namespace

bool IsTerminating() {
  const auto query = terminationQuery.Get();
  return query && (*query)();
}

void SetTerminationQuery(std::function<bool()> query) {
  terminationQuery.Set(std::move(query));
}

}  // namespace orncore::appstatemanager
