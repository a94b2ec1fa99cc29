#include "hosts/author/why/HidingReason.h"

#include <algorithm>

#include <orncore/config/ClientInfo.h>
#include <orncore/string/SafeText.h>

#include "hosts/author/lint/LintContext.h"

namespace hosts::author {
namespace {

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
         (host.empty() ? "; this host has no platform"
                       : "; this host is " + orncore::string::EscapeInvisible(host));
}

std::string VersionReason(const FeatureListDetail& change,
                          std::span<const std::string> userVersions) {
  std::vector<std::string> quoted(userVersions.size());
  std::ranges::transform(userVersions, quoted.begin(), Quoted);
  return "only relevant to users of a version from " +
         Quoted(change.GetRelevantFirstVersionOptional()) + " to below " +
         Quoted(change.GetChangeAddedVersion()) + "; this user ran " + Enumerated(quoted);
}

/// Returns why a display hides the item. "It" is the item.
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
    case HidingRule::kSectionInRatingView:
      return "only features can be rated";
    case HidingRule::kNoShownChange:
      return "none of its changes is shown";
    case HidingRule::kRated:
      return "rated already";
    case HidingRule::kNotSeen:
      return "not seen yet, so it cannot be rated";
    default:
      return "seen already";
  }
}

/// Returns why a display hides the change. "It" is the change.
std::string ChangeReason(HidingRule rule, const FeatureListDetail& change,
                         std::span<const std::string> userVersions) {
  switch (rule) {
    case HidingRule::kOtherPlatform:
      return PlatformReason(change);
    case HidingRule::kHeadlinesOnly:
      return "its salience is not malformed, and --headlines shows only malformed ones";
    case HidingRule::kOtherVersion:
      return VersionReason(change, userVersions);
    case HidingRule::kNoRatingRequest:
      return "it requests no rating";
    case HidingRule::kNotSeen:
      return "not seen yet, so it cannot be rated";
    case HidingRule::kNoText:
      return change.GetRatingRequestOptional().empty() ? "it has no text"
                                                       : "it requests a rating, but has no text";
    default:
      return "seen already";
  }
}

/// Returns whether an item that this rule hides has no shown change, so that each of its changes
/// has a reason of its own.
bool FollowsFromChanges(HidingRule rule) {
  return rule == HidingRule::kNoShownChange || rule == HidingRule::kSeen;
}

}  // namespace

std::string Noun(const ExplainedItem& item) {
  return item.visibility.item->IsSection() ? "section" : "feature";
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
