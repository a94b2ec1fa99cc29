// The order of keys: all features touched by changes and moved to the back, then all unlocked and
// moved to the front. The floor is one pass each way, with a plain table of where each key stands,
// and knows neither repeated keys nor missing ones.
#include <algorithm>
#include <cstddef>
#include <list>
#include <random>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include <benchmark/benchmark.h>

#include "benchmarks/support/Rows.h"
#include "ornwhatsnew/src/KeyOrder.h"

namespace benchmarks {
namespace {

using Order = std::list<std::string>;

std::vector<std::string> Keys(std::size_t count) {
  std::vector<std::string> keys;
  for (std::size_t i = 0; i < count; ++i) keys.push_back("EPIC-" + std::to_string(100'000 + i));
  return keys;
}

// The order in which a file touches features has little to do with that of their names.
std::vector<std::string> Shuffled(std::vector<std::string> keys) {
  std::shuffle(keys.begin(), keys.end(), std::mt19937_64(1));
  return keys;
}

void KeyOrder(benchmark::State& state) {
  const std::vector<std::string> keys = Keys(Rows(state));
  const std::vector<std::string> touched = Shuffled(keys);
  const ornwhatsnew::MovingKeys moving(touched.begin(), touched.end());
  Order order(keys.begin(), keys.end());
  for (auto _ : state) {
    ornwhatsnew::MoveKeysToBack(order, moving);
    ornwhatsnew::MoveKeysToFront(order, moving);
  }
  SetRows(state, Rows(state));
}
BENCHMARK(KeyOrder)->RangeMultiplier(10)->Range(1'000, 1'000'000);

void OnePass(benchmark::State& state) {
  const std::vector<std::string> keys = Keys(Rows(state));
  const std::vector<std::string> touched = Shuffled(keys);
  Order order(keys.begin(), keys.end());
  for (auto _ : state) {
    for (int way = 0; way < 2; ++way) {
      std::unordered_map<std::string_view, Order::iterator> places;
      places.reserve(order.size());
      for (auto key = order.begin(); key != order.end(); ++key) places.emplace(*key, key);
      for (const std::string& key : touched) {
        order.splice(way == 0 ? order.end() : order.begin(), order, places.find(key)->second);
      }
    }
  }
  SetRows(state, Rows(state));
}
BENCHMARK(OnePass)->Name("Floor.KeyOrder")->RangeMultiplier(10)->Range(1'000, 1'000'000);

}  // namespace
}  // namespace benchmarks
