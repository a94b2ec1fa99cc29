#include <algorithm>
#include <array>
#include <cctype>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <orncore/string/Conversion.h>
#include <ornwhatsnew/utility/TextHelpers.h>

#include "hosts/author/lint/NearestWord.h"
#include "hosts/author/lint/Rules.h"

namespace hosts::author {
namespace {

using ornwhatsnew::CaseInsensitiveEqual;
using ornwhatsnew::ColumnIndex;
using ornwhatsnew::DataColumn;
using ornwhatsnew::DataField;
using ornwhatsnew::kDataColumnCount;

// ---- quotes

/// Returns the offset of a quote in `field` that is not one of two quotes around the whole field.
/// Returns `npos` if there is no such quote.
std::size_t FindVanishingQuote(std::string_view field) {
  const std::size_t first = field.find('"');
  if (first == field.npos) return first;
  const std::size_t second = field.find('"', first + 1);
  if (first != 0 || second == field.npos) return first;
  return second + 1 == field.size() ? field.npos : second;
}

/// Returns whether `row` has no quotes, or only two quotes, which enclose a field. Most rows are
/// like this, and need no further search for quotes.
bool HasSimpleQuotes(std::string_view row) {
  const std::size_t first = row.find('"');
  if (first == row.npos) return true;
  const std::size_t second = row.find('"', first + 1);
  if (second == row.npos || row.find('"', second + 1) != row.npos) return false;
  return (first == 0 || row[first - 1] == ',') &&
         (second + 1 == row.size() || row[second + 1] == ',');
}

void CheckQuotes(LintContext& context, const LintRow& row) {
  std::string_view text = row.data.text;
  while (text.ends_with('\r')) text.remove_suffix(1);
  if (HasSimpleQuotes(text)) return;
  const std::vector<DataField> fields = ornwhatsnew::FindDataFields(text);
  for (std::size_t i = 0; i < fields.size(); ++i) {
    const std::string_view field = text.substr(fields[i].begin, fields[i].end - fields[i].begin);
    const std::size_t quote = FindVanishingQuote(field);
    if (quote == field.npos) continue;
    Finding& finding = context.Report(LintCode::kQuotesVanish, row, fields[i].begin + quote,
                                      fields[i].begin + quote + 1,
                                      "the quote vanishes, because the library removes every "
                                      "double quote; write \xE2\x80\x9C and "
                                      "\xE2\x80\x9D, or \xE2\x80\xB3 for inches");
    finding.fieldNumber = i + 1;
    finding.fieldName = context.File().ColumnName(i);
    return;
  }
}

// ---- HTML

constexpr auto kTags = std::to_array<std::string_view>(
    {"a",    "b",   "i",     "u",   "em",  "strong", "p",   "li", "ul", "ol", "span", "div",
     "code", "pre", "small", "sub", "sup", "tt",     "kbd", "h1", "h2", "h3", "h4",   "font"});
constexpr auto kLoneTags =
    std::to_array<std::string_view>({"<br>", "<br/>", "<br />", "<p>", "<BR>", "<hr>"});
constexpr auto kEntities =
    std::to_array<std::string_view>({"&amp;", "&lt;", "&gt;", "&quot;", "&nbsp;", "&apos;", "&#39;",
                                     "&mdash;", "&ndash;", "&hellip;", "&#8217;", "&rsquo;"});

/// Returns the ASCII letters and digits at the start of `text`.
std::string_view TagName(std::string_view text) {
  const auto isInName = [](unsigned char c) { return c < 0x80 && std::isalnum(c) != 0; };
  return {text.begin(), std::ranges::find_if_not(text, isInName)};
}

/// Returns the first closing tag in `text` whose opening tag precedes it. Returns an empty string
/// if there is none. A tag without a partner can be the subject of the text, as in "the <b>
/// element".
std::string_view FindClosingTag(std::string_view text) {
  std::array<bool, kTags.size()> isOpened{};
  for (std::size_t at = text.find('<'); at != text.npos; at = text.find('<', at + 1)) {
    const bool isClosing = text.substr(at + 1).starts_with('/');
    const std::size_t begin = at + (isClosing ? 2 : 1);
    const std::string_view name = TagName(text.substr(begin));
    const std::size_t end = begin + name.size();
    const auto tag = std::ranges::find_if(
        kTags, [name](std::string_view known) { return CaseInsensitiveEqual(known, name); });
    if (tag == kTags.end()) continue;
    bool& isOpen = isOpened[static_cast<std::size_t>(tag - kTags.begin())];
    if (!isClosing) isOpen = true;
    const bool isWhole = isClosing && text.substr(end).starts_with('>');
    if (isWhole && isOpen) return text.substr(at, end + 1 - at);
  }
  return {};
}

std::string_view FindHTML(std::string_view text) {
  const auto findIn = [text](const auto& words) -> std::string_view {
    const auto found = std::ranges::find_if(
        words, [text](std::string_view word) { return text.find(word) != text.npos; });
    return found == words.end() ? std::string_view() : *found;
  };
  if (text.find('<') != text.npos) {
    if (const std::string_view tag = FindClosingTag(text); !tag.empty()) return tag;
    if (const std::string_view tag = findIn(kLoneTags); !tag.empty()) return tag;
  }
  return text.find('&') == text.npos ? std::string_view() : findIn(kEntities);
}

void CheckHTML(LintContext& context, const LintRow& row) {
  const std::string_view html = FindHTML(row.Value(DataColumn::kDescription));
  if (html.empty()) return;
  context.ReportPart(LintCode::kHTML, row, DataColumn::kDescription, html,
                     "users see " + Quoted(html) +
                         ", because the panel does not interpret HTML; write plain text");
}

// ---- mojibake

// If UTF-8 is decoded as Windows-1252, many characters become strings that begin with one of these
// strings. The first two strings result from most letters with accents, the third one from
// typographic marks, and the last one from emoji.
constexpr auto kMojibakeStarts = std::to_array<std::string_view>(
    {"\xC3\x83", "\xC3\x82", "\xC3\xA2\xE2\x82\xAC", "\xC3\xB0\xC5\xB8"});

/// Returns whether `text` can begin with a character that Windows-1252 assigns to 0x80 to 0xBF, the
/// continuation bytes of UTF-8. Checks only the first byte of the character.
bool BeginsWithContinuation(std::string_view text) {
  if (text.empty()) return false;
  const auto lead = static_cast<unsigned char>(text.front());
  // 0xC2 begins the characters from U+0080 to U+00BF. The other bytes in the condition begin the
  // letters and marks that Windows-1252 assigns to 0x80 to 0x9F.
  return lead == 0xC2 || lead == 0xC5 || lead == 0xC6 || lead == 0xCB || lead == 0xE2;
}

std::string_view FindMojibake(std::string_view text) {
  // Return early, because most texts contain neither 0xC3 nor 0xEF. All strings for which this
  // function searches begin with one of these bytes.
  if (text.find('\xC3') == text.npos && text.find('\xEF') == text.npos) return {};
  for (const std::string_view start : kMojibakeStarts) {
    for (std::size_t at = text.find(start); at != text.npos; at = text.find(start, at + 1)) {
      const std::string_view rest = text.substr(at + start.size());
      if (BeginsWithContinuation(rest)) return text.substr(at, start.size());
    }
  }
  constexpr std::string_view kReplacement = "\xEF\xBF\xBD";
  const std::size_t at = text.find(kReplacement);
  return at == text.npos ? std::string_view() : text.substr(at, kReplacement.size());
}

void CheckMojibake(LintContext& context, const LintRow& row) {
  for (const DataColumn column : {DataColumn::kRatingRequest, DataColumn::kDescription}) {
    const std::string_view found = FindMojibake(row.Value(column));
    // In a row that is not valid UTF-8, U+FFFD replaces ill-formed bytes. `CheckUTF8` reports them.
    if (found.empty() || !orncore::string::IsWellFormedUTF8(row.data.text)) continue;
    context.ReportPart(LintCode::kMojibake, row, column, found,
                       "the text was decoded with the wrong encoding, so users see wrong "
                       "characters; restore the text and save the file as UTF-8");
  }
}

// ---- commits

/// Returns whether `text` is a number such as 1.23E+15 or 1234567.0. Returns false for a hash such
/// as 12e4567, which contains neither a plus sign nor a point.
bool IsConvertedNumber(std::string_view text) {
  const auto canBeInNumber = [](char c) {
    return IsDigit(c) || std::string_view(".,eE+").find(c) != std::string_view::npos;
  };
  if (text.empty() || !std::ranges::all_of(text, canBeInNumber)) return false;
  const bool hasPoint = text.find_first_of(".,") != text.npos;
  const bool hasExponent = text.find("E+") != text.npos || text.find("e+") != text.npos;
  return (hasPoint || hasExponent) && IsDigit(text.front());
}

void CheckCommit(LintContext& context, const LintRow& row) {
  const std::string_view commit = row.Value(DataColumn::kSHA);
  if (!IsConvertedNumber(commit)) return;
  context.ReportField(LintCode::kCommitNumber, row, DataColumn::kSHA,
                      Quoted(commit) + " in " + context.Column(DataColumn::kSHA) +
                          " is a number instead of an ID, so its link does not work; format the "
                          "column as text, and write the ID");
}

// ---- spaces

constexpr std::array<DataColumn, 5> kTrimmedColumns = {
    DataColumn::kGroupingID, DataColumn::kStoryID, DataColumn::kSalience, DataColumn::kFirstVersion,
    DataColumn::kPlatform};

/// Returns the edit that deletes the spaces around a field. Returns `std::nullopt` if the field has
/// quotes other than the two that enclose it. Also returns `std::nullopt` if the field is a
/// grouping ID that contains only spaces, because the library skips a row without a grouping ID.
std::optional<Edit> TrimEdit(LintContext& context, const LintRow& row, std::size_t index) {
  const std::vector<DataField> fields = ornwhatsnew::FindDataFields(row.data.text);
  const DataField& field = fields[index];
  std::string_view text = row.data.text.substr(field.begin, field.end - field.begin);
  const bool isQuoted = text.starts_with('"') && text.ends_with('"');
  if (isQuoted) text = text.substr(1, text.size() - 2);
  if (text.find('"') != text.npos) return std::nullopt;
  const std::string_view quote = isQuoted ? "\"" : "";
  text = TrimSpaces(text);
  if (text.empty() && index == ColumnIndex(DataColumn::kGroupingID)) return std::nullopt;
  std::string trimmed(quote);
  trimmed += text;
  trimmed += quote;
  return Edit{context.File().OffsetOf(row) + field.begin, field.end - field.begin,
              std::move(trimmed)};
}

bool HasOuterSpaces(std::string_view text) {
  return TrimSpaces(text).size() != text.size();
}

void CheckSpaces(LintContext& context, const LintRow& row) {
  for (std::size_t i = 0; i < kDataColumnCount; ++i) {
    const std::string_view text = row.data.values[i];
    if (!HasOuterSpaces(text)) continue;
    const auto column = static_cast<DataColumn>(i);
    Finding* finding = context.FindingOn(row, column);
    if (finding == nullptr) {
      finding =
          &context.ReportField(LintCode::kOuterSpaces, row, column,
                               "the spaces around " + Quoted(TrimSpaces(text)) + " in " +
                                   context.Column(column) + " are part of the field; delete them");
    }
    const bool isTrimmed = std::ranges::find(kTrimmedColumns, column) != kTrimmedColumns.end();
    if (isTrimmed && !finding->edit) finding->edit = TrimEdit(context, row, i);
  }
}

constexpr ChangeRule kTextRules[] = {CheckQuotes, CheckHTML, CheckMojibake, CheckCommit,
                                     CheckSpaces};

}  // namespace

std::span<const ChangeRule> TextRules() {
  return kTextRules;
}

}  // namespace hosts::author
