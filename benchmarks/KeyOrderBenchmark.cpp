// Moves all keys to the back of the key order and then to its front. A list moves the keys of its
// features in this way if each feature is unlocked and has a change in the data file. For each
// direction, the baseline fills a hash table with the keys to move. Then it looks up each key of
// the order and moves it.
#include <algorithm>
#include <cstddef>
#include <list>
#include <random>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

#include <benchmark/benchmark.h>

#include "benchmarks/support/Rows.h"
#include "ornwhatsnew/src/rules/KeyOrder.h"

namespace benchmarks {
namespace {

using Order = std::list<std::string>;

std::vector<std::string> Keys(std::size_t count) {
  std::vector<std::string> keys;
  for (std::size_t i = 0; i < count; ++i) keys.push_back("EPIC-" + std::to_string(100'000 + i));
  return keys;
}

// Shuffles the keys, because the changes in a data file are usually not in key order.
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
BENCHMARK(KeyOrder)->RangeMultiplier(10)->Range(1'000, 100'000);

void OnePass(benchmark::State& state) {
  const std::vector<std::string> keys = Keys(Rows(state));
  const std::vector<std::string> touched = Shuffled(keys);
  Order order(keys.begin(), keys.end());
  // Move the keys once, so that they have the same memory layout as in the benchmark `KeyOrder`
  // after its first iteration.
  ornwhatsnew::MoveKeysToBack(order, {touched.begin(), touched.end()});
  for (auto _ : state) {
    for (const bool back : {true, false}) {
      const std::unordered_set<std::string_view> moving(touched.begin(), touched.end(),
                                                        touched.size());
      auto next = order.begin();
      for (std::size_t left = order.size(); left > 0; --left) {
        const auto key = next++;
        if (moving.contains(*key)) order.splice(back ? order.end() : order.begin(), order, key);
      }
    }
  }
  SetRows(state, Rows(state));
}
BENCHMARK(OnePass)->Name("Baseline.KeyOrder")->RangeMultiplier(10)->Range(1'000, 100'000);

}  // namespace
}  // namespace benchmarks
