// The members of a list.
#ifndef ORNWHATSNEW_SRC_FEATURELISTDATAIMPL_H_
#define ORNWHATSNEW_SRC_FEATURELISTDATAIMPL_H_

#include <ornwhatsnew/FeatureListData.h>
#include <ornwhatsnew/utility/SharedTypes.h>

#include "ornwhatsnew/src/ListContent.h"

namespace ornwhatsnew {

struct FeatureListData::Impl {
  /// Stays at its address, so that references to its members remain valid after a reload.
  ListContent content;
  const UTF8String currentVersion;
  StateGetter stateGetter;
  StateSetter stateSetter;
  /// The walks over items that call services. During a walk, the list must not change.
  int activeWalks = 0;
  /// The callbacks that are running. During a callback, the list must not be destroyed.
  int activeCallbacks = 0;

  UTF8String ReadValue(std::string_view key);
  void WriteValue(const UTF8String& key, const UTF8String& value);

  /// Reads the three persisted values. Nothing counts as newly seen.
  SeenState ReadState();
  /// Adds the identities of a display pass to the state and writes the three persisted values.
  void RecordDisplayPass(const IdentitySet& shown);
};

}  // namespace ornwhatsnew

#endif  // ORNWHATSNEW_SRC_FEATURELISTDATAIMPL_H_
