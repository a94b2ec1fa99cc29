// Fuzzes `ornwhatsnew lint` and `ornwhatsnew why`: checks the findings in a data file, their
// output, their corrections, and the explanations of the changes.
//
// The input consists of a line with two switches and of the data file. If bit 0 of the first switch
// is set, the fuzzer checks the file with a host. If bit 1 is set, it also compares the file with
// itself. The second switch contains the display options.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include <orncore/string/Conversion.h>
#include <orncore/string/SafeText.h>
#include <ornwhatsnew/FeatureListData.h>
#include <nlohmann/json.hpp>

#include "fuzz/Input.h"
#include "fuzz/Property.h"
#include "hosts/author/lint/Lint.h"
#include "hosts/author/lint/LintBaseline.h"
#include "hosts/author/lint/LintFix.h"
#include "hosts/author/lint/LintOutput.h"
#include "hosts/author/why/WhyReport.h"
#include "hosts/console/LintText.h"

namespace fuzz {
namespace {

using hosts::author::Edit;
using hosts::author::Finding;
using hosts::author::FixScope;
using hosts::author::LintHost;
using hosts::author::LintReport;

constexpr unsigned kHasHost = 1;
constexpr unsigned kHasBaseline = 2;

LintHost MakeHost() {
  LintHost host;
  host.file = "host.json";
  host.description.clientVersion = "4.3";
  host.description.betaFeatures = {{"feature.one", "EPIC-1", "One", "", 0, true, true},
                                   {"feature.two", "EPIC-2", "Two", "", 1, true, true},
                                   {"feature.off", "ORN-7", "Off", "", 2, false, false},
                                   {"feature.same", "EPIC-1", "Same", "", 0, true, true},
                                   {"feature.none", "", "None", "", 3, true, false}};
  host.description.dictionary = {{"$$$/known", "A known text"}};
  return host;
}

void RequirePlace(const Finding& finding, std::string_view text) {
  const auto lines = static_cast<std::size_t>(std::ranges::count(text, '\n')) + 1;
  const hosts::author::Place& place = finding.place;
  Require(place.line >= 1 && place.line <= place.endLine && place.endLine <= lines,
          "a finding is on a line of the file");
  Require(place.column >= 1 && place.endColumn >= 1, "columns are counted from 1");
  Require(place.line < place.endLine || place.column <= place.endColumn,
          "a finding does not end before it begins");
  const Edit edit = finding.edit.value_or(Edit());
  Require(edit.offset <= text.size() && edit.length <= text.size() - edit.offset,
          "an edit is inside the file");
}

void RequireMessage(const std::string& message) {
  Require(!message.empty(), "a finding has a message");
  RequireEqual(orncore::string::EscapeInvisible(message), message,
               "a message is one line without invisible characters");
}

void RequireOutputs(const LintReport& report, const std::string& text) {
  using nlohmann::json;
  const json parsed = json::parse(hosts::author::LintJson(report));
  RequireEqual(parsed["findings"].size(), report.findings.size(), "JSON has every finding");
  const json sarif = json::parse(hosts::author::LintSarif(report));
  RequireEqual(sarif["runs"][0]["results"].size(), report.findings.size(),
               "SARIF has every finding");
  const std::string github = hosts::author::LintGithub(report);
  RequireEqual(static_cast<std::size_t>(std::ranges::count(github, '\n')), report.findings.size(),
               "each GitHub annotation is one line");
  const std::string terminal = hosts::console::LintText(report, {{"data.csv", text}}, true);
  Require(orncore::string::IsWellFormedUTF8(terminal), "the text is well-formed UTF-8");
}

void RequireCorrections(const LintReport& report, const std::string& text, const LintHost* host) {
  const auto fixed = hosts::author::FixDataFile("data.csv", text, report, FixScope::kAll, host);
  RequireEqual(fixed.corrected == 0, fixed.text == text, "a correction changes the file");
  RequireEqual(fixed.diff.empty(), fixed.corrected == 0, "a diff shows the corrections");
  const auto safe = hosts::author::FixDataFile("data.csv", text, report, FixScope::kSafe, host);
  RequireEqual(safe.corrected + safe.withheld, fixed.corrected,
               "the safe corrections omit only those that announce a change again");
}

// Checks that no line of `output` contains invisible characters.
void RequireVisible(std::string_view output) {
  for (std::size_t begin = 0; begin < output.size();) {
    const std::size_t end = std::min(output.find('\n', begin), output.size());
    const std::string line(output.substr(begin, end - begin));
    RequireEqual(orncore::string::EscapeInvisible(line), line,
                 "an explanation contains no invisible characters");
    begin = end + 1;
  }
}

void RequireExplanations(const std::string& text, unsigned options) {
  constexpr std::size_t kMaximumLines = 20;  // each explanation can read the whole file
  const ornwhatsnew::FeatureListData list(
      text, [](const std::string&) { return std::string(); },
      [](const std::string&, const std::string&) {});
  const hosts::author::WhyReport report(list, "data.csv", text,
                                        static_cast<unsigned char>(options & 0x1FU), {"4.3.0.118"});
  RequireVisible(report.ExplainAll());
  const auto lines = static_cast<std::size_t>(std::ranges::count(text, '\n'));
  for (std::size_t line = 1; line <= std::min(lines, kMaximumLines); ++line) {
    RequireVisible(report.ExplainLine(line));
  }
  for (const std::string& key : list.GetOrderedFeatureKeys()) {
    RequireVisible(report.ExplainKey(key));
  }
}

void Run(Input input) {
  const std::string_view line = input.ReadLine();
  const unsigned switches = Switch(line, 0);
  const std::string text(input.Rest());
  const LintHost host = MakeHost();
  const bool hasHost = (switches & kHasHost) != 0;
  hosts::common::InstallHost(hasHost ? host.description : hosts::common::HostDescription());
  const LintHost* const used = hasHost ? &host : nullptr;

  LintReport report = hosts::author::LintDataFile("data.csv", text, used);
  for (const Finding& finding : report.findings) {
    RequireMessage(finding.message);
    if (finding.file == "data.csv") RequirePlace(finding, text);
  }
  RequireCorrections(report, text, used);
  if ((switches & kHasBaseline) != 0) {
    const LintReport same =
        hosts::author::CompareWithBaseline("data.csv", text, "old.csv", text, used);
    Require(same.findings.empty(), "a file does not differ from itself");
  }
  hosts::author::FinishReport(report);
  RequireOutputs(report, text);
  RequireExplanations(text, Switch(line, 1));
}

}  // namespace
}  // namespace fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::Run(fuzz::Input(data, size));
  return 0;
}
