// The panel's text and what comes of showing it.
#include <cassert>
#include <memory>
#include <utility>
#include <vector>

#include <orncore/string/Conversion.h>
#include <ornwhatsnew/FeatureListData.h>

#include "ornwhatsnew/src/CountedScope.h"
#include "ornwhatsnew/src/panel/PanelFormatter.h"
#include "ornwhatsnew/src/panel/StyledTextWriter.h"
#include "ornwhatsnew/src/rules/VisibilityRules.h"

namespace ornwhatsnew {
namespace {

// A text that grows by doubling uses twice the memory, and the first access to new memory costs
// more than writing the text: without this, a panel of 10,000 changes takes half as long again.
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
  panel.Reserve(changes, descriptionBytes);
}

}  // namespace

UTF16String FeatureListData::GetFormattedTextForDisplay(const DisplayOptions& options,
                                                        const UTF16String& ratingPlaceholder,
                                                        StyleRunMap& runs,
                                                        std::shared_ptr<RatingMap> ratingItems) {
  runs.clear();
  if (ratingItems != nullptr) ratingItems->clear();
  assert(walks_ == 0);
  PanelFormatter panel(options, ratingPlaceholder, runs, ratingItems.get());
  panel.WriteHeader(lastVersionSeen_, changesSinceVersion_);

  const IdentitySet shown = WriteShownFeatures(options, panel);
  if (shown.empty()) panel.WriteNothingToShow();

  RememberDisplayPass(shown);
  return panel.TakeText();
}

IdentitySet FeatureListData::WriteShownFeatures(const DisplayOptions& options,
                                                PanelFormatter& panel) const {
  const CountedScope walk(walks_);
  const VisibilityQuestion question(options, seenGuids_, seenVersions_);
  // Of what is asked for by state, most is mostly left out.
  if (!question.AsksForState()) ReserveFor(featureItems_, panel);

  ItemFindings findings;
  std::vector<Guid> shown;
  for (const std::string& key : orderedKeys_) {
    const FeatureListItem* const item = FindItem(key);
    if (item == nullptr || !IsItemShown(*item, question, &findings)) continue;
    panel.WriteFeature(*item, findings);

    shown.push_back(findings.itemSeen);
    if (options.Has(kRatingView)) continue;  // there the user rates the feature, not its changes
    for (const auto& change : findings.shownChanges) shown.push_back(change.seen);
  }
  return IdentitySet(std::move(shown));
}

void FeatureListData::CaptureStyle(StyleID style, const UTF16String& textSoFar,
                                   const UTF16String& piece, int startAdjust, int lengthAdjust,
                                   const UTF16String& runString, StyleRunMap& runs) const {
  RecordStyleRun(style, orncore::string::UTF8Length(textSoFar), orncore::string::UTF8Length(piece),
                 {startAdjust, lengthAdjust}, runString, runs);
}

}  // namespace ornwhatsnew
