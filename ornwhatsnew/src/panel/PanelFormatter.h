// Writes a panel: the header, the items with their changes, and the notice of a panel without
// items.
#ifndef ORNWHATSNEW_SRC_PANEL_PANELFORMATTER_H_
#define ORNWHATSNEW_SRC_PANEL_PANELFORMATTER_H_

#include <cstddef>
#include <string_view>

#include <ornappsupport/links/PanelLinks.h>
#include <ornwhatsnew/FeatureListItem.h>
#include <ornwhatsnew/utility/SharedTypes.h>

#include "ornwhatsnew/src/panel/DisplayTemplates.h"
#include "ornwhatsnew/src/panel/PanelWriter.h"
#include "ornwhatsnew/src/rules/VisibilityRules.h"

namespace ornwhatsnew {

/// Formats one panel. The caller decides which items and changes are shown. Create one object for
/// each display.
class PanelFormatter {
 public:
  /// Localises the templates, reads the panel links of the host, and queries the internal-features
  /// permission. The formatter writes the panel to `writer`, and adds the rating records to
  /// `ratingItems` if it is not null. `ratingPlaceholder`, `ratingItems` and `writer` must outlive
  /// the formatter.
  PanelFormatter(DisplayOptions options, const UTF16String& ratingPlaceholder,
                 RatingMap* ratingItems, PanelWriter& writer);

  /// Reserves memory for a panel with about `items` items and `changes` changes. The descriptions
  /// of the changes have `descriptionBytes` bytes in total.
  void Reserve(std::size_t items, std::size_t changes, std::size_t descriptionBytes);

  /// Writes the header line. It contains `lastVersionSeen` if the options contain `kShowOnlyNew`
  /// and that version is not empty. Otherwise it contains `changesSinceVersion`. In the rating
  /// view, writes two newlines instead. Call this function before the other write functions.
  void WriteHeader(const UTF8String& lastVersionSeen, const UTF8String& changesSinceVersion);
  /// Writes a feature or a section with the changes in `shown`. If the constructor received a map
  /// for rating records, adds a rating record. In the rating view, adds a rating request if the
  /// writer uses rating requests. If the rating placeholder is not empty, writes it at the end.
  void WriteFeature(const FeatureListItem& item, const ShownItem& shown);
  /// Writes the notice that a panel without items contains.
  void WriteNothingToShow();

 private:
  struct RatingSummary;

  void WriteTitleLine(const FeatureListItem& item);
  void WriteDescription(const FeatureListItem& item);
  void WriteChangeLine(const FeatureListDetail& change, const FeatureListItem& item);
  /// Writes a note for each condition that is true. Only internal users see the notes.
  /// - `change` is unmatched.
  /// - `change` has a URL that is malformed, is a duplicate, or belongs to a section.
  /// - `change` has a malformed platform.
  /// - `change` has a malformed salience.
  void WriteNotes(const FeatureListDetail& change, const FeatureListItem& item);
  void WriteIgnoredURLNote(const FeatureListDetail& change, const FeatureListItem& item);
  void WritePlatform(const FeatureListDetail& change);
  void WriteChangeText(const FeatureListDetail& change);
  void WriteVersion(const FeatureListDetail& change);
  void WriteIssueLink(std::string_view id);
  void WriteCommitLink(const UTF8String& commit);
  /// Adds a rating record of the item if the constructor received a map for rating records. In the
  /// rating view, also adds a rating request if the writer uses rating requests.
  void AddRating(const FeatureListItem& item, const RatingSummary& rating);

  /// Returns the unlock label of the item, or null if it has none.
  const UTF16String* UnlockLabel(const FeatureListItem& item) const;
  /// Writes `pattern` with `@0` replaced by `text`.
  void WriteFilled(StyleID style, std::u16string_view pattern, std::u16string_view text);

  const DisplayOptions options_;
  const UTF16String& ratingPlaceholder_;
  RatingMap* const ratingItems_;
  const DisplayTemplates templates_;
  const ornappsupport::links::PanelLinks links_ = ornappsupport::links::GetPanelLinks();
  const UTF16String bulletPrefix_;
  const bool isInternalUser_;
  PanelWriter& writer_;
};

}  // namespace ornwhatsnew

#endif  // ORNWHATSNEW_SRC_PANEL_PANELFORMATTER_H_
