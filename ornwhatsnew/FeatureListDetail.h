// One change: a change row of the data file, attached to a feature or a section.
#ifndef ORNWHATSNEW_FEATURELISTDETAIL_H_
#define ORNWHATSNEW_FEATURELISTDETAIL_H_

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include <orncore/Export.h>
#include <orncore/utility/MixHashGuid.h>
#include <ornwhatsnew/DataColumn.h>
#include <ornwhatsnew/utility/SharedTypes.h>

namespace ornwhatsnew {

/// A change: ten fields and two marks. The fields never change after construction. The constructor
/// classifies salience, platform, versions and URL, so no query parses them again. Invalid values
/// are kept and never rejected; the `HasMalformed...` functions report them.
///
/// Copyable. Not thread-safe: use one change from one thread at a time.
class ORN_EXPORT FeatureListDetail {
 public:
  // Keys of the ten fields, for `GetField`.
  static const std::string kKeyDescription;                   ///< see `GetDescription`
  static const std::string kKeyJIRAEpicID;                    ///< see `GetJIRAEpicID`
  static const std::string kKeyJIRAStoryBugTaskID;            ///< see `GetJIRAStoryBugTaskID`
  static const std::string kKeyVersionAdded;                  ///< see `GetChangeAddedVersion`
  static const std::string kKeySalienceOptional;              ///< see `GetSalienceOptional`
  static const std::string kKeyRelevantFirstVersionOptional;  ///< the earliest relevant version
  static const std::string kKeyRelevantPlatformOptional;      ///< the relevant platform
  static const std::string kKeyRequestFeedbackOptional;       ///< see `GetRatingRequestOptional`
  static const std::string kKeyViewMoreURL;                   ///< see `GetViewMoreURLOptional`
  static const std::string kKeySHANum;                        ///< see `GetSHAOptional`

  // Keywords of the salience, rating request and platform columns. Letter case does not matter.
  static const UTF8String kSalienceHeadline;         ///< has no effect in the library
  static const UTF8String kSalienceDetail;           ///< has no effect in the library
  static const UTF8String kSalienceHideBetaFeature;  ///< hides the feature from all users
  /// Shows the feature to internal users only.
  static const UTF8String kSalienceHideBetaFeatureFromExternal;
  static const UTF8String kSalienceUnhideBetaFeature;  ///< shows a feature hidden by visibility
  static const UTF8String kSalienceUnreviewed;  ///< moves the change to the unreviewed section
  /// Omits the feature's description from its rating record. The keyword is
  /// "RatingHidesBetaFeatureDescription", unlike the name of the constant.
  static const UTF8String kSalienceRatingHideBetaFeatureDescription;
  static const UTF8String kRequestRating;  ///< requests a rating without a custom question
  static const UTF8String kPlatformWin;    ///< the change is relevant on this platform only
  static const UTF8String kPlatformMac;    ///< the change is relevant on this platform only

  /// The salience keywords, compared without regard to letter case.
  enum class Salience : std::uint8_t {
    kNone,                               ///< the field is empty
    kHeadline,                           ///< "Headline"
    kDetail,                             ///< "Detail"
    kHideBetaFeature,                    ///< "HideBetaFeature"
    kHideBetaFeatureFromExternal,        ///< "HideBetaFeatureFromExternal"
    kUnreviewed,                         ///< "Unreviewed"
    kRatingHidesBetaFeatureDescription,  ///< "RatingHidesBetaFeatureDescription"
    kUnhideBetaFeature,                  ///< "UnhideBetaFeature"
    kUnknown,                            ///< any other text
  };

  /// The platform keywords, compared without regard to letter case.
  enum class Platform : std::uint8_t {
    kNone,   ///< the field is empty
    kMac,    ///< "Mac"
    kWin,    ///< "Win"
    kOther,  ///< any other text
  };

  /// The ten field values in column order, by `ColumnIndex`.
  using Fields = std::array<std::string_view, kDataColumnCount>;

  /// Copies the ten fields unchanged. The second argument is the version added, not the epic ID.
  FeatureListDetail(const UTF8String& description, const UTF8String& versionAdded,
                    const UTF8String& jiraEpicID, const UTF8String& jiraStoryBugTaskID,
                    const UTF8String& salience, const UTF8String& relevantFirstVersion,
                    const UTF8String& relevantPlatform, const UTF8String& ratingRequest,
                    const UTF8String& viewMoreURL, const UTF8String& sha);

  /// Copies the ten fields unchanged, from views in column order.
  explicit FeatureListDetail(const Fields& fields);

  /// Returns the field of one of the `kKey...` constants. Throws `std::out_of_range` for any other
  /// key.
  const UTF8String& GetField(std::string_view key) const;

  /// Returns the text that users read. It can be a localisation key. It is empty in a row that only
  /// requests a rating.
  const UTF8String& GetDescription() const { return Field(DataColumn::kDescription); }
  /// Returns the grouping ID. In a change from a data file it is in lower case, like the story ID,
  /// the salience, the earliest relevant version and the platform.
  const UTF8String& GetJIRAEpicID() const { return Field(DataColumn::kGroupingID); }
  /// Returns the story, task or bug ID, or an empty string.
  const UTF8String& GetJIRAStoryBugTaskID() const { return Field(DataColumn::kStoryID); }
  /// Returns the version that added the change, or an empty string.
  const UTF8String& GetChangeAddedVersion() const { return Field(DataColumn::kVersion); }
  /// Returns the salience as written: a keyword, an invalid text, or an empty string.
  const UTF8String& GetSalienceOptional() const { return Field(DataColumn::kSalience); }
  /// Returns the earliest version to which the change is relevant; empty for all versions.
  const UTF8String& GetRelevantFirstVersionOptional() const {
    return Field(DataColumn::kFirstVersion);
  }
  /// Returns the only platform to which the change is relevant, as written; empty for all.
  const UTF8String& GetRelevantPlatformOptional() const { return Field(DataColumn::kPlatform); }
  /// Returns `kRequestRating`, a custom question, or an empty string.
  const UTF8String& GetRatingRequestOptional() const { return Field(DataColumn::kRatingRequest); }
  /// Returns the link to a discussion as written, or an empty string.
  const UTF8String& GetViewMoreURLOptional() const { return Field(DataColumn::kURL); }
  /// Returns the changelist or commit ID, or an empty string.
  const UTF8String& GetSHAOptional() const { return Field(DataColumn::kSHA); }

  /// Sets the mark of a change whose URL comes after the URL of its feature.
  void SetHasDuplicateURL(bool duplicate) { hasDuplicateURL_ = duplicate; }
  /// Returns whether the change has that mark. A new change does not have it.
  bool HasDuplicateURL() const { return hasDuplicateURL_; }

  /// Sets the mark of a change whose IDs match no item.
  void SetCouldNotMatchBetaFeature(bool unmatched) { couldNotMatchBetaFeature_ = unmatched; }
  /// Returns whether the change has that mark. A new change does not have it.
  bool DetailInternalCouldNotMatchBetaFeature() const { return couldNotMatchBetaFeature_; }

  /// Returns the keyword in the salience field.
  Salience GetSalience() const { return salience_; }
  /// Returns whether the salience is "HideBetaFeature".
  bool DetailForcingItemToHiddenOverride() const { return salience_ == Salience::kHideBetaFeature; }
  /// Returns whether the salience is "HideBetaFeatureFromExternal".
  bool DetailForcingItemToInternalOverride() const {
    return salience_ == Salience::kHideBetaFeatureFromExternal;
  }
  /// Returns whether the salience is "UnhideBetaFeature".
  bool DetailForcingItemToNormalVisibility() const {
    return salience_ == Salience::kUnhideBetaFeature;
  }
  /// Returns whether the salience is "Unreviewed".
  bool DetailInternalOverrideUnreviewed() const { return salience_ == Salience::kUnreviewed; }
  /// Returns whether the salience is not empty and not one of the six well-formed keywords.
  /// "UnhideBetaFeature" has an effect but counts as malformed.
  bool HasMalformedSalience() const {
    return salience_ == Salience::kUnhideBetaFeature || salience_ == Salience::kUnknown;
  }

  /// Returns the keyword in the platform field.
  Platform GetPlatform() const { return platform_; }
  /// Returns whether the platform is not empty and neither "Mac" nor "Win".
  bool HasMalformedPlatform() const { return platform_ == Platform::kOther; }
  /// Returns whether the platform is "Mac" or "Win".
  bool HasUsablePlatform() const {
    return platform_ == Platform::kMac || platform_ == Platform::kWin;
  }

  /// Returns whether the URL does not begin with exactly "https://". An empty URL is malformed.
  bool HasMalformedURL() const { return !isURLSecure_; }

  /// Returns the number of a dotted version; see `VersionNumber`.
  std::int64_t ParseVersionStringToNumber(const UTF8String& version) const;

  /// Returns whether one of `versionNumbers`, in ascending order, is at least the earliest relevant
  /// version and less than the version added. Returns true if there is no earliest relevant
  /// version.
  bool IsRelevantToVersions(std::span<const std::int64_t> versionNumbers) const;

  /// Mixes nine fields into `mixer`, all but the rating request, so that a rating request does not
  /// make a change new. Of a localisation key, mixes only the part before the default text.
  void MixChangeIntoGuid(orncore::utility::GuidMixer& mixer) const;
  /// Returns the identity under which the change counts as seen. Computes it at each call.
  Guid GetItemSeenGuid() const;
  /// Returns the identity of the rating request. Changes with equal request texts share it.
  Guid GetItemRatedGuid() const;

  /// Returns whether the change is listed with these options, for a user who has seen `seen` and
  /// opened What's New in `versions`.
  bool ShouldShowItemToUser(const DisplayOptions& options, const GuidSet& seen,
                            const VersionSet& versions) const;
  /// Returns whether the change is listed in the rating view: it requests a rating, and it was seen
  /// or has no description.
  bool ShowForRating(const GuidSet& seen) const;

 private:
  const UTF8String& Field(DataColumn column) const { return fields_[ColumnIndex(column)]; }

  Salience salience_;
  Platform platform_;
  bool isURLSecure_;
  bool couldNotMatchBetaFeature_ = false;
  bool hasDuplicateURL_ = false;
  // The two numbers are set only if there is an earliest relevant version.
  std::int64_t relevantFrom_ = 0;
  std::int64_t relevantBefore_ = 0;
  std::array<UTF8String, kDataColumnCount> fields_;
};

}  // namespace ornwhatsnew

#endif  // ORNWHATSNEW_FEATURELISTDETAIL_H_
