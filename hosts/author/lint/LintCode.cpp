#include "hosts/author/lint/LintCode.h"

#include <algorithm>
#include <array>

#include "hosts/author/lint/LintCodeTable.h"

namespace hosts::author {
namespace {

constexpr auto kSeverityNames =
    std::to_array<std::string_view>({"off", "note", "warning", "error"});

constexpr bool IsInOrder() {
  for (std::size_t i = 0; i < kLintCodes.size(); ++i) {
    if (static_cast<std::size_t>(kLintCodes[i].code) != i) return false;
  }
  return static_cast<std::size_t>(LintCode::kBaselineRatedAgain) + 1 == kLintCodes.size();
}
static_assert(IsInOrder(), "the table must contain each code once, in the order of LintCode");

}  // namespace

std::string_view SeverityName(Severity severity) {
  return kSeverityNames[static_cast<std::size_t>(severity)];
}

std::optional<Severity> FindSeverity(std::string_view name) {
  const auto found = std::ranges::find(kSeverityNames, name);
  if (found == kSeverityNames.end()) return std::nullopt;
  return static_cast<Severity>(found - kSeverityNames.begin());
}

std::span<const LintCodeInfo> LintCodes() {
  return kLintCodes;
}

const LintCodeInfo& InfoOf(LintCode code) {
  return kLintCodes[static_cast<std::size_t>(code)];
}

std::optional<LintCode> FindLintCode(std::string_view name) {
  const auto found = std::ranges::find(kLintCodes, name, &LintCodeInfo::name);
  if (found == kLintCodes.end()) return std::nullopt;
  return found->code;
}

std::string Explanation(LintCode code) {
  const LintCodeInfo& info = InfoOf(code);
  std::string text = std::string(info.name) + " (" + std::string(SeverityName(info.severity));
  text += "): " + std::string(info.summary) + "\n\n";
  text += std::string(info.explanation) + "\n\n" + std::string(info.remedy) + "\n";
  return text;
}

std::string CodeList() {
  std::size_t width = 0;
  for (const LintCodeInfo& info : kLintCodes) width = std::max(width, info.name.size());
  std::string text;
  for (const LintCodeInfo& info : kLintCodes) {
    std::string line(info.name);
    line.resize(width + 2, ' ');
    line += SeverityName(info.severity);
    line.resize(width + 11, ' ');
    text += line + std::string(info.summary) + "\n";
  }
  return text;
}

}  // namespace hosts::author
