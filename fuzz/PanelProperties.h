// Properties of every list and every panel, for any data file and host.
#ifndef FUZZ_PANELPROPERTIES_H_
#define FUZZ_PANELPROPERTIES_H_

#include <ornwhatsnew/FeatureListData.h>

#include "tests/support/PlainPanel.h"

namespace fuzz {

/// Each key occurs once in the order. Holds after `InitWithData`.
void RequireKeysOnce(const ornwhatsnew::FeatureListData& list);

/// No change belongs to two items or twice to one, and there are at most `rows` changes.
void RequireChangesOnce(const ornwhatsnew::FeatureListData& list, std::size_t rows);

/// Returns the identities that were seen or rated, from stored texts.
ornwhatsnew::GuidSet StoredIdentities(const test_support::PlainPanel::Texts& stored);

/// The panel contains each visible feature and change of the list once, and nothing else. `options`
/// are those of the display call; `seen` was stored when the list was loaded.
void RequireWrittenOnce(const ornwhatsnew::FeatureListData& list, unsigned options,
                        const ornwhatsnew::GuidSet& seen, const test_support::PanelOutcome& panel);

/// Every run is inside the text and has no negative length; the run of a commit link extends one
/// byte past its text by design. Runs of one style start in ascending order. REQUIRES: the template
/// of issue keys is not translated to an empty text.
void RequireRunsInside(const test_support::PanelOutcome& panel);

/// The panel contains only the header and the notice that there is nothing to show.
void RequireNoFeatureWritten(const test_support::PanelOutcome& panel);

}  // namespace fuzz

#endif  // FUZZ_PANELPROPERTIES_H_
