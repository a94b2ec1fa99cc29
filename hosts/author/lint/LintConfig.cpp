#include "hosts/author/lint/LintConfig.h"

#include <system_error>
#include <vector>

#include "hosts/author/lint/NearestWord.h"
#include "hosts/common/JsonDocument.h"
#include "hosts/common/JsonReader.h"
#include "hosts/common/TextFile.h"

namespace hosts::author {
namespace {

constexpr std::string_view kSeverities = "'off', 'note', 'warning' or 'error'";

}  // namespace

std::string UnknownCodeMessage(std::string_view name) {
  std::vector<std::string_view> names;
  for (const LintCodeInfo& info : LintCodes()) names.push_back(info.name);
  const std::optional<std::string> nearest = NearestWord(name, names);
  return "unknown code " + Quoted(name) +
         (nearest ? "; write " + Quoted(*nearest) : "; --list-codes lists all codes");
}

std::optional<std::filesystem::path> FindLintConfig(const std::filesystem::path& dataFile) {
  std::error_code error;
  std::filesystem::path path = std::filesystem::absolute(dataFile, error);
  while (!error && path.has_relative_path()) {
    path = path.parent_path();
    std::filesystem::path config = path / kLintConfigName;
    if (std::filesystem::exists(config, error)) return config;
  }
  return std::nullopt;
}

SeverityOverrides ConfiguredSeverities(const std::filesystem::path& dataFile) {
  constexpr std::size_t kMaximumBytes = 1'000'000;
  const std::optional<std::filesystem::path> config = FindLintConfig(dataFile);
  if (!config) return {};
  try {
    return ParseLintConfig(common::ReadTextFile(*config, kMaximumBytes), config->native());
  } catch (const orncore::config::ResultError& error) {
    throw common::JsonError(common::JsonMessage(common::OpenErrorMessage(*config, error), "", ""));
  }
}

SeverityOverrides ParseLintConfig(std::string_view json, std::string_view sourceName) {
  constexpr std::size_t kDepth = 2;
  const common::JsonDocument document = common::JsonDocument::Parse(json, sourceName, kDepth);
  const common::JsonReader object(document);
  object.RequireObject({"severity"});
  SeverityOverrides overrides;
  const auto severities = object.Find("severity");
  if (!severities) return overrides;
  for (const auto& [name, word] : severities->Texts()) {
    const std::optional<LintCode> code = FindLintCode(name);
    if (!code) severities->Fail(UnknownCodeMessage(name));
    const std::optional<Severity> severity = FindSeverity(word);
    if (!severity) severities->Member(name).FailExpecting(kSeverities);
    overrides[*code] = *severity;
  }
  return overrides;
}

std::string AddSeverity(std::string_view argument, SeverityOverrides& overrides) {
  const std::size_t equals = argument.find('=');
  const std::string_view name = argument.substr(0, equals);
  const std::optional<LintCode> code = FindLintCode(name);
  if (!code) return UnknownCodeMessage(name);
  const std::optional<Severity> severity =
      equals == argument.npos ? std::nullopt : FindSeverity(argument.substr(equals + 1));
  if (!severity) {
    return Quoted(argument) + " does not contain a valid severity; write " +
           std::string(kSeverities) + " after '='";
  }
  overrides[*code] = *severity;
  return "";
}

}  // namespace hosts::author
