#include <string>
#include <variant>

#include <gmock/gmock.h>

#include "tests/conformance/CallFunctions.h"
#include "tests/conformance/ScenarioReader.h"

namespace conformance {
namespace {

using hosts::common::JsonDocument;
using hosts::common::JsonError;
using hosts::common::JsonReader;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::Pair;

Scenario Read(std::string_view text) {
  const JsonDocument document = JsonDocument::Parse(text, "file.json");
  return ReadScenario(JsonReader(document));
}

/// Returns the JSON of a scenario. `steps` contains the elements of its array of steps.
std::string WithSteps(std::string_view steps) {
  return R"({"name":"x","host":{},"steps":[)" + std::string(steps) + "]}";
}

std::string ErrorOf(std::string_view text) {
  try {
    Read(text);
  } catch (const JsonError& error) {
    return error.what();
  }
  return "";
}

/// Reads a step that follows a `construct` step. Throws if the step is not of the type `Kind`.
template <class Kind>
Kind ReadStep(std::string_view step) {
  return std::get<Kind>(Read(WithSteps(R"({"do":"construct"},)" + std::string(step))).steps.at(1));
}

TEST(ScenarioReader, ReadsNameHostAndSteps) {
  const Scenario scenario = Read(R"({"name":"n","host":{"platform":"Win","callbacks":"none"},
                                     "steps":[{"do":"construct"},{"do":"items"}],"expect":[]})");
  EXPECT_EQ(scenario.name, "n");
  EXPECT_EQ(scenario.host.platform, "Win");
  EXPECT_EQ(scenario.host.callbacks, Callbacks::kNone);
  ASSERT_EQ(scenario.steps.size(), 2U);
  EXPECT_TRUE(std::holds_alternative<ConstructStep>(scenario.steps[0]));
  EXPECT_TRUE(std::holds_alternative<ItemsStep>(scenario.steps[1]));
}

TEST(ScenarioReader, ReadsIntentAndExactTexts) {
  EXPECT_EQ(Read(R"({"name":"n","intent":"A rule.","steps":[]})").intent, "A rule.");
  EXPECT_FALSE(Read(R"({"name":"n","steps":[]})").exactTexts);
  EXPECT_TRUE(Read(R"({"name":"n","exactTexts":true,"steps":[]})").exactTexts);
  EXPECT_FALSE(Read(R"({"name":"n","exactTexts":false,"steps":[]})").exactTexts);
}

TEST(ScenarioReader, AcceptsAMissingHostAndNoSteps) {
  const Scenario scenario = Read(R"({"name":"n","steps":[]})");
  EXPECT_EQ(scenario.host.clientVersion, "25.1");
  EXPECT_TRUE(scenario.steps.empty());
}

TEST(ScenarioReader, EndsEachDataLineWithANewline) {
  EXPECT_EQ(ReadStep<LoadStep>(R"({"do":"load","dataLines":["a,b","","c"]})").data, "a,b\n\nc\n");
  EXPECT_EQ(ReadStep<LoadStep>(R"({"do":"load","dataLines":[]})").data, "");
  EXPECT_EQ(ReadStep<LoadResourceStep>(R"({"do":"loadResource","path":"","dataLines":["a"]})").data,
            "a\n");
}

TEST(ScenarioReader, ReadsDataAsTextOrAsBase64) {
  EXPECT_EQ(ReadStep<LoadStep>(R"({"do":"load","data":"a\u0000"})").data, std::string("a\0", 2));
  EXPECT_EQ(ReadStep<InitStep>(R"({"do":"init","dataBase64":"/w=="})").data, "\xFF");
  EXPECT_EQ(ReadStep<ParseStep>(R"({"do":"parse","data":""})").data, "");
  const auto resource =
      ReadStep<LoadResourceStep>(R"({"do":"loadResource","path":"p","dataBase64":"/w=="})");
  EXPECT_EQ(resource.path, "p");
  EXPECT_EQ(resource.data, "\xFF");
  EXPECT_EQ(ReadStep<LoadResourceStep>(R"({"do":"loadResource","path":""})").data, std::nullopt);
}

TEST(ScenarioReader, ReadsTheMembersOfSteps) {
  const auto insert = ReadStep<InsertStep>(
      R"({"do":"insert","key":"k","internalKey":"i","name":"n","description":"d","visibility":-1})");
  EXPECT_EQ(insert.key + insert.internalKey + insert.name + insert.description, "kind");
  EXPECT_EQ(insert.visibility, -1);
  const auto section = ReadStep<EnsureSectionStep>(
      R"({"do":"ensureSection","key":"k","name":"n","description":"d"})");
  EXPECT_EQ(section.key + section.name + section.description, "knd");
  const auto capture = ReadStep<CaptureStyleStep>(
      R"({"do":"captureStyle","style":99,"textSoFar":"t","piece":"p","startAdjust":-2147483648,
          "lengthAdjust":2147483647,"string":"s"})");
  EXPECT_EQ(capture.style, 99);
  EXPECT_EQ(capture.textSoFar + capture.piece + capture.string, "tps");
  EXPECT_EQ(capture.startAdjust, -2147483648);
  EXPECT_EQ(capture.lengthAdjust, 2147483647);
  EXPECT_EQ(ReadStep<RateStep>(R"({"do":"rate","key":"k"})").key, "k");
  EXPECT_EQ(ReadStep<IsAnythingNewStep>(R"({"do":"isAnythingNew","options":255})").options, 255);
}

TEST(ScenarioReader, UsesDefaultsForMissingMembersOfFormat) {
  const auto bare = ReadStep<FormatStep>(R"({"do":"format","options":0})");
  EXPECT_EQ(bare.placeholder, "");
  EXPECT_TRUE(bare.ratingMap);
  const auto full =
      ReadStep<FormatStep>(R"({"do":"format","options":16,"placeholder":"p","ratingMap":false})");
  EXPECT_EQ(full.options, 16);
  EXPECT_EQ(full.placeholder, "p");
  EXPECT_FALSE(full.ratingMap);
}

TEST(ScenarioReader, ReadsCalls) {
  const auto call = ReadStep<CallStep>(
      R"({"do":"call","function":"CaseInsensitiveEqual","arguments":["a","b"]})");
  EXPECT_EQ(call.function, FindCallFunction("CaseInsensitiveEqual"));
  EXPECT_THAT(call.arguments, ElementsAre("a", "b"));
}

TEST(ScenarioReader, KeepsHostMembersThatAStepDoesNotReplace) {
  const Scenario scenario =
      Read(R"({"name":"n","host":{"platform":"Win","debug":{"a":"1"},"state":{"s":"1"}},
               "steps":[{"do":"host","clientVersion":"26"},
                        {"do":"host","debug":{},"state":{"t":"2"}},{"do":"host"}]})");
  const auto& first = std::get<HostStep>(scenario.steps[0]);
  EXPECT_EQ(first.host.platform, "Win");
  EXPECT_EQ(first.host.clientVersion, "26");
  EXPECT_FALSE(first.replacesDebug);
  EXPECT_FALSE(first.replacesState);
  const auto& second = std::get<HostStep>(scenario.steps[1]);
  EXPECT_EQ(second.host.clientVersion, "26");
  EXPECT_TRUE(second.host.debug.empty());
  EXPECT_THAT(second.host.state, ElementsAre(Pair("t", "2")));
  EXPECT_TRUE(second.replacesDebug);
  EXPECT_TRUE(second.replacesState);
  EXPECT_FALSE(std::get<HostStep>(scenario.steps[2]).replacesDebug);
}

TEST(ScenarioReader, ReadsCallbacks) {
  const std::pair<std::string, Callbacks> names[] = {{"both", Callbacks::kBoth},
                                                     {"getter", Callbacks::kGetter},
                                                     {"setter", Callbacks::kSetter},
                                                     {"none", Callbacks::kNone}};
  for (const auto& [name, callbacks] : names) {
    const std::string text = R"({"name":"n","host":{"callbacks":")" + name + R"("},"steps":[]})";
    EXPECT_EQ(Read(text).host.callbacks, callbacks) << name;
  }
  for (const std::string value : {"\"Both\"", "\"\"", "null", "0"}) {
    EXPECT_THAT(ErrorOf(R"({"name":"n","host":{"callbacks":)" + value + R"(},"steps":[]})"),
                HasSubstr(R"(/callbacks: expected "both", "getter", "setter" or "none", found)"));
  }
}

TEST(ScenarioReader, RejectsMalformedScenarios) {
  const std::pair<std::string_view, std::string_view> cases[] = {
      {"7", "file.json: expected an object, found the number 7"},
      {R"({"steps":[]})", R"(the member "name" is missing)"},
      {R"({"name":1,"steps":[]})", "/name: expected a string"},
      {R"({"name":"x"})", R"(the member "steps" is missing)"},
      {R"({"name":"x","steps":{}})", "/steps: expected an array"},
      {R"({"name":"x","steps":[],"host":null})", "/host: expected an object"},
      {R"({"name":"x","steps":[],"host":{"plattform":""}})", R"(/host: unknown member)"},
      {R"({"name":"x","steps":[],"host":{"state":{"a":1}}})", "/host/state/a: expected a string"},
      {R"({"name":"x","steps":[],"host":{"$schema":""}})", R"(unknown member "$schema")"},
      {R"({"name":"x","steps":[],"note":""})", R"(unknown member "note")"},
      {R"({"name":"x","steps":[],"intent":7})", "/intent: expected"},
      {R"({"name":"x","steps":[],"exactTexts":"yes"})", "/exactTexts: expected"},
      {R"({"name":"x","steps":[],"steps":[]})", R"(duplicate member "steps")"},
  };
  for (const auto& [text, message] : cases) {
    EXPECT_THAT(ErrorOf(text), HasSubstr(std::string(message))) << text;
  }
}

TEST(ScenarioReader, RejectsMalformedSteps) {
  const std::pair<std::string_view, std::string_view> cases[] = {
      {R"(null)", "/steps/1: expected an object, found null"},
      {R"({})", R"(/steps/1: the member "do" is missing)"},
      {R"({"do":7})", "/steps/1/do: expected a string"},
      {R"({"do":"Construct"})", "/steps/1/do: expected the name of a step"},
      {R"({"do":"construct","data":""})", R"(/steps/1: unknown member "data")"},
      {R"({"do":"load"})", R"(/steps/1: the member "data" (or "dataLines")"},
      {R"({"do":"load","data":1})", "/steps/1/data: expected a string"},
      {R"({"do":"load","data":"","dataBase64":""})", "/steps/1: give only one"},
      {R"({"do":"load","data":"","dataLines":[]})", "/steps/1: give only one"},
      {R"({"do":"load","dataLines":"a"})", "/steps/1/dataLines: expected an array"},
      {R"({"do":"load","dataLines":[1]})", "/steps/1/dataLines/0: expected"},
      {R"({"do":"load","dataBase64":"Zg"})", "/steps/1/dataBase64: expected Base64"},
      {R"({"do":"loadResource","data":""})", R"(/steps/1: the member "path" is missing)"},
      {R"({"do":"isAnythingNew"})", R"(/steps/1: the member "options" is missing)"},
      {R"({"do":"isAnythingNew","options":256})", "/steps/1/options: expected an integer from 0"},
      {R"({"do":"format","options":-1})", "/steps/1/options: expected an integer from 0"},
      {R"({"do":"format","options":1.5})", "/steps/1/options: expected an integer from 0"},
      {R"({"do":"format","options":0,"placeholder":null})", "/steps/1/placeholder: expected"},
      {R"({"do":"format","options":0,"ratingMap":1})", "/steps/1/ratingMap: expected true"},
      {R"({"do":"rate"})", R"(/steps/1: the member "key" is missing)"},
      {R"({"do":"insert","key":"","internalKey":"","name":"","description":""})",
       R"(the member "visibility" is missing)"},
      {R"({"do":"insert","key":"","internalKey":"","name":"","description":"",
           "visibility":2147483648})",
       "/steps/1/visibility: expected an integer"},
      {R"({"do":"ensureSection","key":"","name":""})", R"("description" is missing)"},
      {R"({"do":"host","callbacks":"none"})", R"(/steps/1: unknown member "callbacks")"},
      {R"({"do":"host","terminating":0})", "/steps/1/terminating: expected true or false"},
      {R"({"do":"call","function":"Shout","arguments":[]})", "/steps/1/function: expected"},
      {R"({"do":"call","function":"IsZString"})", R"(the member "arguments" is missing)"},
      {R"({"do":"call","function":"IsZString","arguments":[]})", "/steps/1/arguments: the func"},
      {R"({"do":"call","function":"AnalyticsDisabled","arguments":["a"]})", "/steps/1/arguments"},
      {R"({"do":"call","function":"IsZString","arguments":[1]})", "/steps/1/arguments/0: expected"},
      {R"({"do":"captureStyle","style":6,"textSoFar":"","piece":"","startAdjust":0,
           "lengthAdjust":2147483648,"string":""})",
       "/steps/1/lengthAdjust: expected an integer"},
      {R"({"do":"bubble","do":"bubble"})", "duplicate member"},
  };
  for (const auto& [step, message] : cases) {
    const std::string text = WithSteps(R"({"do":"construct"},)" + std::string(step));
    EXPECT_THAT(ErrorOf(text), HasSubstr(std::string(message))) << step;
  }
}

TEST(ScenarioReader, RejectsAStepThatNeedsAListBeforeOneExists) {
  const std::string_view usingSteps[] = {
      R"({"do":"init","data":""})",
      R"({"do":"parse","data":""})",
      R"({"do":"parseBetaFeatures"})",
      R"({"do":"bubble"})",
      R"({"do":"refresh"})",
      R"({"do":"insert","key":"","internalKey":"","name":"","description":"","visibility":0})",
      R"({"do":"ensureSection","key":"","name":"","description":""})",
      R"({"do":"isAnythingNew","options":0})",
      R"({"do":"isAnythingNeedingRating"})",
      R"({"do":"rate","key":""})",
      R"({"do":"format","options":0})",
      R"({"do":"items"})",
      R"({"do":"newSeenState"})",
      R"({"do":"captureStyle","style":6,"textSoFar":"","piece":"","startAdjust":0,
          "lengthAdjust":0,"string":""})",
      R"({"do":"call","function":"LocalizeIfNecessary","arguments":[""]})",
  };
  const std::string_view creatingSteps[] = {R"({"do":"construct"})", R"({"do":"load","data":""})",
                                            R"({"do":"loadResource","path":""})"};
  for (const std::string_view usingStep : usingSteps) {
    EXPECT_THAT(ErrorOf(WithSteps(usingStep)), HasSubstr("/steps/0: this step needs a list"))
        << usingStep;
    for (const std::string_view creatingStep : creatingSteps) {
      EXPECT_EQ(ErrorOf(WithSteps(std::string(creatingStep) + ',' + std::string(usingStep))), "")
          << usingStep;
    }
  }
}

TEST(ScenarioReader, AcceptsOtherStepsWithoutAList) {
  const std::string_view steps[] = {
      R"({"do":"host"})", R"({"do":"debug"})",
      R"({"do":"call","function":"ParseVersionStringToNumber","arguments":["1"]})",
      R"({"do":"call","function":"GetFullClientVersionString","arguments":[]})"};
  for (const std::string_view step : steps) EXPECT_EQ(ErrorOf(WithSteps(step)), "") << step;
}

}  // namespace
}  // namespace conformance
