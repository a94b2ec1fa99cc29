// Generates reproducible random data for tests. The same seed gives the same data on every system.
#ifndef TESTS_SUPPORT_RANDOMSOURCE_H_
#define TESTS_SUPPORT_RANDOMSOURCE_H_

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <random>
#include <string>

namespace test_support {

/// The seed of the random data in tests that use a single seed.
inline constexpr std::uint64_t kSeed = 20251120;

/// A source of random data. Tests print its seed on failure. Not thread-safe.
class RandomSource {
 public:
  explicit RandomSource(std::uint64_t seed) : engine_(seed) {}

  /// Returns a number from 0 to `bound - 1`. Does not use the distributions of the standard
  /// library, because their results differ between implementations. REQUIRES: `bound > 0`.
  std::size_t Below(std::size_t bound) { return static_cast<std::size_t>(engine_() % bound); }

  /// Returns true with a probability of 1 in `n`. REQUIRES: `n > 0`.
  bool OneIn(std::size_t n) { return Below(n) == 0; }
  /// Returns true with a probability of 1 in 2.
  bool Flip() { return OneIn(2); }

  /// Returns a random element of an array or a container. REQUIRES: `range` is not empty.
  template <class Range>
  const auto& Pick(const Range& range) {
    return *std::next(std::begin(range), static_cast<std::ptrdiff_t>(Below(std::size(range))));
  }

  /// Returns a string of up to `maxFragments` random fragments. Most fragments have a special
  /// meaning in data files or are difficult to convert. Examples are separators, quotes, newlines,
  /// keywords, markup, byte order marks and ill-formed UTF-8.
  std::string HostileText(std::size_t maxFragments);

  /// Returns a string of up to `maxUnits` random UTF-16 code units. Some are surrogates, which may
  /// be unpaired.
  std::u16string HostileUTF16(std::size_t maxUnits);

 private:
  std::mt19937_64 engine_;
};

}  // namespace test_support

#endif  // TESTS_SUPPORT_RANDOMSOURCE_H_
