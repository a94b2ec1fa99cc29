#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

#include "hosts/author/DataFileWriter.h"
#include "hosts/author/FileRewrite.h"
#include "hosts/author/InputError.h"
#include "hosts/author/lint/Lint.h"
#include "hosts/author/lint/LintConfig.h"
#include "hosts/common/MessageText.h"
#include "hosts/console/AuthorErrors.h"
#include "hosts/console/Commands.h"
#include "hosts/console/ErrorReport.h"
#include "hosts/console/WhatsNewLoading.h"

namespace hosts::console {
namespace {

using author::Finding;

/// Returns the findings of `lint` on the last row of the data file `content`, which ends with a
/// newline. If `lint` cannot check the rows, for example because semicolons separate the fields,
/// returns all findings on the file.
std::vector<Finding> LintLastRow(const std::filesystem::path& file, const std::string& content) {
  author::LintReport report =
      author::LintDataFile(file.native(), content, nullptr, author::LintScope::kLastRow);
  author::ApplySeverities(report, author::ConfiguredSeverities(file));
  author::FinishReport(report);
  const bool areRowsJudged = report.changes > 0;
  const auto lastLine = static_cast<std::size_t>(std::ranges::count(content, '\n'));
  std::erase_if(report.findings, [&](const Finding& finding) {
    return areRowsJudged && finding.place.line != lastLine;
  });
  return std::move(report.findings);
}

void Report(const std::filesystem::path& file, std::size_t line, const Finding& finding) {
  ReportError(MessageAt(file, line,
                        std::string(author::SeverityName(finding.severity)) + ": " +
                            finding.message + " [" +
                            std::string(author::InfoOf(finding.code).name) + "]"));
}

/// If one of the findings is an error, reports all findings and throws `ToolError`. Omits their
/// line numbers, because the new row is not written to the file.
void RequireNoError(const std::filesystem::path& file, const std::vector<Finding>& findings) {
  const auto firstError = std::ranges::find(findings, author::Severity::kError, &Finding::severity);
  if (firstError == findings.end()) return;
  for (const Finding& finding : findings) Report(file, 0, finding);
  const auto errors = std::ranges::count(findings, author::Severity::kError, &Finding::severity);
  // The position of a finding on the whole file is line 1. The new row cannot be line 1, because a
  // header precedes it.
  const bool isOnFile = firstError->place.line == 1;
  throw ToolError(
      ExitStatus::kInput,
      MessageAt(file, 0,
                "found " + common::Counted(static_cast<std::size_t>(errors), "error") +
                    (isOnFile ? " in the file" : " in the new row") + "; nothing was written"));
}

/// Returns `dataFile` with the new change. Sets `findings` to the findings on the new row. Throws
/// an exception if the change cannot be added, or if a finding is an error.
std::string AddChange(const AddArguments& arguments, std::string_view dataFile,
                      std::vector<Finding>& findings) {
  if (dataFile.size() > kMaximumAuthorFile) {
    throw author::InputError(0, "the file is larger than 16 MiB");
  }
  std::string changed = author::AppendChange(dataFile, arguments.fields);
  findings = LintLastRow(arguments.data, changed);
  RequireNoError(arguments.data, findings);
  return changed;
}

}  // namespace

ExitStatus Run(const AddArguments& arguments) {
  author::InstallNoLintHost();
  std::vector<Finding> findings;
  try {
    author::ChangeWholeFile(arguments.data, [&](std::string_view dataFile) {
      return AddChange(arguments, dataFile, findings);
    });
  } catch (const author::InputError& error) {
    throw ToToolError(arguments.data, error);
  } catch (const std::system_error& error) {
    const bool isMissing = error.code() == std::errc::no_such_file_or_directory;
    throw ToolError(isMissing ? ExitStatus::kInput : ExitStatus::kOutput, error.what());
  }
  for (const Finding& finding : findings) Report(arguments.data, finding.place.line, finding);
  return ExitStatus::kDone;
}

}  // namespace hosts::console
