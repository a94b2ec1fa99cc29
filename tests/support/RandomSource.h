// Random data for tests that anybody can repeat: the same seed gives the same data everywhere.
#ifndef TESTS_SUPPORT_RANDOMSOURCE_H_
#define TESTS_SUPPORT_RANDOMSOURCE_H_

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <random>
#include <string>

namespace test_support {

/// A seeded source. Tests name its seed in their failures. One thread at a time.
class RandomSource {
 public:
  explicit RandomSource(std::uint64_t seed) : engine_(seed) {}

  /// A number from 0 up to but not including `bound`. The standard's distributions differ between
  /// libraries, so there is none here. REQUIRES: `bound > 0`.
  std::size_t Below(std::size_t bound) { return static_cast<std::size_t>(engine_() % bound); }

  /// True once in `n` times.
  bool OneIn(std::size_t n) { return Below(n) == 0; }
  bool Flip() { return OneIn(2); }

  /// One element of an array or a container. REQUIRES: it is not empty.
  template <class Range>
  const auto& Pick(const Range& range) {
    return *std::next(std::begin(range), static_cast<std::ptrdiff_t>(Below(std::size(range))));
  }

  /// Up to `maxPieces` pieces of everything that has a meaning in data files or is hard to read as
  /// UTF-8: separators, quotes, line ends, keywords' letters, marks, broken sequences.
  std::string HostileText(std::size_t maxPieces);

  /// Up to `maxUnits` UTF-16 units, surrogates among them, lone and in pairs.
  std::u16string HostileUTF16(std::size_t maxUnits);

 private:
  std::mt19937_64 engine_;
};

}  // namespace test_support

#endif  // TESTS_SUPPORT_RANDOMSOURCE_H_
