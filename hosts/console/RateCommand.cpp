#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include <orncore/appstatemanager/AppStateManager.h>
#include <orncore/string/SafeText.h>
#include <ornwhatsnew/FeatureListItem.h>
#include <ornwhatsnew/VisibilityExplanation.h>

#include "hosts/common/StandardStreams.h"
#include "hosts/common/StateStore.h"
#include "hosts/console/Commands.h"
#include "hosts/console/WhatsNewLoading.h"

namespace hosts::console {
namespace {

using ornwhatsnew::HidingRule;

/// Returns whether the hiding rule `rule` depends on what the user has seen or rated, or on whether
/// a change of the item is shown.
bool DependsOnStateOrChanges(HidingRule rule) {
  return rule == HidingRule::kRated || rule == HidingRule::kNotSeen ||
         rule == HidingRule::kNoShownChange;
}

/// Returns whether the user can rate the item: the rating view can show it, and one of its changes
/// requests a rating. The user need not have seen the item yet. Returns true for a rated item, too,
/// because rating an item twice is not an error.
bool CanBeRated(const ornwhatsnew::ItemVisibility& item) {
  return std::ranges::all_of(item.hidingRules, DependsOnStateOrChanges) &&
         std::ranges::any_of(item.changes, [](const ornwhatsnew::ChangeVisibility& change) {
           return std::ranges::count(change.hidingRules, HidingRule::kNoRatingRequest) == 0;
         });
}

std::vector<std::string> KeysToRate(const ornwhatsnew::FeatureListData& list) {
  std::vector<std::string> keys;
  for (const auto& item : list.ExplainVisibility(ornwhatsnew::kRatingView)) {
    if (CanBeRated(item)) keys.push_back(item.item->FeatureJiraIDKey());
  }
  std::ranges::sort(keys);
  return keys;
}

[[noreturn]] void FailUnknownKey(const std::string& key, const std::vector<std::string>& keys) {
  std::string reason;
  if (orncore::appstatemanager::IsTerminating()) {
    reason = "the application is terminating, so nothing can be rated";
  } else if (ornwhatsnew::FeatureListItem::AnalyticsDisabled()) {
    reason = "usage logging is off in the host description, so nothing can be rated";
  } else if (keys.empty()) {
    reason = "no visible feature requests a rating";
  } else {
    for (const std::string& known : keys) {
      reason += (reason.empty() ? "these features can be rated: " : ", ") + known;
    }
  }
  throw ToolError(ExitStatus::kUnknownKey, "cannot rate '" + key + "': " + reason);
}

}  // namespace

ExitStatus Run(const RateArguments& arguments) {
  InstallHostFile(arguments.sources.host);
  common::StateStore store(common::StateLocation(arguments.sources.state));
  const std::shared_ptr<ornwhatsnew::FeatureListData> list =
      LoadWhatsNew(arguments.sources.data, store.Getter(), store.Setter());
  const std::vector<std::string> keys = KeysToRate(*list);
  if (!std::ranges::binary_search(keys, arguments.key)) FailUnknownKey(arguments.key, keys);
  list->MarkItemHasBeenRated(arguments.key);
  store.Commit();
  const std::string key = orncore::string::EscapeInvisible(arguments.key);
  common::WriteOutput("Thank you. Your rating of " + key + " was stored.\n",
                      "your rating of " + key + " was stored");
  return ExitStatus::kDone;
}

}  // namespace hosts::console
