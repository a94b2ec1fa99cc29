// States in words why a display hides an item or a change.
#ifndef HOSTS_AUTHOR_WHY_HIDINGREASON_H_
#define HOSTS_AUTHOR_WHY_HIDINGREASON_H_

#include <cstddef>
#include <span>
#include <string>
#include <vector>

#include <ornwhatsnew/VisibilityExplanation.h>

namespace hosts::author {

/// The visibility of an item and of its changes, and the line number of each change.
struct ExplainedItem {
  ornwhatsnew::ItemVisibility visibility;
  /// The line numbers of the item's changes in the data file, in ascending order.
  std::vector<std::size_t> lines;
};

/// Returns "feature" or "section".
std::string Noun(const ExplainedItem& item);

/// If a change is unreviewed or unmatched, returns a clause that states why the library adds it to
/// the section UNREVIEWED or INTERNAL. Otherwise, returns an empty string. "Its" in the clause
/// refers to the change.
std::string PlacementReason(const ornwhatsnew::FeatureListDetail& change);

// `ItemReasons`, `ItemReasonsForChanges` and `ChangeReasons` return reasons as clauses, in the
// order in which a display checks the rules. "It" in a clause is the item or the change that the
// display hides.

/// Returns why a display hides the item.
std::vector<std::string> ItemReasons(const ExplainedItem& item);

/// Returns why a display hides the item, and therefore all of its changes. Omits reasons that apply
/// only because none of the changes is shown.
std::vector<std::string> ItemReasonsForChanges(const ExplainedItem& item);

/// Returns why a display hides the change with the index `index` of an item, without the reasons
/// that `ItemReasonsForChanges` returns. `userVersions` contains the running version, and then the
/// other full versions in which the user opened the panel. A reason may name only the first
/// elements, so the running version must be the first one.
std::vector<std::string> ChangeReasons(const ExplainedItem& item, std::size_t index,
                                       std::span<const std::string> userVersions);

}  // namespace hosts::author

#endif  // HOSTS_AUTHOR_WHY_HIDINGREASON_H_
