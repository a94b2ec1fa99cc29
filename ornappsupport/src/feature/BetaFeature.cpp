#include <ornappsupport/feature/BetaFeature.h>

#include <utility>

namespace ornappsupport::feature {

BetaFeature::BetaFeature(std::string jiraEpicKey, UTF16String displayName,
                         UTF16String displayDescription, VisibilityInAllClientApps visibility)
    : jiraEpicKey_(std::move(jiraEpicKey)),
      displayName_(std::move(displayName)),
      displayDescription_(std::move(displayDescription)),
      visibility_(visibility) {}

}  // namespace ornappsupport::feature
