#include "hosts/author/lint/LintOutput.h"

#include <cctype>
#include <string_view>

#include <ornwhatsnew/Version.h>
#include <nlohmann/json.hpp>

#include "hosts/common/MessageText.h"
#include "hosts/common/PanelJson.h"

namespace hosts::author {
namespace {

using common::TextJson;
using nlohmann::json;

// ---- JSON

/// Returns the replacement for the characters at the finding's position. Returns null if the
/// finding has no edit, or if the edit replaces several CR line endings. The position then contains
/// only the first of them.
json FixJson(const Finding& finding) {
  if (!finding.edit) return nullptr;
  if (finding.code == LintCode::kFileLineEnds && finding.edit->length > 1) return nullptr;
  return {{"replacement", TextJson(finding.edit->replacement)}};
}

json FieldJson(const Finding& finding) {
  if (finding.fieldNumber == 0) return nullptr;
  return {{"number", finding.fieldNumber}, {"name", TextJson(finding.fieldName)}};
}

json RelatedJson(const Finding& finding) {
  json array = json::array();
  for (const RelatedPlace& related : finding.related) {
    array.push_back({{"file", TextJson(related.file)},
                     {"line", related.line},
                     {"column", related.column},
                     {"message", TextJson(related.message)}});
  }
  return array;
}

json FindingJson(const Finding& finding) {
  return {{"file", TextJson(finding.file)},
          {"line", finding.place.line},
          {"column", finding.place.column},
          {"endLine", finding.place.endLine},
          {"endColumn", finding.place.endColumn},
          {"field", FieldJson(finding)},
          {"severity", SeverityName(finding.severity)},
          {"code", InfoOf(finding.code).name},
          {"message", TextJson(finding.message)},
          {"related", RelatedJson(finding)},
          {"fix", FixJson(finding)},
          {"fingerprint", finding.fingerprint}};
}

// ---- SARIF

/// Returns an absolute path as a file URI, and any other path as a relative reference.
/// Percent-encodes all bytes except ASCII letters, digits and the characters in `kUnescaped`.
std::string URI(std::string_view path) {
  constexpr std::string_view kUnescaped = "-._~/";
  std::string uri = path.starts_with('/') ? "file://" : "";
  for (const char c : path) {
    const auto byte = static_cast<unsigned char>(c);
    const bool isAlphanumeric = byte < 0x80 && std::isalnum(byte) != 0;
    if (isAlphanumeric || kUnescaped.find(c) != kUnescaped.npos) {
      uri += c;
    } else {
      uri += "%" + common::HexDigits(c);
    }
  }
  return uri;
}

json LocationJson(std::string_view file, const json& region) {
  return {{"physicalLocation", {{"artifactLocation", {{"uri", URI(file)}}}, {"region", region}}}};
}

json SarifRelated(const Finding& finding) {
  json array = json::array();
  for (const RelatedPlace& related : finding.related) {
    json location =
        LocationJson(related.file, {{"startLine", related.line}, {"startColumn", related.column}});
    location["id"] = array.size();
    location["message"] = {{"text", TextJson(related.message)}};
    array.push_back(std::move(location));
  }
  return array;
}

json SarifResult(const Finding& finding) {
  const Place& place = finding.place;
  json result = {
      {"ruleId", InfoOf(finding.code).name},
      {"ruleIndex", static_cast<std::size_t>(finding.code)},
      {"level", SeverityName(finding.severity)},
      {"message", {{"text", TextJson(finding.message)}}},
      {"locations", json::array({LocationJson(finding.file, {{"startLine", place.line},
                                                             {"startColumn", place.column},
                                                             {"endLine", place.endLine},
                                                             {"endColumn", place.endColumn}})})},
      {"partialFingerprints", {{"ornwhatsnewLint/v1", finding.fingerprint}}}};
  if (!finding.related.empty()) result["relatedLocations"] = SarifRelated(finding);
  return result;
}

json SarifRules() {
  json rules = json::array();
  for (const LintCodeInfo& info : LintCodes()) {
    rules.push_back({{"id", info.name},
                     {"shortDescription", {{"text", info.summary}}},
                     {"fullDescription", {{"text", info.explanation}}},
                     {"help", {{"text", info.remedy}}},
                     {"defaultConfiguration", {{"level", SeverityName(info.severity)}}}});
  }
  return rules;
}

// ---- GitHub

std::string Escaped(std::string_view text, bool isProperty) {
  std::string escaped;
  for (const char c : text) {
    switch (c) {
      case '%':
        escaped += "%25";
        break;
      case '\r':
        escaped += "%0D";
        break;
      case '\n':
        escaped += "%0A";
        break;
      case ':':
        escaped += isProperty ? "%3A" : ":";
        break;
      case ',':
        escaped += isProperty ? "%2C" : ",";
        break;
      default:
        escaped += c;
    }
  }
  return escaped;
}

std::string_view GithubLevel(Severity severity) {
  return severity == Severity::kNote ? "notice" : SeverityName(severity);
}

std::string CountedOrNo(std::size_t number, std::string_view noun) {
  return number == 0 ? "no " + std::string(noun) + "s" : Counted(number, noun);
}

}  // namespace

std::string LintJson(const LintReport& report) {
  json findings = json::array();
  for (const Finding& finding : report.findings) findings.push_back(FindingJson(finding));
  json notJudged = json::array();
  for (const std::string& reason : report.notJudged) notJudged.push_back(TextJson(reason));
  return common::ToJsonText({{"version", 1},
                             {"findings", std::move(findings)},
                             {"summary",
                              {{"errors", report.Count(Severity::kError)},
                               {"warnings", report.Count(Severity::kWarning)},
                               {"notes", report.Count(Severity::kNote)},
                               {"files", report.files},
                               {"changes", report.changes},
                               {"notJudged", std::move(notJudged)}}}});
}

std::string LintSarif(const LintReport& report) {
  json results = json::array();
  for (const Finding& finding : report.findings) results.push_back(SarifResult(finding));
  const json driver = {{"name", "ornwhatsnew lint"},
                       {"version", ornwhatsnew::kVersionText},
                       {"rules", SarifRules()}};
  const json run = {{"tool", {{"driver", driver}}},
                    {"columnKind", "unicodeCodePoints"},
                    {"results", std::move(results)}};
  return common::ToJsonText({{"$schema", "https://json.schemastore.org/sarif-2.1.0.json"},
                             {"version", "2.1.0"},
                             {"runs", json::array({run})}});
}

std::string LintGithub(const LintReport& report) {
  constexpr bool kProperty = true;
  std::string text;
  for (const Finding& finding : report.findings) {
    const Place& place = finding.place;
    text += "::" + std::string(GithubLevel(finding.severity)) +
            " file=" + Escaped(finding.file, kProperty) + ",line=" + std::to_string(place.line) +
            ",endLine=" + std::to_string(place.endLine) + ",col=" + std::to_string(place.column) +
            ",endColumn=" + std::to_string(place.endColumn) +
            ",title=" + Escaped(InfoOf(finding.code).name, kProperty) +
            "::" + Escaped(finding.message, !kProperty) + "\n";
  }
  return text;
}

std::string LintSummary(const LintReport& report) {
  return CountedOrNo(report.Count(Severity::kError), "error") + ", " +
         CountedOrNo(report.Count(Severity::kWarning), "warning") + " and " +
         CountedOrNo(report.Count(Severity::kNote), "note") + " in " +
         CountedOrNo(report.changes, "change") + " of " + CountedOrNo(report.files, "file");
}

}  // namespace hosts::author
