// Describes a beta feature in the feature table of the host.
#ifndef ORNAPPSUPPORT_FEATURE_BETAFEATURE_H_
#define ORNAPPSUPPORT_FEATURE_BETAFEATURE_H_

#include <cstdint>
#include <functional>
#include <map>
#include <string>

#include <orncore/Export.h>
#include <orncore/string/Conversion.h>

namespace ornappsupport::feature {

using orncore::string::UTF16String;

/// Determines the label of a beta feature and its position in a list. For `kInternal`, it also
/// determines whether the list shows the feature. The list treats unknown values like
/// `kUnlabelled`.
///
/// A feature of any visibility is shown only if it is switched on or the user can switch it on. A
/// debug switch removes this restriction for internal users.
///
/// If a change of a feature has the salience "HideBetaFeatureFromExternal", only internal users see
/// the feature. Its label is then "TARSA ONLY", unless its visibility is `kPublic`.
enum class VisibilityInAllClientApps : std::int32_t {
  /// A public feature. Its label is "OFF" if the feature is off and
  /// `ornwhatsnew::ShowingAllOffFeaturesInternally` returns true. Otherwise, its label is
  /// "UNLOCKED".
  kPublic = 0,
  /// A feature that is hidden from all users, including internal users, unless one of its changes
  /// has the salience "UnhideBetaFeature". When the feature is shown, its label is "TARSA ONLY" for
  /// internal users and "UNLOCKED" for external users.
  kInternal = 1,
  /// A feature in development, with the label "IN DEVELOPMENT".
  kInDevelopment = 2,
  /// A feature without a label.
  kUnlabelled = 3,
};

/// Contains the epic key, the display name, the display description and the visibility of a beta
/// feature. It does not contain the internal key, which is the key of the feature in the
/// `BetaFeatureMap`.
///
/// Threads: several threads may read an object at the same time. A thread that modifies an object
/// needs exclusive access.
class ORN_EXPORT BetaFeature {
 public:
  /// Creates an object that describes a beta feature. `jiraEpicKey` is the key of the feature's
  /// epic in the issue tracker, in UTF-8. Changes refer to the feature by this key. An empty key is
  /// allowed, but it is equal to an empty story ID. The feature can therefore receive changes that
  /// are meant for other items.
  ///
  /// `displayName` and `displayDescription` are shown to users. A list localises them if they begin
  /// with "$$$/", and otherwise shows them unchanged.
  BetaFeature(std::string jiraEpicKey, UTF16String displayName, UTF16String displayDescription,
              VisibilityInAllClientApps visibility);

  /// Returns the key of the feature's epic in UTF-8.
  const std::string& GetJiraEpicKey() const noexcept { return jiraEpicKey_; }
  /// Returns the display name, which is not localised yet.
  const UTF16String& GetDisplayName() const noexcept { return displayName_; }
  /// Returns the display description, which is not localised yet.
  const UTF16String& GetDisplayDescription() const noexcept { return displayDescription_; }
  /// Returns the visibility.
  VisibilityInAllClientApps GetVisibility() const noexcept { return visibility_; }

 private:
  std::string jiraEpicKey_;
  UTF16String displayName_;
  UTF16String displayDescription_;
  VisibilityInAllClientApps visibility_;
};

/// A feature table, which maps internal keys to beta features. The keys are UTF-8 and in ascending
/// byte order.
using BetaFeatureMap = std::map<std::string, BetaFeature, std::less<>>;

}  // namespace ornappsupport::feature

#endif  // ORNAPPSUPPORT_FEATURE_BETAFEATURE_H_
