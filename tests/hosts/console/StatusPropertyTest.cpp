// Compares `status` with `show` for random hosts, data files, states and filters.
#include <cstdlib>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "tests/hosts/console/ProgramFixture.h"
#include "tests/support/RandomSource.h"

namespace hosts::console {
namespace {

using nlohmann::json;
using test_support::RandomSource;
using ArgumentList = std::vector<std::string>;

// Returns the number of random hosts: the value of ORNWHATSNEW_TEST_WORLDS, or 50 if it is not set.
// `./dev robustness` sets this variable.
int WorldCount() {
  const char* const count = std::getenv("ORNWHATSNEW_TEST_WORLDS");
  return count == nullptr ? 50 : std::stoi(count);
}

class StatusPropertyTest : public ProgramTest {
 protected:
  void WriteRandomHost(RandomSource& random, const std::string& version) const {
    json features = json::array();
    for (const char* key : {"EPIC-7", "EPIC-8", "EPIC-9"}) {
      features.push_back({{"internalKey", key},
                          {"epicKey", key},
                          {"name", key},
                          {"visibility", random.Below(4)},
                          {"enabled", !random.OneIn(4)},
                          {"availableForUser", random.Flip()}});
    }
    const json host = {{"clientVersion", version},
                       {"platform", random.Flip() ? "Mac" : "Win"},
                       {"terminating", random.OneIn(10)},
                       {"usageLogging", !random.OneIn(10)},
                       {"internalFeaturesAllowed", random.OneIn(3)},
                       {"betaFeatures", features}};
    folder_.Write("host.json", host.dump());
  }

  void WriteRandomData(RandomSource& random) const {
    const char* const groups[] = {"EPIC-7", "EPIC-8", "EPIC-9", "BUGFIX", "nowhere"};
    const char* const saliences[] = {"", "Headline", "Loud", "UnhideBetaFeature"};
    const char* const requests[] = {"", "RequestRating", "RequestRating", "How?"};
    const char* const firstVersions[] = {"", "", "24.0.0.0", "25.1.0.0", "26.0.0.0"};
    const char* const platforms[] = {"", "", "Mac", "Win", "Other"};
    const char* const texts[] = {"", "Faster", "Smaller", "Nicer"};
    std::string rows;
    for (std::size_t i = random.Below(8); i > 0; --i) {
      rows += std::string("25.2.0.0,") + random.Pick(groups) + ",," + random.Pick(saliences) + "," +
              random.Pick(requests) + "," + random.Pick(firstVersions) + "," +
              random.Pick(platforms) + ",,," + random.Pick(texts) + "\n";
    }
    WriteData(rows);
  }

  json JsonOf(ArgumentList words, const ArgumentList& filters) const {
    words.insert(words.end(), {"{data}", "{host}", "--format", "json"});
    words.insert(words.end(), filters.begin(), filters.end());
    return json::parse(OutputOf(words));
  }

  /// Expects that, with `filters`, `status` reports new items if and only if `show` shows new
  /// items. Expects the same for items that need a rating.
  void RequireAgreement(const ArgumentList& filters) const {
    const json status = JsonOf({"status"}, filters);
    const json rating = JsonOf({"show", "--no-remember", "--rating"}, filters);
    EXPECT_EQ(status["anythingNeedingRating"], !rating["ratingItems"].empty());
    const json onlyNew = JsonOf({"show", "--no-remember", "--only-new"}, filters);
    EXPECT_EQ(status["anythingNew"], !onlyNew["ratingItems"].empty());
  }
};

TEST_F(StatusPropertyTest, AgreesWithShowWithTheSameFilters) {
  for (int seed = 0; seed < WorldCount(); ++seed) {
    SCOPED_TRACE(testing::Message() << "seed " << seed);
    RandomSource random(static_cast<std::uint64_t>(seed));
    WriteRandomData(random);
    WriteRandomHost(random, random.Flip() ? "24.5" : "25.1");
    OutputOf({"state", "reset"});
    if (!random.OneIn(4)) OutputOf({"show", "{data}", "{host}"});
    WriteRandomHost(random, "25.3");
    ArgumentList filters;
    for (const char* filter : {"--platform", "--relevant-versions", "--headlines"}) {
      if (random.OneIn(3)) filters.emplace_back(filter);
    }
    RequireAgreement(filters);
    if (HasFailure()) break;
  }
}

// `status` must not use `IsAnythingNeedingRating`, which always filters by platform and version.
TEST_F(StatusPropertyTest, ReportsARatingForAnotherPlatformUnlessItIsFiltered) {
  WriteData("25.1,EPIC-7,,,RequestRating,,Win,,,Twice as fast\n");
  OutputOf({"show", "{data}", "{host}"});
  EXPECT_EQ(true, JsonOf({"status"}, {})["anythingNeedingRating"]);
  EXPECT_EQ(false, JsonOf({"status"}, {"--platform"})["anythingNeedingRating"]);
}

}  // namespace
}  // namespace hosts::console
