#include <algorithm>
#include <array>
#include <optional>
#include <string>

#include <orncore/string/Conversion.h>

#include "hosts/author/lint/NearestWord.h"
#include "hosts/author/lint/Rules.h"
#include "hosts/common/MessageText.h"
#include "hosts/common/TextFile.h"

namespace hosts::author {
namespace {

using common::kByteOrderMark;

/// If a row contains a semicolon, a tab or a vertical bar at least this many times, this character
/// probably separates its fields.
constexpr std::ptrdiff_t kManySeparators = 5;

bool IsUTF16(std::string_view text) {
  if (text.starts_with("\xFF\xFE") || text.starts_with("\xFE\xFF")) return true;
  // A UTF-16 file can lack a byte order mark. If most of its characters are ASCII, about every
  // second byte is NUL.
  const std::string_view start = text.substr(0, 1000);
  return std::ranges::count(start, '\0') > static_cast<std::ptrdiff_t>(start.size() / 3);
}

void CheckUTF16(LintContext& context) {
  if (!IsUTF16(context.File().Text())) return;
  context.ReportFile(LintCode::kFileUTF16,
                     "the file is UTF-16, so users see none of its changes; save it as UTF-8");
  context.Stop();
}

void CheckEmpty(LintContext& context) {
  const std::string_view text = common::WithoutByteOrderMark(context.File().Text());
  if (text.find_first_not_of(" \t\r\n") != text.npos) return;
  context.ReportFile(LintCode::kFileEmpty,
                     "the file is empty, so users see no changes; add a header row and changes");
  context.Stop();
}

/// Returns whether `row` contains `separator` at least `kManySeparators` times. Returns false if
/// commas already separate ten fields.
bool HasManyOf(char separator, const LintRow& row) {
  return row.data.fieldCount != ornwhatsnew::kDataColumnCount &&
         std::ranges::count(row.data.text, separator) >= kManySeparators;
}

struct Separator {
  char character;
  std::string_view name;
};

constexpr auto kSeparators =
    std::to_array<Separator>({{';', "semicolons"}, {'\t', "tabs"}, {'|', "vertical bars"}});

void CheckSeparator(LintContext& context) {
  const std::vector<LintRow>& rows = context.File().Rows();
  for (const auto& [separator, name] : kSeparators) {
    const auto count = std::ranges::count_if(
        rows, [separator = separator](const LintRow& row) { return HasManyOf(separator, row); });
    if (2 * count <= static_cast<std::ptrdiff_t>(rows.size())) continue;
    context.ReportFile(LintCode::kFileSeparator,
                       "the fields are separated by " + std::string(name) +
                           ", so the rows are lost; export the table with commas as separators");
    context.Stop();
    return;
  }
}

/// Returns whether `line` has ten fields, is empty, or is a Changes-Since row. A Changes-Since row
/// needs only two fields.
bool IsCompleteRow(std::string_view line) {
  ornwhatsnew::DataFileReader reader(line);
  const ornwhatsnew::DataRow* const row = reader.Next();
  return row == nullptr || row->skipReason != ornwhatsnew::DataRowSkipReason::kFieldCount;
}

/// Returns the edit that replaces the CR line endings in a row with LF. `row` must contain a CR. If
/// one of the resulting lines is not a complete row, returns no edit, because the CR may be inside
/// a field. A single edit replaces all line endings, because many separate edits would take
/// quadratic time.
std::optional<Edit> LineEndEdit(std::string_view row, std::size_t rowOffset) {
  std::size_t begin = 0;
  while (begin <= row.size()) {
    const std::size_t end = std::min(row.find('\r', begin), row.size());
    if (!IsCompleteRow(row.substr(begin, end - begin))) return std::nullopt;
    begin = end + 1;
  }
  const std::size_t first = row.find('\r');
  std::string lines(row.substr(first, row.rfind('\r') + 1 - first));
  std::ranges::replace(lines, '\r', '\n');
  return Edit{rowOffset + first, lines.size(), lines};
}

void CheckLineEnds(LintContext& context) {
  if (context.File().Text().find('\r') == std::string_view::npos) return;
  for (LintRow& row : context.File().Rows()) {
    std::string_view text = row.data.text;
    while (text.ends_with('\r')) text.remove_suffix(1);
    const std::size_t position = text.find('\r');
    if (position == text.npos) continue;
    Finding& finding = context.Report(
        LintCode::kFileLineEnds, row, position, position + 1,
        "the line ends in CR alone, so " +
            Counted(static_cast<std::size_t>(std::ranges::count(text, '\r')) + 1, "line") +
            " are read as one row; use LF or CR LF line endings");
    const std::size_t offset = context.File().OffsetOf(row);
    // A CR at the end of a row usually belongs to a CR LF line ending. At the end of the file, no
    // LF follows the CR, so the edit must replace the CR.
    const bool isAtEnd = offset + row.data.text.size() == context.File().Text().size();
    finding.edit = LineEndEdit(isAtEnd ? row.data.text : text, offset);
    row.isExplained = true;
  }
}

void CheckNulBytes(LintContext& context) {
  if (context.File().Text().find('\0') == std::string_view::npos) return;
  for (const LintRow& row : context.File().Rows()) {
    const std::size_t position = row.data.text.find('\0');
    if (position == row.data.text.npos) continue;
    context.Report(
        LintCode::kNulByte, row, position, position + 1,
        "the field contains a NUL byte, at which many views truncate the text; delete the byte");
  }
}

void CheckUTF8(LintContext& context) {
  if (orncore::string::IsWellFormedUTF8(context.File().Text())) return;
  for (const LintRow& row : context.File().Rows()) {
    const std::size_t position = orncore::string::FindIllFormedUTF8(row.data.text);
    if (position == row.data.text.npos) continue;
    context.Report(LintCode::kFileNotUTF8, row, position, position + 1,
                   "the byte 0x" + common::HexDigits(row.data.text[position]) +
                       " is not UTF-8, so users see a replacement character; save the file as "
                       "UTF-8 instead of Latin-1 or Windows-1252");
  }
}

bool IsConflictMark(std::string_view row) {
  while (row.ends_with('\r')) row.remove_suffix(1);
  static constexpr std::array<std::string_view, 3> kMarks = {"<<<<<<< ", ">>>>>>> ", "||||||| "};
  return row == "=======" || row == "<<<<<<<" || row == ">>>>>>>" ||
         std::ranges::any_of(kMarks,
                             [row](std::string_view mark) { return row.starts_with(mark); });
}

void CheckConflictMarks(LintContext& context) {
  for (LintRow& row : context.File().Rows()) {
    if (!IsConflictMark(row.data.text)) continue;
    context.ReportRow(LintCode::kConflictMark, row,
                      "the line is a merge-conflict marker, so users see both versions of the "
                      "changes; resolve the conflict");
    row.isExplained = true;
  }
}

void CheckByteOrderMarks(LintContext& context) {
  for (const LintRow& row : context.File().Rows()) {
    const std::size_t from = context.File().OffsetOf(row) == 0 ? 1 : 0;
    const std::size_t position = row.data.text.find(kByteOrderMark, from);
    if (position == row.data.text.npos) continue;
    context.Report(LintCode::kInnerByteOrderMark, row, position, position + kByteOrderMark.size(),
                   "a byte order mark inside the file becomes part of a field, so the field "
                   "matches no key and no keyword; delete the mark");
  }
}

constexpr FileRule kFileFormRules[] = {CheckUTF16,         CheckEmpty,         CheckSeparator,
                                       CheckLineEnds,      CheckNulBytes,      CheckUTF8,
                                       CheckConflictMarks, CheckByteOrderMarks};

}  // namespace

std::span<const FileRule> FileFormRules() {
  return kFileFormRules;
}

}  // namespace hosts::author
