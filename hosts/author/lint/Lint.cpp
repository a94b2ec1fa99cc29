#include "hosts/author/lint/Lint.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <tuple>
#include <unordered_map>
#include <utility>

#include "hosts/author/lint/Rules.h"

namespace hosts::author {
namespace {

void RunFileRules(LintContext& context, std::span<const FileRule> rules) {
  for (const FileRule rule : rules) {
    if (context.IsStopped()) return;
    rule(context);
  }
}

void RunChangeRules(LintContext& context) {
  const auto subjects = std::to_array<std::span<const ChangeRule>>(
      {WordRules(), VersionRules(), LinkRules(), LocalisationRules(), TextRules()});
  for (const LintRow& row : context.File().Rows()) {
    if (row.change == nullptr || row.isExplained) continue;
    for (const std::span<const ChangeRule> rules : subjects) {
      for (const ChangeRule rule : rules) rule(context, row);
    }
  }
}

void RunRules(LintContext& context) {
  RunFileRules(context, HostTableRules());
  RunFileRules(context, FileFormRules());
  RunFileRules(context, HeaderRules());
  RunFileRules(context, RowShapeRules());
  if (context.IsStopped()) return;
  RunChangeRules(context);
  RunFileRules(context, ChangesSinceRules());
  RunFileRules(context, ListRules());
}

void AddOmitted(LintReport& report) {
  for (const auto& [code, omitted] : report.omitted) {
    report.notJudged.insert(Counted(omitted.count, "more finding") + " with the code " +
                            std::string(InfoOf(code).name) + (omitted.count == 1 ? " is" : " are") +
                            " not listed");
  }
}

}  // namespace

std::size_t LintReport::Count(Severity severity) const {
  return static_cast<std::size_t>(std::ranges::count(findings, severity, &Finding::severity));
}

void LintReport::Append(LintReport other) {
  std::ranges::move(other.findings, std::back_inserter(findings));
  for (const auto& [code, findingsOfCode] : other.omitted) {
    omitted[code].count += findingsOfCode.count;
  }
  files += other.files;
  changes += other.changes;
  notJudged.merge(other.notJudged);
}

LintHost InstallLintHost(const std::string& file) {
  return InstallLintHost(file, common::ReadHostDescription(file));
}

LintHost InstallLintHost(const std::string& file, common::HostDescription description) {
  LintHost host{file, std::move(description)};
  host.description.internalFeaturesAllowed = true;
  host.description.terminating = false;
  host.description.debug.clear();
  common::InstallHost(host.description);
  return host;
}

void InstallNoLintHost() {
  common::InstallHost(common::HostDescription());
}

LintReport LintDataFile(const std::string& name, std::string_view text, const LintHost* host,
                        LintScope scope) {
  LintedFile file(name, text);
  LintContext context(file, host, scope);
  RunRules(context);
  LintReport report;
  report.findings = context.TakeFindings();
  report.omitted = context.TakeOmitted();
  report.files = 1;
  report.changes = context.IsStopped() ? 0 : file.ChangeCount();
  if (host == nullptr) {
    report.notJudged.insert(
        "features, their keys and the version of the host are checked only with --host");
  }
  return report;
}

void ApplySeverities(LintReport& report, const SeverityOverrides& overrides) {
  for (Finding& finding : report.findings) {
    const auto found = overrides.find(finding.code);
    if (found != overrides.end()) finding.severity = found->second;
  }
  std::erase_if(report.findings,
                [](const Finding& finding) { return finding.severity == Severity::kOff; });
  for (const auto& [code, severity] : overrides) {
    if (severity == Severity::kOff) report.omitted.erase(code);
  }
}

void FinishReport(LintReport& report) {
  AddOmitted(report);
  const auto key = [](const Finding& finding) {
    return std::tie(finding.file, finding.place.line, finding.place.column, finding.code,
                    finding.message);
  };
  std::ranges::stable_sort(report.findings,
                           [key](const Finding& a, const Finding& b) { return key(a) < key(b); });
  // Remove duplicates, because the check of each data file reports the same findings on the host
  // description.
  const auto isEqual = [key](const Finding& a, const Finding& b) { return key(a) == key(b); };
  // Use std::unique, because clang 14 cannot compile code that uses the result of
  // std::ranges::unique.
  report.findings.erase(std::unique(report.findings.begin(), report.findings.end(), isEqual),
                        report.findings.end());
  std::unordered_map<std::string, std::size_t> counts;
  for (Finding& finding : report.findings) {
    const std::size_t number = ++counts[finding.file + "\n" + finding.fingerprint];
    if (number > 1) finding.fingerprint += "/" + std::to_string(number);
  }
}

}  // namespace hosts::author
