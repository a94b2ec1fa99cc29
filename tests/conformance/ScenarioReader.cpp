#include "tests/conformance/ScenarioReader.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

#include <nlohmann/json.hpp>

#include "tests/conformance/Base64.h"
#include "tests/conformance/CallFunctions.h"

namespace conformance {

using hosts::common::JsonReader;
using hosts::common::kHostMembers;

namespace {

std::string JoinLines(const JsonReader& lines) {
  std::string text;
  for (const JsonReader& line : lines.Elements()) text += line.Text() + '\n';
  return text;
}

std::string DecodeData(const JsonReader& encoded) {
  auto bytes = DecodeBase64(encoded.Text());
  if (!bytes) encoded.FailExpecting("Base64, padded to groups of four");
  return *std::move(bytes);
}

/// Returns the data file of a step, or nullopt if the step has none. The member `data`, `dataLines`
/// or `dataBase64` contains the file. Throws `JsonError` if the step has more than one of these
/// members, or if the member has the wrong type or contains malformed Base64.
std::optional<std::string> ReadOptionalData(const JsonReader& step) {
  const auto text = step.Find("data");
  const auto lines = step.Find("dataLines");
  const auto encoded = step.Find("dataBase64");
  if (text.has_value() + lines.has_value() + encoded.has_value() > 1) {
    step.Fail("give only one of \"data\", \"dataLines\" and \"dataBase64\"");
  }
  if (text) return text->Text();
  if (lines) return JoinLines(*lines);
  if (encoded) return DecodeData(*encoded);
  return std::nullopt;
}

std::string ReadData(const JsonReader& step) {
  step.RequireObject({"do", "data", "dataLines", "dataBase64"});
  auto data = ReadOptionalData(step);
  if (!data) step.Fail("the member \"data\" (or \"dataLines\", \"dataBase64\") is missing");
  return *std::move(data);
}

/// Reads a step whose only member is `do`.
template <class EmptyStep>
Step ReadEmpty(const JsonReader& step) {
  step.RequireObject({"do"});
  return EmptyStep{};
}

/// Reads a step whose only members are `do` and a data file.
template <class DataStep>
Step ReadWithData(const JsonReader& step) {
  return DataStep{ReadData(step)};
}

std::uint8_t ReadOptions(const JsonReader& step) {
  return static_cast<std::uint8_t>(step.Member("options").Integer(0, 255));
}

Step ReadLoadResource(const JsonReader& step) {
  step.RequireObject({"do", "path", "data", "dataLines", "dataBase64"});
  return LoadResourceStep{.path = step.Member("path").Text(), .data = ReadOptionalData(step)};
}

Step ReadInsert(const JsonReader& step) {
  step.RequireObject({"do", "key", "internalKey", "name", "description", "visibility"});
  return InsertStep{.key = step.Member("key").Text(),
                    .internalKey = step.Member("internalKey").Text(),
                    .name = step.Member("name").Text(),
                    .description = step.Member("description").Text(),
                    .visibility = step.Member("visibility").Integer32()};
}

Step ReadEnsureSection(const JsonReader& step) {
  step.RequireObject({"do", "key", "name", "description"});
  return EnsureSectionStep{.key = step.Member("key").Text(),
                           .name = step.Member("name").Text(),
                           .description = step.Member("description").Text()};
}

Step ReadIsAnythingNew(const JsonReader& step) {
  step.RequireObject({"do", "options"});
  return IsAnythingNewStep{ReadOptions(step)};
}

Step ReadRate(const JsonReader& step) {
  step.RequireObject({"do", "key"});
  return RateStep{step.Member("key").Text()};
}

Step ReadFormat(const JsonReader& step) {
  step.RequireObject({"do", "options", "placeholder", "ratingMap"});
  FormatStep format{.options = ReadOptions(step), .placeholder = {}};
  if (const auto placeholder = step.Find("placeholder")) format.placeholder = placeholder->Text();
  if (const auto ratingMap = step.Find("ratingMap")) format.ratingMap = ratingMap->Boolean();
  return format;
}

Step ReadCall(const JsonReader& step) {
  step.RequireObject({"do", "function", "arguments"});
  const JsonReader name = step.Member("function");
  CallStep call;
  call.function = FindCallFunction(name.Text());
  if (!call.function) name.FailExpecting("the name of a function");
  const JsonReader arguments = step.Member("arguments");
  for (const JsonReader& argument : arguments.Elements()) {
    call.arguments.push_back(argument.Text());
  }
  if (call.arguments.size() != call.function->argumentCount) {
    arguments.Fail("the function takes " + std::to_string(call.function->argumentCount) +
                   " arguments, found " + std::to_string(call.arguments.size()));
  }
  return call;
}

Step ReadCaptureStyle(const JsonReader& step) {
  step.RequireObject(
      {"do", "style", "textSoFar", "piece", "startAdjust", "lengthAdjust", "string"});
  return CaptureStyleStep{.style = step.Member("style").Integer32(),
                          .textSoFar = step.Member("textSoFar").Text(),
                          .piece = step.Member("piece").Text(),
                          .startAdjust = step.Member("startAdjust").Integer32(),
                          .lengthAdjust = step.Member("lengthAdjust").Integer32(),
                          .string = step.Member("string").Text()};
}

/// Describes whether all steps of one kind create a list, need a list, or do neither. `call` has
/// `kNone`, because only some of its functions need a list.
enum class ListUse { kCreates, kNeeds, kNone };

struct StepForm {
  std::string_view name;
  ListUse listUse;
  Step (*read)(const JsonReader& step);
};

constexpr std::array<StepForm, 19> kStepForms = {{
    {"construct", ListUse::kCreates, ReadEmpty<ConstructStep>},
    {"load", ListUse::kCreates, ReadWithData<LoadStep>},
    {"loadResource", ListUse::kCreates, ReadLoadResource},
    {"init", ListUse::kNeeds, ReadWithData<InitStep>},
    {"parse", ListUse::kNeeds, ReadWithData<ParseStep>},
    {"parseBetaFeatures", ListUse::kNeeds, ReadEmpty<ParseBetaFeaturesStep>},
    {"bubble", ListUse::kNeeds, ReadEmpty<BubbleStep>},
    {"refresh", ListUse::kNeeds, ReadEmpty<RefreshStep>},
    {"insert", ListUse::kNeeds, ReadInsert},
    {"ensureSection", ListUse::kNeeds, ReadEnsureSection},
    {"isAnythingNew", ListUse::kNeeds, ReadIsAnythingNew},
    {"isAnythingNeedingRating", ListUse::kNeeds, ReadEmpty<IsAnythingNeedingRatingStep>},
    {"rate", ListUse::kNeeds, ReadRate},
    {"format", ListUse::kNeeds, ReadFormat},
    {"items", ListUse::kNeeds, ReadEmpty<ItemsStep>},
    {"newSeenState", ListUse::kNeeds, ReadEmpty<NewSeenStateStep>},
    {"debug", ListUse::kNone, ReadEmpty<DebugStep>},
    {"call", ListUse::kNone, ReadCall},
    {"captureStyle", ListUse::kNeeds, ReadCaptureStyle},
}};

Callbacks ReadCallbacks(const JsonReader& member) {
  constexpr std::array<std::pair<std::string_view, Callbacks>, 4> kNames = {
      {{"both", Callbacks::kBoth},
       {"getter", Callbacks::kGetter},
       {"setter", Callbacks::kSetter},
       {"none", Callbacks::kNone}}};
  for (const auto& [name, callbacks] : kNames) {
    if (member.Value() == nlohmann::json(name)) return callbacks;
  }
  member.FailExpecting("\"both\", \"getter\", \"setter\" or \"none\"");
}

/// Sets the members of `host` that `object` contains, and leaves the other members unchanged.
/// `others` contains the names of members that `object` may have besides `kHostMembers`.
void ReadScenarioHost(const JsonReader& object, std::initializer_list<std::string_view> others,
                      ScenarioHost& host) {
  std::vector<std::string_view> known(others);
  known.insert(known.end(), kHostMembers.begin(), kHostMembers.end());
  object.RequireObject(known);
  hosts::common::ReadHostMembers(object, host);
  if (const auto state = object.Find("state")) host.state = state->Texts();
  if (const auto callbacks = object.Find("callbacks")) host.callbacks = ReadCallbacks(*callbacks);
}

/// Reads the steps of one scenario. The steps must be read in order, because a step may need a list
/// that an earlier step creates. A host step also inherits members from the previous host.
class StepReader {
 public:
  explicit StepReader(const ScenarioHost& host) : host_(host) {}

  Step Read(const JsonReader& step) {
    const JsonReader name = step.Member("do");
    const std::string text = name.Text();
    if (text == "host") return ReadHost(step);
    const auto form = std::ranges::find(kStepForms, text, &StepForm::name);
    if (form == kStepForms.end()) name.FailExpecting("the name of a step");
    Step read = form->read(step);
    RequireList(step, form->listUse);
    return CheckedCall(step, std::move(read));
  }

 private:
  /// Reads a host step. Each of its members replaces the same member of the current host.
  Step ReadHost(const JsonReader& step) {
    ReadScenarioHost(step, {"do", "state"}, host_);
    return HostStep{.host = host_,
                    .replacesDebug = step.Find("debug").has_value(),
                    .replacesState = step.Find("state").has_value()};
  }

  void RequireList(const JsonReader& step, ListUse use) {
    if (use == ListUse::kCreates) listExists_ = true;
    if (use == ListUse::kNeeds && !listExists_) {
      step.Fail("this step needs a list; create one first (construct, load, loadResource)");
    }
  }

  Step CheckedCall(const JsonReader& step, Step read) {
    const CallStep* const call = std::get_if<CallStep>(&read);
    if (call && call->function->usesList) RequireList(step, ListUse::kNeeds);
    return read;
  }

  ScenarioHost host_;
  bool listExists_ = false;
};

}  // namespace

Scenario ReadScenario(const JsonReader& object) {
  object.RequireObject({"name", "intent", "exactTexts", "host", "steps", "expect"});
  Scenario scenario;
  scenario.name = object.Member("name").Text();
  if (const auto intent = object.Find("intent")) scenario.intent = intent->Text();
  if (const auto exactTexts = object.Find("exactTexts")) {
    scenario.exactTexts = exactTexts->Boolean();
  }
  if (const auto host = object.Find("host")) {
    ReadScenarioHost(*host, {"state", "callbacks"}, scenario.host);
  }
  StepReader reader(scenario.host);
  for (const JsonReader& step : object.Member("steps").Elements()) {
    scenario.steps.push_back(reader.Read(step));
  }
  return scenario;
}

}  // namespace conformance
