// Implements the methods of the list that create the panel's text, its style runs and its layout.
#include <cassert>
#include <memory>
#include <utility>
#include <vector>

#include <orncore/string/Conversion.h>
#include <ornwhatsnew/FeatureListData.h>

#include "ornwhatsnew/src/FeatureListDataImpl.h"
#include "ornwhatsnew/src/ScopedCount.h"
#include "ornwhatsnew/src/panel/LayoutWriter.h"
#include "ornwhatsnew/src/panel/PanelFormatter.h"
#include "ornwhatsnew/src/panel/StyledTextWriter.h"
#include "ornwhatsnew/src/rules/VisibilityRules.h"

namespace ornwhatsnew {
namespace {

// Reserves memory for the panel. Without this function, a display misses its time goal
// (docs/performance.md). The growing text would use up to twice as many memory pages, and the first
// access to a page takes longer than writing text to it.
void ReserveFor(const FeatureMap& items, PanelFormatter& panel) {
  std::size_t changes = 0;
  std::size_t descriptionBytes = 0;
  for (const auto& [key, item] : items) {
    if (item == nullptr) continue;
    changes += item->GetAllChanges().size();
    for (const auto& change : item->GetAllChanges()) {
      descriptionBytes += change->GetDescription().size();
    }
  }
  panel.Reserve(items.size(), changes, descriptionBytes);
}

// Writes the panel. Returns the identities to add to the state. The result is empty if and only if
// the panel shows no item.
IdentitySet WritePanel(const ListContent& content, const DisplayOptions& options,
                       PanelFormatter& panel) {
  panel.WriteHeader(content.state.lastVersionSeen, content.changesSinceVersion.value_or(""));
  // With `kShowOnlyNew`, `kRatingView` or `kFilterHeadlinesOnly`, most changes are usually hidden.
  // `ReserveFor` would then reserve far too much memory.
  const bool hidesMost =
      options.Has(kShowOnlyNew) || options.Has(kRatingView) || options.Has(kFilterHeadlinesOnly);
  if (!hidesMost) ReserveFor(content.items, panel);

  std::vector<Guid> seen;
  content.VisitShownItems(options, [&](const FeatureListItem& item, const ShownItem& shown) {
    panel.WriteFeature(item, shown);
    AddSeenIdentities(shown, options, seen);
  });
  if (seen.empty()) panel.WriteNothingToShow();
  return MakeIdentitySet(std::move(seen));
}

// Returns the layout of the panel, and sets `shown` to the identities to add to the state.
PanelLayout LayOutPanel(const ListContent& content, const DisplayOptions& options,
                        IdentitySet& shown) {
  const UTF16String noPlaceholder;
  LayoutWriter writer;
  PanelFormatter panel(options, noPlaceholder, nullptr, writer);
  shown = WritePanel(content, options, panel);
  return writer.TakeLayout(!shown.empty());
}

}  // namespace

UTF16String FeatureListData::GetFormattedTextForDisplay(const DisplayOptions& options,
                                                        const UTF16String& ratingPlaceholder,
                                                        StyleRunMap& runs,
                                                        std::shared_ptr<RatingMap> ratingItems) {
  assert(impl_->activeIterations == 0);
  runs.clear();
  if (ratingItems != nullptr) ratingItems->clear();
  StyledTextWriter writer(runs);
  IdentitySet shown;
  {
    const ScopedCount iteration(impl_->activeIterations);
    PanelFormatter panel(options, ratingPlaceholder, ratingItems.get(), writer);
    shown = WritePanel(impl_->content, options, panel);
  }
  impl_->RecordDisplayPass(shown);
  return writer.TakeText();
}

PanelLayout FeatureListData::GetLayoutForDisplay(const DisplayOptions& options) {
  assert(impl_->activeIterations == 0);
  PanelLayout layout;
  IdentitySet shown;
  {
    const ScopedCount iteration(impl_->activeIterations);
    layout = LayOutPanel(impl_->content, options, shown);
  }
  impl_->RecordDisplayPass(shown);
  return layout;
}

PanelLayout FeatureListData::PreviewLayout(const DisplayOptions& options) const {
  const ScopedCount iteration(impl_->activeIterations);
  IdentitySet shown;
  return LayOutPanel(impl_->content, options, shown);
}

void FeatureListData::CaptureStyle(StyleID style, const UTF16String& textSoFar,
                                   const UTF16String& appended, int startAdjust, int lengthAdjust,
                                   const UTF16String& runString, StyleRunMap& runs) const {
  RecordStyleRun(style, orncore::string::UTF8Length(textSoFar),
                 orncore::string::UTF8Length(appended), {startAdjust, lengthAdjust}, runString,
                 runs);
}

}  // namespace ornwhatsnew
