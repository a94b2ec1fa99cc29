// Compares the library with the plain implementation for random hosts, states and data files.
#include <algorithm>
#include <string>

#include <gtest/gtest.h>

#include <ornwhatsnew/FeatureListData.h>

#include "tests/support/PlainPanel.h"
#include "tests/support/RandomSource.h"
#include "tests/support/RandomWorld.h"

namespace ornwhatsnew {
namespace {

using test_support::ExplainedVisibilities;
using test_support::FirstDifference;
using test_support::FormatWithLibrary;
using test_support::kSeed;
using test_support::PlainPanel;
using test_support::RandomSource;
using test_support::RandomWorld;

constexpr int kWorlds = 250;
constexpr int kStepsPerWorld = 12;

// A list of the library, and a list of the plain implementation with the same content. Each list
// has its own state store. Both stores must always have the same content.
class ListPair {
 public:
  explicit ListPair(RandomWorld& world)
      : world_(world),
        store_(world.Host().State().AllTexts()),
        list_(world.Host().Getter(), world.Host().Setter()),
        plain_(store_) {}

  void Load(const std::string& dataText) {
    list_.InitWithData(dataText);
    plain_.Load(dataText);
    EXPECT_EQ(FirstDifference(list_, plain_), "");
  }

  void Step(RandomSource& random, const std::string& dataText) {
    const auto options = static_cast<unsigned>(random.Below(32));
    switch (random.Below(8)) {
      case 0:
        world_.ChangeHost();
        break;
      case 1:
        Load(random.Flip() ? world_.DataFile() : dataText);
        break;
      case 2:
        Rate(world_.Key());
        break;
      case 3:
        Load(dataText);
        [[fallthrough]];
      default:
        ExpectSamePanel(options, world_.Placeholder());
    }
    EXPECT_EQ(list_.IsAnythingNew(static_cast<unsigned char>(options)),
              plain_.IsAnythingNew(options));
    EXPECT_EQ(list_.IsAnythingNeedingRating(), plain_.IsAnythingNew(0x16));
    ExpectExplained(options);
    EXPECT_EQ(world_.Host().State().AllTexts(), store_);
  }

 private:
  void Rate(const std::string& key) {
    list_.MarkItemHasBeenRated(key);
    plain_.MarkItemHasBeenRated(key);
  }

  void ExpectSamePanel(unsigned options, const std::u16string& placeholder) {
    EXPECT_EQ(FormatWithLibrary(list_, world_.Host().State(), options, placeholder),
              plain_.Format(options, placeholder))
        << "options " << options;
  }

  // Expects that the library finds a hiding rule for an item or a change if and only if the plain
  // implementation hides it. Expects that `CountNew` counts the shown items and their shown
  // changes.
  void ExpectExplained(unsigned options) {
    const auto visibilities = ExplainedVisibilities(list_, options);
    EXPECT_TRUE(visibilities == plain_.Visibilities(options)) << "options " << options;
    NewCount count;
    for (const auto& [key, visibility] : visibilities) {
      if (!visibility.isItemShown) continue;
      ++count.items;
      count.changes +=
          static_cast<std::size_t>(std::ranges::count(visibility.areChangesShown, true));
    }
    EXPECT_EQ(count, list_.CountNew(static_cast<unsigned char>(options))) << "options " << options;
  }

  RandomWorld& world_;
  PlainPanel::Texts store_;
  FeatureListData list_;
  PlainPanel plain_;
};

TEST(PlainPanel, MatchesTheLibraryInRandomWorlds) {
  for (std::uint64_t seed = kSeed; seed < kSeed + kWorlds; ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    RandomSource random(seed);
    RandomWorld world(random);
    ListPair pair(world);
    const std::string dataText = world.DataFile();
    pair.Load(dataText);
    for (int step = 0; step < kStepsPerWorld; ++step) {
      SCOPED_TRACE("step " + std::to_string(step));
      pair.Step(random, dataText);
      if (testing::Test::HasFailure()) return;  // the first difference can cause later ones
    }
  }
}

}  // namespace
}  // namespace ornwhatsnew
