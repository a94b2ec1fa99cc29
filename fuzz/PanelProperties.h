// Checks the properties that every list and every panel must have for any data file and host. If a
// property does not hold, the process prints a message and aborts.
#ifndef FUZZ_PANELPROPERTIES_H_
#define FUZZ_PANELPROPERTIES_H_

#include <ornwhatsnew/FeatureListData.h>

#include "tests/support/PlainPanel.h"

namespace fuzz {

/// Checks that no key occurs twice in the key order. `InitWithData` guarantees this property.
void RequireKeysOnce(const ornwhatsnew::FeatureListData& list);

/// Checks that the list contains no duplicate changes and at most `rows` changes. `rows` is the
/// number of change rows in the data file.
void RequireChangesOnce(const ornwhatsnew::FeatureListData& list, std::size_t rows);

/// Returns the identities in a stored state. `stored` maps each key of the state to its string. An
/// invalid element becomes the nil identity.
ornwhatsnew::GuidSet StoredIdentities(const test_support::PlainPanel::Texts& stored);

/// Checks that the panel has one title and one rating record for each visible item of the list.
/// Checks that each visible change has two runs with the style `kStyleChangeText`, and a third run
/// if the change has a usable platform. `options` is the bitwise OR of the `DisplayOptions` values
/// of the display call. `seen` contains the identities that were stored when the list was loaded.
void RequireWrittenOnce(const ornwhatsnew::FeatureListData& list, unsigned options,
                        const ornwhatsnew::GuidSet& seen, const test_support::PanelOutcome& panel);

/// Checks that every run is inside the text and has no negative length, and that the runs of one
/// style start in ascending order. The run of a commit link may end one byte after the text, as
/// docs/compatibility.md explains. REQUIRES: the template for issue keys is not translated to an
/// empty string.
void RequireRunsInside(const test_support::PanelOutcome& panel);

/// Checks that the panel shows no item and has no rating record.
void RequireNoFeatureWritten(const test_support::PanelOutcome& panel);

}  // namespace fuzz

#endif  // FUZZ_PANELPROPERTIES_H_
