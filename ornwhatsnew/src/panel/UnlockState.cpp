#include "ornwhatsnew/src/panel/UnlockState.h"

#include <string>

#include <ornappsupport/feature/FeatureService.h>

namespace ornwhatsnew {
namespace {

namespace feature = ornappsupport::feature;
using Visibility = feature::VisibilityInAllClientApps;

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

}  // namespace ornwhatsnew
