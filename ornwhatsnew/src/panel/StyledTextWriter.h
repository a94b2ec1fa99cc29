// Writes the panel's text together with its style runs, in time linear in the length of the text.
#ifndef ORNWHATSNEW_SRC_PANEL_STYLEDTEXTWRITER_H_
#define ORNWHATSNEW_SRC_PANEL_STYLEDTEXTWRITER_H_

#include <cstddef>
#include <string_view>
#include <utility>

#include <ornwhatsnew/utility/SharedTypes.h>

#include "ornwhatsnew/src/panel/PanelWriter.h"

namespace ornwhatsnew {

/// Adds a run with the style `style` to `runs`. The run begins at the offset
/// `start + adjustment.start` of the text, and its length is `length + adjustment.length`. Both
/// sums are in UTF-8 bytes and wrap modulo 2^32. `runString` is the string of the run: a URL, or
/// empty.
void RecordStyleRun(StyleID style, std::size_t start, std::size_t length, RunAdjustment adjustment,
                    UTF16String runString, StyleRunMap& runs);

/// Appends strings to the panel's text and records their style runs. The positions of runs are in
/// UTF-8 bytes. The writer counts these bytes as the text grows, because measuring the whole text
/// for each run would take quadratic time. Each styled string has a run, even if the string is
/// empty.
class StyledTextWriter final : public PanelWriter {
 public:
  /// Creates a writer with an empty text. It adds the runs to `runs`, which must outlive the
  /// writer.
  explicit StyledTextWriter(StyleRunMap& runs) : runs_(runs) {}

  void Reserve(std::size_t /*paragraphs*/, std::size_t units) override { text_.reserve(units); }

  void BeginParagraph(ParagraphKind /*kind*/, const FeatureListItem* /*item*/) override {}
  void EndParagraph(std::u16string_view newline) override { AppendTemplate(newline); }

  void AppendTemplate(std::u16string_view string) override;
  void AppendRun(StyleID style, std::u16string_view string, UTF16String link,
                 RunAdjustment adjustment) override;

  void AppendBullet(std::u16string_view bullet) override { AppendStyled(kStyleChangeText, bullet); }
  void AppendChangeText(std::u16string_view text) override { AppendStyled(kStyleChangeText, text); }
  void AppendChangeTextUTF8(std::string_view text) override;
  void AppendUnlockLabel(std::u16string_view label) override;

  bool HasRatingRequests() const override { return false; }
  void AddRatingRequest(const FeatureListItem& /*item*/, RatingRequest /*request*/) override {}

  /// Returns the text. Do not use the writer afterwards.
  UTF16String TakeText() { return std::move(text_); }

 private:
  /// Records a run for the string that was appended at the index `begin` of `text_`, and updates
  /// `bytes_`.
  void RecordAppended(std::size_t begin, StyleID style, UTF16String runString,
                      RunAdjustment adjustment);

  /// Updates `bytes_` after a string was appended at the index `begin` of `text_`. Returns the
  /// length of that string in UTF-8 bytes.
  std::size_t CountAppended(std::size_t begin);

  StyleRunMap& runs_;
  UTF16String text_;
  /// The length of `text_` in UTF-8 bytes.
  std::size_t bytes_ = 0;
};

}  // namespace ornwhatsnew

#endif  // ORNWHATSNEW_SRC_PANEL_STYLEDTEXTWRITER_H_
