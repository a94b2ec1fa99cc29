#include <ornwhatsnew/WhatsNewTypes.h>

#include <ornappsupport/feature/FeatureService.h>
#include <orncore/config/ClientInfo.h>
#include <orncore/debug/DebugDatabase.h>
#include <orncore/string/Replace.h>
#include <ornwhatsnew/FeatureListItem.h>

#include "ornwhatsnew/src/rules/Keywords.h"

namespace ornwhatsnew {
namespace {

namespace feature = ornappsupport::feature;
using Visibility = feature::VisibilityInAllClientApps;

constexpr std::string_view kShowAllOffFeatures =
    "ornappsupport.betafeature.SimulateShowingAllOffFeaturesInWhatsNew";
constexpr std::string_view kShowAllUnlockCodes =
    "ornappsupport.betafeature.SimulateShowingAllUnlockCodesInWhatsNew";

// The debug switches apply to internal users only. For other users, the function does not read the
// debug database.
bool IsInternalDebugSwitchOn(std::string_view key) {
  if (!feature::IsEntitlementSetToInternalFeaturesAllowed()) return false;
  return orncore::debug::DebugDatabase::Instance().GetEntryAs<bool>(key, false);
}

ItemUnlockState InternalUnlockState() {
  return feature::IsEntitlementSetToInternalFeaturesAllowed() ? ItemUnlockState::TarsaOnly
                                                              : ItemUnlockState::Unlocked;
}

ItemUnlockState PublicUnlockState(const std::string& internalKey) {
  const bool showAsOff =
      ShowingAllOffFeaturesInternally() && !feature::IsFeatureEnabled(internalKey.c_str());
  return showAsOff ? ItemUnlockState::Off : ItemUnlockState::Unlocked;
}

}  // namespace

const UTF8String kMiscKey{keywords::kMisc};
const UTF8String kBugfixKey{keywords::kBugfix};
const UTF8String kInternalKey{keywords::kInternal};
const UTF8String kUnreviewedKey{keywords::kUnreviewedSection};

ItemUnlockState GetItemUnlockState(const FeatureListItem& item) {
  if (item.IsInternalSection()) return ItemUnlockState::TarsaOnly;
  if (item.IsSection()) return ItemUnlockState::Unlabelled;

  const feature::BetaFeatureMap& table = feature::GetConstBetaFeatureMap();
  const auto entry = table.find(item.BetaFeatureInternalKey());
  if (entry == table.end()) return ItemUnlockState::Unlabelled;

  const Visibility visibility = entry->second.GetVisibility();
  if (visibility == Visibility::kPublic) return PublicUnlockState(item.BetaFeatureInternalKey());
  if (visibility == Visibility::kInternal || item.IsItemInternalOverride()) {
    return InternalUnlockState();
  }
  return visibility == Visibility::kInDevelopment ? ItemUnlockState::InDevelopment
                                                  : ItemUnlockState::Unlabelled;
}

bool ShowingAllOffFeaturesInternally() {
  return IsInternalDebugSwitchOn(kShowAllOffFeatures);
}

bool ShowingAllUnlockCodesInternally() {
  return IsInternalDebugSwitchOn(kShowAllUnlockCodes);
}

UTF16String GetFullClientVersionString() {
  UTF16String version = orncore::config::GetClientVersion();
  UTF16String withoutDots = version;
  orncore::string::ReplaceAllStringInString(withoutDots, u".", u"");
  if (withoutDots.size() + 1 == version.size()) version += u".0";
  version += u'.';
  version += orncore::config::GetClientBuildNumber();
  return version;
}

}  // namespace ornwhatsnew
