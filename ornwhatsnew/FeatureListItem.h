// One item of the list: a feature or a section, with its changes.
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
#include <ornwhatsnew/utility/SharedTypes.h>

namespace ornwhatsnew {

/// An item: two keys, five fields, and its changes in file order. The list and its callers share
/// the items; an item shares its changes.
///
/// Copyable. Not thread-safe: use one item from one thread at a time.
class ORN_EXPORT FeatureListItem {
 public:
  /// The host's visibility value of a beta feature.
  using Visibility = ornappsupport::feature::VisibilityInAllClientApps;
  /// The changes of an item, under shared ownership.
  using Changes = std::vector<std::shared_ptr<FeatureListDetail>>;

  // Keys of the five fields, for `GetField`.
  static const std::string kKeyFeatureName;             ///< see `GetFeatureName`
  static const std::string kKeyFeatureDescription;      ///< see `GetFeatureDescription`
  static const std::string kKeyFeatureViewMoreURL;      ///< see `GetFeatureViewMoreURL`
  static const std::string kKeyFeaturePrefsUI;          ///< see `GetFeaturePrefsUI`
  static const std::string kKeyCustomRatingRequestStr;  ///< see `GetCustomRatingStr`

  /// Makes an item without changes. `featureJiraIDKey` is the grouping key, an epic ID or a section
  /// key. `betaFeatureInternalKey` is the key in the host's feature table, empty for a section.
  /// `name` and `description` can be localisation keys.
  FeatureListItem(const std::string& featureJiraIDKey, const std::string& betaFeatureInternalKey,
                  const UTF8String& name, const UTF8String& description, Visibility visibility);

  /// Returns a copy of the grouping key.
  std::string GetFeatureJiraIDKey() const { return featureJiraIDKey_; }
  /// Returns a copy of the key in the host's feature table.
  std::string GetBetaFeatureInternalKey() const { return betaFeatureInternalKey_; }
  /// Returns the grouping key without a copy. The reference is valid as long as the item.
  const std::string& FeatureJiraIDKey() const { return featureJiraIDKey_; }
  /// Returns the key in the host's feature table without a copy, valid as long as the item.
  const std::string& BetaFeatureInternalKey() const { return betaFeatureInternalKey_; }

  /// Returns whether the grouping key is a section key; see `IsSpecialCaseSection`.
  bool IsSection() const { return kind_ != Kind::kFeature; }
  /// Returns whether only internal users see the section; see `IsInternalSpecialCaseSection`.
  bool IsInternalSection() const { return kind_ == Kind::kInternalSection; }

  /// Returns the visibility that the item was made with.
  Visibility GetVisibility() const { return visibility_; }
  /// Returns whether a change restricts the feature to internal users.
  bool IsItemInternalOverride() const { return itemInternalOverride_; }
  /// Returns the changes in the order in which they were added.
  const Changes& GetAllChanges() const { return allChanges_; }

  /// Returns the field of one of the `kKey...` constants. Throws `std::out_of_range` for any other
  /// key.
  const UTF8String& GetField(std::string_view key) const;

  /// Returns the title. It can be a localisation key, or empty.
  const UTF8String& GetFeatureName() const { return fields_[kName]; }
  /// Returns the description. It can be a localisation key, or empty.
  const UTF8String& GetFeatureDescription() const { return fields_[kDescription]; }
  /// Returns the first well-formed URL of the changes, or an empty string.
  const UTF8String& GetFeatureViewMoreURL() const { return fields_[kViewMoreURL]; }
  /// Returns an empty string. The field takes part in the identity.
  const UTF8String& GetFeaturePrefsUI() const { return fields_[kPrefsUI]; }
  /// Returns the custom question of a rating record, which is that of the last shown change with a
  /// rating request. Empty if that change has the plain keyword.
  const UTF8String& GetCustomRatingStr() const { return fields_[kCustomRating]; }
  /// Sets the custom question.
  void SetCustomRatingStr(const UTF8String& text) { fields_[kCustomRating] = text; }

  /// Appends a change. If the item has no URL yet, a well-formed URL of the change becomes the
  /// item's. If it has one, a change with a URL is marked as a duplicate, even if the URLs differ.
  /// The salience "HideBetaFeatureFromExternal" permanently restricts a feature to internal users;
  /// it does not affect a section. If an allocation fails, the item is unchanged.
  /// REQUIRES: `detail` is not null.
  void AddFeatureDetail(std::shared_ptr<FeatureListDetail> detail);

  /// Mixes the keys and four fields into `mixer`, all but the custom question.
  void MixFeatureIntoGuid(orncore::utility::GuidMixer& mixer) const;
  /// Returns the identity under which the item counts as seen, from its fields and the identities
  /// of the changes that have a description. Computes it at each call.
  Guid GetItemSeenGuid() const;
  /// Returns the identity under which the item counts as rated, from its internal key and its
  /// rating requests. A new rating request changes it, so the feature needs rating again.
  Guid GetItemRatedGuid() const;

  /// Returns whether the item is listed with these options, for a user who has seen `seen` and
  /// opened What's New in `versions`. Queries the host for permissions and feature state.
  bool ShouldShowItemToUser(const DisplayOptions& options, const GuidSet& seen,
                            const VersionSet& versions) const;
  /// Returns whether the item was seen and not rated.
  bool ShowForRating(const GuidSet& seen) const;
  /// Returns whether `seen` contains the item's seen identity.
  bool ItemHasBeenSeen(const GuidSet& seen) const;
  /// Returns whether `seen` contains the item's rated identity.
  bool ItemHasBeenRated(const GuidSet& seen) const;

  /// Returns whether the user has disabled usage logging. Always false for internal users.
  static bool AnalyticsDisabled();

 private:
  enum class Kind { kFeature, kSection, kInternalSection };
  enum FieldIndex : std::size_t { kName, kDescription, kViewMoreURL, kPrefsUI, kCustomRating };
  static constexpr std::size_t kFieldCount = 5;

  static Kind KindOf(std::string_view featureJiraIDKey);

  std::string featureJiraIDKey_;
  std::string betaFeatureInternalKey_;
  Kind kind_;
  Visibility visibility_;
  bool itemInternalOverride_ = false;
  std::array<UTF8String, kFieldCount> fields_;
  Changes allChanges_;
};

}  // namespace ornwhatsnew

#endif  // ORNWHATSNEW_FEATURELISTITEM_H_
