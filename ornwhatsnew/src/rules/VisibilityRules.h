// Which items and changes a user sees.
#ifndef ORNWHATSNEW_SRC_RULES_VISIBILITYRULES_H_
#define ORNWHATSNEW_SRC_RULES_VISIBILITYRULES_H_

#include <cstdint>
#include <span>
#include <vector>

#include <ornwhatsnew/FeatureListItem.h>
#include <ornwhatsnew/utility/SharedTypes.h>

#include "ornwhatsnew/src/rules/IdentitySet.h"

namespace ornwhatsnew {

/// Returns the platform keyword in a field of a change, or the platform that the host names.
FeatureListDetail::Platform ParsePlatform(std::string_view text);

/// Returns the numbers of the versions in ascending order.
std::vector<std::int64_t> VersionNumbers(const VersionSet& versions);

/// A view of the identities that the user has seen or rated: the set of a list, or the standard set
/// that a host passes to a record.
class SeenIdentities {
 public:
  SeenIdentities(const IdentitySet& identities) : listSet_(&identities) {}
  SeenIdentities(const GuidSet& identities) : hostSet_(&identities) {}

  bool Contains(const Guid& identity) const {
    return listSet_ != nullptr ? listSet_->contains(identity) : hostSet_->contains(identity);
  }

 private:
  const IdentitySet* listSet_ = nullptr;
  const GuidSet* hostSet_ = nullptr;
};

/// The inputs of one query: the options, the user's state and the platform. It is a view of the
/// state, so it must not outlive the call.
class VisibilityFilter {
 public:
  /// `versionNumbers` are the versions in which What's New was opened, in ascending order.
  VisibilityFilter(const DisplayOptions& options, SeenIdentities seen,
                   std::span<const std::int64_t> versionNumbers);

  bool Has(const DisplayOptions& option) const { return options_.Has(option); }
  bool IsSeen(const Guid& identity) const { return seen_.Contains(identity); }
  std::span<const std::int64_t> Versions() const { return versionNumbers_; }
  FeatureListDetail::Platform HostPlatform() const { return hostPlatform_; }

 private:
  DisplayOptions options_;
  SeenIdentities seen_;
  std::span<const std::int64_t> versionNumbers_;
  /// Set only if the filter for the relevant platform is on.
  FeatureListDetail::Platform hostPlatform_ = FeatureListDetail::Platform::kNone;
};

/// Returns whether a change is listed. `seenGuid` is its seen identity.
bool IsChangeShown(const FeatureListDetail& change, const VisibilityFilter& filter,
                   const Guid& seenGuid);

/// Returns whether a change is listed in the rating view. `isSeen` is whether it was seen.
bool IsChangeForRating(const FeatureListDetail& change, bool isSeen);

/// What the display needs to know of an item that is listed.
struct ShownItem {
  struct Change {
    const FeatureListDetail* change;
    Guid seenGuid;
  };

  Guid seenGuid;
  /// The changes that are listed, in order. The pointers are valid as long as the item.
  std::vector<Change> changes;
};

/// Returns whether an item is listed. If `shown` is not null, overwrites it; its content is
/// meaningful only for a result of true. Without `shown`, allocates nothing.
bool IsItemShown(const FeatureListItem& item, const VisibilityFilter& filter,
                 ShownItem* shown = nullptr);

}  // namespace ornwhatsnew

#endif  // ORNWHATSNEW_SRC_RULES_VISIBILITYRULES_H_
