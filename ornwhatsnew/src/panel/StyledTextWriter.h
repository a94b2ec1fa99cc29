// Writes the panel's text together with its style runs, in time linear in the text.
#ifndef ORNWHATSNEW_SRC_PANEL_STYLEDTEXTWRITER_H_
#define ORNWHATSNEW_SRC_PANEL_STYLEDTEXTWRITER_H_

#include <cstddef>
#include <string_view>
#include <utility>

#include <ornwhatsnew/utility/SharedTypes.h>

namespace ornwhatsnew {

/// The difference between a run and its string, in UTF-8 bytes.
struct RunAdjustment {
  int start = 0;
  int length = 0;
};

/// Adds to `runs` the run of a string of `length` UTF-8 bytes that begins at byte `start` of the
/// text. Computes with 32-bit integers that wrap around.
void RecordStyleRun(StyleID style, std::size_t start, std::size_t length, RunAdjustment adjustment,
                    UTF16String runString, StyleRunMap& runs);

/// A text that grows at its end. Style runs count UTF-8 bytes of the whole text. The writer keeps
/// that count, because converting the whole text for every run would take quadratic time.
class StyledTextWriter {
 public:
  /// Starts with an empty text. The runs are added to `runs`, which must outlive the writer.
  explicit StyledTextWriter(StyleRunMap& runs) : runs_(runs) {}

  /// Reserves memory for a text of `units` UTF-16 units.
  void Reserve(std::size_t units) { text_.reserve(units); }

  /// Appends `string` without a run.
  void Append(std::u16string_view string);

  /// Appends `string` and records its run, also if `string` is empty.
  void Append(StyleID style, std::u16string_view string, UTF16String runString = {},
              RunAdjustment adjustment = {});

  /// Appends a string given in UTF-8 and records its run.
  void AppendUTF8(StyleID style, std::string_view string);

  /// Records a run for `string`, which the caller appends next.
  void RecordRunOfNext(StyleID style, std::u16string_view string);

  /// Moves the text out. REQUIRES: the writer is not used afterwards.
  UTF16String TakeText() { return std::move(text_); }

 private:
  /// Records the run of everything in `text_` from the index `begin`, and counts its bytes.
  void RecordAppended(std::size_t begin, StyleID style, UTF16String runString,
                      RunAdjustment adjustment);

  /// Adds everything in `text_` from the index `begin` to `bytes_`. Returns its UTF-8 bytes.
  std::size_t CountAppended(std::size_t begin);

  StyleRunMap& runs_;
  UTF16String text_;
  /// The UTF-8 bytes of `text_`.
  std::size_t bytes_ = 0;
};

}  // namespace ornwhatsnew

#endif  // ORNWHATSNEW_SRC_PANEL_STYLEDTEXTWRITER_H_
