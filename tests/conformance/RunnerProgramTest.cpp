#include <sstream>
#include <string>

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include "tests/conformance/RunnerProgram.h"
#include "tests/support/FakeHost.h"
#include "tests/support/TemporaryFolder.h"

namespace conformance {
namespace {

using nlohmann::json;
using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::StartsWith;

const std::string kGood =
    R"({"name":"good","host":{},"steps":[{"do":"construct"},{"do":"newSeenState"}],)"
    R"("expect":[null,[]]})";
const std::string kDiffering =
    R"({"name":"differing","host":{},"steps":[{"do":"construct"},{"do":"items"}],)"
    R"("expect":[0,{"order":["A"],"items":{}}]})";
const std::string kBad =
    R"({"name":"bad","host":{},"steps":[{"do":"construct"},{"do":"rate"}],"expect":[]})";

/// Runs the three modes of the runner with string streams. The fake host of the base class resets
/// the services after each test.
class RunnerProgramTest : public test_support::FakeHostTest {
 protected:
  int Print(const std::string& input, const std::vector<std::string>& files = {}) {
    in_.str(input);
    return PrintResults(files, {in_, out_, err_});
  }

  int Check(const std::string& input, Accepted accepted = Accepted::kAll) {
    in_.str(input);
    return CheckResults({}, accepted, {in_, out_, err_});
  }

  int Batch(const std::string& input) {
    in_.str(input);
    return RunBatch({in_, out_, err_});
  }

  json Output() const { return json::parse(out_.str()); }

  std::string WriteFile(const std::string& name, const std::string& text) const {
    return folder_.Write(name, text).string();
  }

  test_support::TemporaryFolder folder_;
  std::istringstream in_;
  std::ostringstream out_;
  std::ostringstream err_;
};

TEST_F(RunnerProgramTest, PrintsOneArrayInTheOrderOfTheScenarios) {
  const std::string other = R"({"name":"other","host":{},"steps":[]})";
  EXPECT_EQ(Print("[" + kGood + "," + other + "," + kGood + "]"), kSuccess);
  EXPECT_EQ(Output(), json::parse(R"([{"name":"good","results":[null,[]]},
                                      {"name":"other","results":[]},
                                      {"name":"good","results":[null,[]]}])"));
}

TEST_F(RunnerProgramTest, AcceptsASingleScenarioAndAnEmptyArray) {
  EXPECT_EQ(Print(kGood), kSuccess);
  EXPECT_EQ(Output().size(), 1U);
  out_.str("");
  EXPECT_EQ(Print("[]"), kSuccess);
  EXPECT_EQ(Output(), json::array());
}

TEST_F(RunnerProgramTest, ReadsFilesInTheGivenOrder) {
  const std::string one = WriteFile("one.json", "[" + kGood + "," + kBad + "]");
  const std::string two = WriteFile("two.json", kDiffering);
  EXPECT_EQ(Print("not read", {two, one, two}), kNotRun);
  const json output = Output();
  ASSERT_EQ(output.size(), 4U);
  EXPECT_EQ(output[0]["name"], "differing");
  EXPECT_EQ(output[1]["name"], "good");
  EXPECT_EQ(output[2]["name"], "bad");
  EXPECT_THAT(output[2]["error"].get<std::string>(),
              StartsWith(one + ": /1/steps/1: the member \"key\" is missing"));
  EXPECT_EQ(output[3]["name"], "differing");
}

TEST_F(RunnerProgramTest, PrintsAnErrorForEachMalformedScenario) {
  EXPECT_EQ(Print("[" + kBad + "," + kGood +
                  R"(,7,{"name":5,"steps":[]},{"name":"e",)"
                  R"("steps":[],"expect":{}}])"),
            kNotRun);
  const json output = Output();
  ASSERT_EQ(output.size(), 5U);
  EXPECT_EQ(output[0]["name"], "bad");
  EXPECT_TRUE(output[0]["error"].is_string());
  EXPECT_FALSE(output[0].contains("results"));
  EXPECT_EQ(output[1]["results"], json::parse("[null,[]]"));
  EXPECT_EQ(output[2]["name"], json());
  EXPECT_EQ(output[3]["name"], json());
  EXPECT_THAT(output[3]["error"].get<std::string>(), HasSubstr("/3/name: expected a string"));
  EXPECT_THAT(output[4]["error"].get<std::string>(), HasSubstr("/4/expect: expected an array"));
}

TEST_F(RunnerProgramTest, PrintsAnErrorForInputThatIsNotJson) {
  for (const std::string& input :
       {std::string(), std::string("[{]"), std::string("[\"\xFF\"]"), std::string(100'000, '[')}) {
    out_.str("");
    EXPECT_EQ(Print(input), kNotRun);
    const json output = Output();
    ASSERT_EQ(output.size(), 1U);
    EXPECT_EQ(output[0]["name"], json());
    EXPECT_THAT(output[0]["error"].get<std::string>(), StartsWith("standard input: "));
  }
}

TEST_F(RunnerProgramTest, ContinuesAfterAnUnreadableFile) {
  const std::string good = WriteFile("good.json", kGood);
  EXPECT_EQ(Print("", {"no/such.json", good}), kNotRun);
  const json output = Output();
  ASSERT_EQ(output.size(), 2U);
  EXPECT_THAT(output[0]["error"].get<std::string>(), HasSubstr("no/such.json"));
  EXPECT_EQ(output[1]["name"], "good");
}

TEST_F(RunnerProgramTest, PrintsOnlyAscii) {
  EXPECT_EQ(Print(R"({"name":"\u2028","host":{},"steps":[)"
                  R"({"do":"call","function":"LowerCase8","arguments":["\u00c9\u0085"]}]})"),
            kSuccess);
  EXPECT_THAT(out_.str(), HasSubstr(R"(["\u00e9\u0085"])"));
  EXPECT_EQ(Output()[0]["name"], "\xE2\x80\xA8");
}

TEST_F(RunnerProgramTest, RequiresAnIntentAndExactTextsOfScenariosThatShowARule) {
  const std::string end = R"("steps":[],"expect":[]})";
  EXPECT_EQ(Check(R"({"name":"n","intent":"A rule.","exactTexts":true,)" + end, Accepted::kRules),
            kSuccess);
  for (const std::string members :
       {R"("exactTexts":true,)", R"("intent":"","exactTexts":true,)", R"("intent":"A rule.",)"}) {
    EXPECT_EQ(Check(R"({"name":"n",)" + members + end, Accepted::kRules), kNotRun) << members;
    EXPECT_EQ(Check(R"({"name":"n",)" + members + end), kSuccess) << members;
  }
}

TEST_F(RunnerProgramTest, ReportsAWriteError) {
  out_.setstate(std::ios::badbit);
  EXPECT_EQ(Print(kGood), kNotRun);
  EXPECT_THAT(err_.str(), HasSubstr("cannot write the results"));
}

TEST_F(RunnerProgramTest, PrintsNothingIfThereIsNoDifference) {
  EXPECT_EQ(Check("[" + kGood + "," + kGood + "]"), kSuccess);
  EXPECT_EQ(out_.str(), "");
  EXPECT_EQ(err_.str(), "2 of 2 scenarios have the expected results\n");
}

TEST_F(RunnerProgramTest, PrintsALineForEachDifference) {
  EXPECT_EQ(Check("[" + kDiffering + "," + kGood + "]"), kDifferences);
  EXPECT_EQ(out_.str(),
            "differing: step 0: expected 0, got null\n"
            "differing: step 1 /order/0: expected \"A\", got nothing\n");
  EXPECT_EQ(err_.str(), "1 of 2 scenarios have the expected results\n");
}

TEST_F(RunnerProgramTest, ReportsMissingAndSurplusExpectationsAsDifferences) {
  EXPECT_EQ(Check(R"({"name":"s","host":{},"steps":[{"do":"construct"}],"expect":[]})"),
            kDifferences);
  EXPECT_EQ(out_.str(), "s: step 0: expected nothing, got null\n");
  out_.str("");
  EXPECT_EQ(Check(R"({"name":"s","host":{},"steps":[],"expect":[null]})"), kDifferences);
  EXPECT_EQ(out_.str(), "s: step 0: expected null, got nothing\n");
}

TEST_F(RunnerProgramTest, ReportsAMissingExpect) {
  EXPECT_EQ(Check(R"({"name":"s","host":{},"steps":[]})"), kNotRun);
  EXPECT_EQ(out_.str(), "s: the scenario has no member \"expect\"\n");
}

TEST_F(RunnerProgramTest, ReturnsNotRunEvenIfThereAreDifferences) {
  EXPECT_EQ(Check("[" + kBad + "," + kDiffering + "]"), kNotRun);
  EXPECT_THAT(out_.str(), AllOf(HasSubstr("bad: standard input: /0/steps/1: the member \"key\""),
                                HasSubstr("differing: step 0: ")));
}

TEST_F(RunnerProgramTest, PrintsAResultForEachLineOfABatch) {
  EXPECT_EQ(Batch(kGood + "\n" + kDiffering + "\r\n\n  \n" + kGood), kSuccess);
  std::istringstream lines(out_.str());
  std::vector<json> results;
  for (std::string line; std::getline(lines, line);) results.push_back(json::parse(line));
  ASSERT_EQ(results.size(), 3U);
  EXPECT_EQ(results[0], json::parse(R"({"name":"good","results":[null,[]]})"));
  EXPECT_EQ(results[1]["name"], "differing");
  EXPECT_EQ(results[2], results[0]);
}

TEST_F(RunnerProgramTest, PrintsAResultForEachMalformedLineOfABatch) {
  EXPECT_EQ(Batch("{\n" + kBad + "\n[" + kGood + "," + kGood + "]\n[]\n" + kGood + "\n"), kNotRun);
  std::istringstream lines(out_.str());
  std::vector<json> results;
  for (std::string line; std::getline(lines, line);) results.push_back(json::parse(line));
  ASSERT_EQ(results.size(), 5U);
  EXPECT_THAT(results[0]["error"].get<std::string>(), StartsWith("standard input line 1: line 1"));
  EXPECT_THAT(results[1]["error"].get<std::string>(),
              StartsWith("standard input line 2: /steps/1: "));
  EXPECT_THAT(results[2]["error"].get<std::string>(), HasSubstr("expected an object"));
  EXPECT_THAT(results[3]["error"].get<std::string>(), HasSubstr("expected an object"));
  EXPECT_EQ(results[4]["name"], "good");
}

}  // namespace
}  // namespace conformance
