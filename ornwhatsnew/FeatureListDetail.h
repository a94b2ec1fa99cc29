// Defines a change, which is one row of a data file. A change belongs to a feature or a section.
#ifndef ORNWHATSNEW_FEATURELISTDETAIL_H_
#define ORNWHATSNEW_FEATURELISTDETAIL_H_

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include <orncore/Export.h>
#include <orncore/utility/Guid.h>
#include <ornwhatsnew/DataColumn.h>
#include <ornwhatsnew/utility/SharedTypes.h>

namespace ornwhatsnew {

/// A change has ten fields, which no method modifies. Two flags state whether the change is
/// unmatched and whether its URL is a duplicate.
///
/// The constructor parses the salience, the platform, the versions and the URL, so queries do not
/// parse them again. A change stores malformed values unchanged. The `HasMalformed...` functions
/// report a malformed salience, platform or URL. All strings are UTF-8. A returned reference is
/// valid until the change is destroyed.
///
/// A change is copyable. It is not thread-safe: use one change from one thread at a time.
class ORN_EXPORT FeatureListDetail {
 public:
  // The keys of the ten fields, for `GetField`. `kDataColumns` has the same keys.
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

  // The keywords of the columns salience, rating request and platform. Their letter case does not
  // matter. Static objects of the host must not use the constants of this class in their
  // constructors, which can run before the constants are initialised.
  static const UTF8String kSalienceHeadline;         ///< see `Salience::kHeadline`
  static const UTF8String kSalienceDetail;           ///< see `Salience::kDetail`
  static const UTF8String kSalienceHideBetaFeature;  ///< see `Salience::kHideBetaFeature`
  /// See `Salience::kHideBetaFeatureFromExternal`.
  static const UTF8String kSalienceHideBetaFeatureFromExternal;
  static const UTF8String kSalienceUnhideBetaFeature;  ///< see `Salience::kUnhideBetaFeature`
  static const UTF8String kSalienceUnreviewed;         ///< see `Salience::kUnreviewed`
  /// See `Salience::kRatingHidesBetaFeatureDescription`. Compatibility: the keyword contains
  /// "Hides", although the name of the constant contains "Hide" (docs/compatibility.md).
  static const UTF8String kSalienceRatingHideBetaFeatureDescription;
  /// The rating request "RequestRating". Any other rating request is a custom question.
  static const UTF8String kRequestRating;
  static const UTF8String kPlatformWin;  ///< see `Platform::kWin`
  static const UTF8String kPlatformMac;  ///< see `Platform::kMac`

  /// The meaning of the salience field. The letter case of a keyword does not matter.
  enum class Salience : std::uint8_t {
    /// The field is empty.
    kNone,
    /// The keyword "Headline". It has the same effect on a display as an empty field. Despite its
    /// name, the option `kFilterHeadlinesOnly` hides a change with this keyword.
    kHeadline,
    /// The keyword "Detail". It has the same effect on a display as an empty field.
    kDetail,
    /// The keyword "HideBetaFeature". It hides the feature from all users. It has no effect in a
    /// section.
    kHideBetaFeature,
    /// The keyword "HideBetaFeatureFromExternal". It sets the internal override of the feature, so
    /// that only internal users see the feature. It has no effect in a section.
    kHideBetaFeatureFromExternal,
    /// The keyword "Unreviewed". The change belongs to the section UNREVIEWED, regardless of its
    /// IDs.
    kUnreviewed,
    /// The keyword "RatingHidesBetaFeatureDescription". If the change is shown and its rating
    /// request is "RequestRating", the rating record of its item has no description. The same
    /// applies to the `RatingRequest` in a layout.
    kRatingHidesBetaFeatureDescription,
    /// The keyword "UnhideBetaFeature". It shows a feature that only its visibility `kInternal`
    /// would hide. It counts as malformed, like `kUnknown`.
    kUnhideBetaFeature,
    /// The field is any other string, and therefore malformed. Internal users see a note, and the
    /// change passes the filter `kFilterHeadlinesOnly`.
    kUnknown,
  };

  /// The meaning of the platform field. The letter case of a keyword does not matter.
  enum class Platform : std::uint8_t {
    /// The field is empty. The change is relevant on all platforms.
    kNone,
    /// The keyword "Mac". The change is relevant only on macOS.
    kMac,
    /// The keyword "Win". The change is relevant only on Windows.
    kWin,
    /// The field is any other string. The change is relevant on all platforms, and internal users
    /// see a note.
    kOther,
  };

  /// The values of the ten fields, indexed by `ColumnIndex`.
  using Fields = std::array<std::string_view, kDataColumnCount>;

  /// Creates a change with unchanged copies of the ten arguments. `HasDuplicateURL` and
  /// `DetailInternalCouldNotMatchBetaFeature` return false. The arguments are not in column order.
  /// `jiraEpicID` is the grouping ID, and `jiraStoryBugTaskID` is the story ID.
  FeatureListDetail(const UTF8String& description, const UTF8String& versionAdded,
                    const UTF8String& jiraEpicID, const UTF8String& jiraStoryBugTaskID,
                    const UTF8String& salience, const UTF8String& relevantFirstVersion,
                    const UTF8String& relevantPlatform, const UTF8String& ratingRequest,
                    const UTF8String& viewMoreURL, const UTF8String& sha);

  /// Creates a change with unchanged copies of the ten strings in `fields`. `HasDuplicateURL` and
  /// `DetailInternalCouldNotMatchBetaFeature` return false.
  explicit FeatureListDetail(const Fields& fields);

  /// Returns the field with the key `key`, one of the `kKey...` constants. Throws
  /// `std::out_of_range` for any other key.
  const UTF8String& GetField(std::string_view key) const;

  /// Returns the text that users read. It can be a key text. It is empty if the change only
  /// requests a rating.
  const UTF8String& GetDescription() const { return Field(DataColumn::kDescription); }
  /// Returns the grouping ID. `FeatureListData` converts five fields to lower case: grouping ID,
  /// story ID, salience, earliest relevant version and platform.
  const UTF8String& GetJIRAEpicID() const { return Field(DataColumn::kGroupingID); }
  /// Returns the story ID, or an empty string.
  const UTF8String& GetJIRAStoryBugTaskID() const { return Field(DataColumn::kStoryID); }
  /// Returns the version that added the change, or an empty string.
  const UTF8String& GetChangeAddedVersion() const { return Field(DataColumn::kVersion); }
  /// Returns the salience: a keyword, a malformed value, or an empty string.
  const UTF8String& GetSalienceOptional() const { return Field(DataColumn::kSalience); }
  /// Returns the earliest version to which the change is relevant, or an empty string if the change
  /// is relevant to all versions.
  const UTF8String& GetRelevantFirstVersionOptional() const {
    return Field(DataColumn::kFirstVersion);
  }
  /// Returns the only platform on which the change is relevant, or a malformed value. The result is
  /// empty if the change is relevant on all platforms.
  const UTF8String& GetRelevantPlatformOptional() const { return Field(DataColumn::kPlatform); }
  /// Returns the rating request: the keyword `kRequestRating` in any letter case, a custom
  /// question, or an empty string.
  const UTF8String& GetRatingRequestOptional() const { return Field(DataColumn::kRatingRequest); }
  /// Returns the URL of a discussion of the change, or an empty string. The URL can be malformed.
  const UTF8String& GetViewMoreURLOptional() const { return Field(DataColumn::kURL); }
  /// Returns the changelist or commit ID, or an empty string.
  const UTF8String& GetSHAOptional() const { return Field(DataColumn::kSHA); }

  /// Sets whether the URL of the change is ignored because the item of the change already has a
  /// URL.
  void SetHasDuplicateURL(bool duplicate) { hasDuplicateURL_ = duplicate; }
  /// Returns the value that `SetHasDuplicateURL` set, or false by default.
  bool HasDuplicateURL() const { return hasDuplicateURL_; }

  /// Sets whether the change is unmatched: neither of its IDs matches an item.
  void SetCouldNotMatchBetaFeature(bool unmatched) { couldNotMatchBetaFeature_ = unmatched; }
  /// Returns the value that `SetCouldNotMatchBetaFeature` set, or false by default.
  bool DetailInternalCouldNotMatchBetaFeature() const { return couldNotMatchBetaFeature_; }

  /// Returns the meaning of the salience field.
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
  /// Returns whether the salience is malformed: not empty, and not a keyword. "UnhideBetaFeature"
  /// counts as malformed, although it has an effect.
  bool HasMalformedSalience() const {
    return salience_ == Salience::kUnhideBetaFeature || salience_ == Salience::kUnknown;
  }

  /// Returns the meaning of the platform field.
  Platform GetPlatform() const { return platform_; }
  /// Returns whether the platform is malformed: not empty, not "Mac" and not "Win".
  bool HasMalformedPlatform() const { return platform_ == Platform::kOther; }
  /// Returns whether the platform is "Mac" or "Win".
  bool HasUsablePlatform() const {
    return platform_ == Platform::kMac || platform_ == Platform::kWin;
  }

  /// Returns whether the URL is malformed: it does not begin with "https://" in lower case. An
  /// empty URL counts as malformed.
  bool HasMalformedURL() const { return !isURLSecure_; }

  /// Returns `VersionNumber(version)`, which does not depend on the change.
  std::int64_t ParseVersionStringToNumber(const UTF8String& version) const;

  /// Returns whether the change is relevant to a user who opened the panel in the given versions.
  /// `versionNumbers` are results of `VersionNumber` in ascending order. The change is relevant if
  /// one of the numbers is at least the earliest relevant version and less than the version that
  /// added the change. A change without an earliest relevant version is relevant to every user.
  bool IsRelevantToVersions(std::span<const std::int64_t> versionNumbers) const;

  /// Adds the `ExtractHashablePortion` of nine fields to `mixer`. Omits the rating request, so that
  /// a new rating request does not make the change new again.
  void MixChangeIntoGuid(orncore::utility::GuidMixer& mixer) const;
  /// Returns the identity under which the change counts as seen. Computes it at each call, in time
  /// linear in the total length of the fields.
  Guid GetItemSeenGuid() const;
  /// Returns the identity of the rating request. For changes with equal rating requests, the
  /// results are equal. The rated identity of an item depends on the results for its changes.
  Guid GetItemRatedGuid() const;

  /// Returns whether the change is shown with these options. `seen` contains the identities that
  /// count as seen or rated. `versions` contains the full versions in which the user opened the
  /// panel. Queries the host's platform if the options contain `kFilterRelevantPlatform` and
  /// the platform of the change is "Mac" or "Win". Does not check whether the item is shown.
  bool ShouldShowItemToUser(const DisplayOptions& options, const GuidSet& seen,
                            const VersionSet& versions) const;
  /// Returns whether the rating view can show the change. The result is true if the change requests
  /// a rating, and either `seen` contains its seen identity or its description is empty. Does not
  /// check other display options.
  bool ShowForRating(const GuidSet& seen) const;

 private:
  const UTF8String& Field(DataColumn column) const { return fields_[ColumnIndex(column)]; }

  Salience salience_;
  Platform platform_;
  bool isURLSecure_;
  bool couldNotMatchBetaFeature_ = false;
  bool hasDuplicateURL_ = false;
  // The numbers of the earliest relevant version and of the version that added the change. They are
  // set only if the change has an earliest relevant version.
  std::int64_t relevantFrom_ = 0;
  std::int64_t relevantBefore_ = 0;
  std::array<UTF8String, kDataColumnCount> fields_;
};

}  // namespace ornwhatsnew

#endif  // ORNWHATSNEW_FEATURELISTDETAIL_H_
