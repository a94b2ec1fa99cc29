#include <string>

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include "tests/conformance/ScenarioReader.h"
#include "tests/conformance/ScenarioRun.h"
#include "tests/support/FakeHost.h"

namespace conformance {
namespace {

using hosts::common::JsonDocument;
using hosts::common::JsonReader;
using nlohmann::json;

/// Runs scenarios. The fake host of the base class resets the services after each test.
class ScenarioRunTest : public test_support::FakeHostTest {
 protected:
  static json Run(std::string_view host, std::string_view steps) {
    const JsonDocument document = JsonDocument::Parse(
        R"({"name":"x","host":)" + std::string(host) + R"(,"steps":)" + std::string(steps) + "}",
        "test");
    return RunScenario(ReadScenario(JsonReader(document)));
  }
};

TEST_F(ScenarioRunTest, StartsWithANewHost) {
  const std::string_view queries = R"([{"do":"construct"},{"do":"debug"},
      {"do":"call","function":"GetFullClientVersionString","arguments":[]},
      {"do":"call","function":"LocalizeIfNecessary","arguments":["$$$/a=default"]},
      {"do":"call","function":"AnalyticsDisabled","arguments":[]}])";
  Run(R"({"clientVersion":"1.2.3","usageLogging":false,"debug":{"d":"1"},
          "dictionary":{"$$$/a":"translated"}})",
      queries);
  EXPECT_EQ(Run("{}", queries), json::parse(R"([null,{},"25.1.0.42","default",false])"));
}

TEST_F(ScenarioRunTest, ReportsOnlyTheWritesOfTheStep) {
  const json results = Run(R"({"state":{"WhatsNew.AllVersionSeenWhatsNew":"b a"}})",
                           R"([{"do":"load","data":""},{"do":"format","options":0},
                               {"do":"rate","key":"none"}])");
  EXPECT_EQ(results[1]["writes"], json::parse(R"([["WhatsNew.AllSeenItems",[]],
                            ["WhatsNew.LastVersionSeenWhatsNew","25.1.0.42"],
                            ["WhatsNew.AllVersionSeenWhatsNew",["25.1.0.42","a","b"]]])"));
  EXPECT_EQ(results[2], json::parse(R"({"writes":[]})"));
}

TEST_F(ScenarioRunTest, KeepsStateInTheDebugDatabaseIfACallbackIsMissing) {
  for (const std::string_view callbacks : {"getter", "setter", "none"}) {
    const json results =
        Run(R"({"state":{"WhatsNew.LastVersionSeenWhatsNew":"24"},"callbacks":")" +
                std::string(callbacks) + "\"}",
            R"([{"do":"construct"},{"do":"refresh"},{"do":"format","options":1},{"do":"debug"}])");
    EXPECT_EQ(results[2]["writes"], json::array()) << callbacks;
    EXPECT_THAT(results[2]["text"].get<std::string>(), testing::Not(testing::HasSubstr("24")));
    EXPECT_EQ(results[3], json::parse(R"({"WhatsNew.AllSeenItems":[],
                                          "WhatsNew.LastVersionSeenWhatsNew":"25.1.0.42",
                                          "WhatsNew.AllVersionSeenWhatsNew":["25.1.0.42"]})"))
        << callbacks;
  }
}

TEST_F(ScenarioRunTest, ReplacesOnlyTheMembersOfAHostStep) {
  const json results =
      Run(R"({"callbacks":"none","debug":{"a":"1"}})",
          R"([{"do":"construct"},{"do":"format","options":0},{"do":"host","platform":"Win"},
              {"do":"debug"},{"do":"host","debug":{"b":"2"}},{"do":"debug"}])");
  EXPECT_EQ(results[3].size(), 4U) << results[3];
  EXPECT_EQ(results[3]["a"], "1");
  EXPECT_EQ(results[5], json::parse(R"({"b":"2"})"));
}

TEST_F(ScenarioRunTest, KeepsWrittenStateUntilAStepReplacesIt) {
  const json results = Run(R"({})", R"([{"do":"construct"},{"do":"format","options":0},
                       {"do":"host","clientVersion":"26"},{"do":"refresh"},
                       {"do":"format","options":1},{"do":"host","state":{}},{"do":"refresh"},
                       {"do":"format","options":1}])");
  EXPECT_THAT(results[4]["text"].get<std::string>(), testing::HasSubstr("25.1.0.42"));
  EXPECT_THAT(results[7]["text"].get<std::string>(), testing::Not(testing::HasSubstr("25.1.0.42")));
}

TEST_F(ScenarioRunTest, KeepsCapturedRunsForTheWholeScenario) {
  const std::string capture = R"({"do":"captureStyle","style":6,"textSoFar":"\u00e4",
                                  "piece":"\u00e9","startAdjust":0,"lengthAdjust":-1,"string":"s"})";
  const json results =
      Run("{}", R"([{"do":"construct"},)" + capture + R"(,{"do":"construct"},)" + capture + "]");
  EXPECT_EQ(results[1], json::parse(R"([[2,1,"s"]])"));
  EXPECT_EQ(results[3], json::parse(R"([[2,1,"s"],[2,1,"s"]])"));
}

TEST_F(ScenarioRunTest, DistinguishesAMissingRatingMap) {
  const json results = Run("{}", R"([{"do":"construct"},{"do":"format","options":0},
                    {"do":"format","options":0,"ratingMap":false}])");
  EXPECT_EQ(results[1]["ratingItems"], json::object());
  EXPECT_EQ(results[2]["ratingItems"], json());
}

TEST_F(ScenarioRunTest, LoadsFromAResource) {
  const json results =
      Run("{}", R"([{"do":"loadResource","path":"p","data":"h,h,,,,,,,,\n9,Changes-Since"},
                                     {"do":"format","options":0},
                                     {"do":"loadResource","path":"p"},{"do":"format","options":0}])");
  EXPECT_THAT(results[1]["text"].get<std::string>(), testing::HasSubstr("v9\n"));
  EXPECT_THAT(results[3]["text"].get<std::string>(), testing::HasSubstr("v\n"));
}

}  // namespace
}  // namespace conformance
