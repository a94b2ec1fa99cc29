// What records mix into their identities: texts without length or separator, and only the part of a
// localisation key that identifies it.
#ifndef ORNWHATSNEW_SRC_RULES_IDENTITYMIXING_H_
#define ORNWHATSNEW_SRC_RULES_IDENTITYMIXING_H_

#include <string_view>

#include <orncore/utility/MixHashGuid.h>
#include <ornwhatsnew/FeatureListItem.h>

#include "ornwhatsnew/src/rules/HashablePortion.h"

namespace ornwhatsnew {

/// Returns a mixer that contains `tag`, which separates the kinds of identities.
inline orncore::utility::GuidMixer TaggedMixer(std::string_view tag) {
  orncore::utility::GuidMixer mixer;
  mixer.Mix(tag);
  return mixer;
}

/// Mixes the result of `ExtractHashablePortion`.
inline void MixHashablePortion(orncore::utility::GuidMixer& mixer, std::string_view text) {
  if (!text.starts_with('$')) {  // most texts are not localisation keys
    mixer.Mix(text);
    return;
  }
  const auto [first, second] = SplitHashablePortion(text);
  mixer.Mix(first);
  mixer.Mix(second);
}

/// Returns the mixer of an item's seen identity, without the changes.
inline orncore::utility::GuidMixer ItemSeenMixer(const FeatureListItem& item) {
  orncore::utility::GuidMixer mixer = TaggedMixer("FeatureItemSeenList");
  item.MixFeatureIntoGuid(mixer);
  return mixer;
}

/// Mixes a change with the seen identity `seenGuid` into the seen identity of its item. A change
/// without a description only requests a rating, which does not make an item new.
inline void MixChangeIntoItem(orncore::utility::GuidMixer& mixer, const FeatureListDetail& change,
                              const Guid& seenGuid) {
  if (!change.GetDescription().empty()) mixer.Mix(seenGuid);
}

}  // namespace ornwhatsnew

#endif  // ORNWHATSNEW_SRC_RULES_IDENTITYMIXING_H_
