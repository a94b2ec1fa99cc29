// Decides which items and changes are shown, and explains the decisions.
#ifndef ORNWHATSNEW_SRC_RULES_VISIBILITYRULES_H_
#define ORNWHATSNEW_SRC_RULES_VISIBILITYRULES_H_

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include <ornwhatsnew/FeatureListItem.h>
#include <ornwhatsnew/VisibilityExplanation.h>
#include <ornwhatsnew/utility/SharedTypes.h>

#include "ornwhatsnew/src/rules/IdentitySet.h"

namespace ornwhatsnew {

/// Returns the platform that `text` names, ignoring the letter case. Returns `kNone` for an empty
/// string, and `kOther` for an unknown platform. `text` is the platform field of a change, or the
/// host's platform.
FeatureListDetail::Platform ParsePlatform(std::string_view text);

/// Returns the `VersionNumber` of each version, in ascending order.
std::vector<std::int64_t> VersionNumbers(const VersionSet& versions);

/// A view of the identities that count as seen or rated. It refers to the `IdentitySet` of a
/// list, or to a `GuidSet` that a host passes to the library.
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

/// Contains inputs of the visibility rules: the options, the user's state and the host's platform.
/// The filter refers to the state, which must outlive the filter.
class VisibilityFilter {
 public:
  /// Creates a filter. `versionNumbers` contains the `VersionNumber` of each version in which the
  /// user opened the panel, in ascending order. Does not query the host.
  VisibilityFilter(const DisplayOptions& options, SeenIdentities seen,
                   std::span<const std::int64_t> versionNumbers);

  bool Has(const DisplayOptions& option) const { return options_.Has(option); }
  /// Returns whether the visibility rules depend on what the user has seen or rated.
  bool DependsOnSeen() const { return Has(kRatingView) || Has(kShowOnlyNew); }
  bool IsSeen(const Guid& identity) const { return seen_.Contains(identity); }
  std::span<const std::int64_t> Versions() const { return versionNumbers_; }
  /// Returns the platform of the host. Only the first call queries the host.
  FeatureListDetail::Platform HostPlatform() const;

 private:
  DisplayOptions options_;
  SeenIdentities seen_;
  std::span<const std::int64_t> versionNumbers_;
  mutable std::optional<FeatureListDetail::Platform> hostPlatform_;
};

/// Returns whether a display that shows the item of `change` also shows `change`. `seenGuid` is the
/// seen identity of `change`.
bool IsChangeShown(const FeatureListDetail& change, const VisibilityFilter& filter,
                   const Guid& seenGuid);

/// Returns whether the rating view can show `change`. The result is true if the change requests a
/// rating, and either the user has seen the change (`isSeen`) or its description is empty.
bool IsChangeForRating(const FeatureListDetail& change, bool isSeen);

/// Returns whether the rating view can show a feature. The result is true if the user has seen the
/// feature (`isSeen` is true) and has not rated it (`isRated` is false).
bool IsItemForRating(bool isRated, bool isSeen);

/// The seen identity and the shown changes of an item that a display shows.
struct ShownItem {
  struct Change {
    const FeatureListDetail* change;
    Guid seenGuid;
  };

  Guid seenGuid;
  /// The shown changes, in file order. The pointers are valid until the item is changed or
  /// destroyed.
  std::vector<Change> changes;
};

/// Adds to `identities` the seen identity of a shown item and the seen identities of its shown
/// changes. In the rating view, adds only the seen identity of the item.
void AddSeenIdentities(const ShownItem& shown, const DisplayOptions& options,
                       std::vector<Guid>& identities);

/// Returns whether an item is shown. If `shown` is null, allocates nothing, and computes the
/// identities of changes only if the filter depends on what the user has seen or rated. Otherwise
/// overwrites `*shown`, whose content is valid only if the result is true.
bool IsItemShown(const FeatureListItem& item, const VisibilityFilter& filter,
                 ShownItem* shown = nullptr);

/// Returns all rules that hide an item, and for each of its changes all rules that hide the change.
/// `IsItemShown` checks the same rules, but stops at the first rule that hides the item.
ItemVisibility ExplainItem(const FeatureListItem& item, const VisibilityFilter& filter);

}  // namespace ornwhatsnew

#endif  // ORNWHATSNEW_SRC_RULES_VISIBILITYRULES_H_
