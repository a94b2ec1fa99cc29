// Computes the identities of changes and items.
//
// Compatibility: an identity is the hash of strings that are joined without lengths or separators
// (docs/compatibility.md).
#ifndef ORNWHATSNEW_SRC_RULES_IDENTITYMIXING_H_
#define ORNWHATSNEW_SRC_RULES_IDENTITYMIXING_H_

#include <string_view>

#include <orncore/utility/MixHashGuid.h>
#include <ornwhatsnew/FeatureListItem.h>

#include "ornwhatsnew/src/rules/HashablePortion.h"

namespace ornwhatsnew {

/// Returns a mixer to which only `tag` was added. Each kind of identity has its own tag.
inline orncore::utility::GuidMixer TaggedMixer(std::string_view tag) {
  orncore::utility::GuidMixer mixer;
  mixer.Mix(tag);
  return mixer;
}

/// Adds the result of `ExtractHashablePortion(text)` to `mixer`.
inline void MixHashablePortion(orncore::utility::GuidMixer& mixer, std::string_view text) {
  if (!text.starts_with('$')) {  // Most strings are not key texts.
    mixer.Mix(text);
    return;
  }
  const auto [first, second] = SplitHashablePortion(text);
  mixer.Mix(first);
  mixer.Mix(second);
}

/// Returns a mixer for the seen identity of an item, before its changes are added.
inline orncore::utility::GuidMixer ItemSeenMixer(const FeatureListItem& item) {
  orncore::utility::GuidMixer mixer = TaggedMixer("FeatureItemSeenList");
  item.MixFeatureIntoGuid(mixer);
  return mixer;
}

/// Adds `seenGuid`, the seen identity of `change`, to the mixer for the seen identity of its item.
/// Ignores a change without a description. Only the rating view can show such a change, so it must
/// not make the item new.
inline void MixChangeIntoItem(orncore::utility::GuidMixer& mixer, const FeatureListDetail& change,
                              const Guid& seenGuid) {
  if (!change.GetDescription().empty()) mixer.Mix(seenGuid);
}

}  // namespace ornwhatsnew

#endif  // ORNWHATSNEW_SRC_RULES_IDENTITYMIXING_H_
