// What the rules of `ornwhatsnew lint` read and report.
#ifndef HOSTS_AUTHOR_LINT_LINTCONTEXT_H_
#define HOSTS_AUTHOR_LINT_LINTCONTEXT_H_

#include <array>
#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <ornwhatsnew/DataColumn.h>

#include "hosts/author/lint/Finding.h"
#include "hosts/author/lint/LintedFile.h"
#include "hosts/common/HostDescription.h"

namespace hosts::author {

/// The host that `--host` names. Its services must be installed in the process; see
/// `InstallLintHost`.
struct LintHost {
  std::string file;
  common::HostDescription description;
};

/// The maximum number of findings of one code in a file. A message says how many more there are.
inline constexpr std::size_t kMaximumFindings = 1000;

/// The findings on rows that are listed. Findings on the whole file are always listed.
enum class LintScope {
  kFile,     ///< on all rows
  kLastRow,  ///< on the last row, even if many earlier rows have the same mistake
};

/// The findings of a code that are not listed: those after the first `kMaximumFindings` ones of a
/// file, and those outside of the scope. `--fix` makes their edits.
struct OmittedFindings {
  std::size_t count = 0;
  std::vector<Edit> edits;
};

/// Returns `text` in single quotation marks for a message. Escapes invisible characters and
/// shortens a long text.
std::string Quoted(std::string_view text);

/// Returns "one field", "2 fields" and so on.
std::string Counted(std::size_t number, std::string_view noun);

/// A file, its host, and the findings so far. Each `Report` function returns the new finding, which
/// is valid until the next one is reported.
class LintContext {
 public:
  /// `host` is null if no host is known. `file` and `host` must outlive the context.
  LintContext(LintedFile& file, const LintHost* host, LintScope scope = LintScope::kFile)
      : file_(file), host_(host), scope_(scope) {}

  LintedFile& File() { return file_; }
  const LintHost* Host() const { return host_; }

  /// Reports a finding on the bytes from `begin` to `end` of `row`.
  Finding& Report(LintCode code, const LintRow& row, std::size_t begin, std::size_t end,
                  std::string message);
  /// Reports a finding on all of `row`.
  Finding& ReportRow(LintCode code, const LintRow& row, std::string message);
  /// Reports a finding on a field of `row`.
  Finding& ReportField(LintCode code, const LintRow& row, ornwhatsnew::DataColumn column,
                       std::string message);
  /// Reports a finding on a part of a field: the first occurrence of `part` in it, or all of it.
  Finding& ReportPart(LintCode code, const LintRow& row, ornwhatsnew::DataColumn column,
                      std::string_view part, std::string message);
  /// Reports a finding on the whole data file.
  Finding& ReportFile(LintCode code, std::string message);
  /// Reports a finding on the whole host description. REQUIRES: there is a host.
  Finding& ReportHost(LintCode code, const std::string& message);

  /// Returns the place of `row` with a message.
  RelatedPlace Related(const LintRow& row, std::string message) const;

  /// Returns the last finding on this field. Returns null if there is none, or if a finding on a
  /// field of another row has been reported since.
  Finding* FindingOn(const LintRow& row, ornwhatsnew::DataColumn column);
  bool HasFinding(const LintRow& row, ornwhatsnew::DataColumn column) {
    return FindingOn(row, column) != nullptr;
  }

  /// Returns the name of a column in the file's header, in quotation marks, for a message. Omits
  /// the part of a long name in parentheses.
  std::string Column(ornwhatsnew::DataColumn column) const;

  /// Returns the section key or epic key that is most similar to `text`.
  std::optional<std::string> NearestKey(const std::string& text);

  /// Returns whether the version of a change consists of digits and points.
  bool HasPlainVersion();

  /// Ends the check of the file, because it is no table. The other rules are not judged.
  void Stop() { isStopped_ = true; }
  bool IsStopped() const { return isStopped_; }

  std::vector<Finding>& Findings() { return findings_; }
  /// Returns the findings that were not kept, and forgets them.
  std::map<LintCode, OmittedFindings> TakeOmitted();

 private:
  Finding& Add(LintCode code, std::string message, std::string_view content, bool isInScope = true);
  void KeepOmittedEdits();

  LintedFile& file_;
  const LintHost* host_;
  LintScope scope_;
  std::vector<Finding> findings_;
  std::map<LintCode, std::size_t> counts_;
  std::map<LintCode, OmittedFindings> omitted_;
  /// The last finding that was not kept. Its rule can still add edits to it.
  Finding omittedFinding_;
  std::size_t fieldsLine_ = 0;
  /// The number of findings up to the last one on each field of that line, or 0 if there is none.
  std::array<std::size_t, ornwhatsnew::kDataColumnCount> fieldFindings_{};
  std::map<std::string, std::optional<std::string>> nearestKeys_;
  std::optional<bool> hasPlainVersion_;
  bool isStopped_ = false;
};

}  // namespace hosts::author

#endif  // HOSTS_AUTHOR_LINT_LINTCONTEXT_H_
