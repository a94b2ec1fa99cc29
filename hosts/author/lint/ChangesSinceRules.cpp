#include <algorithm>
#include <array>
#include <string>

#include <ornwhatsnew/utility/TextHelpers.h>

#include "hosts/author/lint/NearestWord.h"
#include "hosts/author/lint/Rules.h"

namespace hosts::author {
namespace {

using ornwhatsnew::DataColumn;
using ornwhatsnew::DataRowKind;

/// The codes of findings that explain why the library reads no Changes-Since row.
constexpr auto kReasonsForMissingRow = std::to_array<LintCode>(
    {LintCode::kChangesSinceSpelling, LintCode::kChangesSinceBeforeHeader, LintCode::kHeaderWidth,
     LintCode::kHeaderSecondNameEmpty, LintCode::kHeaderOverLines, LintCode::kConflictMark});

void CheckVersion(LintContext& context, const LintRow& row) {
  const std::string_view version = row.Value(DataColumn::kVersion);
  const std::string withDots = VersionWithDots(version);
  const std::size_t prefix = VersionPrefixLength(version);
  if (prefix == 0 && withDots.empty() && !version.empty()) {
    return CheckVersionDate(context, row, DataColumn::kVersion);
  }
  context.ReportField(
      LintCode::kChangesSinceVersion, row, DataColumn::kVersion,
      version.empty()
          ? "the Changes-Since row has no version, so the heading shows only 'v'; write "
            "the version"
          : "the heading shows " + Quoted("v" + std::string(version)) + "; write " +
                Quoted(withDots.empty() ? version.substr(prefix) : withDots));
}

void ReportOverwritten(LintContext& context, const LintRow& row, const LintRow* named) {
  const bool isComment = TrimSpaces(row.data.text).starts_with('#');
  std::string message = isComment ? "the comment line" : "the line";
  message += " replaces the version of the Changes-Since row before it, so the heading shows " +
             Quoted("v" + std::string(row.Value(DataColumn::kVersion))) +
             "; move the line away from that row";
  Finding& finding = context.ReportRow(LintCode::kChangesSinceOverwritten, row, std::move(message));
  if (named != nullptr) finding.related.push_back(context.Related(*named, "the Changes-Since row"));
}

// A row with a single field inherits the grouping ID of the previous row. After a Changes-Since
// row, such a row is therefore another Changes-Since row, although its author did not intend this.
void CheckChangesSinceRows(LintContext& context) {
  const LintRow* named = nullptr;
  for (const LintRow& row : context.File().Rows()) {
    if (row.isExplained || row.data.kind != DataRowKind::kChangesSince) continue;
    if (row.data.fieldCount == 1) {
      const bool isEqual =
          named != nullptr && row.Value(DataColumn::kVersion) == named->Value(DataColumn::kVersion);
      if (!isEqual) ReportOverwritten(context, row, named);
      continue;
    }
    CheckVersion(context, row);
    if (named != nullptr) {
      Finding& finding = context.ReportRow(
          LintCode::kChangesSinceRepeated, row,
          "a second Changes-Since row replaces the version of the first one; keep one of them");
      finding.related.push_back(context.Related(*named, "an earlier Changes-Since row"));
    }
    named = &row;
  }
}

void CheckMissing(LintContext& context) {
  if (context.File().ChangeCount() == 0) return;
  const auto isChangesSince = [](const LintRow& row) {
    return row.data.kind == DataRowKind::kChangesSince;
  };
  if (std::ranges::any_of(context.File().Rows(), isChangesSince)) return;
  const auto isReason = [](const Finding& finding) {
    return std::ranges::find(kReasonsForMissingRow, finding.code) != kReasonsForMissingRow.end();
  };
  if (std::ranges::any_of(context.Findings(), isReason)) return;
  context.ReportFile(
      LintCode::kChangesSinceMissing,
      "there is no Changes-Since row, so the heading shows 'Changes since v' without "
      "a version; add the row '4.2,Changes-Since' with your version");
}

constexpr FileRule kChangesSinceRules[] = {CheckChangesSinceRows, CheckMissing};

}  // namespace

std::span<const FileRule> ChangesSinceRules() {
  return kChangesSinceRules;
}

bool IsMisspeltChangesSince(std::string_view text) {
  constexpr std::size_t kShortest = 10;
  constexpr std::size_t kLongest = 24;
  static constexpr auto kWord = std::to_array<std::string_view>({ornwhatsnew::kChangesSinceKey});
  if (text.size() < kShortest || text.size() > kLongest) return false;
  return !ornwhatsnew::CaseInsensitiveEqual(text, ornwhatsnew::kChangesSinceKey) &&
         NearestWord(text, kWord).has_value();
}

}  // namespace hosts::author
