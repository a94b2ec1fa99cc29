// What records feed into their identities: texts without length or separator, and of a localisation
// key only the part that identifies it.
#ifndef ORNWHATSNEW_SRC_RULES_IDENTITYMIXING_H_
#define ORNWHATSNEW_SRC_RULES_IDENTITYMIXING_H_

#include <optional>
#include <string_view>

#include <orncore/utility/MixHashGuid.h>
#include <ornwhatsnew/FeatureListItem.h>
#include <ornwhatsnew/utility/TextHelpers.h>

namespace ornwhatsnew {

/// A mixer that has been fed the tag which keeps the kinds of identity apart.
inline orncore::utility::GuidMixer TaggedMixer(std::string_view tag) {
  orncore::utility::GuidMixer mixer;
  mixer.Mix(tag);
  return mixer;
}

/// Feeds the portion of `text` that counts.
inline void MixHashablePortion(orncore::utility::GuidMixer& mixer, std::string_view text) {
  if (!text.starts_with('$')) {  // most texts are no localisation keys
    mixer.Mix(text);
    return;
  }
  const auto [first, second] = SplitHashablePortion(text);
  mixer.Mix(first);
  mixer.Mix(second);
}

/// The seen identity of a change, computed when first asked for and then kept, for the length of
/// one question to the list.
class ChangeIdentity {
 public:
  /// REQUIRES: `change` outlives this object.
  explicit ChangeIdentity(const FeatureListDetail& change) : change_(change) {}

  const Guid& Seen() {
    if (!seen_) seen_ = change_.GetItemSeenGuid();
    return *seen_;
  }

 private:
  const FeatureListDetail& change_;
  std::optional<Guid> seen_;
};

/// What keeps an item's seen identity apart from the other kinds.
inline constexpr std::string_view kItemSeenTag = "FeatureItemSeenList";

/// The seen identity of an item, built while its changes are walked in order.
class ItemSeenIdentity {
 public:
  explicit ItemSeenIdentity(const FeatureListItem& item) : mixer_(TaggedMixer(kItemSeenTag)) {
    item.MixFeatureIntoGuid(mixer_);
  }

  /// Takes the next change. One without a description, a mere rating request, does not count.
  void AddChange(const FeatureListDetail& change, ChangeIdentity& identity) {
    if (!change.GetDescription().empty()) mixer_.Mix(identity.Seen());
  }

  Guid Result() const { return mixer_.Result(); }

 private:
  orncore::utility::GuidMixer mixer_;
};

}  // namespace ornwhatsnew

#endif  // ORNWHATSNEW_SRC_RULES_IDENTITYMIXING_H_
