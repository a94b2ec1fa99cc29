#include "tests/conformance/RunnerProgram.h"

#include <algorithm>
#include <exception>
#include <functional>
#include <istream>
#include <optional>
#include <ostream>
#include <sstream>
#include <string_view>
#include <utility>

#include <nlohmann/json.hpp>

#include "hosts/common/JsonReader.h"
#include "hosts/common/TextFile.h"
#include "tests/conformance/ResultComparison.h"
#include "tests/conformance/ResultJson.h"
#include "tests/conformance/ScenarioReader.h"
#include "tests/conformance/ScenarioRun.h"

namespace conformance {

using hosts::common::JsonDocument;
using hosts::common::JsonError;
using hosts::common::JsonReader;
using nlohmann::json;

namespace {

/// The results of one scenario, or the error that occurred instead.
struct Outcome {
  /// The name of the scenario, or null if the scenario has no valid name.
  json name;
  json results;
  std::optional<std::string> error;
  /// Whether the scenario shows a rule, as `Accepted` defines it.
  bool showsRule = false;
  /// The expected results, or null if the scenario has none. The JSON document owns them.
  const json* expect = nullptr;
};

using OutcomeSink = std::function<void(const Outcome&)>;

Outcome FailedOutcome(std::string_view error) {
  Outcome outcome;
  outcome.error = error;
  return outcome;
}

Outcome RunOne(const JsonReader& reader) {
  Outcome outcome;
  try {
    const json& value = reader.Value();
    if (value.is_object() && value.contains("name") && value["name"].is_string()) {
      outcome.name = value["name"];
    }
    const Scenario scenario = ReadScenario(reader);
    if (const auto expect = reader.Find("expect")) {
      if (!expect->Value().is_array()) expect->FailExpecting("an array of results");
      outcome.expect = &expect->Value();
    }
    outcome.showsRule = !scenario.intent.empty() && scenario.exactTexts;
    outcome.results = RunScenario(scenario);
  } catch (const std::exception& error) {
    outcome.error = error.what();
  }
  return outcome;
}

/// Selects whether a JSON document may be an array of scenarios.
enum class Form { kOneOrMany, kOne };

/// Parses the JSON document `text`, runs its scenarios, and passes their outcomes to `sink`. The
/// document is one scenario or, if `form` allows it, an array of scenarios. If `text` is not JSON,
/// passes one outcome with an error. Messages about errors in the document begin with `sourceName`.
void RunText(std::string_view text, std::string_view sourceName, Form form,
             const OutcomeSink& sink) {
  std::optional<JsonDocument> document;
  try {
    document = JsonDocument::Parse(text, sourceName);
  } catch (const JsonError& error) {
    sink(FailedOutcome(error.what()));
    return;
  }
  const JsonReader reader(*document);
  if (form == Form::kOne || !reader.Value().is_array()) {
    sink(RunOne(reader));
    return;
  }
  for (const JsonReader& element : reader.Elements()) sink(RunOne(element));
}

void RunFile(const std::string& file, const OutcomeSink& sink) {
  std::string text;
  try {
    text = hosts::common::ReadTextFile(file);
  } catch (const std::exception& error) {
    sink(FailedOutcome(error.what()));
    return;
  }
  RunText(text, file, Form::kOneOrMany, sink);
}

void RunAll(const std::vector<std::string>& files, std::istream& in, const OutcomeSink& sink) {
  if (files.empty()) {
    std::ostringstream text;
    text << in.rdbuf();
    RunText(text.view(), "standard input", Form::kOneOrMany, sink);
  }
  for (const std::string& file : files) RunFile(file, sink);
}

std::string OutcomeJson(const Outcome& outcome) {
  if (!outcome.error) return LineOf({{"name", outcome.name}, {"results", outcome.results}});
  return LineOf({{"name", outcome.name}, {"error", TextJson(*outcome.error)}});
}

std::string DisplayName(const Outcome& outcome) {
  if (!outcome.name.is_string()) return "(no name)";
  const std::string quoted = LineOf(outcome.name);
  return quoted.substr(1, quoted.size() - 2);
}

/// Flushes the output and returns `status`. If the output cannot be written, reports an error and
/// returns `kNotRun`.
int Finish(const Streams& streams, int status) {
  streams.out.flush();
  if (streams.out) return status;
  streams.err << "scenario_runner: cannot write the results\n";
  return kNotRun;
}

/// Writes a line to `out` for each difference from the expected results. Returns true if there is a
/// difference. The first number of a path such as `/3/text` is the index of the step.
bool PrintDifferences(const Outcome& outcome, std::ostream& out) {
  const std::vector<Difference> differences = CompareJson(*outcome.expect, outcome.results);
  for (const Difference& difference : differences) {
    const std::size_t stepEnd = difference.path.find('/', 1);
    out << DisplayName(outcome) << ": step " << difference.path.substr(1, stepEnd - 1);
    if (stepEnd != std::string::npos) out << ' ' << difference.path.substr(stepEnd);
    out << ": expected " << difference.expected << ", got " << difference.got << '\n';
  }
  return !differences.empty();
}

/// Returns why the results of a scenario cannot be checked, or `std::nullopt` if they can.
std::optional<std::string> ReasonNotToCheck(const Outcome& outcome, Accepted accepted) {
  if (outcome.error) return outcome.error;
  if (!outcome.expect) return "the scenario has no member \"expect\"";
  if (accepted == Accepted::kRules && !outcome.showsRule) {
    return "the scenario has no \"intent\", or its member \"exactTexts\" is not true";
  }
  return std::nullopt;
}

int CheckOne(const Outcome& outcome, Accepted accepted, std::ostream& out) {
  if (const auto reason = ReasonNotToCheck(outcome, accepted)) {
    out << DisplayName(outcome) << ": " << *reason << '\n';
    return kNotRun;
  }
  return PrintDifferences(outcome, out) ? kDifferences : kSuccess;
}

}  // namespace

int PrintResults(const std::vector<std::string>& files, Streams streams) {
  int status = kSuccess;
  bool first = true;
  streams.out << '[';
  RunAll(files, streams.in, [&](const Outcome& outcome) {
    if (outcome.error) status = kNotRun;
    streams.out << (first ? "\n" : ",\n") << OutcomeJson(outcome);
    first = false;
  });
  streams.out << "\n]\n";
  return Finish(streams, status);
}

int CheckResults(const std::vector<std::string>& files, Accepted accepted, Streams streams) {
  int status = kSuccess;
  std::size_t scenarios = 0;
  std::size_t passed = 0;
  RunAll(files, streams.in, [&](const Outcome& outcome) {
    const int one = CheckOne(outcome, accepted, streams.out);
    ++scenarios;
    if (one == kSuccess) ++passed;
    status = std::max(status, one);
  });
  streams.err << passed << " of " << scenarios << " scenarios have the expected results\n";
  return Finish(streams, status);
}

int RunBatch(Streams streams) {
  int status = kSuccess;
  std::size_t number = 0;
  for (std::string line; streams.out && std::getline(streams.in, line);) {
    ++number;
    if (line.find_first_not_of(" \t\r") == std::string::npos) continue;
    const std::string source = "standard input line " + std::to_string(number);
    RunText(line, source, Form::kOne, [&](const Outcome& outcome) {
      if (outcome.error) status = kNotRun;
      streams.out << OutcomeJson(outcome) << std::endl;
    });
  }
  return Finish(streams, status);
}

}  // namespace conformance
