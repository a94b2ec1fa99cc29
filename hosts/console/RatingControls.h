// Rating controls for text output: the command line that rates a feature.
#ifndef HOSTS_CONSOLE_RATINGCONTROLS_H_
#define HOSTS_CONSOLE_RATINGCONTROLS_H_

#include <span>
#include <string>
#include <vector>

#include <ornwhatsnew/FeatureListData.h>

#include "hosts/common/StyledSegments.h"
#include "hosts/console/Commands.h"

namespace hosts::console {

/// The placeholder text for `GetFormattedTextForDisplay`. It is readable even if it is not
/// replaced.
ornwhatsnew::UTF16String RatingPlaceholder();

/// Returns the word quoted for a shell if necessary.
std::string ShellWord(const std::string& word);

/// Returns one paragraph for each feature in `ratingItems`, in the panel's order: the feature's
/// rating question, or a general one, and the command line that rates it. `ratingItems` is the
/// rating map from the display pass.
std::vector<std::string> RatingControls(const ornwhatsnew::FeatureListData& list,
                                        const ornwhatsnew::RatingMap& ratingItems,
                                        const SourceArguments& sources);

/// Replaces the n-th placeholder by the n-th control. If the numbers differ, all placeholders stay
/// unchanged.
void PlaceRatingControls(const std::vector<std::string>& controls,
                         std::span<common::StyledSegment> segments);

}  // namespace hosts::console

#endif  // HOSTS_CONSOLE_RATINGCONTROLS_H_
