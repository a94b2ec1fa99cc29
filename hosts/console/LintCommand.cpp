#include <algorithm>
#include <exception>
#include <set>
#include <string>
#include <string_view>

#include <unistd.h>

#include "hosts/author/FileRewrite.h"
#include "hosts/author/InputError.h"
#include "hosts/author/lint/GitFile.h"
#include "hosts/author/lint/Lint.h"
#include "hosts/author/lint/LintBaseline.h"
#include "hosts/author/lint/LintConfig.h"
#include "hosts/author/lint/LintFix.h"
#include "hosts/author/lint/LintOutput.h"
#include "hosts/common/FileDescriptor.h"
#include "hosts/common/MessageText.h"
#include "hosts/common/StandardStreams.h"
#include "hosts/common/TextFile.h"
#include "hosts/console/Commands.h"
#include "hosts/console/ErrorReport.h"
#include "hosts/console/LintText.h"
#include "hosts/console/TerminalDetection.h"
#include "hosts/console/WhatsNewLoading.h"

namespace hosts::console {
namespace {

using author::Finding;
using author::LintReport;

constexpr std::string_view kStandardInput = "-";
/// The name of standard input in findings.
constexpr const char* kStandardInputName = "<stdin>";

std::string ReadDataFile(const std::string& file) {
  if (file != kStandardInput) return common::ReadInputFile(file, kMaximumAuthorFile);
  std::string text = common::ReadToEnd(STDIN_FILENO, kMaximumAuthorFile, "standard input");
  if (text.size() > kMaximumAuthorFile) {
    throw author::InputError(0, "cannot read standard input: larger than 16 MiB");
  }
  return text;
}

/// Returns the severities from the configuration file of `file` and from the command line. The
/// command line takes precedence.
author::SeverityOverrides SeveritiesFor(const std::string& file, const LintArguments& arguments) {
  author::SeverityOverrides severities =
      author::ConfiguredSeverities(file == kStandardInput ? "./stdin" : file);
  for (const auto& [code, severity] : arguments.severities) severities[code] = severity;
  return severities;
}

/// Checks data files, and corrects them if the arguments request it. Prints the findings, or a diff
/// for a dry run.
class LintRun {
 public:
  explicit LintRun(const LintArguments& arguments) : arguments_(arguments) {
    if (arguments.host) {
      host_ = author::InstallLintHost(*arguments.host);
    } else {
      author::InstallNoLintHost();
    }
  }

  void Check(const std::string& file) {
    const std::string name = file == kStandardInput ? kStandardInputName : file;
    std::string text = ReadDataFile(file);
    const author::SeverityOverrides severities = SeveritiesFor(file, arguments_);
    LintReport report = author::LintDataFile(name, text, Host());
    if (arguments_.fix) {
      // Remove the findings with the severity `kOff`, so that `Fix` does not correct these
      // mistakes.
      author::ApplySeverities(report, severities);
      text = Fix(file, text, report);
      report = author::LintDataFile(name, text, Host());
    }
    if (arguments_.baseline) report.Append(Compare(file, name, text));
    author::ApplySeverities(report, severities);
    report_.Append(std::move(report));
    texts_[name] = std::move(text);
  }

  void Print() {
    author::FinishReport(report_);
    if (arguments_.isDryRun) return common::WriteOutput(diff_);
    switch (arguments_.format) {
      case LintFormat::kText:
        return PrintText();
      case LintFormat::kJson:
        return common::WriteOutput(author::LintJson(report_));
      case LintFormat::kSarif:
        return common::WriteOutput(author::LintSarif(report_));
      case LintFormat::kGithub:
        return common::WriteOutput(author::LintGithub(report_));
    }
  }

  ExitStatus Status() const {
    const bool hasFailed = std::ranges::any_of(report_.findings, [this](const Finding& finding) {
      return finding.severity >= arguments_.failOn;
    });
    return hasFailed ? ExitStatus::kLintFindings : ExitStatus::kDone;
  }

 private:
  const author::LintHost* Host() const { return host_ ? &*host_ : nullptr; }

  /// Returns the corrected content of the file. If there are corrections and this is not a dry run,
  /// replaces the file. Reports the number of corrections.
  std::string Fix(const std::string& file, const std::string& text, const LintReport& report) {
    author::FixedFile fixed = author::FixDataFile(file, text, report, *arguments_.fix, Host());
    diff_ += fixed.diff;
    if (!arguments_.isDryRun && fixed.corrected > 0) {
      author::ReplaceWholeFile(file, text, fixed.text);
    }
    const std::string verb = arguments_.isDryRun ? "would correct " : "corrected ";
    std::string message = verb + common::Counted(fixed.corrected, "mistake") + " in '" + file + "'";
    if (fixed.withheld > 0) {
      message += "; --fix=all makes " + common::Counted(fixed.withheld, "more correction") +
                 ", but announces the corrected changes again";
    }
    ReportError(message);
    return std::move(fixed.text);
  }

  /// Compares `text`, the content of the file, with the baseline. Returns the findings.
  LintReport Compare(const std::string& file, const std::string& name, const std::string& text) {
    constexpr std::string_view kGit = "git:";
    const std::string& baseline = *arguments_.baseline;
    const bool isGit = baseline.starts_with(kGit);
    const std::string old =
        isGit ? author::ReadGitFile(baseline.substr(kGit.size()), file, kMaximumAuthorFile)
              : ReadDataFile(baseline);
    return author::CompareWithBaseline(name, text, isGit ? baseline + ":" + file : baseline, old,
                                       Host());
  }

  void PrintText() const {
    const bool isStyled = DetectTerminalOptions(arguments_.color, 0).hasStyles;
    std::string output = LintText(report_, texts_, isStyled);
    for (const std::string& reason : report_.notJudged) output += reason + "\n";
    common::WriteOutput(output + author::LintSummary(report_) + "\n");
  }

  const LintArguments& arguments_;
  std::optional<author::LintHost> host_;
  LintReport report_;
  std::string diff_;
  FileTexts texts_;
};

void RequireUsableFiles(const LintArguments& arguments) {
  using author::OptionError;
  const bool hasInput = std::ranges::find(arguments.files, kStandardInput) != arguments.files.end();
  if (hasInput && arguments.fix) {
    throw OptionError("--fix cannot correct standard input; name a file");
  }
  if (arguments.isDryRun && !arguments.fix) throw OptionError("--dry-run requires --fix");
  if (!arguments.baseline) return;
  const bool isGit = arguments.baseline->starts_with("git:");
  if (isGit && hasInput) {
    throw OptionError("git has no earlier version of standard input; name a file");
  }
  if (arguments.baseline == kStandardInput && hasInput) {
    throw OptionError(
        "standard input cannot be both the data file and the baseline; name a file for one of "
        "them");
  }
  if (!isGit && arguments.files.size() > 1) {
    throw OptionError(
        "a baseline file requires a single data file; check each data file separately");
  }
}

ExitStatus RunLint(const LintArguments& arguments) {
  if (arguments.explained) {
    common::WriteOutput(author::Explanation(*arguments.explained));
    return ExitStatus::kDone;
  }
  if (arguments.listsCodes) {
    common::WriteOutput(author::CodeList());
    return ExitStatus::kDone;
  }
  RequireUsableFiles(arguments);
  LintRun run(arguments);
  // If the user names a file twice, check it only once. Standard input cannot be read twice.
  std::set<std::string_view> checked;
  for (const std::string& file : arguments.files) {
    if (checked.insert(file).second) run.Check(file);
  }
  run.Print();
  return run.Status();
}

}  // namespace

// Every failure has the same status, so that a script does not mistake a failure for findings.
ExitStatus Run(const LintArguments& arguments) {
  try {
    return RunLint(arguments);
  } catch (const std::exception& error) {
    throw ToolError(ExitStatus::kLintFailed, error.what());
  }
}

}  // namespace hosts::console
