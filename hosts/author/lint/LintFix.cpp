#include "hosts/author/lint/LintFix.h"

#include <algorithm>
#include <optional>
#include <utility>
#include <vector>

#include <orncore/string/SafeText.h>
#include <ornwhatsnew/ChangePlacement.h>
#include <ornwhatsnew/FeatureListData.h>

namespace hosts::author {
namespace {

using ornwhatsnew::DataRow;
using ornwhatsnew::DataRowKind;

/// A line of the file and its edits, in the order of their offsets.
struct LineEdits {
  std::size_t begin;
  std::size_t end;
  std::vector<Edit> edits;
};

std::string Apply(std::string_view line, std::size_t lineBegin, const std::vector<Edit>& edits) {
  std::string result;
  std::size_t copied = 0;
  for (const Edit& edit : edits) {
    const std::size_t begin = edit.offset - lineBegin;
    result += line.substr(copied, begin - copied);
    result += edit.replacement;
    copied = begin + edit.length;
  }
  return result.append(line.substr(copied));
}

/// Determines which edits of rows announce a change again: users who have seen the change see it as
/// new.
class Announcements {
 public:
  explicit Announcements(const LintHost* host)
      : list_(nullptr, nullptr), hasHost_(host != nullptr) {
    list_.ParseBetaFeatures();
  }

  /// Returns whether the edit from `oldRow` to `newRow` announces a change again. This is true if
  /// both rows are changes with different identities, and the old change has text and is not in an
  /// internal section.
  bool IsAnnouncedAgain(std::string_view oldRow, std::string_view newRow) {
    const std::optional<Change> before = Read(oldRow);
    if (!before || !before->isVisible) return false;
    const std::optional<Change> after = Read(newRow);
    return after && after->identity != before->identity;
  }

 private:
  struct Change {
    ornwhatsnew::Guid identity;
    bool isVisible;
  };

  std::optional<Change> Read(std::string_view text) {
    const std::string file = "v,g,,,,,,,,\n" + std::string(text);
    ornwhatsnew::DataFileReader reader(file);
    reader.Next();
    const DataRow* const row = reader.Next();
    if (row == nullptr || row->kind != DataRowKind::kChange) return std::nullopt;
    const auto change = maker_.Make(*row);
    const auto [item, isUnmatched] =
        ornwhatsnew::PlaceChange(list_.GetFeatureItems(), *row, *change);
    // Without a host, do not count an unmatched change as internal, because it can belong to a
    // feature.
    const bool isInternal = item->IsInternalSection() && (hasHost_ || !isUnmatched);
    return Change{change->GetItemSeenGuid(), !isInternal && !change->GetDescription().empty()};
  }

  ornwhatsnew::FeatureListData list_;
  ornwhatsnew::ChangeMaker maker_;
  bool hasHost_;
};

/// Returns the edits of the findings, grouped by line. If two edits overlap, omits the second one.
std::vector<LineEdits> CollectEdits(std::string_view text, const LintReport& report) {
  std::vector<Edit> edits;
  for (const Finding& finding : report.findings) {
    if (finding.edit) edits.push_back(*finding.edit);
  }
  for (const auto& [code, omitted] : report.omitted) {
    edits.insert(edits.end(), omitted.edits.begin(), omitted.edits.end());
  }
  std::ranges::stable_sort(edits, {}, &Edit::offset);
  std::vector<LineEdits> lines;
  std::size_t edited = 0;
  for (Edit& edit : edits) {
    if (edit.offset < edited) continue;  // Another edit already replaces this field.
    edited = edit.offset + edit.length;
    if (lines.empty() || edit.offset >= lines.back().end) {
      const std::size_t newline = text.substr(0, edit.offset).rfind('\n');
      const std::size_t begin = newline == text.npos ? 0 : newline + 1;
      lines.push_back({begin, std::min(text.find('\n', edit.offset), text.size()), {}});
    }
    lines.back().edits.push_back(std::move(edit));
  }
  return lines;
}

/// Returns the lines of `text` for a diff, with `mark` before each line. `isAtEnd` states whether
/// `text` is at the end of the file. `text` ends with a newline only if a correction at the end of
/// the file has replaced a CR line ending. If `isAtEnd` is true and `text` does not end with a
/// newline, adds the line "\ No newline at end of file".
std::string DiffLines(char mark, std::string_view text, bool isAtEnd) {
  const bool hasNewline = isAtEnd && text.ends_with('\n');
  if (hasNewline) text.remove_suffix(1);
  std::string diff(1, mark);
  for (const char c : text) {
    diff += c;
    if (c == '\n') diff += mark;
  }
  return diff + (isAtEnd && !hasNewline ? "\n\\ No newline at end of file\n" : "\n");
}

std::string Range(std::size_t line, std::size_t count) {
  return std::to_string(line) + (count == 1 ? "" : "," + std::to_string(count));
}

std::size_t CountNewlines(std::string_view text) {
  return static_cast<std::size_t>(std::ranges::count(text, '\n'));
}

/// Builds the new text and the diff line by line.
class FixBuilder {
 public:
  FixBuilder(std::string_view text, FixScope scope, const LintHost* host)
      : text_(text), scope_(scope), announcements_(host) {}

  void Add(const LineEdits& line) {
    const std::string_view old = text_.substr(line.begin, line.end - line.begin);
    std::vector<Edit> made;
    bool isAnnouncedAgain = false;
    for (const Edit& edit : line.edits) {
      const bool announces = announcements_.IsAnnouncedAgain(old, Apply(old, line.begin, {edit}));
      if (announces && scope_ == FixScope::kSafe) {
        ++fixed_.withheld;
        continue;
      }
      isAnnouncedAgain = isAnnouncedAgain || announces;
      made.push_back(edit);
    }
    if (made.empty()) return;
    fixed_.corrected += made.size();
    AddHunk(line, old, Apply(old, line.begin, made), isAnnouncedAgain);
  }

  FixedFile Finish() {
    fixed_.text += text_.substr(copied_);
    return std::move(fixed_);
  }

 private:
  void AddHunk(const LineEdits& line, std::string_view old, const std::string& replacement,
               bool isAnnouncedAgain) {
    fixed_.text += text_.substr(copied_, line.begin - copied_);
    oldLine_ += CountNewlines(text_.substr(copied_, line.begin - copied_));
    copied_ = line.end;
    const bool isAtEnd = line.end == text_.size();
    const std::size_t added = CountNewlines(replacement);
    const std::size_t lines = isAtEnd && replacement.ends_with('\n') ? added : added + 1;
    fixed_.diff +=
        "@@ -" + Range(oldLine_, 1) + " +" + Range(oldLine_ + addedLines_, lines) + " @@";
    if (isAnnouncedAgain) fixed_.diff += " announced again to users who saw the change";
    fixed_.diff += "\n" + DiffLines('-', old, isAtEnd) + DiffLines('+', replacement, isAtEnd);
    fixed_.text += replacement;
    addedLines_ += lines - 1;
  }

  std::string_view text_;
  FixScope scope_;
  Announcements announcements_;
  FixedFile fixed_;
  std::size_t copied_ = 0;
  std::size_t oldLine_ = 1;
  std::size_t addedLines_ = 0;
};

}  // namespace

FixedFile FixDataFile(const std::string& name, std::string_view text, const LintReport& report,
                      FixScope scope, const LintHost* host) {
  FixBuilder builder(text, scope, host);
  for (const LineEdits& line : CollectEdits(text, report)) builder.Add(line);
  FixedFile fixed = builder.Finish();
  if (fixed.diff.empty()) return fixed;
  const std::string shown = orncore::string::EscapeInvisible(name);
  fixed.diff.insert(0, "--- a/" + shown + "\n+++ b/" + shown + "\n");
  return fixed;
}

}  // namespace hosts::author
