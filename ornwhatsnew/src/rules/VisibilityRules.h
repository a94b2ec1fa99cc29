// What a user gets to see: the rules that decide it for a change and for an item, written once for
// the predicates of the records, for the badge, and for the display.
#ifndef ORNWHATSNEW_SRC_RULES_VISIBILITYRULES_H_
#define ORNWHATSNEW_SRC_RULES_VISIBILITYRULES_H_

#include <cstdint>
#include <optional>
#include <vector>

#include <boost/container/small_vector.hpp>

#include <ornwhatsnew/FeatureListItem.h>
#include <ornwhatsnew/utility/IdentitySet.h>
#include <ornwhatsnew/utility/SharedTypes.h>

#include "ornwhatsnew/src/rules/IdentityMixing.h"

namespace ornwhatsnew {

/// The identities that the user has seen or rated: a view of the list's own set, or of the standard
/// set with which a host asks a single record.
class SeenIdentities {
 public:
  SeenIdentities(const IdentitySet& identities) : own_(&identities) {}
  SeenIdentities(const GuidSet& identities) : hosts_(&identities) {}

  bool Contains(const Guid& identity) const {
    return own_ != nullptr ? own_->contains(identity) : hosts_->contains(identity);
  }

 private:
  const IdentitySet* own_ = nullptr;
  const GuidSet* hosts_ = nullptr;
};

/// One question to the list: the options, the user's state, and what follows from them for every
/// change alike, worked out when first needed. Views what it is given; lives for one call.
class VisibilityQuestion {
 public:
  VisibilityQuestion(DisplayOptions options, SeenIdentities seen, const VersionSet& versions)
      : options_(options), seen_(seen), versions_(versions) {}

  bool Has(DisplayOptions option) const { return options_.Has(option); }
  bool AsksForNewOnly() const { return Has(kShowOnlyNew) && !Has(kRatingView); }
  /// Whether identities take part in the answer.
  bool AsksForState() const { return Has(kShowOnlyNew) || Has(kRatingView); }

  SeenIdentities Seen() const { return seen_; }
  bool IsSeen(const Guid& identity) const { return seen_.Contains(identity); }

  /// Whether the user ran a version in the range from `first` up to but not including `end`.
  bool RanVersionWithin(std::int64_t first, std::int64_t end) const;

  /// The platform that the host runs on.
  const UTF8String& Platform() const;

 private:
  DisplayOptions options_;
  SeenIdentities seen_;
  const VersionSet& versions_;
  /// Ascending. Room for as many versions as users run, so that a question does not allocate.
  mutable boost::container::small_vector<std::int64_t, 64> versionNumbers_;
  mutable std::optional<UTF8String> platform_;
};

/// Whether the change is listed.
bool IsChangeShown(const FeatureListDetail& change, const VisibilityQuestion& question,
                   ChangeIdentity& identity);

/// Whether the change counts in the rating view.
bool IsChangeForRating(const FeatureListDetail& change, SeenIdentities seen,
                       ChangeIdentity& identity);

/// What a walk over an item's changes found out, for the display, which needs it again.
struct ItemFindings {
  struct ShownChange {
    const FeatureListDetail* change;
    Guid seen;
  };

  Guid itemSeen;
  /// The changes that are listed, in order; views into the item.
  std::vector<ShownChange> shownChanges;
};

/// Whether the item is listed. With `findings`, which is overwritten, all of the item's identities
/// are computed on the way and kept there; without, only those that decide.
bool IsItemShown(const FeatureListItem& item, const VisibilityQuestion& question,
                 ItemFindings* findings = nullptr);

}  // namespace ornwhatsnew

#endif  // ORNWHATSNEW_SRC_RULES_VISIBILITYRULES_H_
