// Tests how a list is loaded from resource managers that throw, return random bytes, or return very
// large files.
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <ornui/utility/ResourceManager.h>
#include <ornwhatsnew/WhatsNew.h>

#include "tests/faults/FaultWorld.h"
#include "tests/support/Builders.h"
#include "tests/support/Matchers.h"
#include "tests/support/RandomSource.h"
#include "tests/support/Sanitizers.h"

namespace faults {
namespace {

using namespace ornwhatsnew;
using test_support::Format;
using test_support::InjectedFailure;

using Bytes = std::vector<unsigned char>;

// With AddressSanitizer or ThreadSanitizer, the data files are smaller, because these sanitizers
// slow the tests down.
#if defined(TESTS_HAS_ADDRESS_SANITIZER) || defined(TESTS_HAS_THREAD_SANITIZER)
constexpr std::size_t kLarge = std::size_t{4} << 20;
#else
constexpr std::size_t kLarge = std::size_t{64} << 20;
#endif
// A parser with quadratic running time would not parse a file of this size in a reasonable time.
constexpr std::size_t kLargeOfEachByte = kLarge / 8;

/// A resource manager whose `LoadResource` calls a function of the test.
class StubResources : public ornui::utility::ResourceManager {
 public:
  explicit StubResources(std::function<bool(Bytes&)> load) : load_(std::move(load)) {}
  bool LoadResource(const UTF16String&, const UTF16String&, Bytes& bytes) const override {
    return load_(bytes);
  }

 private:
  std::function<bool(Bytes&)> load_;
};

class ResourceTest : public FaultTest {
 protected:
  std::shared_ptr<FeatureListData> Load(const std::function<bool(Bytes&)>& load) {
    const StubResources resources(load);
    return GetWhatsNew(u"data.csv", &resources, host_.Getter(), host_.Setter());
  }

  std::shared_ptr<FeatureListData> LoadText(const std::string& text) {
    return Load([&text](Bytes& bytes) {
      bytes.assign(text.begin(), text.end());
      return true;
    });
  }
};

TEST_F(ResourceTest, PropagatesExceptionsOfTheResourceManager) {
  EXPECT_THROW(Load([](Bytes&) -> bool { throw InjectedFailure("resource"); }), InjectedFailure);
  EXPECT_THROW(Load([](Bytes& bytes) -> bool {
                 bytes.assign(1000, 'x');
                 throw 25;
               }),
               int);
  EXPECT_EQ(host_.State().TakeWrites().size(), 3U) << "only the fixture may have written the state";
}

TEST_F(ResourceTest, UsesTheBytesEvenIfLoadResourceReturnsFalse) {
  const std::string text = LoadedData();
  const auto list = Load([&text](Bytes& bytes) {
    bytes.assign(text.begin(), text.end());
    return false;
  });
  EXPECT_EQ(test_support::KeyOrder(*list), test_support::KeyOrder(*MakeWorld().list));
  EXPECT_EQ(
      test_support::ItemOf(*Load([](Bytes&) { return true; }), "EPIC-7").GetAllChanges().size(),
      0U);
}

TEST_F(ResourceTest, LoadsAUsableListFromRandomText) {
  constexpr std::uint64_t kSeed = 20'252;
  SCOPED_TRACE(testing::Message() << "seed " << kSeed);
  test_support::RandomSource random(kSeed);
  for (int round = 0; round < 300; ++round) {
    std::string text = random.Flip() ? LoadedData() : std::string();
    for (int insertion = 0; insertion < 10; ++insertion) {
      text.insert(random.Below(text.size() + 1), random.HostileText(40));
    }
    const auto list = LoadText(text);
    Format(*list);
    list->InitWithData(text);
    EXPECT_FALSE(list->IsAnythingNew(kShowOnlyNew)) << "round " << round;
  }
}

TEST_F(ResourceTest, FindsNoChangesInMegabytesOfOneByte) {
  const std::string expected = Format(*LoadText("")).text;
  for (const char byte : {'x', ',', '"', '\n', '\r', '\0', '\\', '\xFF', '\xC3'}) {
    SCOPED_TRACE(static_cast<int>(byte));
    const auto list = LoadText(std::string(kLargeOfEachByte, byte));
    EXPECT_EQ(test_support::ItemOf(*list, "EPIC-7").GetAllChanges().size(), 0U);
    EXPECT_EQ(Format(*list).text, expected);
  }
}

TEST_F(ResourceTest, ShowsAChangeOfMegabytes) {
  const std::string description(kLarge, 'x');
  const auto list =
      LoadText(test_support::DataFileText({{.groupingID = "EPIC-7", .description = description}}));
  StyleRunMap runs;
  const UTF16String text = list->GetFormattedTextForDisplay({}, {}, runs, nullptr);
  EXPECT_GT(text.size(), kLarge);
  list->InitWithData("");
}

TEST_F(ResourceTest, ShowsAChangeOfMegabytesOfIllFormedUTF8) {
  const std::string description(kLarge / 8, '\xFF');
  const auto list =
      LoadText(test_support::DataFileText({{.groupingID = "EPIC-7", .description = description}}));
  StyleRunMap runs;
  const UTF16String text = list->GetFormattedTextForDisplay({}, {}, runs, nullptr);
  EXPECT_GT(text.size(), description.size());
}

}  // namespace
}  // namespace faults
