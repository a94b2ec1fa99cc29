#include <algorithm>
#include <array>
#include <optional>
#include <string>
#include <vector>

#include <ornwhatsnew/utility/TextHelpers.h>

#include "hosts/author/lint/NearestWord.h"
#include "hosts/author/lint/Rules.h"

namespace hosts::author {
namespace {

using ornwhatsnew::CaseInsensitiveEqual;
using ornwhatsnew::ColumnIndex;
using ornwhatsnew::DataColumn;
using ornwhatsnew::DataField;
using ornwhatsnew::DataRow;
using ornwhatsnew::DataRowKind;
using ornwhatsnew::DataRowSkipReason;
using ornwhatsnew::kDataColumnCount;

/// The maximum number of lines in which to search for the closing quote after an open quote. An
/// unlimited search would take quadratic time, and texts rarely have more lines.
constexpr std::size_t kMaximumTextLines = 50;

/// The maximum number of fields in a row for which a finding explains why the number of fields is
/// wrong. For a row with more fields, the finding only states their number and says to write ten.
/// The limit bounds the memory for the positions of the fields: 32 bytes for each field, even for
/// an empty one. The tables of spreadsheet programs have fewer columns.
constexpr std::size_t kMaximumFields = 20'000;

/// A row, and the positions of the fields in it.
struct Shape {
  explicit Shape(const LintRow& linted)
      : row(linted), fields(ornwhatsnew::FindDataFields(linted.data.text)) {}

  std::string_view Field(std::size_t index) const {
    const DataField& field = fields[index];
    return TrimSpaces(row.data.text.substr(field.begin, field.end - field.begin));
  }
  std::size_t Count() const { return fields.size(); }

  const LintRow& row;
  std::vector<DataField> fields;
};

std::string LostRow(const LintRow& row) {
  return "the row has " + Counted(row.data.fieldCount, "field") +
         " instead of ten, so it is skipped and its change is lost; ";
}

bool IsDigits(std::string_view text) {
  return !text.empty() && text.find_first_not_of("0123456789") == text.npos;
}

/// Returns whether `text` is the key or the number of an issue, such as ORN-12, orn-12 or #12.
bool IsIssueKey(std::string_view text) {
  if (text.starts_with('#')) return IsDigits(text.substr(1));
  const auto afterLetters = std::ranges::find_if_not(
      text, [](char c) { return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z'); });
  const std::string_view number(afterLetters, text.end());
  return number.size() < text.size() && number.starts_with('-') && IsDigits(number.substr(1));
}

bool IsURL(std::string_view text) {
  return text.starts_with("https://") || text.starts_with("http://");
}

/// Returns whether `text` can be the hash or the number of a commit: at least six characters, each
/// of which is a digit or a lower-case letter from a to f.
bool IsCommit(std::string_view text) {
  constexpr std::size_t kShortestCommit = 6;
  return text.size() >= kShortestCommit && text.find_first_not_of("0123456789abcdef") == text.npos;
}

bool IsPlatform(std::string_view text) {
  ornwhatsnew::FeatureListDetail::Fields fields{};
  fields[ColumnIndex(DataColumn::kPlatform)] = text;
  return ornwhatsnew::FeatureListDetail(fields).HasUsablePlatform();
}

// ---- rows with too many fields

bool CheckTrailingCommas(LintContext& context, const Shape& shape) {
  for (std::size_t i = kDataColumnCount; i < shape.Count(); ++i) {
    if (!shape.Field(i).empty()) return false;
  }
  context.Report(LintCode::kTrailingComma, shape.row, shape.fields[kDataColumnCount].begin - 1,
                 shape.row.data.text.size(), LostRow(shape.row) + "delete the commas at its end");
  return true;
}

bool CheckDecimalComma(LintContext& context, const Shape& shape) {
  for (const std::size_t index : {std::size_t{0}, ColumnIndex(DataColumn::kFirstVersion)}) {
    std::size_t last = index;
    std::string version(shape.Field(index));
    const std::size_t end = index + shape.Count() - kDataColumnCount;
    while (last < end && IsDigits(shape.Field(last)) && IsDigits(shape.Field(last + 1))) {
      version += "." + std::string(shape.Field(++last));
    }
    if (last == index) continue;
    context.Report(LintCode::kDecimalComma, shape.row, shape.fields[index].begin,
                   shape.fields[last].end,
                   LostRow(shape.row) + "write the version as " + Quoted(version));
    return true;
  }
  return false;
}

struct QuotePair {
  std::string_view open;
  std::string_view close;
};

// Authors sometimes use these quotes instead of double quotes: typographic quotes, which word
// processors insert, and the ASCII single quote.
constexpr std::array<QuotePair, 7> kQuotePairs = {{{"\xE2\x80\x9C", "\xE2\x80\x9D"},
                                                   {"\xE2\x80\x9E", "\xE2\x80\x9C"},
                                                   {"\xE2\x80\x9E", "\xE2\x80\x9D"},
                                                   {"\xC2\xAB", "\xC2\xBB"},
                                                   {"\xC2\xBB", "\xC2\xAB"},
                                                   {"\xE2\x80\x98", "\xE2\x80\x99"},
                                                   {"'", "'"}}};

/// If the field `first` begins with an opening quote, returns the index of the next field that ends
/// with the matching closing quote. Returns `std::nullopt` if there is no such field.
std::optional<std::size_t> FindClosingField(const Shape& shape, std::size_t first) {
  for (const QuotePair& quotes : kQuotePairs) {
    if (!shape.Field(first).starts_with(quotes.open)) continue;
    for (std::size_t last = first + 1; last < shape.Count(); ++last) {
      if (shape.Field(last).ends_with(quotes.close)) return last;
    }
  }
  return std::nullopt;
}

bool CheckWrongQuotes(LintContext& context, const Shape& shape) {
  for (std::size_t first = 0; first < kDataColumnCount; ++first) {
    const std::optional<std::size_t> last = FindClosingField(shape, first);
    if (!last || shape.Count() - (*last - first) != kDataColumnCount) continue;
    context.Report(LintCode::kWrongQuotes, shape.row, shape.fields[first].begin,
                   shape.fields[*last].end,
                   LostRow(shape.row) +
                       "replace the quotes around the text with double quotes (U+0022), which "
                       "protect commas");
    return true;
  }
  return false;
}

bool CheckIssueList(LintContext& context, const Shape& shape) {
  constexpr std::size_t kFirst = ColumnIndex(DataColumn::kStoryID);
  std::size_t last = kFirst;
  while (last < shape.Count() && IsIssueKey(shape.Field(last))) ++last;
  if (last < kFirst + 2) return false;
  context.Report(LintCode::kIssueList, shape.row, shape.fields[kFirst].begin,
                 shape.fields[last - 1].end,
                 LostRow(shape.row) + "keep one of the " + std::to_string(last - kFirst) +
                     " issues in " + context.Column(DataColumn::kStoryID));
  return true;
}

/// Returns the index of the first field that contains a value of `column`, which must be the
/// salience, the platform or the URL. Searches only the first ten fields. Returns `std::nullopt` if
/// there is no such field.
std::optional<std::size_t> FindWord(const Shape& shape, DataColumn column) {
  // A keyword or a URL after the tenth field is probably a part of the text.
  const std::size_t end = std::min(shape.Count(), kDataColumnCount);
  for (std::size_t i = 0; i < end; ++i) {
    const std::string_view field = shape.Field(i);
    const bool isWord = column == DataColumn::kSalience   ? IsSalience(field)
                        : column == DataColumn::kPlatform ? IsPlatform(field)
                                                          : IsURL(field);
    if (isWord) return i;
  }
  return std::nullopt;
}

/// Returns the index of a field that is in the wrong column because the number of commas before it
/// is wrong. Returns `std::nullopt` if no such field is found.
std::optional<std::size_t> FindShiftedField(const Shape& shape) {
  const bool isMissing = shape.Count() < kDataColumnCount;
  for (const DataColumn column : {DataColumn::kSalience, DataColumn::kPlatform, DataColumn::kURL}) {
    const std::optional<std::size_t> index = FindWord(shape, column);
    if (!index) continue;
    const std::size_t expected = ColumnIndex(column);
    if (isMissing ? *index < expected : *index > expected) return index;
  }
  return std::nullopt;
}

/// Returns true if the tenth field is empty or looks like a commit ID. The text of the change is
/// then probably in a later field.
bool IsTextShifted(const Shape& shape) {
  const std::string_view field = shape.Field(ColumnIndex(DataColumn::kDescription));
  return field.empty() || IsCommit(field);
}

/// Returns whether `text` can be a field of `column`.
bool CanBeIn(DataColumn column, std::string_view text) {
  if (text.empty()) return true;
  switch (column) {
    case DataColumn::kSalience:
      return IsSalience(text);
    case DataColumn::kFirstVersion:
      return text.find_first_not_of("0123456789.") == text.npos;
    case DataColumn::kPlatform:
      return IsPlatform(text);
    case DataColumn::kURL:
      return IsURL(text);
    case DataColumn::kSHA:
      return IsCommit(text);
    default:
      return true;
  }
}

/// Returns whether the excess commas of the row are probably part of the field in `column`, which
/// must not be the last column. Each part of this field must contain text, and each other field
/// must be possible in its column. The part after the first comma must not be possible in the next
/// column.
bool IsSplitAt(const Shape& shape, DataColumn column) {
  const std::size_t index = ColumnIndex(column);
  const std::size_t excess = shape.Count() - kDataColumnCount;
  for (std::size_t i = index; i <= index + excess; ++i) {
    if (shape.Field(i).empty()) return false;
  }
  const std::size_t next = index + 1;
  if (CanBeIn(static_cast<DataColumn>(next), shape.Field(next))) return false;
  for (std::size_t i = 0; i < kDataColumnCount; ++i) {
    const std::string_view field = shape.Field(i > index ? i + excess : i);
    if (i != index && !CanBeIn(static_cast<DataColumn>(i), field)) return false;
  }
  return true;
}

/// Reports an unquoted comma in the rating request or the URL. Returns whether there is such a
/// comma.
bool CheckUnquotedComma(LintContext& context, const Shape& shape) {
  for (const DataColumn column : {DataColumn::kRatingRequest, DataColumn::kURL}) {
    if (!IsSplitAt(shape, column)) continue;
    const std::size_t comma = shape.fields[ColumnIndex(column) + 1].begin - 1;
    context.Report(LintCode::kUnquotedComma, shape.row, comma, comma + 1,
                   LostRow(shape.row) + "put double quotes around the field in " +
                       context.Column(column) + " because it contains a comma");
    return true;
  }
  return false;
}

void ReportTooManyFields(LintContext& context, const Shape& shape) {
  if (CheckDecimalComma(context, shape) || CheckWrongQuotes(context, shape) ||
      CheckIssueList(context, shape) || CheckUnquotedComma(context, shape) ||
      CheckTrailingCommas(context, shape)) {
    return;
  }
  std::optional<std::size_t> shifted = FindShiftedField(shape);
  if (!shifted && IsTextShifted(shape)) shifted = shape.Count() - 1;
  if (shifted) {
    context.Report(LintCode::kFieldCount, shape.row, shape.fields[*shifted].begin,
                   shape.fields[*shifted].end,
                   LostRow(shape.row) + "delete " +
                       Counted(shape.Count() - kDataColumnCount, "comma") + " before this field");
    return;
  }
  const std::size_t comma = shape.fields[kDataColumnCount].begin - 1;
  context.Report(LintCode::kUnquotedComma, shape.row, comma, comma + 1,
                 LostRow(shape.row) + "put double quotes around the text in " +
                     context.Column(DataColumn::kDescription) + " because it contains a comma");
}

// ---- rows with too few fields

std::size_t CountCommasAfter(const Shape& shape, std::size_t offset) {
  return static_cast<std::size_t>(std::ranges::count(shape.row.data.text.substr(offset), ','));
}

void ReportTooFewFields(LintContext& context, const Shape& shape) {
  if (shape.Count() == 1) {
    context.ReportRow(LintCode::kFieldCount, shape.row,
                      "the line has no comma, so it is skipped; write a row with ten fields, or "
                      "delete the line");
    return;
  }
  const std::optional<std::size_t> shifted = FindShiftedField(shape);
  const std::size_t missing = kDataColumnCount - shape.Count();
  const std::size_t index = shifted.value_or(shape.Count() - 1);
  const std::string where = shifted ? " before this field" : "";
  const std::string reason =
      missing == 1 ? " for the missing field" : ", one for each missing field";
  context.Report(LintCode::kMissingComma, shape.row, shape.fields[index].begin,
                 shape.fields[index].end,
                 LostRow(shape.row) + "add " + Counted(missing, "comma") + where + reason);
}

// ---- all rows

/// Returns the index of the row that contains the closing quote for the open quote in
/// `rows[index]`. Returns `std::nullopt` if no such row is among the next `kMaximumTextLines` rows,
/// or if another change begins before it.
std::optional<std::size_t> FindClosingRow(const std::vector<LintRow>& rows, std::size_t index) {
  const std::size_t end = std::min(rows.size(), index + 1 + kMaximumTextLines);
  for (std::size_t i = index + 1; i < end; ++i) {
    const DataRow& row = rows[i].data;
    if (row.kind != DataRowKind::kSkipped && LooksLikeChange(row)) return std::nullopt;
    if (HasOpenQuote(row)) return i;
    if (LooksLikeChange(row)) return std::nullopt;
  }
  return std::nullopt;
}

/// Reports a quoted field that continues on the next lines. Returns whether there is such a field.
bool CheckTextOverLines(LintContext& context, std::size_t index) {
  std::vector<LintRow>& rows = context.File().Rows();
  LintRow& row = rows[index];
  if (!HasOpenQuote(row.data)) return false;
  const std::optional<std::size_t> last = FindClosingRow(rows, index);
  if (!last) return false;
  const std::size_t quote = row.data.text.rfind('"');
  const bool isRead = row.data.kind == DataRowKind::kChange;
  Finding& finding =
      context.Report(LintCode::kTextOverLines, row, quote, row.data.text.size(),
                     std::string("the text continues on the next line, so ") +
                         (isRead ? "users see only its first line" : "the change is lost") +
                         "; write the text on one line");
  const Place end = context.File().PlaceOf(rows[*last], 0, rows[*last].data.text.size());
  finding.place.endLine = end.endLine;
  finding.place.endColumn = end.endColumn;
  for (std::size_t i = index; i <= *last; ++i) rows[i].isExplained = true;
  return true;
}

bool CheckOpenQuote(LintContext& context, const Shape& shape) {
  const std::optional<std::size_t> quote = shape.fields.back().openQuote;
  if (!quote || shape.Count() >= kDataColumnCount || CountCommasAfter(shape, *quote) == 0) {
    return false;
  }
  context.Report(LintCode::kOpenQuote, shape.row, *quote, *quote + 1,
                 "the quote before " + Counted(CountCommasAfter(shape, *quote), "comma") +
                     " is not closed, so the row has " + Counted(shape.Count(), "field") +
                     " instead of ten and its change is lost; close or delete the quote");
  return true;
}

bool IsChangesSince(std::string_view field) {
  return field.size() == ornwhatsnew::kChangesSinceKey.size() &&
         CaseInsensitiveEqual(field, ornwhatsnew::kChangesSinceKey);
}

/// Searches `row` for the first field for which `isMistake` returns true, and reports it as a
/// misspelt or misplaced "Changes-Since". Returns whether there is such a field.
template <class Predicate>
bool CheckChangesSinceField(LintContext& context, const LintRow& row, Predicate isMistake) {
  const auto found = std::ranges::find_if(row.data.values, isMistake);
  if (found == row.data.values.end()) return false;
  context.ReportField(LintCode::kChangesSinceSpelling, row,
                      static_cast<DataColumn>(found - row.data.values.begin()),
                      "the row does not set the version in the heading; write the version into "
                      "the first field and 'Changes-Since' into the second");
  return true;
}

bool CheckMisspeltChangesSince(LintContext& context, const LintRow& row) {
  return CheckChangesSinceField(context, row, [](std::string_view field) {
    return IsChangesSince(field) || IsMisspeltChangesSince(field);
  });
}

void ReportFieldCount(LintContext& context, const LintRow& row) {
  if (TrimSpaces(row.data.text).starts_with('#')) {
    context.ReportRow(LintCode::kCommentLine, row,
                      "data files have no comments, so the library skips the line");
    return;
  }
  if (row.data.fieldCount > kMaximumFields) {
    context.ReportRow(LintCode::kFieldCount, row, LostRow(row) + "write a row with ten fields");
    return;
  }
  const Shape shape(row);
  if (CheckMisspeltChangesSince(context, row) || CheckOpenQuote(context, shape)) return;
  if (shape.Count() > kDataColumnCount) {
    ReportTooManyFields(context, shape);
  } else {
    ReportTooFewFields(context, shape);
  }
}

void ReportEmptyGroupingID(LintContext& context, const LintRow& row) {
  const bool isEmpty = std::ranges::all_of(
      row.data.values, [](std::string_view value) { return TrimSpaces(value).empty(); });
  if (isEmpty || CheckMisspeltChangesSince(context, row)) return;
  context.ReportField(LintCode::kGroupingIDEmpty, row, DataColumn::kGroupingID,
                      "the grouping ID is empty, so the row is skipped and its change is lost; "
                      "write the key of a feature or section into " +
                          context.Column(DataColumn::kGroupingID));
}

void CheckRows(LintContext& context) {
  std::vector<LintRow>& rows = context.File().Rows();
  for (std::size_t i = 0; i < rows.size(); ++i) {
    LintRow& row = rows[i];
    if (row.isExplained || row.data.kind == DataRowKind::kHeader ||
        row.data.kind == DataRowKind::kChangesSince) {
      continue;
    }
    if (CheckTextOverLines(context, i)) continue;
    if (row.data.kind == DataRowKind::kChange) {
      // Search only for the correct spelling, in a wrong column. `CheckGroupingID` reports a
      // misspelt "Changes-Since" in the second column.
      row.isExplained = CheckChangesSinceField(context, row, IsChangesSince);
      continue;
    }
    if (row.data.skipReason == DataRowSkipReason::kNoGroupingID) {
      ReportEmptyGroupingID(context, row);
    } else {
      ReportFieldCount(context, row);
    }
  }
}

constexpr FileRule kRowShapeRules[] = {CheckRows};

}  // namespace

bool HasOpenQuote(const DataRow& row) {
  const std::string_view text = row.text;
  bool isOpen = false;
  // Use `find`, because it tests many bytes at a time and most rows have few quotes.
  for (std::size_t at = text.find('"'); at != text.npos; at = text.find('"', at + 1)) {
    isOpen = !isOpen;
  }
  return isOpen;
}

bool IsSalience(std::string_view text) {
  using ornwhatsnew::FeatureListDetail;
  if (text.empty()) return false;
  FeatureListDetail::Fields fields{};
  fields[ColumnIndex(DataColumn::kSalience)] = text;
  const FeatureListDetail change(fields);
  return !change.HasMalformedSalience() || change.DetailForcingItemToNormalVisibility();
}

std::span<const FileRule> RowShapeRules() {
  return kRowShapeRules;
}

}  // namespace hosts::author
