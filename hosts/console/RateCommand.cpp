#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include <orncore/string/SafeText.h>
#include <ornwhatsnew/FeatureListItem.h>
#include <ornwhatsnew/utility/TextHelpers.h>

#include "hosts/common/StateStore.h"
#include "hosts/console/Commands.h"
#include "hosts/console/StandardStreams.h"
#include "hosts/console/WhatsNewLoading.h"

namespace hosts::console {
namespace {

using ornwhatsnew::FeatureListItem;

/// Returns whether the user can rate `item`: it is a feature, the panel shows it, and one of its
/// changes requests a rating. Returns true for a feature that is already rated, because rating it
/// twice is not an error. Passes no display options to `ShouldShowItemToUser`, so that the result
/// does not depend on the state.
bool CanBeRated(const FeatureListItem& item) {
  return !ornwhatsnew::IsSpecialCaseSection(item.FeatureJiraIDKey()) &&
         std::ranges::any_of(
             item.GetAllChanges(),
             [](const auto& change) { return !change->GetRatingRequestOptional().empty(); }) &&
         item.ShouldShowItemToUser({}, {}, {});
}

std::vector<std::string> KeysToRate(const ornwhatsnew::FeatureListData& list) {
  std::vector<std::string> keys;
  if (FeatureListItem::AnalyticsDisabled()) return keys;
  for (const auto& [key, item] : list.GetFeatureItems()) {
    if (item != nullptr && CanBeRated(*item)) keys.push_back(key);
  }
  std::ranges::sort(keys);
  return keys;
}

[[noreturn]] void FailUnknownKey(const std::string& key, const std::vector<std::string>& keys) {
  std::string reason;
  if (FeatureListItem::AnalyticsDisabled()) {
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
  common::StateStore store(StateLocation(arguments.sources.state));
  const std::shared_ptr<ornwhatsnew::FeatureListData> list =
      LoadWhatsNew(arguments.sources.data, store.Getter(), store.Setter());
  const std::vector<std::string> keys = KeysToRate(*list);
  if (!std::ranges::binary_search(keys, arguments.key)) FailUnknownKey(arguments.key, keys);
  list->MarkItemHasBeenRated(arguments.key);
  store.Commit();
  const std::string key = orncore::string::EscapeInvisible(arguments.key);
  WriteOutput("Thank you. Your rating of " + key + " was stored.\n",
              "your rating of " + key + " was stored");
  return ExitStatus::kDone;
}

}  // namespace hosts::console
