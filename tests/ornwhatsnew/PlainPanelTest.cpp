// Compares the library with the plain implementation for random hosts, states and data files.
#include <gtest/gtest.h>

#include <ornwhatsnew/FeatureListData.h>

#include "tests/support/FakeHost.h"
#include "tests/support/PlainPanel.h"
#include "tests/support/RandomSource.h"

namespace ornwhatsnew {
namespace {

using test_support::FakeHost;
using test_support::FirstDifference;
using test_support::FormatWithLibrary;
using test_support::PlainPanel;
using test_support::RandomSource;

constexpr std::uint64_t kSeed = 20251120;
constexpr int kWorlds = 250;
constexpr int kStepsPerWorld = 12;

constexpr const char* kIDs[] = {"EPIC-1",     "EPIC-1",   "epic-1", "EPIC-2",     "ORN-7",
                                "orn-12",     "STORY-9",  "MISC",   "BUGFIX",     "bugfix",
                                "INTERNAL",   "Internal", "",       "Unreviewed", "UNREVIEWED",
                                "\xC3\x89-1", "none"};
constexpr const char* kSaliences[] = {"",
                                      "",
                                      "",
                                      "Headline",
                                      "DETAIL",
                                      "HideBetaFeature",
                                      "HideBetaFeatureFromExternal",
                                      "UnhideBetaFeature",
                                      "Unreviewed",
                                      "RatingHidesBetaFeatureDescription",
                                      "Loud"};
constexpr const char* kRatings[] = {"", "", "RequestRating", "REQUESTRATING", "How was it?"};
constexpr const char* kVersions[] = {"", "", "24.0.0.1", "25.1.0.42", "25.2", "26.0.0.0", "x.y"};
constexpr const char* kPlatforms[] = {"", "", "Mac", "MAC", "win", "Linux"};
constexpr const char* kURLs[] = {"", "", "https://a.example/1", "https://a.example/2",
                                 "http://b.example"};
constexpr const char* kTexts[] = {"",
                                  "",
                                  "Faster export",
                                  "Commas, too",
                                  "$$$/text/one=One^}s",
                                  "$$$/private/text/two=Two",
                                  "$$$/text/three",
                                  "\xE6\x97\xA5\xE6\x9C\xAC",
                                  "\xF0\x9F\x98\x80"};
constexpr const char* kTranslated[] = {
    "$$$/text/one",
    "$$$/private/text/two",
    "$$$/private/ornwhatsnew/Feature/Newline",
    "$$$/ornwhatsnew/Feature/Detail/Plain/DisplayTemplate/Tab",
    "$$$/ornwhatsnew/Feature/Detail/OS/displaytemplate",
    "$$$/ornwhatsnew/Feature/Detail/VersionRange/displaytemplate",
    "$$$/ornwhatsnew/Feature/Detail/JiraID/displaytemplate",
    "$$$/ornwhatsnew/Feature/Item/Unlock/Unlocked",
    "$$$/ornwhatsnewui/WhatsNewView/ParenthesizedCode",
    "$$$/ornwhatsnew/feature/nonewchanges/displaytemplate"};

// Provides a host with random features and a random state, and generates random data files for it.
class World {
 public:
  explicit World(RandomSource& random) : random_(random) {
    AddFeatures();
    ChangeHost();
    if (random_.OneIn(3)) Translate();
    if (random_.Flip()) {
      host_.State().Put("WhatsNew.LastVersionSeenWhatsNew", random_.Pick(kVersions));
      host_.State().Put("WhatsNew.AllVersionSeenWhatsNew", "24.0.0.2  " + random_.HostileText(3));
      host_.State().Put("WhatsNew.AllSeenItems", random_.HostileText(4));
    }
  }

  FakeHost& Host() { return host_; }

  void ChangeHost() {
    host_.SetInternalFeaturesAllowed(random_.Flip());
    host_.SetUsageLogging(!random_.OneIn(4));
    host_.SetTerminating(random_.OneIn(8));
    host_.SetPlatform(random_.OneIn(4) ? "Win" : "Mac");
    host_.ShowAllOffFeatures(random_.OneIn(3));
    host_.ShowAllUnlockCodes(random_.OneIn(3));
    for (const std::string& key : internalKeys_) {
      host_.SetFeatureEnabled(key, random_.Flip());
      host_.SetFeatureAvailableForUser(key, random_.OneIn(4));
    }
  }

  std::string DataFile() {
    std::string text = random_.OneIn(4) ? "\xEF\xBB\xBF" : "";
    text += "version,grouping,story,salience,rating,first,platform,url,sha,description";
    for (std::size_t rows = random_.Below(20); rows > 0; --rows) {
      text += random_.OneIn(4) ? "\r\n" : "\n";
      text += Row();
    }
    return text;
  }

  std::u16string Placeholder() {
    return random_.Flip() ? std::u16string() : random_.HostileUTF16(5);
  }

 private:
  void AddFeatures() {
    for (std::size_t count = random_.Below(7); count > 0; --count) {
      std::string key = "feature" + std::to_string(random_.Below(100));
      host_.AddFeature({.internalKey = key,
                        .epicKey = random_.Pick(kIDs),
                        .name = Text(),
                        .description = Text(),
                        .visibility = static_cast<std::int32_t>(random_.Below(6)) - 1});
      internalKeys_.push_back(std::move(key));
    }
  }

  void Translate() {
    for (const char* key : kTranslated) {
      if (random_.OneIn(3)) host_.AddTranslation(key, random_.HostileText(4));
    }
  }

  std::string Text() { return random_.OneIn(5) ? random_.HostileText(6) : random_.Pick(kTexts); }

  std::string Field(const char* usual) {
    std::string field = random_.OneIn(20) ? random_.HostileText(4) : usual;
    if (random_.OneIn(8) || field.find(',') != std::string::npos) field = '"' + field + '"';
    return field;
  }

  std::string Row() {
    if (random_.OneIn(12)) return random_.HostileText(12);
    if (random_.OneIn(12)) return std::string(random_.Pick(kVersions)) + ",Changes-Since";
    const char* const usual[] = {
        random_.Pick(kVersions),  random_.Pick(kIDs),     random_.Pick(kIDs),
        random_.Pick(kSaliences), random_.Pick(kRatings), random_.Pick(kVersions),
        random_.Pick(kPlatforms), random_.Pick(kURLs),    random_.Flip() ? "" : "abc123"};
    std::string row;
    for (const char* value : usual) row += Field(value) + ',';
    // Call `Field` and `Text` in separate statements. C++ does not specify the order in which the
    // operands of "+" are evaluated. In one statement, the random row would depend on the compiler.
    row += Field("");
    row += Text();
    if (random_.OneIn(15)) row += ",";
    return row;
  }

  RandomSource& random_;
  FakeHost host_;
  std::vector<std::string> internalKeys_;
};

// A list of the library, and a list of the plain implementation with the same content. Each list
// has its own state store. Both stores must always have the same content.
class Pair {
 public:
  explicit Pair(World& world)
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
        Rate(random.Pick(kIDs));
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

  World& world_;
  PlainPanel::Texts store_;
  FeatureListData list_;
  PlainPanel plain_;
};

TEST(PlainPanel, MatchesTheLibraryInRandomWorlds) {
  for (std::uint64_t seed = kSeed; seed < kSeed + kWorlds; ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    RandomSource random(seed);
    World world(random);
    Pair pair(world);
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
