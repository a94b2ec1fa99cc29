#include <algorithm>
#include <array>
#include <string>

#include <ornwhatsnew/utility/TextHelpers.h>

#include "hosts/author/lint/NearestWord.h"
#include "hosts/author/lint/Rules.h"

namespace hosts::author {
namespace {

using ornwhatsnew::CaseInsensitiveEqual;
using ornwhatsnew::DataColumn;
using ornwhatsnew::FeatureListDetail;

constexpr std::string_view kHttps = "https://";

/// Returns whether `link` contains a second link after a space, a tab, a comma, a semicolon or a
/// vertical bar. After any other character, the second link can be a parameter of the first one.
bool HasSecondLink(std::string_view link) {
  link = TrimSpaces(link);
  for (std::size_t at = link.find("http", 1); at != link.npos; at = link.find("http", at + 1)) {
    if (link.substr(at, kHttps.size()).find("://") == link.npos) continue;
    if (std::string_view(" ,;|\t").find(link[at - 1]) != std::string_view::npos) return true;
  }
  return false;
}

bool HasSpace(std::string_view link) {
  constexpr std::string_view kNoBreakSpace = "\xC2\xA0";
  return link.find_first_of(" \t") != link.npos || link.find(kNoBreakSpace) != link.npos;
}

std::string SchemeRemedy(std::string_view link) {
  const std::size_t scheme = link.find("://");
  const std::string_view name = link.substr(0, std::min(scheme, link.size()));
  if (scheme == link.npos) return "write 'https://' before it";
  if (CaseInsensitiveEqual(name, "http") || CaseInsensitiveEqual(name, "https")) {
    return "write " + Quoted(std::string(kHttps) + std::string(link.substr(scheme + 3)));
  }
  return "write a link that begins with 'https://'";
}

void CheckLink(LintContext& context, const LintRow& row) {
  const std::string_view link = row.Value(DataColumn::kURL);
  if (link.empty() || context.HasFinding(row, DataColumn::kURL)) return;
  const auto report = [&](LintCode code, const std::string& mistake) {
    context.ReportField(code, row, DataColumn::kURL,
                        Quoted(link) + " in " + context.Column(DataColumn::kURL) + mistake);
  };
  if (HasSecondLink(link)) {
    report(LintCode::kLinkTwo, " contains two links, so neither opens; keep one");
  } else if (HasSpace(link)) {
    report(LintCode::kLinkSpace, " contains a space, so it is not a valid link; delete the space");
  } else if (row.change->HasMalformedURL()) {
    report(LintCode::kLinkNotHttps,
           " does not begin with 'https://', so it is ignored; " + SchemeRemedy(link));
  }
}

/// Returns whether the item of a change is known. It is unknown if the change is unreviewed or
/// unmatched. Without a host, every change of a feature is unmatched.
bool IsPlaced(const LintRow& row) {
  return !row.IsUnmatched() && !row.change->DetailInternalOverrideUnreviewed();
}

void CheckSection(LintContext& context, const LintRow& row) {
  if (!IsPlaced(row) || !row.item->IsSection()) return;
  if (!row.change->HasMalformedURL() && !context.HasFinding(row, DataColumn::kURL)) {
    context.ReportField(LintCode::kLinkInSection, row, DataColumn::kURL,
                        "the first link of a section becomes the link of its title, and the change "
                        "gets no link; delete the link, or move the change to a feature");
  }
  if (row.change->GetRatingRequestOptional().empty()) return;
  if (context.HasFinding(row, DataColumn::kRatingRequest)) return;
  context.ReportField(LintCode::kRatingInSection, row, DataColumn::kRatingRequest,
                      "a section cannot be rated, so the rating request has no effect; delete it, "
                      "or move the change to a feature");
}

void CheckLinkInText(LintContext& context, const LintRow& row) {
  const std::string_view text = row.Value(DataColumn::kDescription);
  // Return early, because most texts contain neither "://" nor "www.". A search for "http" is
  // slower, because it stops at each "h" of the text.
  if (text.find("://") == text.npos && text.find("www.") == text.npos) return;
  static constexpr auto kStarts = std::to_array<std::string_view>({"https://", "http://", "www."});
  for (const std::string_view start : kStarts) {
    const std::size_t begin = text.find(start);
    if (begin == text.npos) continue;
    const std::size_t end = std::min(text.find_first_of(" \t\"'<>)", begin), text.size());
    context.ReportPart(
        LintCode::kLinkInText, row, DataColumn::kDescription, text.substr(begin, end - begin),
        "the link in the text cannot be opened; move it to " + context.Column(DataColumn::kURL));
    return;
  }
}

/// Returns whether a row without text can have an effect. Such a row can request a rating, change
/// the visibility of a feature, or set the link of an item.
bool HasEffect(const LintContext& context, const LintRow& row) {
  const FeatureListDetail& change = *row.change;
  if (!change.GetRatingRequestOptional().empty()) return true;
  if (change.DetailForcingItemToHiddenOverride() || change.DetailForcingItemToInternalOverride() ||
      change.DetailForcingItemToNormalVisibility()) {
    return true;
  }
  if (change.HasMalformedURL() || change.HasDuplicateURL()) return false;
  const bool isUnknown = row.IsUnmatched() && context.Host() == nullptr;
  return isUnknown || IsPlaced(row);
}

void CheckText(LintContext& context, const LintRow& row) {
  if (!row.change->GetDescription().empty() || HasEffect(context, row)) return;
  // Do not report the missing text of a row with a misspelt "Changes-Since", because a
  // Changes-Since row needs no text. `CheckGroupingID` reports the misspelling.
  if (IsMisspeltChangesSince(row.Value(DataColumn::kGroupingID))) return;
  context.ReportField(LintCode::kTextMissing, row, DataColumn::kDescription,
                      "the row has no text, so users do not see it; write the text into " +
                          context.Column(DataColumn::kDescription) + ", or delete the row");
}

constexpr ChangeRule kLinkRules[] = {CheckLink, CheckSection, CheckLinkInText, CheckText};

}  // namespace

std::span<const ChangeRule> LinkRules() {
  return kLinkRules;
}

}  // namespace hosts::author
