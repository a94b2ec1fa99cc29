// Rating controls for text output. A control shows the command line that rates a feature.
#ifndef HOSTS_CONSOLE_RATINGCONTROLS_H_
#define HOSTS_CONSOLE_RATINGCONTROLS_H_

#include <span>
#include <string>
#include <vector>

#include <ornwhatsnew/FeatureListData.h>

#include "hosts/common/StyledSegments.h"
#include "hosts/console/Commands.h"

namespace hosts::console {

/// Returns the rating placeholder for `GetFormattedTextForDisplay`. It is readable text, in case it
/// is not replaced.
ornwhatsnew::UTF16String RatingPlaceholder();

/// Returns `word`, quoted for a POSIX shell if necessary.
std::string ShellWord(const std::string& word);

/// Returns one control for each feature in `ratingItems`, in the panel's order. A control contains
/// the feature's rating question, or a general one, and the command line that rates the feature.
/// `ratingItems` is the rating map from the display.
std::vector<std::string> RatingControls(const ornwhatsnew::FeatureListData& list,
                                        const ornwhatsnew::RatingMap& ratingItems,
                                        const SourceArguments& sources);

/// Replaces the n-th placeholder with the n-th control. Changes nothing if the numbers of
/// placeholders and controls differ.
void PlaceRatingControls(const std::vector<std::string>& controls,
                         std::span<common::StyledSegment> segments);

}  // namespace hosts::console

#endif  // HOSTS_CONSOLE_RATINGCONTROLS_H_
