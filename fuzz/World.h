// A fake host for the fuzzers' lists, which the input configures.
#ifndef FUZZ_WORLD_H_
#define FUZZ_WORLD_H_

#include <cstddef>
#include <string>
#include <string_view>

#include "tests/support/FakeHost.h"

namespace fuzz {

/// The number of switches that a `World` reads.
inline constexpr std::size_t kWorldSwitches = 5;

/// A fake host with a fixed feature table. It is configured by these switches, one byte each:
///
///   0  display options, the lower five bits
///   1  1 internal features allowed, 2 no usage logging, 4 terminating, 8 show features that are
///      off, 10 show unlock codes, 20 the platform is Win (hex)
///   2  features that are switched off, one bit each
///   3  features that the user may switch on, one bit each
///   4  1 a rating placeholder, 2 a dictionary
class World {
 public:
  /// Reads the switches of a line. A missing switch is 0.
  explicit World(std::string_view switches);

  test_support::FakeHost& Host() { return host_; }
  unsigned Options() const { return options_; }
  const std::u16string& Placeholder() const { return placeholder_; }

 private:
  void AddFeatures(unsigned off, unsigned available);
  void Translate();

  test_support::FakeHost host_;
  unsigned options_;
  std::u16string placeholder_;
};

}  // namespace fuzz

#endif  // FUZZ_WORLD_H_
