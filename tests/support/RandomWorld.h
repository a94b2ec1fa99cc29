// Provides a host with random features, settings and translations, and random data files for it.
#ifndef TESTS_SUPPORT_RANDOMWORLD_H_
#define TESTS_SUPPORT_RANDOMWORLD_H_

#include <string>
#include <vector>

#include "tests/support/FakeHost.h"
#include "tests/support/RandomSource.h"

namespace test_support {

/// A fake host whose features, settings, state, dictionary and panel links are random. About a
/// third of these hosts have a dictionary, and about a third have their own links. Only one
/// `RandomWorld` may exist at a time, because it replaces the services of the process.
class RandomWorld {
 public:
  /// Creates a random host. `random` must outlive this object.
  explicit RandomWorld(RandomSource& random);

  FakeHost& Host() { return host_; }

  /// Changes the settings of the host and the switches of its features at random.
  void ChangeHost();

  /// Returns a random data file.
  std::string DataFile();
  /// Returns a random rating placeholder. On average, more than half of the placeholders are empty.
  std::u16string Placeholder();
  /// Returns a random key, which can be the key of an item.
  std::string Key();

 private:
  void AddFeatures();
  void Translate();
  void SetLinks();
  std::string Text();
  std::string Field(const char* usual);
  std::string Row();

  RandomSource& random_;
  FakeHost host_;
  std::vector<std::string> internalKeys_;
};

}  // namespace test_support

#endif  // TESTS_SUPPORT_RANDOMWORLD_H_
