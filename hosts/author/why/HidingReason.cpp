#include "hosts/author/why/HidingReason.h"

#include <algorithm>
#include <cstdint>
#include <optional>

#include <orncore/config/ClientInfo.h>
#include <orncore/string/SafeText.h>

#include "hosts/author/lint/Rules.h"
#include "hosts/common/MessageText.h"

namespace hosts::author {
namespace {

using common::Quoted;
using ornwhatsnew::FeatureListDetail;
using ornwhatsnew::HidingRule;

/// Returns "A", "A and B", "A, B and C", or "A, B and 4 others".
std::string Enumerated(std::span<const std::string> words) {
  constexpr std::size_t kMaximumWords = 3;
  const std::size_t listed = words.size() > kMaximumWords ? kMaximumWords - 1 : words.size();
  std::string text;
  for (std::size_t i = 0; i < listed; ++i) {
    const bool isLast = i + 1 == words.size();
    text += (i == 0 ? "" : isLast ? " and " : ", ") + words[i];
  }
  return listed == words.size()
             ? text
             : text + " and " + std::to_string(words.size() - listed) + " others";
}

/// Returns "line 4 has the salience X", or "lines 4 and 7 have the salience X".
std::string LinesWithSalience(const ExplainedItem& item, FeatureListDetail::Salience salience,
                              const std::string& keyword) {
  std::vector<std::string> lines;
  for (std::size_t i = 0; i < item.lines.size(); ++i) {
    if (item.visibility.changes[i].change->GetSalience() == salience) {
      lines.push_back(std::to_string(item.lines[i]));
    }
  }
  return (lines.size() == 1 ? "line " : "lines ") + Enumerated(lines) +
         (lines.size() == 1 ? " has" : " have") + " the salience " + keyword;
}

std::string InternalUsersReason(const ExplainedItem& item) {
  constexpr const char* kReason = "only internal users see it";
  if (item.visibility.item->IsSection()) return kReason;
  return kReason +
         (", because " +
          LinesWithSalience(item, FeatureListDetail::Salience::kHideBetaFeatureFromExternal,
                            FeatureListDetail::kSalienceHideBetaFeatureFromExternal));
}

std::string PlatformReason(const FeatureListDetail& change) {
  const bool isMac = change.GetPlatform() == FeatureListDetail::Platform::kMac;
  const std::string host = orncore::config::GetClientPlatform();
  return "only relevant on " +
         (isMac ? FeatureListDetail::kPlatformMac : FeatureListDetail::kPlatformWin) +
         (host.empty() ? "; the platform in the host description is empty"
                       : "; this host is " + orncore::string::EscapeInvisible(host));
}

/// Returns a clause that states why the library cannot compare `version`. Returns an empty string
/// if the library can compare it.
std::string ComparisonReason(const std::string& version) {
  const std::string mistake = ComparisonMistake(version);
  return mistake.empty() ? "" : Quoted(version) + " " + mistake + ", so it cannot be compared";
}

std::string QuotedVersions(std::span<const std::string> versions) {
  std::vector<std::string> quoted(versions.size());
  std::ranges::transform(versions, quoted.begin(), Quoted);
  return Enumerated(quoted);
}

/// Checks the range of versions from `first` up to, but not including, `added`. If the range is
/// empty, or if the library cannot compare its bounds, returns a clause that states the reason.
/// Otherwise, returns an empty string.
std::string BoundsMistake(const std::string& first, const std::string& added) {
  if (added.empty()) return "it has no version in column 1, so it is relevant to no version";
  for (const std::string& version : {first, added}) {
    std::string reason = ComparisonReason(version);
    if (!reason.empty()) return reason;
  }
  if (CountVersionComponents(first) != CountVersionComponents(added)) {
    return Quoted(first) + " and " + Quoted(added) +
           " have different numbers of components, so they cannot be compared";
  }
  return VersionNumbers(first) < VersionNumbers(added)
             ? ""
             : Quoted(first) + " is not earlier than " + Quoted(added) +
                   ", so it is relevant to no version";
}

/// Returns a clause that names versions of the user that the library cannot compare with `first`
/// and `added`, and states the reason. Returns an empty string if the function finds no such
/// version. REQUIRES: `BoundsMistake(first, added)` returns an empty string.
std::string UserVersionsMistake(const std::string& first, const std::string& added,
                                std::span<const std::string> userVersions) {
  std::vector<std::string> others;
  for (const std::string& version : userVersions) {
    if (CountVersionComponents(version) != CountVersionComponents(added)) {
      others.push_back(version);
      continue;
    }
    // `VersionNumbers` returns no value if a component of the version is not a number.
    const std::optional<std::vector<std::int64_t>> numbers = VersionNumbers(version);
    const bool isInRange = numbers >= VersionNumbers(first) && numbers < VersionNumbers(added);
    // If a version of the user is in the range although the change is hidden, the library cannot
    // compare this version.
    if (!numbers || isInRange) return "the user's " + ComparisonReason(version);
  }
  if (others.empty()) return "";
  return Quoted(first) + ", " + Quoted(added) + " and the user's " + QuotedVersions(others) +
         " have different numbers of components, so they cannot be compared";
}

std::string VersionReason(const FeatureListDetail& change,
                          std::span<const std::string> userVersions) {
  const std::string& first = change.GetRelevantFirstVersionOptional();
  const std::string& added = change.GetChangeAddedVersion();
  std::string mistake = BoundsMistake(first, added);
  if (mistake.empty()) mistake = UserVersionsMistake(first, added, userVersions);
  if (!mistake.empty()) return mistake;
  return "only relevant to users of versions from " + Quoted(first) +
         " up to, but not including, " + Quoted(added) + "; this user ran " +
         QuotedVersions(userVersions);
}

/// Returns why `rule` hides the item from a display, as a clause. "It" in the clause is the item.
/// Returns an empty string for a rule that never hides an item.
std::string ItemReason(HidingRule rule, const ExplainedItem& item) {
  switch (rule) {
    case HidingRule::kTerminating:
      return "the application is terminating, so nothing can be rated";
    case HidingRule::kUsageLoggingOff:
      return "usage logging is off, so nothing can be rated";
    case HidingRule::kUnavailable:
      return "it is off, and the user cannot switch it on";
    case HidingRule::kInternalUsersOnly:
      return InternalUsersReason(item);
    case HidingRule::kHideBetaFeature:
      return LinesWithSalience(item, FeatureListDetail::Salience::kHideBetaFeature,
                               FeatureListDetail::kSalienceHideBetaFeature);
    case HidingRule::kInternalVisibility:
      return "its visibility is 1, and no change has the salience UnhideBetaFeature";
    case HidingRule::kNoShownChange:
      return "none of its changes is shown";
    case HidingRule::kSectionInRatingView:
      return "only features can be rated";
    case HidingRule::kRated:
      return "rated already";
    case HidingRule::kNotSeen:
      return "not seen yet, so it cannot be rated";
    case HidingRule::kSeen:
      return "seen already";
    case HidingRule::kOtherPlatform:
    case HidingRule::kHeadlinesOnly:
    case HidingRule::kOtherVersion:
    case HidingRule::kNoRatingRequest:
    case HidingRule::kNoText:
      break;
  }
  return {};
}

/// Returns why `rule` hides the change from a display, as a clause. "It" in the clause is the
/// change. Returns an empty string for a rule that never hides a change.
std::string ChangeReason(HidingRule rule, const FeatureListDetail& change,
                         std::span<const std::string> userVersions) {
  switch (rule) {
    case HidingRule::kOtherPlatform:
      return PlatformReason(change);
    case HidingRule::kHeadlinesOnly:
      return "--headlines shows only changes with a malformed salience";
    case HidingRule::kOtherVersion:
      return VersionReason(change, userVersions);
    case HidingRule::kNoRatingRequest:
      return "it requests no rating";
    case HidingRule::kNotSeen:
      return "not seen yet, so it cannot be rated";
    case HidingRule::kSeen:
      return "seen already";
    case HidingRule::kNoText:
      return change.GetRatingRequestOptional().empty()
                 ? "it has no text"
                 : "it has no text, and only the rating view shows a rating request without text";
    case HidingRule::kTerminating:
    case HidingRule::kUsageLoggingOff:
    case HidingRule::kUnavailable:
    case HidingRule::kInternalUsersOnly:
    case HidingRule::kHideBetaFeature:
    case HidingRule::kInternalVisibility:
    case HidingRule::kNoShownChange:
    case HidingRule::kSectionInRatingView:
    case HidingRule::kRated:
      break;
  }
  return {};
}

/// Returns whether `rule` hides an item only if none of its changes is shown. In this case, there
/// is a separate reason for each change.
bool FollowsFromChanges(HidingRule rule) {
  return rule == HidingRule::kNoShownChange || rule == HidingRule::kSeen;
}

}  // namespace

std::string Noun(const ExplainedItem& item) {
  return item.visibility.item->IsSection() ? "section" : "feature";
}

std::string PlacementReason(const FeatureListDetail& change) {
  if (change.DetailInternalOverrideUnreviewed()) return "its salience is Unreviewed";
  return change.DetailInternalCouldNotMatchBetaFeature() ? "its IDs match no feature or section"
                                                         : "";
}

std::vector<std::string> ItemReasons(const ExplainedItem& item) {
  std::vector<std::string> reasons;
  for (const HidingRule rule : item.visibility.hidingRules) {
    reasons.push_back(ItemReason(rule, item));
  }
  return reasons;
}

std::vector<std::string> ItemReasonsForChanges(const ExplainedItem& item) {
  std::vector<std::string> reasons;
  for (const HidingRule rule : item.visibility.hidingRules) {
    if (!FollowsFromChanges(rule)) reasons.push_back(ItemReason(rule, item));
  }
  return reasons;
}

std::vector<std::string> ChangeReasons(const ExplainedItem& item, std::size_t index,
                                       std::span<const std::string> userVersions) {
  const ornwhatsnew::ChangeVisibility& change = item.visibility.changes[index];
  std::vector<std::string> reasons;
  for (const HidingRule rule : change.hidingRules) {
    reasons.push_back(ChangeReason(rule, *change.change, userVersions));
  }
  return reasons;
}

}  // namespace hosts::author
