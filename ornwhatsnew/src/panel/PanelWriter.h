// Defines the interface through which the formatter writes a panel. One implementation creates the
// text with its style runs, and the other creates the layout.
#ifndef ORNWHATSNEW_SRC_PANEL_PANELWRITER_H_
#define ORNWHATSNEW_SRC_PANEL_PANELWRITER_H_

#include <cstddef>
#include <string_view>

#include <ornwhatsnew/FeatureListItem.h>
#include <ornwhatsnew/PanelLayout.h>
#include <ornwhatsnew/utility/SharedTypes.h>

namespace ornwhatsnew {

/// Numbers of UTF-8 bytes to add to the start and to the length of a run. They can be negative.
struct RunAdjustment {
  int start = 0;
  int length = 0;
};

/// Receives the strings of a panel in the order of its text. Each string except the rating
/// placeholder belongs to the current paragraph: the last paragraph for which `BeginParagraph`
/// was called.
class PanelWriter {
 public:
  PanelWriter() = default;
  PanelWriter(const PanelWriter&) = delete;
  PanelWriter& operator=(const PanelWriter&) = delete;
  virtual ~PanelWriter() = default;

  /// Reserves memory for about `paragraphs` paragraphs, which have about `units` UTF-16 units in
  /// total.
  virtual void Reserve(std::size_t paragraphs, std::size_t units) = 0;

  /// Begins a paragraph of `item`. If `item` is null, the paragraph belongs to the whole panel.
  virtual void BeginParagraph(ParagraphKind kind, const FeatureListItem* item) = 0;
  /// Ends the paragraph. `newline` is the newline template, or empty if the paragraph contains its
  /// own line ends.
  virtual void EndParagraph(std::u16string_view newline) = 0;

  /// Appends `string` without a style.
  virtual void AppendTemplate(std::u16string_view string) = 0;
  /// Appends `string` as a style run. `link` is the URL to which the run refers, or empty. Adds
  /// `adjustment.start` to the start of the run and `adjustment.length` to its length.
  virtual void AppendRun(StyleID style, std::u16string_view string, UTF16String link,
                         RunAdjustment adjustment) = 0;
  /// Appends `string` with a style and without a link.
  void AppendStyled(StyleID style, std::u16string_view string) { AppendRun(style, string, {}, {}); }

  /// Appends the bullet of a change with the tabs around it.
  virtual void AppendBullet(std::u16string_view bullet) = 0;
  /// Appends the description of a change.
  virtual void AppendChangeText(std::u16string_view text) = 0;
  /// Appends `text`, the description of a change in UTF-8.
  virtual void AppendChangeTextUTF8(std::string_view text) = 0;
  /// Appends an unlock label.
  virtual void AppendUnlockLabel(std::u16string_view label) = 0;

  /// Returns whether the writer uses rating requests.
  virtual bool HasRatingRequests() const = 0;
  /// Adds a rating request of `item` after its last change. Does nothing if the writer does not use
  /// rating requests.
  virtual void AddRatingRequest(const FeatureListItem& item, RatingRequest request) = 0;
};

}  // namespace ornwhatsnew

#endif  // ORNWHATSNEW_SRC_PANEL_PANELWRITER_H_
