// Defines a helper for tests that check the errors of state stores.
#ifndef TESTS_HOSTS_COMMON_STOREERROROF_H_
#define TESTS_HOSTS_COMMON_STOREERROROF_H_

#include <string>

#include "hosts/common/StateStore.h"

namespace hosts::common {

/// Calls `work`. Returns the message of the `StateStoreError` that it throws, or an empty string if
/// it throws no exception.
template <class Work>
std::string StoreErrorOf(const Work& work) {
  try {
    work();
  } catch (const StateStoreError& error) {
    return error.what();
  }
  return {};
}

}  // namespace hosts::common

#endif  // TESTS_HOSTS_COMMON_STOREERROROF_H_
