// Reads the debug switches that affect what internal users see.
#ifndef ORNWHATSNEW_SRC_RULES_DEBUGSWITCHES_H_
#define ORNWHATSNEW_SRC_RULES_DEBUGSWITCHES_H_

#include <string_view>

#include <ornappsupport/feature/FeatureService.h>
#include <orncore/debug/DebugDatabase.h>

namespace ornwhatsnew {

/// The key of the debug switch that `ShowingAllOffFeaturesInternally` reads.
inline constexpr std::string_view kShowAllOffFeatures =
    "ornappsupport.betafeature.SimulateShowingAllOffFeaturesInWhatsNew";
/// The key of the debug switch that shows the internal key after a feature's title.
inline constexpr std::string_view kShowAllUnlockCodes =
    "ornappsupport.betafeature.SimulateShowingAllUnlockCodesInWhatsNew";

/// Returns whether the debug switch `key` is on. Always returns false for external users, without
/// reading the debug database. For internal users, reads the debug database at each call.
inline bool IsInternalDebugSwitchOn(std::string_view key) {
  return ornappsupport::feature::IsEntitlementSetToInternalFeaturesAllowed() &&
         orncore::debug::DebugDatabase::Instance().GetEntryAs<bool>(key, false);
}

}  // namespace ornwhatsnew

#endif  // ORNWHATSNEW_SRC_RULES_DEBUGSWITCHES_H_
