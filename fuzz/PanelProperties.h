// What holds of every list and every panel, whatever the data file and the host are.
#ifndef FUZZ_PANELPROPERTIES_H_
#define FUZZ_PANELPROPERTIES_H_

#include <ornwhatsnew/FeatureListData.h>

#include "tests/support/PlainPanel.h"

namespace fuzz {

/// Every key stands once in the order. Holds after `InitWithData`.
void RequireKeysOnce(const ornwhatsnew::FeatureListData& list);

/// No change hangs on two items or twice on one, and there are no more than `rows`.
void RequireChangesOnce(const ornwhatsnew::FeatureListData& list, std::size_t rows);

/// The identities of what was seen and rated, among stored texts.
ornwhatsnew::GuidSet StoredIdentities(const test_support::PlainPanel::Texts& stored);

/// Each feature and each change of the list that is shown is written once, and nothing else.
/// `options` are those of the panel's display pass; `seen` is what was stored when the list was
/// loaded.
void RequireWrittenOnce(const ornwhatsnew::FeatureListData& list, unsigned options,
                        const ornwhatsnew::GuidSet& seen, const test_support::PanelOutcome& panel);

/// Every run lies inside the text and is not negative; that of a commit link, by design, reaches
/// one byte past its piece. Runs of one style start in ascending order.
/// REQUIRES: the template of issue keys is not translated to an empty text.
void RequireRunsInside(const test_support::PanelOutcome& panel);

/// Nothing but the header and the notice that there is nothing to show.
void RequireNoFeatureWritten(const test_support::PanelOutcome& panel);

}  // namespace fuzz

#endif  // FUZZ_PANELPROPERTIES_H_
