// A beta feature, as the host's table describes it.
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

/// Which label a list shows for a beta feature. Other 32-bit values are kept unchanged and shown
/// without a label. Whether a feature is listed at all depends first on `FeatureService`: it must
/// be switched on, or available for the user to switch on.
enum class VisibilityInAllClientApps : std::int32_t {
  /// A public feature, labelled "UNLOCKED" whether it is on or off. If the debug switch that lists
  /// all features that are off is set, internal users see "OFF" for one that is off.
  kPublic = 0,
  /// A hidden feature. No user sees it, not even an internal user, unless one of its changes has
  /// the
  /// salience "UnhideBetaFeature". It is then labelled "TARSA ONLY" for internal users and
  /// "UNLOCKED" for others.
  kInternal = 1,
  /// A feature in development, labelled "IN DEVELOPMENT".
  kInDevelopment = 2,
  /// A feature without a label.
  kUnlabelled = 3,
};

/// The texts and the visibility of a beta feature. Its internal key, under which the host switches
/// it, is its key in the `BetaFeatureMap`.
///
/// Threads: one thread at a time, as for a string.
class ORN_EXPORT BetaFeature {
 public:
  /// `jiraEpicKey` is the key of the feature's epic in the issue tracker; changes refer to the
  /// feature by it. It may be empty. A display text that begins with "$$$/" is localised.
  BetaFeature(std::string jiraEpicKey, UTF16String displayName, UTF16String displayDescription,
              VisibilityInAllClientApps visibility);

  /// Returns the key of the epic, UTF-8.
  const std::string& GetJiraEpicKey() const noexcept { return jiraEpicKey_; }
  /// Returns the display name.
  const UTF16String& GetDisplayName() const noexcept { return displayName_; }
  /// Returns the display description.
  const UTF16String& GetDisplayDescription() const noexcept { return displayDescription_; }
  /// Returns the visibility.
  VisibilityInAllClientApps GetVisibility() const noexcept { return visibility_; }

 private:
  std::string jiraEpicKey_;
  UTF16String displayName_;
  UTF16String displayDescription_;
  VisibilityInAllClientApps visibility_;
};

/// Beta features by internal key, in ascending byte order.
using BetaFeatureMap = std::map<std::string, BetaFeature, std::less<>>;

}  // namespace ornappsupport::feature

#endif  // ORNAPPSUPPORT_FEATURE_BETAFEATURE_H_
