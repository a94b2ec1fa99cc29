// Defines the result of `FeatureListData::ExplainVisibility`: which rules hide each item and each
// change from a display.
#ifndef ORNWHATSNEW_VISIBILITYEXPLANATION_H_
#define ORNWHATSNEW_VISIBILITYEXPLANATION_H_

#include <cstdint>
#include <vector>

#include <ornwhatsnew/FeatureListItem.h>

namespace ornwhatsnew {

/// A rule that hides an item or a change. If the comment of a rule begins with a display option,
/// the rule applies only with this option.
enum class HidingRule : std::uint8_t {
  // Rules for items.

  /// `kRatingView`: the application is terminating, so nothing can be rated.
  kTerminating,
  /// `kRatingView`: usage logging is off and the user is an external user, so nothing can be rated.
  kUsageLoggingOff,
  /// The feature is switched off, the user cannot switch it on, and
  /// `ShowingAllOffFeaturesInternally` returns false.
  kUnavailable,
  /// The user is an external user, and only internal users see the item: the section INTERNAL, the
  /// section UNREVIEWED, or a feature with the internal override.
  kInternalUsersOnly,
  /// A change of the feature has the salience "HideBetaFeature".
  kHideBetaFeature,
  /// The visibility of the item is `kInternal`, and none of its changes has the salience
  /// "UnhideBetaFeature".
  kInternalVisibility,
  /// No change of the item is shown. This rule applies to sections, and with `kRatingView` also to
  /// features.
  kNoShownChange,
  /// `kRatingView`: the item is a section. Only features can be rated.
  kSectionInRatingView,
  /// `kRatingView`: the user has rated the feature.
  kRated,

  // Rules for items and changes.

  /// `kRatingView`: the user has not seen the feature. The rule hides a change if the user has not
  /// seen the change and the change has a description.
  kNotSeen,
  /// `kShowOnlyNew` without `kRatingView`: the user has seen the change. The rule hides a feature
  /// if the user has seen the feature and none of its changes is shown.
  kSeen,

  // Rules for changes.

  /// `kFilterRelevantPlatform`: the change is relevant only on another platform.
  kOtherPlatform,
  /// `kFilterHeadlinesOnly`: the salience of the change is not malformed. Compatibility: the option
  /// also hides changes with the salience "Headline" (docs/compatibility.md).
  kHeadlinesOnly,
  /// `kFilterRelevantVersion`: the change is relevant neither to the current version nor to any
  /// other version in which the user opened the panel.
  kOtherVersion,
  /// `kRatingView`: the change does not request a rating.
  kNoRatingRequest,
  /// The change has no description. This rule does not apply with `kRatingView`.
  kNoText,
};

/// The rules that hide a change.
struct ChangeVisibility {
  /// The change, which its item owns.
  const FeatureListDetail* change = nullptr;
  /// The rules that hide the change, in the order in which a display checks them.
  std::vector<HidingRule> hidingRules;
};

/// The rules that hide an item. A display shows the item if `hidingRules` is empty. It shows a
/// change if the `hidingRules` of both the item and the change are empty.
struct ItemVisibility {
  /// The item, which the list owns.
  const FeatureListItem* item = nullptr;
  /// The rules that hide the item, in the order in which a display checks them.
  std::vector<HidingRule> hidingRules;
  /// The changes of the item, in file order.
  std::vector<ChangeVisibility> changes;
};

}  // namespace ornwhatsnew

#endif  // ORNWHATSNEW_VISIBILITYEXPLANATION_H_
