// Reproducible random data for tests: a seed gives the same data everywhere.
#ifndef TESTS_SUPPORT_RANDOMSOURCE_H_
#define TESTS_SUPPORT_RANDOMSOURCE_H_

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <random>
#include <string>

namespace test_support {

/// A source of random data. Tests print its seed on failure. Not thread-safe.
class RandomSource {
 public:
  explicit RandomSource(std::uint64_t seed) : engine_(seed) {}

  /// Returns a number from 0 to `bound - 1`. Does not use the standard's distributions, because
  /// they differ between libraries. REQUIRES: `bound > 0`.
  std::size_t Below(std::size_t bound) { return static_cast<std::size_t>(engine_() % bound); }

  /// Returns true with a probability of one in `n`.
  bool OneIn(std::size_t n) { return Below(n) == 0; }
  bool Flip() { return OneIn(2); }

  /// Returns an element of an array or a container. REQUIRES: it is not empty.
  template <class Range>
  const auto& Pick(const Range& range) {
    return *std::next(std::begin(range), static_cast<std::ptrdiff_t>(Below(std::size(range))));
  }

  /// Returns up to `maxPieces` strings that have a meaning in data files or are difficult UTF-8:
  /// separators, quotes, line ends, letters of keywords, marks, invalid sequences.
  std::string HostileText(std::size_t maxPieces);

  /// Returns up to `maxUnits` UTF-16 units with paired and unpaired surrogates.
  std::u16string HostileUTF16(std::size_t maxUnits);

 private:
  std::mt19937_64 engine_;
};

}  // namespace test_support

#endif  // TESTS_SUPPORT_RANDOMSOURCE_H_
