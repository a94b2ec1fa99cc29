#include <ornwhatsnew/FeatureListDetail.h>

#include <algorithm>
#include <array>

#include <ornwhatsnew/utility/TextHelpers.h>

#include "ornwhatsnew/src/rules/IdentityMixing.h"
#include "ornwhatsnew/src/rules/Keywords.h"
#include "ornwhatsnew/src/rules/VisibilityRules.h"

namespace ornwhatsnew {
namespace {

constexpr std::string_view kChangeSeenTag = "FeatureChangeList";
constexpr std::string_view kChangeRatedTag = "FeatureChangeRatedList";
constexpr std::string_view kWellFormedURLPrefix = "https://";

}  // namespace

const std::string FeatureListDetail::kKeyDescription{kFieldKeys[kDescription]};
const std::string FeatureListDetail::kKeyJIRAEpicID{kFieldKeys[kEpicID]};
const std::string FeatureListDetail::kKeyJIRAStoryBugTaskID{kFieldKeys[kStoryBugTaskID]};
const std::string FeatureListDetail::kKeyVersionAdded{kFieldKeys[kVersionAdded]};
const std::string FeatureListDetail::kKeySalienceOptional{kFieldKeys[kSalience]};
const std::string FeatureListDetail::kKeyRelevantFirstVersionOptional{kFieldKeys[kFirstVersion]};
const std::string FeatureListDetail::kKeyRelevantPlatformOptional{kFieldKeys[kPlatform]};
const std::string FeatureListDetail::kKeyRequestFeedbackOptional{kFieldKeys[kRatingRequest]};
const std::string FeatureListDetail::kKeyViewMoreURL{kFieldKeys[kViewMoreURL]};
const std::string FeatureListDetail::kKeySHANum{kFieldKeys[kSHA]};

const UTF8String FeatureListDetail::kSalienceHeadline{keywords::kHeadline};
const UTF8String FeatureListDetail::kSalienceDetail{keywords::kDetail};
const UTF8String FeatureListDetail::kSalienceHideBetaFeature{keywords::kHideBetaFeature};
const UTF8String FeatureListDetail::kSalienceHideBetaFeatureFromExternal{
    keywords::kHideBetaFeatureFromExternal};
const UTF8String FeatureListDetail::kSalienceUnhideBetaFeature{keywords::kUnhideBetaFeature};
const UTF8String FeatureListDetail::kSalienceUnreviewed{keywords::kUnreviewed};
const UTF8String FeatureListDetail::kSalienceRatingHideBetaFeatureDescription{
    keywords::kRatingHidesBetaFeatureDescription};
const UTF8String FeatureListDetail::kRequestRating{keywords::kRequestRating};
const UTF8String FeatureListDetail::kPlatformWin{keywords::kWin};
const UTF8String FeatureListDetail::kPlatformMac{keywords::kMac};

FeatureListDetail::FeatureListDetail(
    const UTF8String& description, const UTF8String& versionAdded, const UTF8String& jiraEpicID,
    const UTF8String& jiraStoryBugTaskID, const UTF8String& salience,
    const UTF8String& relevantFirstVersion, const UTF8String& relevantPlatform,
    const UTF8String& ratingRequest, const UTF8String& viewMoreURL, const UTF8String& sha)
    : FeatureListDetail(Fields{description, versionAdded, jiraEpicID, jiraStoryBugTaskID, salience,
                               relevantFirstVersion, relevantPlatform, ratingRequest, viewMoreURL,
                               sha}) {}

FeatureListDetail::FeatureListDetail(const Fields& fields) : fields_(fields) {}

bool FeatureListDetail::DetailForcingItemToHiddenOverride() const {
  return CaseInsensitiveEqual(GetSalienceOptional(), keywords::kHideBetaFeature);
}

bool FeatureListDetail::DetailForcingItemToInternalOverride() const {
  return CaseInsensitiveEqual(GetSalienceOptional(), keywords::kHideBetaFeatureFromExternal);
}

bool FeatureListDetail::DetailForcingItemToNormalVisibility() const {
  return CaseInsensitiveEqual(GetSalienceOptional(), keywords::kUnhideBetaFeature);
}

bool FeatureListDetail::DetailInternalOverrideUnreviewed() const {
  return CaseInsensitiveEqual(GetSalienceOptional(), keywords::kUnreviewed);
}

bool FeatureListDetail::HasMalformedPlatform() const {
  const UTF8String& platform = GetRelevantPlatformOptional();
  return !platform.empty() && !CaseInsensitiveEqual(platform, keywords::kMac) &&
         !CaseInsensitiveEqual(platform, keywords::kWin);
}

bool FeatureListDetail::HasUsablePlatform() const {
  return !GetRelevantPlatformOptional().empty() && !HasMalformedPlatform();
}

bool FeatureListDetail::HasMalformedSalience() const {
  const UTF8String& salience = GetSalienceOptional();
  if (salience.empty()) return false;
  static constexpr std::array kWellFormed = {
      keywords::kHeadline,        keywords::kDetail,
      keywords::kHideBetaFeature, keywords::kHideBetaFeatureFromExternal,
      keywords::kUnreviewed,      keywords::kRatingHidesBetaFeatureDescription};
  return std::ranges::none_of(kWellFormed, [&salience](std::string_view keyword) {
    return CaseInsensitiveEqual(salience, keyword);
  });
}

bool FeatureListDetail::HasMalformedURL() const {
  return !GetViewMoreURLOptional().starts_with(kWellFormedURLPrefix);
}

std::int64_t FeatureListDetail::ParseVersionStringToNumber(const UTF8String& version) const {
  return VersionNumber(version);
}

void FeatureListDetail::MixChangeIntoGuid(orncore::utility::GuidMixer& mixer) const {
  static constexpr std::array kMixed = {kDescription,    kVersionAdded, kEpicID,
                                        kStoryBugTaskID, kSalience,     kFirstVersion,
                                        kPlatform,       kViewMoreURL,  kSHA};
  for (const Place place : kMixed) MixHashablePortion(mixer, fields_[place]);
}

Guid FeatureListDetail::GetItemSeenGuid() const {
  orncore::utility::GuidMixer mixer = TaggedMixer(kChangeSeenTag);
  MixChangeIntoGuid(mixer);
  return mixer.Result();
}

Guid FeatureListDetail::GetItemRatedGuid() const {
  orncore::utility::GuidMixer mixer = TaggedMixer(kChangeRatedTag);
  MixHashablePortion(mixer, GetRatingRequestOptional());
  return mixer.Result();
}

bool FeatureListDetail::ShouldShowItemToUser(const DisplayOptions& options, const GuidSet& seen,
                                             const VersionSet& versions) const {
  const VisibilityQuestion question(options, seen, versions);
  ChangeIdentity identity(*this);
  return IsChangeShown(*this, question, identity);
}

bool FeatureListDetail::ShowForRating(const GuidSet& seen) const {
  ChangeIdentity identity(*this);
  return IsChangeForRating(*this, seen, identity);
}

}  // namespace ornwhatsnew
