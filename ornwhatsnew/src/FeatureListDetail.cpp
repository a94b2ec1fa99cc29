#include <ornwhatsnew/FeatureListDetail.h>

#include <algorithm>
#include <stdexcept>
#include <utility>
#include <vector>

#include <ornwhatsnew/utility/TextHelpers.h>

#include "ornwhatsnew/src/rules/IdentityMixing.h"
#include "ornwhatsnew/src/rules/Keywords.h"
#include "ornwhatsnew/src/rules/VisibilityRules.h"

namespace ornwhatsnew {
namespace {

using Salience = FeatureListDetail::Salience;

std::string KeyOf(DataColumn column) {
  return std::string(kDataColumns[ColumnIndex(column)].fieldKey);
}

Salience ParseSalience(std::string_view text) {
  static constexpr std::pair<std::string_view, Salience> kKeywords[] = {
      {keywords::kHeadline, Salience::kHeadline},
      {keywords::kDetail, Salience::kDetail},
      {keywords::kHideBetaFeature, Salience::kHideBetaFeature},
      {keywords::kHideBetaFeatureFromExternal, Salience::kHideBetaFeatureFromExternal},
      {keywords::kUnreviewed, Salience::kUnreviewed},
      {keywords::kRatingHidesBetaFeatureDescription, Salience::kRatingHidesBetaFeatureDescription},
      {keywords::kUnhideBetaFeature, Salience::kUnhideBetaFeature},
  };
  if (text.empty()) return Salience::kNone;
  for (const auto& [keyword, salience] : kKeywords) {
    if (CaseInsensitiveEqual(text, keyword)) return salience;
  }
  return Salience::kUnknown;
}

}  // namespace

const std::string FeatureListDetail::kKeyDescription = KeyOf(DataColumn::kDescription);
const std::string FeatureListDetail::kKeyJIRAEpicID = KeyOf(DataColumn::kGroupingID);
const std::string FeatureListDetail::kKeyJIRAStoryBugTaskID = KeyOf(DataColumn::kStoryID);
const std::string FeatureListDetail::kKeyVersionAdded = KeyOf(DataColumn::kVersion);
const std::string FeatureListDetail::kKeySalienceOptional = KeyOf(DataColumn::kSalience);
const std::string FeatureListDetail::kKeyRelevantFirstVersionOptional =
    KeyOf(DataColumn::kFirstVersion);
const std::string FeatureListDetail::kKeyRelevantPlatformOptional = KeyOf(DataColumn::kPlatform);
const std::string FeatureListDetail::kKeyRequestFeedbackOptional =
    KeyOf(DataColumn::kRatingRequest);
const std::string FeatureListDetail::kKeyViewMoreURL = KeyOf(DataColumn::kURL);
const std::string FeatureListDetail::kKeySHANum = KeyOf(DataColumn::kSHA);

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
    : FeatureListDetail(Fields{versionAdded, jiraEpicID, jiraStoryBugTaskID, salience,
                               ratingRequest, relevantFirstVersion, relevantPlatform, viewMoreURL,
                               sha, description}) {}

FeatureListDetail::FeatureListDetail(const Fields& fields)
    : salience_(ParseSalience(fields[ColumnIndex(DataColumn::kSalience)])),
      platform_(ParsePlatform(fields[ColumnIndex(DataColumn::kPlatform)])),
      isURLSecure_(fields[ColumnIndex(DataColumn::kURL)].starts_with("https://")) {
  std::ranges::copy(fields, fields_.begin());
  if (GetRelevantFirstVersionOptional().empty()) return;
  relevantFrom_ = VersionNumber(GetRelevantFirstVersionOptional());
  relevantBefore_ = VersionNumber(GetChangeAddedVersion());
}

const UTF8String& FeatureListDetail::GetField(std::string_view key) const {
  const auto found = std::ranges::find(kDataColumns, key, &DataColumnInfo::fieldKey);
  // Compatibility: hosts may compare the message with this text (docs/compatibility.md).
  if (found == kDataColumns.end()) throw std::out_of_range("unordered_map::at: key not found");
  return fields_[static_cast<std::size_t>(found - kDataColumns.begin())];
}

std::int64_t FeatureListDetail::ParseVersionStringToNumber(const UTF8String& version) const {
  return VersionNumber(version);
}

bool FeatureListDetail::IsRelevantToVersions(std::span<const std::int64_t> versionNumbers) const {
  if (GetRelevantFirstVersionOptional().empty()) return true;
  const auto version = std::ranges::lower_bound(versionNumbers, relevantFrom_);
  return version != versionNumbers.end() && *version < relevantBefore_;
}

void FeatureListDetail::MixChangeIntoGuid(orncore::utility::GuidMixer& mixer) const {
  static constexpr DataColumn kMixed[] = {
      DataColumn::kDescription, DataColumn::kVersion,  DataColumn::kGroupingID,
      DataColumn::kStoryID,     DataColumn::kSalience, DataColumn::kFirstVersion,
      DataColumn::kPlatform,    DataColumn::kURL,      DataColumn::kSHA};
  for (const DataColumn column : kMixed) MixHashablePortion(mixer, Field(column));
}

Guid FeatureListDetail::GetItemSeenGuid() const {
  orncore::utility::GuidMixer mixer = TaggedMixer("FeatureChangeList");
  MixChangeIntoGuid(mixer);
  return mixer.Result();
}

Guid FeatureListDetail::GetItemRatedGuid() const {
  orncore::utility::GuidMixer mixer = TaggedMixer("FeatureChangeRatedList");
  MixHashablePortion(mixer, GetRatingRequestOptional());
  return mixer.Result();
}

bool FeatureListDetail::ShouldShowItemToUser(const DisplayOptions& options, const GuidSet& seen,
                                             const VersionSet& versions) const {
  const std::vector<std::int64_t> versionNumbers = VersionNumbers(versions);
  return IsChangeShown(*this, VisibilityFilter(options, seen, versionNumbers), GetItemSeenGuid());
}

bool FeatureListDetail::ShowForRating(const GuidSet& seen) const {
  return IsChangeForRating(*this, seen.contains(GetItemSeenGuid()));
}

}  // namespace ornwhatsnew
