#include <algorithm>
#include <optional>
#include <string>

#include <ornwhatsnew/utility/TextHelpers.h>

#include "hosts/author/lint/NearestWord.h"
#include "hosts/author/lint/Rules.h"
#include "hosts/common/TextFile.h"

namespace hosts::author {
namespace {

using ornwhatsnew::CaseInsensitiveEqual;
using ornwhatsnew::ColumnIndex;
using ornwhatsnew::DataColumn;
using ornwhatsnew::DataColumnInfo;
using ornwhatsnew::DataRow;
using ornwhatsnew::DataRowKind;
using ornwhatsnew::DataRowSkipReason;
using ornwhatsnew::kDataColumnCount;
using ornwhatsnew::kDataColumns;

/// A row with at least this number of fields can be a header in another language. Such a header
/// contains none of the column names that ornwhatsnew(5) lists.
constexpr std::size_t kFieldsOfTranslatedHeader = 5;

/// Returns whether `name` and the header of `column` are equal, or one of them begins with the
/// other. Ignores the letter case, a byte order mark at the start of `name`, and spaces around
/// `name`. Returns false if one of the two strings has fewer than three bytes.
bool IsNameOf(std::string_view name, const DataColumnInfo& column) {
  constexpr std::size_t kShortestName = 3;
  name = TrimSpaces(common::WithoutByteOrderMark(name));
  const std::string_view header = column.header;
  const std::size_t shorter = std::min(name.size(), header.size());
  return shorter >= kShortestName &&
         CaseInsensitiveEqual(name.substr(0, shorter), header.substr(0, shorter));
}

/// Returns the first column for which `IsNameOf` returns true. Returns the end of `kDataColumns` if
/// there is none.
auto FindSimilarColumn(std::string_view name) {
  return std::ranges::find_if(
      kDataColumns, [name](const DataColumnInfo& column) { return IsNameOf(name, column); });
}

bool IsNameOfAnyColumn(std::string_view name) {
  return FindSimilarColumn(name) != kDataColumns.end();
}

/// Returns whether `text` is a version of digits and dots, such as "4.2" or "v4.2". It must begin
/// with a digit or with a v and a digit. Ignores spaces around `text`.
bool LooksLikeVersion(std::string_view text) {
  text = TrimSpaces(text);
  if (text.starts_with('v') || text.starts_with('V')) text.remove_prefix(1);
  return !text.empty() && IsDigit(text.front()) && IsPlainVersion(text);
}

bool IsEmptyRow(const DataRow& row) {
  return std::ranges::all_of(row.values, [](std::string_view value) { return value.empty(); });
}

bool ContinuesOnNextLine(const DataRow& row, const DataRow& next) {
  if (HasOpenQuote(row)) return true;
  const std::size_t fields = row.fieldCount + next.fieldCount;
  return (fields == kDataColumnCount || fields == kDataColumnCount + 1) &&
         next.kind == DataRowKind::kSkipped && !LooksLikeChange(next);
}

/// If the library skips `rows[index]` and the row was probably intended as the header, returns the
/// code of the mistake. Otherwise, returns `std::nullopt`. The row must be before the header.
std::optional<LintCode> HeaderMistake(const std::vector<LintRow>& rows, std::size_t index) {
  const DataRow& row = rows[index].data;
  if (rows[index].isExplained || row.text.starts_with('#') || IsEmptyRow(row)) return std::nullopt;
  const bool isNamed = LooksLikeHeader(row);
  if (!isNamed && LooksLikeChange(row)) return std::nullopt;
  if (row.skipReason == DataRowSkipReason::kNoGroupingID) return LintCode::kHeaderSecondNameEmpty;
  const bool isContinued =
      index + 1 < rows.size() && ContinuesOnNextLine(row, rows[index + 1].data);
  if (isContinued && row.fieldCount > 1) return LintCode::kHeaderOverLines;
  const bool isNamedOrLong = isNamed || row.fieldCount >= kFieldsOfTranslatedHeader ||
                             IsNameOfAnyColumn(row.values.front());
  return isNamedOrLong ? std::optional(LintCode::kHeaderWidth) : std::nullopt;
}

std::string MistakeMessage(LintCode code, const DataRow& row) {
  switch (code) {
    case LintCode::kHeaderSecondNameEmpty:
      return "the second column has no name, so the row is not the header";
    case LintCode::kHeaderOverLines:
      return "the header continues on the next line, so it is skipped";
    default:
      return "the header has " + Counted(row.fieldCount, "field") +
             " instead of ten, so it is skipped";
  }
}

std::string MistakeRemedy(LintCode code) {
  switch (code) {
    case LintCode::kHeaderSecondNameEmpty:
      return "; write a name for the second column";
    case LintCode::kHeaderOverLines:
      return "; write the header on one line";
    default:
      return "; write ten column names";
  }
}

void ReportHeaderMistake(LintContext& context, LintCode code, std::size_t index) {
  std::vector<LintRow>& rows = context.File().Rows();
  LintRow& row = rows[index];
  const std::size_t taken = context.File().HeaderIndex();
  const bool isLost =
      taken < rows.size() && IsChangeUsedAsHeader(rows[taken].data, context.File().Items());
  std::string message = MistakeMessage(code, row.data);
  if (isLost) {
    message += "; line " + std::to_string(rows[taken].data.lineNumber) +
               " is used as the header instead, and its content is lost";
  }
  context.File().IgnoreHeaderNames();
  Finding& finding = context.ReportRow(code, row, message + MistakeRemedy(code));
  row.isExplained = true;
  if (code == LintCode::kHeaderOverLines && index + 1 < taken) rows[index + 1].isExplained = true;
  if (!isLost) return;
  finding.related.push_back(context.Related(rows[taken], "this row is used as the header"));
  rows[taken].isExplained = true;
}

void CheckRowsBeforeHeader(LintContext& context) {
  const std::vector<LintRow>& rows = context.File().Rows();
  for (std::size_t i = 0; i < context.File().HeaderIndex(); ++i) {
    const std::optional<LintCode> mistake = HeaderMistake(rows, i);
    if (mistake) return ReportHeaderMistake(context, *mistake, i);
    if (!rows[i].isExplained && LooksLikeChange(rows[i].data)) return;
  }
}

/// Sets `isExplained` for each change that looks like a header row. If a Changes-Since row is
/// before the header, the library reads the header as a change.
void ExplainLaterHeader(LintContext& context) {
  for (LintRow& row : context.File().Rows()) {
    if (row.data.kind == DataRowKind::kChange && LooksLikeHeader(row.data)) row.isExplained = true;
  }
}

void CheckTakenHeader(LintContext& context) {
  std::vector<LintRow>& rows = context.File().Rows();
  const std::size_t index = context.File().HeaderIndex();
  if (index == rows.size() || rows[index].isExplained ||
      !IsChangeUsedAsHeader(rows[index].data, context.File().Items())) {
    return;
  }
  LintRow& row = rows[index];
  context.File().IgnoreHeaderNames();
  if (CaseInsensitiveEqual(row.Value(DataColumn::kGroupingID), ornwhatsnew::kChangesSinceKey)) {
    context.ReportRow(LintCode::kChangesSinceBeforeHeader, row,
                      "the row is used as the header, so its version is lost; move it below the "
                      "header");
    ExplainLaterHeader(context);
  } else {
    context.ReportRow(LintCode::kHeaderMissing, row,
                      "the first row is used as the header, so its change is lost; insert a "
                      "header with ten column names before it");
  }
  row.isExplained = true;
}

void CheckHeaderOrder(LintContext& context) {
  const std::vector<LintRow>& rows = context.File().Rows();
  const std::size_t index = context.File().HeaderIndex();
  if (index == rows.size() || rows[index].isExplained) return;
  const LintRow& row = rows[index];
  for (std::size_t i = 0; i < kDataColumnCount; ++i) {
    const std::string_view name = row.data.values[i];
    const auto column = FindSimilarColumn(name);
    if (IsNameOf(name, kDataColumns[i]) || column == kDataColumns.end()) continue;
    const std::string message = "the name " + Quoted(name) + " belongs to column " +
                                std::to_string(column - kDataColumns.begin() + 1) +
                                ", but the library reads column " + std::to_string(i + 1) +
                                " as \"" + std::string(kDataColumns[i].header) +
                                "\"; put the columns in the order given in ornwhatsnew(5)";
    context.ReportField(LintCode::kHeaderOrder, row, static_cast<DataColumn>(i), message);
    context.File().IgnoreHeaderNames();
    return;
  }
}

void CheckRepeatedHeader(LintContext& context) {
  std::vector<LintRow>& rows = context.File().Rows();
  const std::size_t header = context.File().HeaderIndex();
  if (header == rows.size()) return;
  const std::string_view name = rows[header].Value(DataColumn::kGroupingID);
  for (LintRow& row : rows) {
    const std::string_view groupingID = row.Value(DataColumn::kGroupingID);
    const bool isPossible =
        groupingID == name ||
        IsNameOf(groupingID, kDataColumns[ColumnIndex(DataColumn::kGroupingID)]);
    if (row.isExplained || row.data.kind != DataRowKind::kChange || !isPossible) continue;
    const bool isSame = row.data.values == rows[header].data.values;
    if (!isSame && !LooksLikeHeader(row.data)) continue;
    Finding& finding =
        context.ReportRow(LintCode::kHeaderRepeated, row,
                          "a second header is read as a change, which internal users see; delete "
                          "the row");
    finding.related.push_back(context.Related(rows[header], "the first header"));
    row.isExplained = true;
  }
}

constexpr FileRule kHeaderRules[] = {CheckRowsBeforeHeader, CheckTakenHeader, CheckHeaderOrder,
                                     CheckRepeatedHeader};

}  // namespace

std::span<const FileRule> HeaderRules() {
  return kHeaderRules;
}

bool LooksLikeHeader(const DataRow& row) {
  constexpr std::ptrdiff_t kEnoughNames = 3;
  return std::ranges::count_if(row.values, IsNameOfAnyColumn) >= kEnoughNames;
}

bool IsChangeUsedAsHeader(const DataRow& header, const ornwhatsnew::FeatureMap& items) {
  if (LooksLikeHeader(header)) return false;
  return LooksLikeChange(header) ||
         items.contains(std::string(header.Value(DataColumn::kGroupingID)));
}

bool LooksLikeChange(const DataRow& row) {
  if (LooksLikeVersion(row.Value(DataColumn::kVersion))) return true;
  if (ornwhatsnew::IsSpecialCaseSection(row.Value(DataColumn::kGroupingID))) return true;
  return IsSalience(row.Value(DataColumn::kSalience)) ||
         row.Value(DataColumn::kURL).starts_with("https://");
}

}  // namespace hosts::author
