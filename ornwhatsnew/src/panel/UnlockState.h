// Determines the unlock states of items.
#ifndef ORNWHATSNEW_SRC_PANEL_UNLOCKSTATE_H_
#define ORNWHATSNEW_SRC_PANEL_UNLOCKSTATE_H_

#include <ornwhatsnew/FeatureListItem.h>
#include <ornwhatsnew/WhatsNewTypes.h>

namespace ornwhatsnew {

/// Returns the unlock state of an item. For a feature, queries the host at each call, and uses the
/// visibility in the host's feature table instead of the visibility of the item.
ItemUnlockState GetItemUnlockState(const FeatureListItem& item);

}  // namespace ornwhatsnew

#endif  // ORNWHATSNEW_SRC_PANEL_UNLOCKSTATE_H_
