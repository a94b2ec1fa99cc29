// Builds rating controls for text output. A control shows the command line that rates a feature.
#ifndef HOSTS_CONSOLE_RATINGCONTROLS_H_
#define HOSTS_CONSOLE_RATINGCONTROLS_H_

#include <span>
#include <string>
#include <vector>

#include <ornwhatsnew/FeatureListData.h>

#include "hosts/common/StyledSegments.h"
#include "hosts/console/Commands.h"

namespace hosts::console {

/// Returns the rating placeholder for `GetFormattedTextForDisplay`. The placeholder is readable,
/// because `PlaceRatingControls` does not always replace it.
ornwhatsnew::UTF16String RatingPlaceholder();

/// Returns `word`, which may have any bytes except NUL, as one word of a POSIX shell. Adds quotes
/// if necessary. If `word` has invisible characters, control characters or ill-formed UTF-8, the
/// result is ASCII with octal escapes in `$'...'`. A terminal shows and copies this form
/// unchanged.
std::string ShellWord(const std::string& word);

/// Returns one control for each feature in `ratingItems`, in the order of the panel. A control
/// contains the feature's rating question and the command line that rates the feature. If the
/// feature has no question, the control contains a general one.
///
/// `list` is the displayed list, `ratingItems` is the rating map of its display, and `sources` are
/// the files that the printed command line names.
std::vector<std::string> RatingControls(const ornwhatsnew::FeatureListData& list,
                                        const ornwhatsnew::RatingMap& ratingItems,
                                        const SourceArguments& sources);

/// Replaces the n-th rating placeholder in `segments` with the n-th element of `controls`. Changes
/// nothing if the numbers of placeholders and controls differ.
void PlaceRatingControls(const std::vector<std::string>& controls,
                         std::span<common::StyledSegment> segments);

}  // namespace hosts::console

#endif  // HOSTS_CONSOLE_RATINGCONTROLS_H_
