// Tests that a list tolerates stored strings that no setter wrote.
#include <algorithm>
#include <array>
#include <cstdint>
#include <functional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include <ornwhatsnew/utility/PersistedList.h>

#include "tests/faults/FaultWorld.h"
#include "tests/support/Matchers.h"
#include "tests/support/RandomSource.h"

namespace faults {
namespace {

using namespace ornwhatsnew;
using test_support::Format;

constexpr char kAllSeenItems[] = "WhatsNew.AllSeenItems";
constexpr char kLastVersion[] = "WhatsNew.LastVersionSeenWhatsNew";
constexpr char kAllVersions[] = "WhatsNew.AllVersionSeenWhatsNew";

std::set<Guid> GuidsOf(std::string_view persistedList) {
  std::set<Guid> guids;
  for (const std::string_view element : SplitPersistedList(persistedList)) guids.emplace(element);
  return guids;
}

/// A function that returns an unusual stored string, and the name of its test.
struct StrangeText {
  std::string name;
  std::function<std::string()> make;
};

std::string Repeated(std::string_view element, std::size_t times) {
  std::string text;
  for (std::size_t i = 0; i < times; ++i) text += element;
  return text;
}

std::string ManyIdentities() {
  std::array<std::uint8_t, 16> bytes{};
  std::string text;
  for (std::uint32_t i = 0; i < 100'000; ++i) {
    for (std::size_t index = 0; index < 4; ++index) {
      bytes[index * 3] = static_cast<std::uint8_t>(i >> (8 * index));
    }
    if (!text.empty()) text += ' ';
    Guid(bytes).AppendTo(text);
  }
  return text;
}

const std::vector<StrangeText>& StrangeTexts() {
  static const std::vector<StrangeText> kTexts = {
      {"IllFormedUTF8", [] { return std::string("\xFF\xFE \xC3 \xED\xA0\x80 \xF5\x80\x80\x80"); }},
      {"NulCharacters", [] { return std::string("\0 \0\0 a\0b", 8); }},
      {"TruncatedIdentities",
       [] {
         return std::string("00112233-4455-6677 8899aabb-ccdd-eeff 00112233-4455-6677-8899-");
       }},
      {"JoinedIdentities",
       [] {
         return std::string(
             "00112233-4455-6677-8899-aabbccddeeff,00112233-4455-6677-8899-aabbccddeeff");
       }},
      {"DoubledSeparators",
       [] {
         return std::string(
             "  00112233-4455-6677-8899-aabbccddeeff   "
             "10112233-4455-6677-8899-aabbccddeeff  ");
       }},
      {"OtherSeparators", [] { return std::string("a\tb\nc\rd\ve\fg"); }},
      {"TwoMegabytesWithoutSeparator", [] { return std::string(std::size_t{2} << 20, 'x'); }},
      {"ManySeparators", [] { return std::string(std::size_t{1} << 18, ' '); }},
      {"AMegabyteOfDots", [] { return std::string(std::size_t{1} << 20, '.'); }},
      {"AMegabyteOfNines", [] { return std::string(std::size_t{1} << 20, '9'); }},
      {"ManyVersions", [] { return Repeated("25.1.0.42 ", 100'000) + "25.2"; }},
      {"ManyIdentities", ManyIdentities},
  };
  return kTexts;
}

class StrangeStateTest : public FaultTest, public testing::WithParamInterface<StrangeText> {
 protected:
  /// Expects that a list is usable if the state store contains `text` under `key`. Expects that the
  /// list keeps each stored identity and version.
  void ExpectUsable(const std::string& key, const std::string& text) {
    SCOPED_TRACE(key);
    test_support::FakeStateStore store;
    store.Put(key, text);
    const auto before = GuidsOf(store.Text(kAllSeenItems));
    FeatureListData list(LoadedData(), store.Getter(), store.Setter());
    list.IsAnythingNew(kShowOnlyNew | kFilterRelevantPlatform | kFilterRelevantVersion);
    EXPECT_EQ(Format(list).text, Format(*MakeWorld().list).text);
    list.MarkItemHasBeenRated("EPIC-7");

    const auto after = GuidsOf(store.Text(kAllSeenItems));
    for (const Guid& identity : before) EXPECT_TRUE(after.contains(identity));
    if (key == kAllVersions) ExpectVersionsKept(text, store.Text(kAllVersions));
    // The first display may normalise the stored strings. The second display must not change them.
    const auto texts = store.AllTexts();
    list.InitWithData(LoadedData());
    EXPECT_FALSE(list.IsAnythingNew(kShowOnlyNew));
    Format(list);
    EXPECT_TRUE(store.AllTexts() == texts);
  }

  static void ExpectVersionsKept(const std::string& before, const std::string& after) {
    const auto kept = test_support::SortedPieces(after);
    for (const std::string_view version : SplitPersistedList(before)) {
      if (version.empty()) continue;
      EXPECT_TRUE(std::ranges::binary_search(kept, version)) << "the list lost a version";
      if (HasFailure()) return;
    }
  }
};

TEST_P(StrangeStateTest, IsToleratedAndKeepsItsEntries) {
  const std::string text = GetParam().make();
  for (const char* const key : {kAllSeenItems, kLastVersion, kAllVersions}) ExpectUsable(key, text);
}

INSTANTIATE_TEST_SUITE_P(Texts, StrangeStateTest, testing::ValuesIn(StrangeTexts()),
                         [](const auto& text) { return text.param.name; });

using RandomStateTest = FaultTest;

TEST_F(RandomStateTest, IsTolerated) {
  constexpr std::uint64_t kSeed = 20'251;
  SCOPED_TRACE(testing::Message() << "seed " << kSeed);
  test_support::RandomSource random(kSeed);
  for (int round = 0; round < 300; ++round) {
    test_support::FakeStateStore store;
    for (const char* const key : {kAllSeenItems, kLastVersion, kAllVersions}) {
      store.Put(key, random.HostileText(40));
    }
    FeatureListData list(LoadedData(), store.Getter(), store.Setter());
    Format(list, kShowOnlyNew | kFilterRelevantVersion);
    const auto texts = store.AllTexts();
    list.InitWithData(LoadedData());
    EXPECT_FALSE(list.IsAnythingNew(kShowOnlyNew | kFilterRelevantVersion));
    Format(list, kShowOnlyNew | kFilterRelevantVersion);
    EXPECT_TRUE(store.AllTexts() == texts) << "round " << round;
  }
}

}  // namespace
}  // namespace faults
