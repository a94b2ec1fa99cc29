// One feature, or one section, with the changes that hang on it.
#ifndef ORNWHATSNEW_FEATURELISTITEM_H_
#define ORNWHATSNEW_FEATURELISTITEM_H_

#include <array>
#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <ornappsupport/feature/BetaFeature.h>
#include <orncore/Export.h>
#include <orncore/utility/MixHashGuid.h>
#include <ornwhatsnew/FeatureListDetail.h>
#include <ornwhatsnew/utility/KeyedTexts.h>
#include <ornwhatsnew/utility/SharedTypes.h>

namespace ornwhatsnew {

/// A feature with its keys, five texts and changes in file order. Items are shared between the list
/// and whoever asks for them; an item shares its changes. One thread at a time.
class ORN_EXPORT FeatureListItem {
 public:
  /// The host's visibility value of a beta feature.
  using Visibility = ornappsupport::feature::VisibilityInAllClientApps;
  /// The changes of an item, shared with whoever holds them.
  using Changes = std::vector<std::shared_ptr<FeatureListDetail>>;

  // Names of the five texts, for `GetField`; their getters below say what they hold.
  static const std::string kKeyFeatureName;             ///< names `GetFeatureName`
  static const std::string kKeyFeatureDescription;      ///< names `GetFeatureDescription`
  static const std::string kKeyFeatureViewMoreURL;      ///< names `GetFeatureViewMoreURL`
  static const std::string kKeyFeaturePrefsUI;          ///< names `GetFeaturePrefsUI`
  static const std::string kKeyCustomRatingRequestStr;  ///< names `GetCustomRatingStr`

  /// An item without changes. `featureJiraIDKey` is the grouping key (an epic ID or a section key),
  /// `betaFeatureInternalKey` the key of the host's feature table, empty for a section; name and
  /// description may be localisation keys.
  FeatureListItem(const std::string& featureJiraIDKey, const std::string& betaFeatureInternalKey,
                  const UTF8String& name, const UTF8String& description, Visibility visibility);

  /// A copy of the grouping key.
  std::string GetFeatureJiraIDKey() const { return featureJiraIDKey_; }
  /// A copy of the key in the host's feature table; empty for a section.
  std::string GetBetaFeatureInternalKey() const { return betaFeatureInternalKey_; }
  /// The grouping key without a copy, valid as long as the item.
  const std::string& FeatureJiraIDKey() const { return featureJiraIDKey_; }
  /// The other key without a copy, valid as long as the item.
  const std::string& BetaFeatureInternalKey() const { return betaFeatureInternalKey_; }

  /// The visibility that the feature had when the item was made.
  Visibility GetVisibility() const { return visibility_; }
  /// Whether a change made the feature internal.
  bool IsItemInternalOverride() const { return itemInternalOverride_; }
  /// The changes in the order in which they were added.
  const Changes& GetAllChanges() const { return allChanges_; }

  /// The text under one of the `kKey...` names. Throws `std::out_of_range` for any other name.
  const UTF8String& GetField(std::string_view key) const { return fields_.At(key); }

  /// The title; may be a localisation key, or empty.
  const UTF8String& GetFeatureName() const { return fields_[kName]; }
  /// The description; may be a localisation key, or empty.
  const UTF8String& GetFeatureDescription() const { return fields_[kDescription]; }
  /// The first well-formed URL among the changes, or empty.
  const UTF8String& GetFeatureViewMoreURL() const { return fields_[kViewMoreURL]; }
  /// Always empty; it takes part in the identity.
  const UTF8String& GetFeaturePrefsUI() const { return fields_[kPrefsUI]; }
  /// The question that the last rating request of the shown changes asks, in a record of the rating
  /// map; empty for the plain request.
  const UTF8String& GetCustomRatingStr() const { return fields_[kCustomRating]; }
  /// Sets that question.
  void SetCustomRatingStr(const UTF8String& text) { fields_[kCustomRating] = text; }

  /// Appends a change. The first well-formed URL becomes the feature's; a change with a URL that
  /// comes later is marked as a duplicate, whatever its URL is. A change that hides the feature
  /// from external users makes it internal for good, unless the item is a section.
  /// REQUIRES: `detail` is not null.
  void AddFeatureDetail(std::shared_ptr<FeatureListDetail> detail);

  /// Feeds keys and texts, without the custom rating text and without the changes.
  void MixFeatureIntoGuid(orncore::utility::GuidMixer& mixer) const;
  /// The identity under which the item is remembered as seen: its own texts and the identities of
  /// all changes that have a description. Computed at each call.
  Guid GetItemSeenGuid() const;
  /// The identity under which the item is remembered as rated: its internal key and its rating
  /// requests in order, so that a new request asks again.
  Guid GetItemRatedGuid() const;

  /// Whether the item is listed for these options, this state and these versions of the user.
  /// Asks the host for permission and feature state at each call.
  bool ShouldShowItemToUser(const DisplayOptions& options, const GuidSet& seen,
                            const VersionSet& versions) const;
  /// Whether the item was seen and not yet rated.
  bool ShowForRating(const GuidSet& seen) const;
  /// Whether the item's seen identity is in the set.
  bool ItemHasBeenSeen(const GuidSet& seen) const;
  /// Whether the item's rated identity is in the set.
  bool ItemHasBeenRated(const GuidSet& seen) const;

  /// Whether the user opted out of usage logging. Users with the internal-features permission never
  /// count as opted out.
  static bool AnalyticsDisabled();

 private:
  enum Place : std::size_t { kName, kDescription, kViewMoreURL, kPrefsUI, kCustomRating };

  static constexpr std::array<std::string_view, 5> kFieldKeys = {
      "kFeatureName",    "kFeatureDescription",     "kFeatureViewMoreURL",
      "kFeaturePrefsUI", "kCustomRatingRequestStr",
  };

  std::string featureJiraIDKey_;
  std::string betaFeatureInternalKey_;
  bool itemInternalOverride_ = false;
  Visibility visibility_;
  KeyedTexts<kFieldKeys> fields_;
  Changes allChanges_;
};

}  // namespace ornwhatsnew

#endif  // ORNWHATSNEW_FEATURELISTITEM_H_
