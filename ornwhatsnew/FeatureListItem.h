// Defines an item of the list, which is a feature or a section with its changes.
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
#include <orncore/utility/Guid.h>
#include <ornwhatsnew/FeatureListDetail.h>
#include <ornwhatsnew/utility/SharedTypes.h>

namespace ornwhatsnew {

/// An item has its own key, the internal key of its beta feature, five text fields, and its changes
/// in file order.
///
/// The list and its callers share ownership of the items. A copy of an item shares the changes of
/// the original. All strings are UTF-8. A returned reference is valid until the item is destroyed.
///
/// An item is not thread-safe: use one item from one thread at a time.
class ORN_EXPORT FeatureListItem {
 public:
  /// The visibility that the host assigns to a beta feature.
  using Visibility = ornappsupport::feature::VisibilityInAllClientApps;
  /// The changes of an item. None of the pointers is null.
  using Changes = std::vector<std::shared_ptr<FeatureListDetail>>;

  // The keys of the five fields, for `GetField`. Static objects of the host must not use the keys
  // in their constructors, which can run before the keys are initialised.
  static const std::string kKeyFeatureName;             ///< see `GetFeatureName`
  static const std::string kKeyFeatureDescription;      ///< see `GetFeatureDescription`
  static const std::string kKeyFeatureViewMoreURL;      ///< see `GetFeatureViewMoreURL`
  static const std::string kKeyFeaturePrefsUI;          ///< see `GetFeaturePrefsUI`
  static const std::string kKeyCustomRatingRequestStr;  ///< see `GetCustomRatingStr`

  /// Creates an item without changes.
  ///
  /// `featureJiraIDKey` is the key of the item, either the epic key of a feature or a section key.
  /// `betaFeatureInternalKey` is the internal key, under which the host's feature table contains
  /// the feature. It is empty for a section. `name` and `description` can be key texts.
  /// `visibility` is the visibility of the beta feature. The sections of a list have the visibility
  /// `kPublic`.
  FeatureListItem(const std::string& featureJiraIDKey, const std::string& betaFeatureInternalKey,
                  const UTF8String& name, const UTF8String& description, Visibility visibility);

  /// Returns a copy of the item's key.
  std::string GetFeatureJiraIDKey() const { return featureJiraIDKey_; }
  /// Returns a copy of the internal key, which is empty for a section.
  std::string GetBetaFeatureInternalKey() const { return betaFeatureInternalKey_; }
  /// Returns the item's key without copying it.
  const std::string& FeatureJiraIDKey() const { return featureJiraIDKey_; }
  /// Returns the internal key without copying it.
  const std::string& BetaFeatureInternalKey() const { return betaFeatureInternalKey_; }

  /// Returns whether the item is a section; see `IsSpecialCaseSection`.
  bool IsSection() const { return kind_ != Kind::kFeature; }
  /// Returns whether the item is a section that only internal users see; see
  /// `IsInternalSpecialCaseSection`.
  bool IsInternalSection() const { return kind_ == Kind::kInternalSection; }

  /// Returns the visibility that the constructor received.
  Visibility GetVisibility() const { return visibility_; }
  /// Returns the internal override: whether a change restricts the feature to internal users.
  bool IsItemInternalOverride() const { return itemInternalOverride_; }
  /// Returns the changes in the order in which they were added.
  const Changes& GetAllChanges() const { return allChanges_; }

  /// Returns the field with the key `key`, one of the `kKey...` constants. Throws
  /// `std::out_of_range` for any other key.
  const UTF8String& GetField(std::string_view key) const;

  /// Returns the title, which can be a key text or empty.
  const UTF8String& GetFeatureName() const { return fields_[kNameIndex]; }
  /// Returns the description, which can be a key text or empty.
  const UTF8String& GetFeatureDescription() const { return fields_[kDescriptionIndex]; }
  /// Returns the first well-formed URL of the changes, or an empty string if no change has one.
  const UTF8String& GetFeatureViewMoreURL() const { return fields_[kViewMoreURLIndex]; }
  /// Returns an empty string. The library never sets this field, but the seen identity of the item
  /// includes it.
  const UTF8String& GetFeaturePrefsUI() const { return fields_[kPrefsUIIndex]; }
  /// Returns the custom question of a rating record: the rating request of the last shown change
  /// that requests a rating. The result is empty if that request is the keyword `kRequestRating`,
  /// or if no shown change requests a rating. It is also empty for an item that is not a rating
  /// record.
  const UTF8String& GetCustomRatingStr() const { return fields_[kCustomRatingIndex]; }
  /// Sets the custom question of a rating record.
  void SetCustomRatingStr(const UTF8String& text) { fields_[kCustomRatingIndex] = text; }

  /// Appends a change, which must not be null.
  ///
  /// If the item has no URL and the change has a well-formed URL, that URL becomes the URL of the
  /// item. If both have a URL, the URL of the change counts as a duplicate, even if the two URLs
  /// differ.
  ///
  /// If the change has the salience "HideBetaFeatureFromExternal" and the item is a feature, sets
  /// the internal override of the feature. If an allocation fails, the item is unchanged.
  void AddFeatureDetail(std::shared_ptr<FeatureListDetail> detail);

  /// Adds to `mixer` the two keys, and the `ExtractHashablePortion` of each field except the custom
  /// question.
  void MixFeatureIntoGuid(orncore::utility::GuidMixer& mixer) const;
  /// Returns the identity under which the item counts as seen. It depends on the two keys, all
  /// fields except the custom question, and the seen identities of the changes that have a
  /// description. Computes it at each call.
  Guid GetItemSeenGuid() const;
  /// Returns the identity under which the item counts as rated. It depends on the internal key and
  /// the rating requests of the changes. A new rating request changes the identity, so the
  /// feature needs rating again. Computes the identity at each call.
  Guid GetItemRatedGuid() const;

  /// Returns whether the item is shown with these options. `seen` contains the identities that
  /// count as seen or rated. `versions` contains the full versions in which the user opened the
  /// panel. Queries the host's services.
  bool ShouldShowItemToUser(const DisplayOptions& options, const GuidSet& seen,
                            const VersionSet& versions) const;
  /// Returns whether `seen` contains the item's seen identity, but not its rated identity.
  bool ShowForRating(const GuidSet& seen) const;
  /// Returns whether `seen` contains the item's seen identity.
  bool ItemHasBeenSeen(const GuidSet& seen) const;
  /// Returns whether `seen` contains the item's rated identity.
  bool ItemHasBeenRated(const GuidSet& seen) const;

  /// Returns whether usage logging is off and the user is an external user. Queries the host at
  /// each call.
  static bool AnalyticsDisabled();

 private:
  enum class Kind { kFeature, kSection, kInternalSection };
  // The enumerators have the suffix `Index`, because a host can write `using enum ParagraphKind`
  // before it includes this header. Without the suffix, clang would then warn that `kDescription`
  // hides `ParagraphKind::kDescription`.
  enum FieldIndex : std::size_t {
    kNameIndex,
    kDescriptionIndex,
    kViewMoreURLIndex,
    kPrefsUIIndex,
    kCustomRatingIndex
  };
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
