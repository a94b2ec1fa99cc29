// What stands where a window would have its rating control: the command that rates the feature.
#ifndef HOSTS_CONSOLE_RATINGCONTROLS_H_
#define HOSTS_CONSOLE_RATINGCONTROLS_H_

#include <span>
#include <string>
#include <vector>

#include <ornwhatsnew/FeatureListData.h>

#include "hosts/common/StyledSegments.h"
#include "hosts/console/Commands.h"

namespace hosts::console {

/// The placeholder to ask for: it reads sensibly even if it is never replaced.
ornwhatsnew::UTF16String RatingPlaceholder();

/// The word as a shell reads it back: quoted when it has to be.
std::string ShellWord(const std::string& word);

/// The paragraph for each feature that the panel shows, in the panel's order: its own rating
/// question, or a general one, and the command line that rates it. `ratingItems` is what the
/// display pass of `list` filled.
std::vector<std::string> RatingControls(const ornwhatsnew::FeatureListData& list,
                                        const ornwhatsnew::RatingMap& ratingItems,
                                        const SourceArguments& sources);

/// Replaces the placeholders, the n-th by the n-th control. Leaves them all as they are when their
/// number is another.
void PlaceRatingControls(const std::vector<std::string>& controls,
                         std::span<common::StyledSegment> segments);

}  // namespace hosts::console

#endif  // HOSTS_CONSOLE_RATINGCONTROLS_H_
