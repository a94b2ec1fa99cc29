// Checks a layout against the text and the style runs of the same panel, by rules that hold for
// every panel. Tests and fuzzers use these functions with random hosts, dictionaries and data
// files.
#ifndef TESTS_SUPPORT_LAYOUTCHECK_H_
#define TESTS_SUPPORT_LAYOUTCHECK_H_

#include <string>

#include <ornwhatsnew/FeatureListData.h>
#include <ornwhatsnew/PanelLayout.h>

#include "tests/support/FakeStateStore.h"
#include "tests/support/PlainPanel.h"

namespace test_support {

/// Returns a description of the first violation of a rule in `layout`, or an empty string if there
/// is none. `panel` is the result of a display of the same list with the same options and without a
/// rating placeholder.
///
/// Examples of the rules: The spans of a paragraph are in order, do not overlap, and together
/// contain the whole paragraph. Each visible character of the text is in one paragraph, with the
/// style and the link of its run. White space within a paragraph is converted as `PanelLayout`
/// documents.
std::string FirstLayoutError(const ornwhatsnew::PanelLayout& layout, const PanelOutcome& panel);

/// Calls `PreviewLayout`, `CountNew`, `GetLayoutForDisplay` and `IsAnythingNew` of the list.
/// Compares the results with `panel`, the result of a display with the same options and without a
/// rating placeholder. Returns a description of the first error, or an empty string if there is
/// none. `state` must be the store of the list; the function clears its log.
std::string FirstLayoutError(ornwhatsnew::FeatureListData& list, FakeStateStore& state,
                             unsigned options, const PanelOutcome& panel);

}  // namespace test_support

#endif  // TESTS_SUPPORT_LAYOUTCHECK_H_
