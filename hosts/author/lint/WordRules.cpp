#include <algorithm>
#include <array>
#include <optional>
#include <string>
#include <vector>

#include <ornwhatsnew/WhatsNewTypes.h>
#include <ornwhatsnew/utility/TextHelpers.h>

#include "hosts/author/lint/NearestWord.h"
#include "hosts/author/lint/Rules.h"

namespace hosts::author {
namespace {

using ornwhatsnew::CaseInsensitiveEqual;
using ornwhatsnew::ColumnIndex;
using ornwhatsnew::DataColumn;
using ornwhatsnew::FeatureListDetail;

struct Keyword {
  std::string_view word;
  DataColumn column;
};

const std::vector<Keyword>& Keywords() {
  static const std::vector<Keyword> keywords = {
      {FeatureListDetail::kSalienceHeadline, DataColumn::kSalience},
      {FeatureListDetail::kSalienceDetail, DataColumn::kSalience},
      {FeatureListDetail::kSalienceHideBetaFeature, DataColumn::kSalience},
      {FeatureListDetail::kSalienceHideBetaFeatureFromExternal, DataColumn::kSalience},
      {FeatureListDetail::kSalienceUnhideBetaFeature, DataColumn::kSalience},
      {FeatureListDetail::kSalienceUnreviewed, DataColumn::kSalience},
      {FeatureListDetail::kSalienceRatingHideBetaFeatureDescription, DataColumn::kSalience},
      {FeatureListDetail::kRequestRating, DataColumn::kRatingRequest},
      {FeatureListDetail::kPlatformMac, DataColumn::kPlatform},
      {FeatureListDetail::kPlatformWin, DataColumn::kPlatform},
      {ornwhatsnew::kMiscKey, DataColumn::kGroupingID},
      {ornwhatsnew::kBugfixKey, DataColumn::kGroupingID},
      {ornwhatsnew::kInternalKey, DataColumn::kGroupingID},
      {ornwhatsnew::kUnreviewedKey, DataColumn::kGroupingID},
  };
  return keywords;
}

std::vector<std::string_view> WordsOf(DataColumn column) {
  std::vector<std::string_view> words;
  for (const Keyword& keyword : Keywords()) {
    if (keyword.column == column) words.push_back(keyword.word);
  }
  return words;
}

// ---- keywords in another column

/// Returns the column to which the keyword `text` belongs. Returns `std::nullopt` if `text` is not
/// a keyword, or if it is a keyword in `column`. "Unreviewed" is both a salience and the key of a
/// section. Authors mean the salience, so the function returns the salience column.
std::optional<DataColumn> ColumnOfKeyword(std::string_view text, DataColumn column) {
  std::optional<DataColumn> found;
  for (const Keyword& keyword : Keywords()) {
    if (keyword.word.size() != text.size() || !CaseInsensitiveEqual(keyword.word, text)) continue;
    // The third column can contain the key of an item, and sections are items.
    const bool isKey = keyword.column == DataColumn::kGroupingID && column == DataColumn::kStoryID;
    if (keyword.column == column || isKey) return std::nullopt;
    if (!found) found = keyword.column;
  }
  return found;
}

void CheckKeywordColumn(LintContext& context, const LintRow& row) {
  constexpr std::size_t kShortestWord = 3;
  for (std::size_t i = 0; i < ColumnIndex(DataColumn::kDescription); ++i) {
    const auto column = static_cast<DataColumn>(i);
    const std::string_view text = row.data.values[i];
    // Skip fields that end with a digit, as most versions, keys and commits do. No keyword ends
    // with a digit.
    if (text.size() < kShortestWord || IsDigit(text.back())) continue;
    if (i == ColumnIndex(DataColumn::kVersion) && text.front() <= '9') continue;
    const std::optional<DataColumn> owner = ColumnOfKeyword(TrimSpaces(text), column);
    if (!owner) continue;
    context.ReportField(LintCode::kKeywordColumn, row, column,
                        Quoted(text) + " has no effect in " + context.Column(column) +
                            "; move it to " + context.Column(*owner));
  }
}

// ---- grouping ID

/// Returns the remedy for the grouping ID `text` if it is the internal key or the name of a
/// feature. Otherwise, returns an empty string.
std::string FeatureRemedy(LintContext& context, std::string_view text) {
  const common::BetaFeatureDescription* const feature = context.FindFeature(text);
  if (feature == nullptr) return "";
  const bool isInternalKey = CaseInsensitiveEqual(feature->internalKey, text);
  return "write " + Quoted(feature->epicKey) + ", the epic key of the feature with this " +
         (isInternalKey ? "internal key" : "name");
}

std::string KeyRemedy(const std::string& text, const std::string& key) {
  if (CaseInsensitiveEqual(text, key)) return "write " + Quoted(key) + " in this letter case";
  if (CaseInsensitiveEqual(TrimSpaces(text), key)) return "delete the spaces around " + Quoted(key);
  return "write " + Quoted(key);
}

/// Returns the edit that replaces the grouping ID of `row` with the section key `key`. Returns
/// `std::nullopt` if `key` is not a section key, or if the two strings differ in more than letter
/// case and outer spaces.
std::optional<Edit> SectionKeyEdit(LintContext& context, const LintRow& row, std::string_view key) {
  const std::string_view written = TrimSpaces(row.Value(DataColumn::kGroupingID));
  if (!ornwhatsnew::IsSpecialCaseSection(key) || !CaseInsensitiveEqual(written, key)) {
    return std::nullopt;
  }
  const auto fields = ornwhatsnew::FindDataFields(row.data.text);
  const auto& field = fields[ColumnIndex(DataColumn::kGroupingID)];
  const std::size_t offset = context.File().OffsetOf(row) + field.begin;
  return Edit{offset, field.end - field.begin, std::string(key)};
}

void CheckGroupingID(LintContext& context, const LintRow& row) {
  if (!row.IsUnmatched() || context.HasFinding(row, DataColumn::kGroupingID)) return;
  const std::string text(row.Value(DataColumn::kGroupingID));
  if (IsMisspeltChangesSince(text)) {
    context.ReportField(LintCode::kChangesSinceSpelling, row, DataColumn::kGroupingID,
                        Quoted(text) +
                            " does not set the version in the heading; write "
                            "'Changes-Since'");
    return;
  }
  std::string remedy = FeatureRemedy(context, text);
  const std::optional<std::string> nearest = context.NearestKey(text);
  // Without a host description, any grouping ID that contains more than spaces can be an epic key.
  const bool canBeEpicKey = context.Host() == nullptr && !TrimSpaces(text).empty();
  if (canBeEpicKey && !nearest) return;
  if (remedy.empty() && nearest) remedy = KeyRemedy(text, *nearest);
  if (remedy.empty()) remedy = "write the epic key of a feature, or MISC, BUGFIX or INTERNAL";
  Finding& finding = context.ReportField(
      LintCode::kGroupingIDUnknown, row, DataColumn::kGroupingID,
      Quoted(text) + " in " + context.Column(DataColumn::kGroupingID) +
          " matches no feature or section, so only internal users see the change; " + remedy);
  if (nearest) finding.edit = SectionKeyEdit(context, row, *nearest);
}

void CheckStoryID(LintContext& context, const LintRow& row) {
  const std::string_view storyID = row.Value(DataColumn::kStoryID);
  const std::string_view groupingID = row.Value(DataColumn::kGroupingID);
  if (storyID.empty() || storyID == groupingID) return;
  if (CaseInsensitiveEqual(groupingID, ornwhatsnew::kInternalKey)) {
    const auto item = context.File().Items().find(std::string(storyID));
    if (item == context.File().Items().end() || item->second->IsSection()) return;
    context.ReportField(LintCode::kInternalWithFeatureKey, row, DataColumn::kStoryID,
                        Quoted(storyID) +
                            " is the key of a feature, but the grouping ID is INTERNAL, so only "
                            "internal users see the change; if all users should see it, write the "
                            "key into " +
                            context.Column(DataColumn::kGroupingID));
    return;
  }
  if (row.IsUnmatched() || row.item->FeatureJiraIDKey() != storyID) return;
  context.ReportField(LintCode::kStoryIDWins, row, DataColumn::kStoryID,
                      Quoted(storyID) +
                          " is the key of an item, so the change belongs to this item "
                          "and not to " +
                          Quoted(groupingID));
}

// ---- salience

bool IsSalienceSeparator(char c) {
  return c == ' ' || c == ',' || c == ';' || c == '/' || c == '|' || c == '+' || c == '&';
}

/// Returns whether `text` consists of several words, at least one of which is a salience.
bool IsSeveralSaliences(std::string_view text) {
  const std::vector<std::string_view> keywords = WordsOf(DataColumn::kSalience);
  std::size_t words = 0;
  bool hasKeyword = false;
  for (std::size_t begin = 0; begin < text.size();) {
    const auto* const end = std::find_if(text.begin() + begin, text.end(), IsSalienceSeparator);
    const std::string_view word(text.begin() + begin, end);
    if (!word.empty()) ++words;
    hasKeyword = hasKeyword || std::ranges::any_of(keywords, [word](std::string_view keyword) {
                   return CaseInsensitiveEqual(word, keyword);
                 });
    begin = static_cast<std::size_t>(end - text.begin()) + 1;
  }
  return words > 1 && hasKeyword;
}

std::string SalienceEffect(std::string_view nearest) {
  if (nearest == FeatureListDetail::kSalienceUnreviewed) {
    return " is not a keyword, so the unreviewed change is shown to users";
  }
  if (nearest == FeatureListDetail::kSalienceHideBetaFeature ||
      nearest == FeatureListDetail::kSalienceHideBetaFeatureFromExternal) {
    return " is not a keyword, so the change is shown and the feature is not hidden";
  }
  return " is not a keyword, so it has no effect and the change is shown";
}

void CheckSalience(LintContext& context, const LintRow& row) {
  const FeatureListDetail& change = *row.change;
  if (!change.HasMalformedSalience() || change.DetailForcingItemToNormalVisibility()) return;
  if (context.HasFinding(row, DataColumn::kSalience)) return;
  const std::string_view text = row.Value(DataColumn::kSalience);
  if (IsSeveralSaliences(text)) {
    context.ReportField(LintCode::kSalienceTwoWords, row, DataColumn::kSalience,
                        Quoted(text) + " in " + context.Column(DataColumn::kSalience) +
                            " is more than one word, so no word has an effect and the change is "
                            "shown; keep one keyword");
    return;
  }
  const std::optional<std::string> nearest = NearestWord(text, WordsOf(DataColumn::kSalience));
  const std::string remedy = nearest
                                 ? "write " + Quoted(*nearest)
                                 : "write a keyword such as 'Headline', or leave the field empty";
  context.ReportField(LintCode::kSalienceUnknown, row, DataColumn::kSalience,
                      Quoted(text) + " in " + context.Column(DataColumn::kSalience) +
                          SalienceEffect(nearest.value_or("")) + "; " + remedy);
}

void CheckUnreviewed(LintContext& context, const LintRow& row) {
  if (!row.change->DetailInternalOverrideUnreviewed()) return;
  context.ReportField(LintCode::kUnreviewedLeft, row, DataColumn::kSalience,
                      "the change is still unreviewed, so only internal users see it; delete "
                      "'Unreviewed' after the review");
}

// ---- platform

bool ContainsAnyOf(std::u16string_view text, std::initializer_list<std::u16string_view> words) {
  return std::ranges::any_of(
      words, [text](std::u16string_view word) { return text.find(word) != text.npos; });
}

std::string PlatformRemedy(std::string_view text) {
  const std::u16string folded = Fold(text);
  const bool isMac = ContainsAnyOf(folded, {u"mac", u"osx", u"apple"}) || folded == u"darwin";
  const bool isWin = folded != u"darwin" && (ContainsAnyOf(folded, {u"win"}) || folded == u"pc");
  if (isMac && isWin) return "for both platforms, leave the field empty";
  if (isMac) return "write 'Mac'";
  if (isWin) return "write 'Win'";
  const std::optional<std::string> nearest = NearestWord(text, WordsOf(DataColumn::kPlatform));
  return nearest ? "write " + Quoted(*nearest) : "write 'Mac' or 'Win', or leave the field empty";
}

void CheckPlatform(LintContext& context, const LintRow& row) {
  if (!row.change->HasMalformedPlatform() || context.HasFinding(row, DataColumn::kPlatform)) return;
  const std::string_view text = row.Value(DataColumn::kPlatform);
  context.ReportField(LintCode::kPlatformUnknown, row, DataColumn::kPlatform,
                      Quoted(text) + " in " + context.Column(DataColumn::kPlatform) +
                          " is not a platform, so the change is shown on every platform; " +
                          PlatformRemedy(text));
}

// ---- rating request

/// Words that authors write instead of a rating request, or instead of an empty field. None of
/// these words is a question to the user.
constexpr auto kRatingWords = std::to_array<std::string_view>(
    {"yes", "y",   "true", "x",   "1",    "on",   "ok",  "ja",  "oui", "si", "no", "n",   "false",
     "0",   "off", "nein", "non", "none", "null", "nil", "n/a", "na",  "-",  "--", "rate"});

bool IsRatingWord(std::string_view text) {
  const std::string_view word = TrimSpaces(text);
  const bool isKnown = std::ranges::any_of(
      kRatingWords, [word](std::string_view known) { return CaseInsensitiveEqual(word, known); });
  constexpr std::string_view kCheckMarkStart = "\xE2\x9C";
  if (isKnown || word.starts_with(kCheckMarkStart)) return true;
  const bool isOneWord = word.find_first_of(" ?") == word.npos;
  return isOneWord && ContainsAnyOf(Fold(word), {u"rating", u"request"});
}

void CheckRatingRequest(LintContext& context, const LintRow& row) {
  const std::string_view text = row.Value(DataColumn::kRatingRequest);
  if (text.empty() || CaseInsensitiveEqual(text, FeatureListDetail::kRequestRating)) return;
  if (context.HasFinding(row, DataColumn::kRatingRequest)) return;
  static constexpr std::size_t kLongestWord = 20;
  const bool isMisspelt = text.size() <= kLongestWord && text.find('?') == text.npos &&
                          NearestWord(text, WordsOf(DataColumn::kRatingRequest)).has_value();
  if (!isMisspelt && !IsRatingWord(text)) return;
  context.ReportField(LintCode::kRatingRequestWord, row, DataColumn::kRatingRequest,
                      "users are asked the question " + Quoted(text) +
                          "; write 'RequestRating' or a question, or leave the field empty");
}

constexpr ChangeRule kWordRules[] = {CheckKeywordColumn, CheckGroupingID, CheckStoryID,
                                     CheckSalience,      CheckUnreviewed, CheckPlatform,
                                     CheckRatingRequest};

}  // namespace

std::span<const ChangeRule> WordRules() {
  return kWordRules;
}

}  // namespace hosts::author
