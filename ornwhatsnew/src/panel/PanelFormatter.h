// Writes the panel: its header, its features, their change lines, and the notices that stand where
// nothing is to be shown.
#ifndef ORNWHATSNEW_SRC_PANEL_PANELFORMATTER_H_
#define ORNWHATSNEW_SRC_PANEL_PANELFORMATTER_H_

#include <cstddef>
#include <string_view>

#include <ornwhatsnew/FeatureListItem.h>
#include <ornwhatsnew/utility/SharedTypes.h>

#include "ornwhatsnew/src/panel/DisplayTemplates.h"
#include "ornwhatsnew/src/panel/StyledTextWriter.h"
#include "ornwhatsnew/src/rules/VisibilityRules.h"

namespace ornwhatsnew {

/// Formats one panel. What is shown is decided elsewhere and handed in; how it reads is decided
/// here. Lives for one display.
class PanelFormatter {
 public:
  /// Fills `runs` and, when not null, `ratingItems`, which are empty; both, and
  /// `ratingPlaceholder`, outlive the formatter.
  PanelFormatter(DisplayOptions options, const UTF16String& ratingPlaceholder, StyleRunMap& runs,
                 RatingMap* ratingItems);

  /// Makes room for about so many changes, whose descriptions have so many bytes altogether.
  void Reserve(std::size_t changes, std::size_t descriptionBytes);

  /// Comes first.
  void WriteHeader(const UTF8String& lastVersionSeen, const UTF8String& changesSinceVersion);
  void WriteFeature(const FeatureListItem& item, const ItemFindings& findings);
  /// The notice for a panel without features.
  void WriteNothingToShow();

  UTF16String TakeText() { return writer_.TakeText(); }

 private:
  struct RatingSummary;

  void WriteTitleLine(const FeatureListItem& item, bool isSection);
  void WriteDescription(const FeatureListItem& item);
  void WriteChangeLine(const FeatureListDetail& change, const FeatureListItem& item,
                       bool isSection);
  void WriteAnnotations(const FeatureListDetail& change, const FeatureListItem& item,
                        bool isSection);
  void WriteIgnoredURLNote(const FeatureListDetail& change, const FeatureListItem& item,
                           bool isSection);
  void WritePlatform(const FeatureListDetail& change);
  void WriteChangeText(const FeatureListDetail& change);
  void WriteVersion(const FeatureListDetail& change);
  void WriteIssueLink(std::string_view id);
  void WriteCommitLink(const UTF8String& commit);
  void WriteRating(const FeatureListItem& item, const RatingSummary& rating);
  void RecordForRating(const FeatureListItem& item, const RatingSummary& rating);

  /// The title as the panel shows it.
  UTF16String Title(const FeatureListItem& item) const;
  /// The label behind the title; null for none.
  const UTF16String* UnlockLabel(const FeatureListItem& item) const;
  void WriteFilled(StyleID style, const TextTemplate& pattern, std::u16string_view text);

  const DisplayOptions options_;
  const UTF16String& ratingPlaceholder_;
  RatingMap* const ratingItems_;
  const DisplayTemplates templates_;
  const UTF16String bulletPrefix_;
  /// Asked once, behind the header.
  bool isInternalUser_ = false;
  StyledTextWriter writer_;
  /// Kept between the pieces.
  UTF16String filled_;
  UTF16String first_;
  UTF16String second_;
};

}  // namespace ornwhatsnew

#endif  // ORNWHATSNEW_SRC_PANEL_PANELFORMATTER_H_
