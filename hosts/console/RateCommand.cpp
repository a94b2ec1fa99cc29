#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include <ornwhatsnew/FeatureListItem.h>
#include <ornwhatsnew/utility/TextHelpers.h>

#include "hosts/common/StateStore.h"
#include "hosts/console/Commands.h"
#include "hosts/console/StandardStreams.h"
#include "hosts/console/TerminalText.h"
#include "hosts/console/WhatsNewLoading.h"

namespace hosts::console {
namespace {

bool AsksForRating(const ornwhatsnew::FeatureListData& list, const std::string& key) {
  const auto found = list.GetFeatureItems().find(key);
  if (found == list.GetFeatureItems().end() || found->second == nullptr) return false;
  return std::ranges::any_of(found->second->GetAllChanges(), [](const auto& change) {
    return !change->GetRatingRequestOptional().empty();
  });
}

/// The keys of the features that this user is shown and that ask for a rating, rated or not, so
/// that rating twice is no mistake. `list` must not remember the display pass that finds them out.
std::vector<std::string> KeysToRate(ornwhatsnew::FeatureListData& list) {
  std::vector<std::string> keys;
  if (ornwhatsnew::FeatureListItem::AnalyticsDisabled()) return keys;
  const auto ratingItems = std::make_shared<ornwhatsnew::RatingMap>();
  ornwhatsnew::StyleRunMap runs;
  list.GetFormattedTextForDisplay({}, {}, runs, ratingItems);
  for (const auto& [key, item] : *ratingItems) {
    if (!ornwhatsnew::IsSpecialCaseSection(key) && AsksForRating(list, key)) keys.push_back(key);
  }
  std::ranges::sort(keys);
  return keys;
}

std::string WhyNothingCanBeRated() {
  return ornwhatsnew::FeatureListItem::AnalyticsDisabled()
             ? "Usage logging is off, so nothing can be rated: the host description's member "
               "'usageLogging' says so."
             : "No feature asks for a rating.";
}

[[noreturn]] void RefuseKey(const std::string& key, const std::vector<std::string>& keys) {
  std::string known;
  for (const std::string& candidate : keys) known += (known.empty() ? "" : ", ") + candidate;
  throw ToolError(
      ExitStatus::kUnknownKey,
      "There is no feature '" + key + "' to rate. " +
          (keys.empty() ? WhyNothingCanBeRated() : "These can be rated: " + known + "."));
}

}  // namespace

ExitStatus Run(const RateArguments& arguments) {
  InstallHostFile(arguments.sources.host);
  common::StateStore store(StateLocation(arguments.sources.state));
  const auto ignore = [](const ornwhatsnew::UTF8String&, const ornwhatsnew::UTF8String&) {};
  const std::vector<std::string> keys =
      KeysToRate(*LoadWhatsNew(arguments.sources.data, store.Getter(), ignore));
  if (!std::ranges::binary_search(keys, arguments.key)) RefuseKey(arguments.key, keys);
  LoadWhatsNew(arguments.sources.data, store.Getter(), store.Setter())
      ->MarkItemHasBeenRated(arguments.key);
  store.Commit();
  const std::string outcome =
      "Your rating of " + SafeForTerminal(arguments.key, Whitespace::kShow) + " is remembered.";
  WriteOutput("Thank you. " + outcome + "\n", outcome);
  return ExitStatus::kDone;
}

}  // namespace hosts::console
