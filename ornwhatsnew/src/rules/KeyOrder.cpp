#include "ornwhatsnew/src/rules/KeyOrder.h"

#include <cstddef>
#include <memory_resource>
#include <unordered_map>

namespace ornwhatsnew {
namespace {

using Order = std::list<std::string>;

// For each distinct key its place in the order, at its first occurrence. All others are removed,
// and keys that are missing are added at the end.
std::vector<Order::iterator> Gather(Order& order, const MovingKeys& keys) {
  // All entries go at once, when the search is over.
  std::pmr::monotonic_buffer_resource memory;
  std::pmr::unordered_map<std::string_view, std::size_t> numbers(&memory);
  numbers.reserve(keys.size());
  MovingKeys distinct;
  distinct.reserve(keys.size());
  for (const std::string_view key : keys) {
    if (numbers.emplace(key, distinct.size()).second) distinct.push_back(key);
  }

  std::vector<Order::iterator> places(distinct.size(), order.end());
  std::vector<Order::iterator> repeats;
  for (auto key = order.begin(); key != order.end(); ++key) {
    const auto number = numbers.find(*key);
    if (number == numbers.end()) continue;
    Order::iterator& place = places[number->second];
    if (place == order.end()) {
      place = key;
    } else {
      repeats.push_back(key);
    }
  }

  Order missing;
  for (std::size_t i = 0; i < distinct.size(); ++i) {
    if (places[i] == order.end()) places[i] = missing.emplace(missing.end(), distinct[i]);
  }
  // Nothing throws from here on, so that the order is never left half changed.
  order.splice(order.end(), missing);
  for (const Order::iterator repeat : repeats) order.erase(repeat);
  return places;
}

}  // namespace

void MoveKeysToFront(Order& order, const MovingKeys& keys) {
  const std::vector<Order::iterator> places = Gather(order, keys);
  for (auto place = places.rbegin(); place != places.rend(); ++place) {
    order.splice(order.begin(), order, *place);
  }
}

void MoveKeysToBack(Order& order, const MovingKeys& keys) {
  for (const Order::iterator place : Gather(order, keys)) {
    order.splice(order.end(), order, place);
  }
}

}  // namespace ornwhatsnew
