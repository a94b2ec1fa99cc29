#include "tests/support/PlainRecords.h"

#include <algorithm>
#include <utility>

#include <ornappsupport/analytics/SDMUsageLogger.h>
#include <ornappsupport/feature/FeatureService.h>
#include <orncore/appstatemanager/AppStateManager.h>
#include <orncore/config/ClientInfo.h>
#include <orncore/debug/DebugDatabase.h>

#include "tests/support/PlainText.h"

namespace test_support {

using orncore::utility::Guid;

namespace feature = ornappsupport::feature;

namespace {

void AppendBytes(const Guid& guid, std::string& bytes) {
  for (const std::uint8_t byte : guid.GuidToBytes()) bytes += static_cast<char>(byte);
}

bool RanRelevantVersion(const PlainChange& change, const PlainVersions& versions) {
  const std::int64_t first = PlainVersionNumber(change.firstVersion);
  const std::int64_t added = PlainVersionNumber(change.versionAdded);
  return std::ranges::any_of(versions, [&](const std::string& version) {
    return first <= PlainVersionNumber(version) && PlainVersionNumber(version) < added;
  });
}

}  // namespace

bool PlainChange::HasMalformedPlatform() const {
  if (platform.empty()) return false;
  return !PlainEqualIgnoringCase(platform, "Mac") && !PlainEqualIgnoringCase(platform, "Win");
}

bool PlainChange::HasMalformedSalience() const {
  if (salience.empty()) return false;
  for (const char* keyword :
       {"Headline", "Detail", "HideBetaFeature", "HideBetaFeatureFromExternal", "Unreviewed",
        "RatingHidesBetaFeatureDescription"}) {
    if (PlainEqualIgnoringCase(salience, keyword)) return false;
  }
  return true;
}

bool PlainChange::HasMalformedURL() const {
  return url.substr(0, 8) != "https://";
}

Guid PlainChange::Seen() const {
  std::string bytes = "FeatureChangeList";
  for (const std::string* text : {&description, &versionAdded, &epic, &story, &salience,
                                  &firstVersion, &platform, &url, &sha}) {
    bytes += PlainHashablePortion(*text);
  }
  return PlainHash(bytes);
}

Guid PlainChange::Rated() const {
  return PlainHash("FeatureChangeRatedList" + PlainHashablePortion(ratingRequest));
}

bool PlainChange::IsShown(unsigned options, const PlainGuids& seen,
                          const PlainVersions& versions) const {
  if ((options & kPlatformBit) != 0 && !platform.empty() && !HasMalformedPlatform()) {
    if (!PlainEqualIgnoringCase(platform, orncore::config::GetClientPlatform())) return false;
  }
  if ((options & kHeadlinesBit) != 0 && !HasMalformedSalience()) {
    if (!salience.empty()) return false;
    if (!PlainEqualIgnoringCase(salience, "Headline")) return false;
  }
  if ((options & kVersionBit) != 0 && !firstVersion.empty()) {
    if (versions.empty()) return false;
    if (!RanRelevantVersion(*this, versions)) return false;
  }
  if ((options & kOnlyNewBit) != 0 && (options & kRatingBit) == 0) {
    if (seen.contains(Seen())) return false;
    if (!ratingRequest.empty() && description.empty()) return false;
  }
  if ((options & kRatingBit) != 0) {
    if (ratingRequest.empty()) return false;
    if (!seen.contains(Seen()) && !description.empty()) return false;
  }
  return !description.empty() || (options & kRatingBit) != 0;
}

void PlainItem::Add(PlainChange change) {
  if (!PlainIsSection(groupingKey) &&
      PlainEqualIgnoringCase(change.salience, "HideBetaFeatureFromExternal")) {
    internalOverride = true;
  }
  if (!change.url.empty() && !viewMoreURL.empty()) {
    change.duplicateURL = true;
  } else if (!change.HasMalformedURL()) {
    viewMoreURL = change.url;
  }
  changes.push_back(std::move(change));
}

Guid PlainItem::Seen() const {
  std::string bytes = "FeatureItemSeenList" + groupingKey + internalKey +
                      PlainHashablePortion(name) + PlainHashablePortion(description) +
                      PlainHashablePortion(viewMoreURL);
  for (const PlainChange& change : changes) {
    if (!change.description.empty()) AppendBytes(change.Seen(), bytes);
  }
  return PlainHash(bytes);
}

Guid PlainItem::Rated() const {
  std::string bytes = "FeatureItemRatedList" + internalKey;
  for (const PlainChange& change : changes) {
    if (!change.ratingRequest.empty()) AppendBytes(change.Rated(), bytes);
  }
  return PlainHash(bytes);
}

bool PlainItem::IsShown(unsigned options, const PlainGuids& seen,
                        const PlainVersions& versions) const {
  const bool rating = (options & kRatingBit) != 0;
  if (rating && orncore::appstatemanager::IsTerminating()) return false;
  if (rating && PlainAnalyticsDisabled()) return false;

  const bool special = PlainIsSection(groupingKey);
  if (!special && !feature::IsFeatureEnabled(internalKey.c_str()) &&
      !feature::IsAvailableForUserEnablement(internalKey.c_str()) && !PlainShowsAllOffFeatures()) {
    return false;
  }
  if ((PlainIsInternalSection(groupingKey) || internalOverride) &&
      !feature::IsEntitlementSetToInternalFeaturesAllowed()) {
    return false;
  }
  if (special && changes.empty()) return false;

  bool hiddenByVisibility = visibility == 1;
  bool anyShown = false;
  for (const PlainChange& change : changes) {
    if (!special && PlainEqualIgnoringCase(change.salience, "HideBetaFeature")) return false;
    if (PlainEqualIgnoringCase(change.salience, "UnhideBetaFeature")) hiddenByVisibility = false;
    if (change.IsShown(options, seen, versions)) anyShown = true;
  }
  if (hiddenByVisibility) return false;
  if (special && !anyShown) return false;
  if (rating) {
    if (special) return false;
    if (seen.contains(Rated())) return false;
    return seen.contains(Seen()) && anyShown;
  }
  if ((options & kOnlyNewBit) != 0) return !seen.contains(Seen()) || anyShown;
  return true;
}

bool PlainAnalyticsDisabled() {
  if (ornappsupport::analytics::SDMUsageLogger::IsLogging()) return false;
  return !feature::IsEntitlementSetToInternalFeaturesAllowed();
}

bool PlainShowsAllOffFeatures() {
  return feature::IsEntitlementSetToInternalFeaturesAllowed() &&
         orncore::debug::DebugDatabase::Instance().GetEntry(
             "ornappsupport.betafeature.SimulateShowingAllOffFeaturesInWhatsNew") == "true";
}

PlainChange PlainCopy(const ornwhatsnew::FeatureListDetail& change) {
  return {.description = change.GetDescription(),
          .versionAdded = change.GetChangeAddedVersion(),
          .epic = change.GetJIRAEpicID(),
          .story = change.GetJIRAStoryBugTaskID(),
          .salience = change.GetSalienceOptional(),
          .firstVersion = change.GetRelevantFirstVersionOptional(),
          .platform = change.GetRelevantPlatformOptional(),
          .ratingRequest = change.GetRatingRequestOptional(),
          .url = change.GetViewMoreURLOptional(),
          .sha = change.GetSHAOptional(),
          .duplicateURL = change.HasDuplicateURL(),
          .unmatched = change.DetailInternalCouldNotMatchBetaFeature()};
}

PlainItem PlainCopy(const ornwhatsnew::FeatureListItem& item) {
  PlainItem copy{.groupingKey = item.GetFeatureJiraIDKey(),
                 .internalKey = item.GetBetaFeatureInternalKey(),
                 .internalOverride = item.IsItemInternalOverride(),
                 .visibility = static_cast<std::int32_t>(item.GetVisibility()),
                 .name = item.GetFeatureName(),
                 .description = item.GetFeatureDescription(),
                 .viewMoreURL = item.GetFeatureViewMoreURL()};
  for (const auto& change : item.GetAllChanges()) copy.changes.push_back(PlainCopy(*change));
  return copy;
}

}  // namespace test_support
