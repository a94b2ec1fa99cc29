// Defines the private members of `FeatureListData`.
#ifndef ORNWHATSNEW_SRC_FEATURELISTDATAIMPL_H_
#define ORNWHATSNEW_SRC_FEATURELISTDATAIMPL_H_

#include <string_view>

#include <ornwhatsnew/FeatureListData.h>
#include <ornwhatsnew/utility/SharedTypes.h>

#include "ornwhatsnew/src/ListContent.h"

// Without this attribute, `Impl` would have the symbol visibility of `FeatureListData`, and the
// library would export the members of `Impl`.
#if defined(__GNUC__) && !defined(_WIN32)
#define ORN_LOCAL __attribute__((visibility("hidden")))
#else
#define ORN_LOCAL
#endif

namespace ornwhatsnew {

struct ORN_LOCAL FeatureListData::Impl {
  /// A reload assigns the new content to this object, so that references to its members remain
  /// valid.
  ListContent content;
  const UTF8String currentVersion;
  StateGetter stateGetter;
  StateSetter stateSetter;
  /// The number of running iterations over the items during which the list queries services. The
  /// list must not change during such an iteration.
  int activeIterations = 0;
  /// The number of running callbacks. A callback must not destroy the list.
  int activeCallbacks = 0;

  UTF8String ReadValue(std::string_view key);
  void WriteValue(const UTF8String& key, const UTF8String& value);

  /// Reads the three persisted values and returns the state that they describe. Adds the current
  /// version to `seenVersions`. The result has no newly seen identities.
  SeenState ReadState();
  /// Adds `shown` to the newly seen identities. Writes the three persisted values.
  void RecordDisplayPass(const IdentitySet& shown);
};

}  // namespace ornwhatsnew

#endif  // ORNWHATSNEW_SRC_FEATURELISTDATAIMPL_H_
