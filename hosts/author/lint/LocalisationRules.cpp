#include <algorithm>
#include <array>
#include <string>

#include <ornwhatsnew/utility/TextHelpers.h>

#include "hosts/author/ColumnNames.h"
#include "hosts/author/lint/NearestWord.h"
#include "hosts/author/lint/Rules.h"

namespace hosts::author {
namespace {

using ornwhatsnew::DataColumn;
using ornwhatsnew::IsZString;

void CheckKeySpace(LintContext& context, const LintRow& row) {
  for (const DataColumn column : kLocalizedColumns) {
    const std::string_view text = row.Value(column);
    if (IsZString(text) || !IsZString(TrimSpaces(text))) continue;
    context.ReportField(
        LintCode::kKeySpace, row, column,
        "the space before the key makes the field ordinary text, so users see the key; "
        "delete the space");
  }
}

/// Returns whether `text` begins with dollar signs and a slash, and the number of dollar signs is
/// two or at least four.
bool HasMisspeltKeyPrefix(std::string_view text) {
  const std::size_t dollars = text.find_first_not_of('$');
  return dollars != text.npos && text[dollars] == '/' && (dollars == 2 || dollars > 3);
}

void CheckKeyPrefix(LintContext& context, const LintRow& row) {
  for (const DataColumn column : kLocalizedColumns) {
    if (!HasMisspeltKeyPrefix(TrimSpaces(row.Value(column)))) continue;
    context.ReportField(LintCode::kKeyPrefix, row, column,
                        "the key does not begin with '$$$/', so users see the key; write three "
                        "dollar signs");
  }
}

void CheckKeyDefault(LintContext& context, const LintRow& row) {
  for (const DataColumn column : kLocalizedColumns) {
    const std::string_view text = row.Value(column);
    if (!IsZString(text) || text.find('=') != text.npos) continue;
    const LintHost* const host = context.Host();
    if (host != nullptr && host->description.dictionary.contains(LocalizedText(column, text))) {
      continue;
    }
    Finding& finding =
        context.ReportField(LintCode::kKeyNoDefault, row, column,
                            "the key " + Quoted(text) +
                                " has no default text, so users without a translation see the key; "
                                "write '=' and a default text after it");
    // Without a host description, report only a warning, because the host's dictionary may contain
    // the key.
    if (host == nullptr) finding.severity = Severity::kWarning;
  }
}

void CheckKeys(LintContext& context, const LintRow& row) {
  // Return early, because every key contains a dollar sign, but most rows contain none.
  if (row.data.text.find('$') == row.data.text.npos) return;
  CheckKeySpace(context, row);
  CheckKeyPrefix(context, row);
  CheckKeyDefault(context, row);
}

// ---- markup

/// The markup that begins with "#{". The library replaces or removes it only in key texts and
/// translations.
constexpr auto kMarkup =
    std::to_array<std::string_view>({"#{endl}", "#{tab}", "#{mdash}", "#{ndash}", "#{comment}"});
/// The markup that begins with a caret and is unlikely to occur in ordinary text. Other uses of a
/// caret are common, as in "x^2".
constexpr auto kCaretMarkup = std::to_array<std::string_view>({"^[", "^]", "^{", "^}"});

void CheckMarkupOutsideKey(LintContext& context, const LintRow& row, std::string_view text) {
  const auto isIn = [text](std::string_view markup) { return text.find(markup) != text.npos; };
  const auto found = std::ranges::find_if(kMarkup, isIn);
  const auto foundCaret = std::ranges::find_if(kCaretMarkup, isIn);
  if (found == kMarkup.end() && foundCaret == kCaretMarkup.end()) return;
  const std::string_view markup = found != kMarkup.end() ? *found : *foundCaret;
  context.ReportPart(
      LintCode::kMarkupOutsideKey, row, DataColumn::kDescription, markup,
      "users see " + Quoted(markup) +
          ", because only a key text, which begins with '$$$/', can contain markup; write "
          "the character itself");
}

void CheckMarkupInKey(LintContext& context, const LintRow& row, std::string_view text) {
  // Ignore the text after `#{comment}`. It is for translators, and users do not see it.
  text = text.substr(0, text.find("#{comment}"));
  for (std::size_t at = text.find("#{"); at != text.npos; at = text.find("#{", at + 1)) {
    const std::size_t end = text.find('}', at);
    const std::string_view markup = text.substr(at, end == text.npos ? end : end + 1 - at);
    if (std::ranges::find(kMarkup, markup) != kMarkup.end()) continue;
    const std::optional<std::string> nearest = NearestWord(markup, kMarkup);
    context.ReportPart(LintCode::kMarkupUnknown, row, DataColumn::kDescription, markup,
                       "users see " + Quoted(markup) + ", because it is not markup; write " +
                           Quoted(nearest.value_or("#{endl}")) +
                           (nearest ? "" : " or other markup that ornwhatsnew(5) lists"));
    return;
  }
}

void CheckMarkup(LintContext& context, const LintRow& row) {
  const std::string_view text = row.Value(DataColumn::kDescription);
  // Search for each character separately. `find_first_of` is slower, because it calls `memchr` for
  // each character of the text.
  if (text.find('#') == text.npos && text.find('^') == text.npos) return;
  if (IsZString(text)) {
    CheckMarkupInKey(context, row, text);
  } else if (!IsZString(TrimSpaces(text))) {
    CheckMarkupOutsideKey(context, row, text);
  }
}

constexpr ChangeRule kLocalisationRules[] = {CheckKeys, CheckMarkup};

}  // namespace

std::span<const ChangeRule> LocalisationRules() {
  return kLocalisationRules;
}

}  // namespace hosts::author
