#include "ornwhatsnew/src/rules/KeyOrder.h"

#include <memory_resource>
#include <unordered_set>

namespace ornwhatsnew {
namespace {

using Order = std::list<std::string>;

// Removes every occurrence of the keys from `order`. Returns the keys without duplicates.
Order Remove(Order& order, const MovingKeys& keys) {
  Order distinct;
  // With a separate allocation for each element of the set, the function would take almost twice as
  // long (docs/performance.md). Use `operator new`, because a host can replace the default
  // resource.
  std::pmr::monotonic_buffer_resource memory(std::pmr::new_delete_resource());
  std::pmr::unordered_set<std::string_view> moving(&memory);
  moving.reserve(keys.size());
  for (const std::string_view key : keys) {
    if (moving.insert(key).second) distinct.emplace_back(key);
  }
  order.remove_if([&moving](const std::string& key) { return moving.contains(key); });
  return distinct;
}

}  // namespace

void MoveKeysToFront(Order& order, const MovingKeys& keys) {
  // Call `begin` after the removal, which can remove the first key and invalidate its iterator.
  Order moved = Remove(order, keys);
  order.splice(order.begin(), moved);
}

void MoveKeysToBack(Order& order, const MovingKeys& keys) {
  Order moved = Remove(order, keys);
  order.splice(order.end(), moved);
}

}  // namespace ornwhatsnew
