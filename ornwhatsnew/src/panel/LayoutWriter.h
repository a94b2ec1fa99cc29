// Writes the layout of a panel.
#ifndef ORNWHATSNEW_SRC_PANEL_LAYOUTWRITER_H_
#define ORNWHATSNEW_SRC_PANEL_LAYOUTWRITER_H_

#include <cstddef>
#include <optional>
#include <string_view>
#include <vector>

#include <ornwhatsnew/PanelLayout.h>

#include "ornwhatsnew/src/panel/PanelWriter.h"

namespace ornwhatsnew {

/// Creates a layout. The strings of the panel must be well-formed.
class LayoutWriter final : public PanelWriter {
 public:
  void Reserve(std::size_t paragraphs, std::size_t units) override;

  void BeginParagraph(ParagraphKind kind, const FeatureListItem* item) override;
  void EndParagraph(std::u16string_view newline) override;

  void AppendTemplate(std::u16string_view string) override;
  void AppendRun(StyleID style, std::u16string_view string, UTF16String link,
                 RunAdjustment adjustment) override;

  void AppendBullet(std::u16string_view bullet) override;
  void AppendChangeText(std::u16string_view text) override;
  void AppendChangeTextUTF8(std::string_view text) override;
  void AppendUnlockLabel(std::u16string_view label) override;

  bool HasRatingRequests() const override { return true; }
  void AddRatingRequest(const FeatureListItem& item, RatingRequest request) override;

  /// Returns the layout. `hasItems` states whether the panel shows an item. Do not use the writer
  /// afterwards.
  PanelLayout TakeLayout(bool hasItems);

 private:
  void AppendSpan(std::optional<StyleID> style, std::u16string_view string, UTF16String link = {});
  /// Cleans the string that was appended at the index `begin` of the text, and adds a span for the
  /// result. Adds no span if the result is empty.
  void AddSpan(std::size_t begin, std::optional<StyleID> style, UTF16String link);
  /// In the string that was appended at the index `begin` of the text, replaces each line end with
  /// U+2028 and each tab with a space. Removes U+FEFF, and white space at the start of the
  /// paragraph.
  void CleanText(std::size_t begin);
  /// Applies `CleanText` to `string`, and removes the white space at its end. The current paragraph
  /// must be empty.
  void CleanString(UTF16String& string);
  void RemoveTrailingWhiteSpace();

  PanelLayout layout_;
  /// The current paragraph. `EndParagraph` moves `spans_` into it.
  LayoutParagraph paragraph_;
  /// The spans of the current paragraph. All paragraphs reuse this buffer, so that each of them
  /// allocates memory for its spans only once.
  std::vector<LayoutSpan> spans_;
  /// Whether the last appended string ended with a carriage return. A line feed at the start of the
  /// next string is part of the same line end.
  bool endsWithCarriageReturn_ = false;
};

}  // namespace ornwhatsnew

#endif  // ORNWHATSNEW_SRC_PANEL_LAYOUTWRITER_H_
