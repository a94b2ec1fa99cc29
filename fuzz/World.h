// Defines a fake host that a fuzzer's input configures.
#ifndef FUZZ_WORLD_H_
#define FUZZ_WORLD_H_

#include <cstddef>
#include <string>
#include <string_view>

#include "tests/support/FakeHost.h"

namespace fuzz {

/// The number of switches that a `World` reads.
inline constexpr std::size_t kWorldSwitches = 5;

/// A fake host with a fixed feature table. These switches, one byte each, configure the host:
///
///   0  the display options, in the lower five bits
///   1  flags: 0x01 internal features allowed, 0x02 no usage logging, 0x04 terminating, 0x08 show
///      features that are off, 0x10 show internal keys, 0x20 the platform is "Win"
///   2  features that are switched off, one bit each
///   3  features that the user can switch on, one bit each
///   4  flags: 0x01 use a rating placeholder, 0x02 use a dictionary
class World {
 public:
  /// Configures the host with `switches`. A missing switch is 0.
  explicit World(std::string_view switches);

  test_support::FakeHost& Host() { return host_; }
  unsigned Options() const { return options_; }
  const std::u16string& Placeholder() const { return placeholder_; }

  /// Adds a translation of one of the library's own templates to the dictionary. `number` selects
  /// the template and can have any value.
  void TranslateTemplate(unsigned number, std::string_view translation);

 private:
  void AddFeatures(unsigned off, unsigned available);
  void Translate();

  test_support::FakeHost host_;
  unsigned options_;
  std::u16string placeholder_;
};

}  // namespace fuzz

#endif  // FUZZ_WORLD_H_
