#include <algorithm>
#include <cstdint>
#include <optional>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include <orncore/string/Conversion.h>
#include <ornwhatsnew/VisibilityExplanation.h>
#include <ornwhatsnew/WhatsNewTypes.h>
#include <ornwhatsnew/utility/TextHelpers.h>

#include "hosts/author/lint/Rules.h"

namespace hosts::author {
namespace {

using ornwhatsnew::DataColumn;
using ornwhatsnew::FeatureListItem;
using ornwhatsnew::HidingRule;

/// The maximum number of related places of a finding. Without a limit, the JSON output of a finding
/// on a feature with many changes would need too much memory.
constexpr std::size_t kMaximumRelated = 50;

std::string LineList(const std::vector<RelatedPlace>& places) {
  constexpr std::size_t kMaximumLines = 10;
  std::string text = places.size() == 1 ? "line " : "lines ";
  for (std::size_t i = 0; i < std::min(places.size(), kMaximumLines); ++i) {
    if (i > 0) text += ", ";
    text += std::to_string(places[i].line);
  }
  return places.size() > kMaximumLines ? text + " and others" : text;
}

// ---- identities and keys

void CheckIdentities(LintContext& context) {
  std::unordered_map<ornwhatsnew::Guid, const LintRow*> rows;
  rows.reserve(context.File().ChangeCount());
  for (const LintRow& row : context.File().Rows()) {
    const bool hasText = !row.Value(DataColumn::kDescription).empty();
    if (row.change == nullptr || row.isExplained || !hasText) continue;
    const auto [found, isNew] = rows.try_emplace(row.identity, &row);
    if (isNew) continue;
    Finding& finding = context.ReportRow(LintCode::kSameIdentity, row,
                                         "the change has the same identity as the change on line " +
                                             std::to_string(found->second->data.lineNumber) +
                                             ", so users see it twice; delete one of the rows");
    finding.related.push_back(context.Related(*found->second, "the first row"));
  }
}

void CheckDefaults(LintContext& context) {
  std::unordered_map<std::string_view, const LintRow*> rows;
  for (const LintRow& row : context.File().Rows()) {
    const std::string_view text = row.Value(DataColumn::kDescription);
    if (row.change == nullptr || row.isExplained || !ornwhatsnew::IsZString(text)) continue;
    const std::size_t end = text.find('=');
    if (end == text.npos) continue;
    const auto [found, isNew] = rows.try_emplace(text.substr(0, end), &row);
    if (isNew || found->second->Value(DataColumn::kDescription) == text) continue;
    Finding& finding = context.ReportField(
        LintCode::kKeyTwoDefaults, row, DataColumn::kDescription,
        "the key " + Quoted(found->first) + " has a different default text on line " +
            std::to_string(found->second->data.lineNumber) +
            ", but a translation replaces both; use another key");
    finding.related.push_back(context.Related(*found->second, "the other default text"));
  }
}

// ---- visibility

void ReportHidden(LintContext& context, const LintRows& rows) {
  const auto hiding = std::ranges::find_if(
      rows, [](const LintRow* row) { return row->change->DetailForcingItemToHiddenOverride(); });
  std::vector<RelatedPlace> others;
  for (const LintRow* const row : rows) {
    if (others.size() == kMaximumRelated) break;
    if (row != *hiding) others.push_back(context.Related(*row, "this change is hidden"));
  }
  if (others.empty()) return;
  Finding& finding = context.ReportField(
      LintCode::kFeatureHidden, **hiding, DataColumn::kSalience,
      "the salience hides the whole feature, so nobody sees its other changes (" +
          LineList(others) + "); delete the salience, or these changes");
  finding.related = std::move(others);
}

void ReportUnseen(LintContext& context, const LintRows& rows, bool isOff) {
  const LintRow& row = *rows.front();
  const std::string reason =
      isOff ? " is off and users cannot switch it on, so nobody sees its " +
                  Counted(rows.size(), "change") + "; switch it on in the host"
            : " has the visibility 1, so nobody sees its " + Counted(rows.size(), "change") +
                  "; write 'UnhideBetaFeature' into " + context.Column(DataColumn::kSalience);
  Finding& finding =
      context.ReportRow(LintCode::kFeatureUnseen, row,
                        "the feature " + Quoted(row.item->FeatureJiraIDKey()) + reason);
  for (std::size_t i = 1; i < std::min(rows.size(), kMaximumRelated + 1); ++i) {
    finding.related.push_back(context.Related(*rows[i], "nobody sees this change"));
  }
}

/// Returns whether the item is a feature that has changes, but that a display without options does
/// not show.
bool IsUnseenFeature(const FeatureListItem& item) {
  return !item.IsSection() && !item.GetAllChanges().empty() &&
         !item.ShouldShowItemToUser({}, {}, {});
}

void CheckVisibility(LintContext& context) {
  const auto isUnseen = [](const auto& entry) { return IsUnseenFeature(*entry.second); };
  // Return early if every feature with changes is shown, because `ExplainVisibility` allocates
  // memory for each change.
  if (std::ranges::none_of(context.File().Items(), isUnseen)) return;
  const RowsByKey changes = context.File().ChangesByKey();
  for (const ornwhatsnew::ItemVisibility& explained : context.File().ExplainVisibility()) {
    const auto rows = changes.find(explained.item->FeatureJiraIDKey());
    if (rows == changes.end() || explained.item->IsSection()) continue;
    const auto hasRule = [&rules = explained.hidingRules](HidingRule rule) {
      return std::ranges::find(rules, rule) != rules.end();
    };
    const bool isOff = hasRule(HidingRule::kUnavailable);
    if (hasRule(HidingRule::kHideBetaFeature)) {
      ReportHidden(context, rows->second);
    } else if (isOff || hasRule(HidingRule::kInternalVisibility)) {
      ReportUnseen(context, rows->second, isOff);
    }
  }
}

// ---- links

void CheckLaterLinks(LintContext& context) {
  std::unordered_map<const FeatureListItem*, LintRows> later;
  LintRows firstRows;
  for (const LintRow& row : context.File().Rows()) {
    if (row.change == nullptr || row.item->IsSection() || !row.change->HasDuplicateURL()) continue;
    LintRows& rows = later[row.item];
    if (rows.empty()) firstRows.push_back(&row);
    rows.push_back(&row);
  }
  // Report the features in file order, so that every run lists the same findings.
  for (const LintRow* const first : firstRows) {
    const LintRows& rows = later[first->item];
    std::vector<RelatedPlace> places;
    for (const LintRow* const row : rows) {
      if (places.size() == kMaximumRelated) break;
      places.push_back(context.Related(*row, "this link is ignored"));
    }
    Finding& finding =
        context.ReportField(LintCode::kLinkLater, *first, DataColumn::kURL,
                            "the feature " + Quoted(first->item->FeatureJiraIDKey()) +
                                " already has a link, so later links are ignored (" +
                                LineList(places) + "); delete these links");
    finding.related = std::move(places);
  }
}

// ---- missing changes

// Reports a file without changes. If another finding is an error, reports nothing, because the file
// may contain changes that the library cannot read.
void CheckNoChange(LintContext& context) {
  const auto isError = [](const Finding& finding) { return finding.severity == Severity::kError; };
  if (context.File().ChangeCount() > 0 || std::ranges::any_of(context.Findings(), isError)) return;
  context.ReportFile(
      LintCode::kNoChange,
      "the file contains no changes, so users see none; add changes below the header");
}

void CheckFeaturesWithoutChange(LintContext& context) {
  if (context.File().ChangeCount() == 0) return;
  constexpr std::size_t kMaximumKeys = 10;
  std::vector<std::string> keys;
  for (const auto& [key, item] : context.File().Items()) {
    if (!item->IsSection() && item->GetAllChanges().empty()) keys.push_back(key);
  }
  if (keys.empty()) return;
  std::ranges::sort(keys);
  std::string list;
  for (std::size_t i = 0; i < std::min(keys.size(), kMaximumKeys); ++i) {
    list += (i > 0 ? ", " : "") + Quoted(keys[i]);
  }
  if (keys.size() > kMaximumKeys) list += " and others";
  context.ReportFile(LintCode::kFeatureWithoutChange,
                     Counted(keys.size(), "feature") + " without a change: " + list);
}

// ---- the version of the host

/// Returns whether `version` is later than `running`. A missing component counts as 0. Returns
/// false if a component of `version` is not a number.
bool IsAbove(std::string_view version, std::vector<std::int64_t> running) {
  const std::optional<std::vector<std::int64_t>> numbers = VersionNumbers(version);
  if (!numbers) return false;
  // `numbers` needs no additional zeros, because a shorter vector is less than a longer vector that
  // begins with it.
  running.resize(std::max(running.size(), numbers->size()));
  return *numbers > running;
}

void CheckVersionAbove(LintContext& context, const std::string& running) {
  const std::optional<std::vector<std::int64_t>> numbers = VersionNumbers(running);
  if (!numbers) return;
  std::unordered_set<std::string_view> checked;
  for (const LintRow& row : context.File().Rows()) {
    const std::string_view version = row.Value(DataColumn::kVersion);
    if (row.change == nullptr || row.isExplained) continue;
    if (!checked.insert(version).second || !IsAbove(version, *numbers)) continue;
    context.ReportField(LintCode::kVersionAboveHost, row, DataColumn::kVersion,
                        Quoted(version) + " is later than the host's version " + Quoted(running));
  }
}

/// Reports once that the full version of the host cannot be compared with the bounds of a change.
void CheckBoundsOfHost(LintContext& context, const std::string& running) {
  const std::string mistake = ComparisonMistake(running);
  const std::size_t components = CountVersionComponents(running);
  for (const LintRow& row : context.File().Rows()) {
    const std::string_view first = row.Value(DataColumn::kFirstVersion);
    const std::string_view version = row.Value(DataColumn::kVersion);
    if (row.change == nullptr || row.isExplained || first.empty() || version.empty()) continue;
    const std::size_t own = CountVersionComponents(first);
    if (own != CountVersionComponents(version) || (mistake.empty() && own == components)) continue;
    context.ReportField(
        LintCode::kBoundsHost, row, DataColumn::kFirstVersion,
        mistake.empty() ? "the host's full version " + Quoted(running) + " and " + Quoted(first) +
                              " have different numbers of components, so the wrong users see "
                              "the change; write as many components as the full version has"
                        : "the host's full version " + Quoted(running) + " " + mistake +
                              ", so the wrong users see the change; leave the field empty");
    return;
  }
}

void CheckHostVersion(LintContext& context) {
  if (context.Host() == nullptr) return;
  const std::string running = orncore::string::UTF16to8(ornwhatsnew::GetFullClientVersionString());
  CheckVersionAbove(context, running);
  CheckBoundsOfHost(context, running);
}

constexpr FileRule kListRules[] = {CheckIdentities, CheckDefaults, CheckVisibility,
                                   CheckLaterLinks, CheckNoChange, CheckFeaturesWithoutChange,
                                   CheckHostVersion};

}  // namespace

std::span<const FileRule> ListRules() {
  return kListRules;
}

}  // namespace hosts::author
