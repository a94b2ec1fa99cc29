// Provides the input for the rules of `ornwhatsnew lint`, and collects the findings.
#ifndef HOSTS_AUTHOR_LINT_LINTCONTEXT_H_
#define HOSTS_AUTHOR_LINT_LINTCONTEXT_H_

#include <array>
#include <cstddef>
#include <deque>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include <ornwhatsnew/DataColumn.h>

#include "hosts/author/lint/Finding.h"
#include "hosts/author/lint/LintedFile.h"
#include "hosts/common/HostDescription.h"
#include "hosts/common/MessageText.h"

namespace hosts::author {

using common::Counted;
using common::Quoted;

/// The file that `--host` names, and the host description in this file. The services of the process
/// must be configured from this description; see `InstallLintHost`.
struct LintHost {
  std::string file;
  common::HostDescription description;
};

/// The maximum number of listed findings of one code in a file. A message states the number of
/// further findings.
inline constexpr std::size_t kMaximumFindings = 1000;

/// Selects the rows whose findings are listed. Does not apply to findings on the whole file or on
/// the host description.
enum class LintScope {
  kFile,     ///< all rows
  kLastRow,  ///< the last row, even if many earlier rows have the same mistake
};

/// The findings of a code that are not listed. A finding is not listed if it is outside the scope,
/// or if `kMaximumFindings` findings of its code are already listed for the file. `--fix` also
/// applies the edits of these findings.
struct OmittedFindings {
  std::size_t count = 0;
  std::vector<Edit> edits;
};

/// A file, its host, and the findings so far. Each `Report` function returns a reference to the new
/// finding. The reference is valid until a finding on another row, on the whole file or on the host
/// description is reported. Not copyable, because a context contains pointers to its findings.
class LintContext {
 public:
  /// `host` is null if no host is known. `file` and `host` must outlive the context.
  LintContext(LintedFile& file, const LintHost* host, LintScope scope = LintScope::kFile)
      : file_(file), host_(host), scope_(scope) {}
  LintContext(const LintContext&) = delete;
  LintContext& operator=(const LintContext&) = delete;

  LintedFile& File() { return file_; }
  const LintHost* Host() const { return host_; }

  /// Reports a finding on the bytes of `row` from `begin` up to, but not including, `end`.
  Finding& Report(LintCode code, const LintRow& row, std::size_t begin, std::size_t end,
                  std::string message);
  /// Reports a finding on all of `row`.
  Finding& ReportRow(LintCode code, const LintRow& row, std::string message);
  /// Reports a finding on a field of `row`, or on all of `row` if it does not have this field.
  Finding& ReportField(LintCode code, const LintRow& row, ornwhatsnew::DataColumn column,
                       std::string message);
  /// Reports a finding on the first occurrence of `part` in a field. If `part` is not found,
  /// reports the finding on the same range as `ReportField`.
  Finding& ReportPart(LintCode code, const LintRow& row, ornwhatsnew::DataColumn column,
                      std::string_view part, std::string message);
  /// Reports a finding on the whole data file.
  Finding& ReportFile(LintCode code, std::string message);
  /// Reports a finding on the whole host description. REQUIRES: there is a host.
  Finding& ReportHost(LintCode code, const std::string& message);

  /// Returns a `RelatedPlace` at the start of `row`.
  RelatedPlace Related(const LintRow& row, std::string message) const;

  /// Returns the last finding that `ReportField` or `ReportPart` reported on this field, or null if
  /// there is none. Also returns null if a finding on another row, on the whole file or on the host
  /// description was reported after that finding.
  Finding* FindingOn(const LintRow& row, ornwhatsnew::DataColumn column);
  bool HasFinding(const LintRow& row, ornwhatsnew::DataColumn column) {
    return FindingOn(row, column) != nullptr;
  }

  /// Returns `LintedFile::ColumnName` in double quotation marks for a message, with escapes for
  /// invisible characters. If the name has more than 30 bytes, omits the first " (" and everything
  /// after it.
  std::string Column(ornwhatsnew::DataColumn column) const;

  /// Returns the first feature of the host whose internal key or name equals `text`, ignoring the
  /// letter case. Returns null if there is no such feature, or no host.
  const common::BetaFeatureDescription* FindFeature(std::string_view text);

  /// Returns the section key or epic key that is most similar to `text`. Returns `std::nullopt` if
  /// no key is similar, or if the number of searches in the file has reached its limit. The limit
  /// does not apply if `text` differs from a section key only in its letter case and outer spaces.
  std::optional<std::string> NearestKey(const std::string& text);

  /// Returns whether at least one change has a non-empty version that consists only of digits and
  /// dots.
  bool HasPlainVersion();

  /// Stops the check, so that no further rule runs. Call this if the file is empty, or if its
  /// encoding or its separators are wrong.
  void Stop() { isStopped_ = true; }
  bool IsStopped() const { return isStopped_; }

  const std::deque<Finding>& Findings() const { return findings_; }
  /// Returns the listed findings, and removes them from this object. Also moves the edits of the
  /// last line to the findings that are not listed.
  std::vector<Finding> TakeFindings();
  /// Returns the findings that are not listed, and removes them from this object. Call
  /// `TakeFindings` first; otherwise, the edits of the last line are missing.
  std::map<LintCode, OmittedFindings> TakeOmitted();

 private:
  Finding& Add(LintCode code, std::string message, std::string_view content, bool isInScope = true);
  /// Sets the line of the next findings to `line`, which is 0 if they are about the whole file or
  /// the host description. Clears `fieldFindings_`. Moves the edits in `omittedOnLine_` to
  /// `omitted_`, and clears `omittedOnLine_`.
  void StartLine(std::size_t line);

  LintedFile& file_;
  const LintHost* host_;
  LintScope scope_;
  /// A deque, because callers and `fieldFindings_` refer to its elements. `emplace_back` does not
  /// invalidate references to the elements of a deque.
  std::deque<Finding> findings_;
  std::map<LintCode, std::size_t> counts_;
  std::map<LintCode, OmittedFindings> omitted_;
  std::size_t line_ = 0;
  /// The findings on the line `line_` that are not listed. Rules can still set their edits.
  std::deque<Finding> omittedOnLine_;
  /// The last finding on each field of the line `line_`, or null if there is none.
  std::array<Finding*, ornwhatsnew::kDataColumnCount> fieldFindings_{};
  /// The features of the host by their internal keys and names in lower case.
  std::unordered_map<std::string, const common::BetaFeatureDescription*> featuresByName_;
  std::map<std::string, std::optional<std::string>> nearestKeys_;
  std::optional<bool> hasPlainVersion_;
  bool isStopped_ = false;
};

}  // namespace hosts::author

#endif  // HOSTS_AUTHOR_LINT_LINTCONTEXT_H_
