// A beta feature of the host, as its table describes it.
#ifndef ORNAPPSUPPORT_FEATURE_BETAFEATURE_H_
#define ORNAPPSUPPORT_FEATURE_BETAFEATURE_H_

#include <cstdint>
#include <functional>
#include <map>
#include <string>

#include <orncore/Export.h>
#include <orncore/string/Types.h>

namespace ornappsupport::feature {

using orncore::string::UTF16String;

/// Who gets to see a beta feature. Any other 32-bit value is kept as it is; it has no meaning here.
enum class VisibilityInAllClientApps : std::int32_t {
  /// Everybody, switched on or off.
  kPublic = 0,
  /// Users with the internal-features permission; others once it is switched on for them.
  kInternal = 1,
  /// In development.
  kInDevelopment = 2,
  /// Shown without any unlock label.
  kUnlabelled = 3,
};

/// One beta feature's texts and visibility. The internal key, under which the host switches it, is
/// its key in the BetaFeatureMap.
///
/// Threads: one thread at a time, as for a string.
class ORN_EXPORT BetaFeature {
 public:
  /// `jiraEpicKey` is the tracker's key of the feature's epic, through which changes find it; it
  /// may be empty. The display texts are shown as they are, or localised where they are key texts.
  BetaFeature(std::string jiraEpicKey, UTF16String displayName, UTF16String displayDescription,
              VisibilityInAllClientApps visibility);

  /// The key of the epic, UTF-8, as handed to the constructor; so are the three below.
  const std::string& GetJiraEpicKey() const noexcept { return jiraEpicKey_; }
  /// The name that users see, or its key text.
  const UTF16String& GetDisplayName() const noexcept { return displayName_; }
  /// The description that users see, or its key text.
  const UTF16String& GetDisplayDescription() const noexcept { return displayDescription_; }
  /// Who gets to see the feature.
  VisibilityInAllClientApps GetVisibility() const noexcept { return visibility_; }

 private:
  std::string jiraEpicKey_;
  UTF16String displayName_;
  UTF16String displayDescription_;
  VisibilityInAllClientApps visibility_;
};

/// The host's table: beta features by internal key, in ascending byte order.
using BetaFeatureMap = std::map<std::string, BetaFeature, std::less<>>;

}  // namespace ornappsupport::feature

#endif  // ORNAPPSUPPORT_FEATURE_BETAFEATURE_H_
