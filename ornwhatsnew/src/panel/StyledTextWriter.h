// Writes the panel's text together with its style runs, in time linear in the length of the text.
#ifndef ORNWHATSNEW_SRC_PANEL_STYLEDTEXTWRITER_H_
#define ORNWHATSNEW_SRC_PANEL_STYLEDTEXTWRITER_H_

#include <cstddef>
#include <string_view>
#include <utility>

#include <ornwhatsnew/utility/SharedTypes.h>

namespace ornwhatsnew {

/// Numbers of UTF-8 bytes to add to the start and to the length of a run. They can be negative.
struct RunAdjustment {
  int start = 0;
  int length = 0;
};

/// Adds a run with the style `style` to `runs`. The run begins at the offset `start` of the text
/// and has the length `length`, both in UTF-8 bytes. Adds `adjustment` to both values, modulo 2^32.
/// `runString` is the string of the run, a URL or empty.
void RecordStyleRun(StyleID style, std::size_t start, std::size_t length, RunAdjustment adjustment,
                    UTF16String runString, StyleRunMap& runs);

/// Appends strings to a text and records their style runs. The positions of runs are in UTF-8
/// bytes. The writer counts these bytes as the text grows, because measuring the whole text for
/// each run would take quadratic time.
class StyledTextWriter {
 public:
  /// Creates a writer with an empty text. It adds the runs to `runs`, which must outlive the
  /// writer.
  explicit StyledTextWriter(StyleRunMap& runs) : runs_(runs) {}

  /// Reserves memory for a text of `units` UTF-16 units.
  void Reserve(std::size_t units) { text_.reserve(units); }

  /// Appends `string` without a run.
  void Append(std::u16string_view string);

  /// Appends `string` and records its run, even if `string` is empty. `runString` is the string of
  /// the run. `adjustment` is added to the start and the length of the run.
  void Append(StyleID style, std::u16string_view string, UTF16String runString = {},
              RunAdjustment adjustment = {});

  /// Appends `string`, which is UTF-8, and records its run.
  void AppendUTF8(StyleID style, std::string_view string);

  /// Records a run for `string`, which the caller must append next.
  void RecordRunOfNext(StyleID style, std::u16string_view string);

  /// Returns the text. Do not use the writer afterwards.
  UTF16String TakeText() { return std::move(text_); }

 private:
  /// Records a run of the part of `text_` from the index `begin`, and updates `bytes_`.
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
