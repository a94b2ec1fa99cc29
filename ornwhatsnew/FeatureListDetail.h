// One change: a row of the data file that hangs on a feature or a section.
#ifndef ORNWHATSNEW_FEATURELISTDETAIL_H_
#define ORNWHATSNEW_FEATURELISTDETAIL_H_

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include <orncore/Export.h>
#include <orncore/utility/MixHashGuid.h>
#include <ornwhatsnew/utility/KeyedTexts.h>
#include <ornwhatsnew/utility/SharedTypes.h>

namespace ornwhatsnew {

/// A change with its ten texts and two marks. The texts are fixed at construction; nothing in them
/// is ever an error, the `HasMalformed...` checks only report. Copyable; one thread at a time.
class ORN_EXPORT FeatureListDetail {
 public:
  // Names of the ten texts, for `GetField`; their getters below say what they hold.
  static const std::string kKeyDescription;                   ///< names `GetDescription`
  static const std::string kKeyJIRAEpicID;                    ///< names `GetJIRAEpicID`
  static const std::string kKeyJIRAStoryBugTaskID;            ///< names `GetJIRAStoryBugTaskID`
  static const std::string kKeyVersionAdded;                  ///< names `GetChangeAddedVersion`
  static const std::string kKeySalienceOptional;              ///< names `GetSalienceOptional`
  static const std::string kKeyRelevantFirstVersionOptional;  ///< names that version's text
  static const std::string kKeyRelevantPlatformOptional;      ///< names that platform's text
  static const std::string kKeyRequestFeedbackOptional;       ///< names `GetRatingRequestOptional`
  static const std::string kKeyViewMoreURL;                   ///< names `GetViewMoreURLOptional`
  static const std::string kKeySHANum;                        ///< names `GetSHAOptional`

  // Keywords of the salience, rating request and platform columns; letter case does not matter.
  static const UTF8String kSalienceHeadline;         ///< for the reader of the file only
  static const UTF8String kSalienceDetail;           ///< for the reader of the file only
  static const UTF8String kSalienceHideBetaFeature;  ///< hides the feature from everybody
  /// Shows the feature to internal users only.
  static const UTF8String kSalienceHideBetaFeatureFromExternal;
  static const UTF8String kSalienceUnhideBetaFeature;  ///< shows a feature that is hidden otherwise
  static const UTF8String kSalienceUnreviewed;         ///< puts the change into its own section
  /// Leaves the feature's description away where it is rated. The keyword itself reads
  /// "RatingHides...", unlike the constant's name.
  static const UTF8String kSalienceRatingHideBetaFeatureDescription;
  static const UTF8String kRequestRating;  ///< asks for a rating without a question of its own
  static const UTF8String kPlatformWin;    ///< the change concerns this platform only
  static const UTF8String kPlatformMac;    ///< the change concerns this platform only

  /// How many texts a change has.
  static constexpr std::size_t kFieldCount = 10;
  /// Ten texts in the order of the constructor's arguments.
  using Fields = std::array<std::string_view, kFieldCount>;

  /// Copies the ten texts as they are; note that the second is the version added.
  FeatureListDetail(const UTF8String& description, const UTF8String& versionAdded,
                    const UTF8String& jiraEpicID, const UTF8String& jiraStoryBugTaskID,
                    const UTF8String& salience, const UTF8String& relevantFirstVersion,
                    const UTF8String& relevantPlatform, const UTF8String& ratingRequest,
                    const UTF8String& viewMoreURL, const UTF8String& sha);

  /// The same from views, which are copied.
  explicit FeatureListDetail(const Fields& fields);

  /// The text under one of the `kKey...` names. Throws `std::out_of_range` for any other name.
  const UTF8String& GetField(std::string_view key) const { return fields_.At(key); }

  /// The text that users read; may be a localisation key, or empty for a mere rating request.
  const UTF8String& GetDescription() const { return fields_[kDescription]; }
  /// The grouping ID, in lower case when it comes from a data file; so are the next one, the
  /// salience, the first relevant version and the platform.
  const UTF8String& GetJIRAEpicID() const { return fields_[kEpicID]; }
  /// The story, bug or task ID, or empty.
  const UTF8String& GetJIRAStoryBugTaskID() const { return fields_[kStoryBugTaskID]; }
  /// The version that brought the change, or empty.
  const UTF8String& GetChangeAddedVersion() const { return fields_[kVersionAdded]; }
  /// A salience keyword, whatever an author wrote instead of one, or empty.
  const UTF8String& GetSalienceOptional() const { return fields_[kSalience]; }
  /// The first version to which the change matters, or empty for all.
  const UTF8String& GetRelevantFirstVersionOptional() const { return fields_[kFirstVersion]; }
  /// The only platform to which the change matters, or empty for all.
  const UTF8String& GetRelevantPlatformOptional() const { return fields_[kPlatform]; }
  /// `kRequestRating`, a question of the author's, or empty.
  const UTF8String& GetRatingRequestOptional() const { return fields_[kRatingRequest]; }
  /// The link to a discussion, as written, or empty.
  const UTF8String& GetViewMoreURLOptional() const { return fields_[kViewMoreURL]; }
  /// The changelist or commit identifier, or empty.
  const UTF8String& GetSHAOptional() const { return fields_[kSHA]; }

  /// The mark of a change whose URL came after its feature already had one.
  void SetHasDuplicateURL(bool duplicate) { hasDuplicateURL_ = duplicate; }
  /// Whether the change carries that mark.
  bool HasDuplicateURL() const { return hasDuplicateURL_; }

  /// The mark of a change whose IDs matched no feature.
  void SetCouldNotMatchBetaFeature(bool unmatched) { couldNotMatchBetaFeature_ = unmatched; }
  /// Whether the change carries that mark.
  bool DetailInternalCouldNotMatchBetaFeature() const { return couldNotMatchBetaFeature_; }

  /// Whether the salience is "HideBetaFeature": the feature is not shown at all.
  bool DetailForcingItemToHiddenOverride() const;
  /// Whether the salience is "HideBetaFeatureFromExternal": the feature becomes internal.
  bool DetailForcingItemToInternalOverride() const;
  /// Whether the salience is "UnhideBetaFeature": a hidden feature is shown.
  bool DetailForcingItemToNormalVisibility() const;
  /// Whether the salience is "Unreviewed": the change belongs to the unreviewed section.
  bool DetailInternalOverrideUnreviewed() const;

  /// Whether there is a platform that is neither "Mac" nor "Win".
  bool HasMalformedPlatform() const;
  /// Whether there is a platform and it is one of the two.
  bool HasUsablePlatform() const;
  /// Whether there is a salience that is none of the reported keywords. "UnhideBetaFeature" is
  /// deliberately not among them: it works, and is reported all the same.
  bool HasMalformedSalience() const;
  /// Whether the URL does not begin with exactly "https://"; an empty one does not.
  bool HasMalformedURL() const;

  /// The number of a dotted version, see `VersionNumber`.
  std::int64_t ParseVersionStringToNumber(const UTF8String& version) const;

  /// Feeds the nine texts that make a change what it is. The rating request is left out, so that
  /// asking for a rating does not make a change new; of a localisation key only the key counts.
  void MixChangeIntoGuid(orncore::utility::GuidMixer& mixer) const;
  /// The identity under which the change is remembered as seen. Computed at each call.
  Guid GetItemSeenGuid() const;
  /// The identity of the change's rating request: equal for equal request texts.
  Guid GetItemRatedGuid() const;

  /// Whether the change is listed for these options, this state and these versions of the user.
  bool ShouldShowItemToUser(const DisplayOptions& options, const GuidSet& seen,
                            const VersionSet& versions) const;
  /// Whether the change counts in the rating view: it asks for a rating and was seen, or it has
  /// nothing to see.
  bool ShowForRating(const GuidSet& seen) const;

 private:
  /// Places in the constructor's order.
  enum Place : std::size_t {
    kDescription,
    kVersionAdded,
    kEpicID,
    kStoryBugTaskID,
    kSalience,
    kFirstVersion,
    kPlatform,
    kRatingRequest,
    kViewMoreURL,
    kSHA,
  };

  static constexpr std::array<std::string_view, kFieldCount> kFieldKeys = {
      "kDescription",
      "kVersionAdded",
      "kJIRAEpicID",
      "kJIRAStoryBugTaskID",
      "kSalienceOptional",
      "kRelevantFirstVersionOptional",
      "kRelevantPlatformOptional",
      "kRequestFeedbackOptional",
      "kViewMoreURL",
      "kSHANum",
  };

  bool couldNotMatchBetaFeature_ = false;
  bool hasDuplicateURL_ = false;
  KeyedTexts<kFieldKeys> fields_;
};

}  // namespace ornwhatsnew

#endif  // ORNWHATSNEW_FEATURELISTDETAIL_H_
