// Writes the panel's text together with its style runs, in time linear in the text.
#ifndef ORNWHATSNEW_SRC_PANEL_STYLEDTEXTWRITER_H_
#define ORNWHATSNEW_SRC_PANEL_STYLEDTEXTWRITER_H_

#include <array>
#include <cstddef>
#include <string_view>
#include <vector>

#include <ornwhatsnew/utility/SharedTypes.h>

namespace ornwhatsnew {

/// How far a run's start and length differ from those of its piece, in UTF-8 bytes.
struct RunAdjustment {
  int start = 0;
  int length = 0;
};

/// Appends the run of a piece of `pieceBytes` UTF-8 bytes behind a text of `bytesBefore`. The
/// arithmetic is that of 32 bits and wraps.
void RecordStyleRun(StyleID style, std::size_t bytesBefore, std::size_t pieceBytes,
                    RunAdjustment adjustment, UTF16String runString, StyleRunMap& runs);

/// A text that grows piece by piece. Runs count UTF-8 bytes of the whole text, so the writer keeps
/// that count instead of converting the text again for every run.
class StyledTextWriter {
 public:
  /// Writes an empty text; runs go to `runs`, which is cleared and must outlive the writer.
  explicit StyledTextWriter(StyleRunMap& runs) : runs_(runs) { runs_.clear(); }

  /// Makes room for a text of so many UTF-16 units.
  void Reserve(std::size_t units) { text_.reserve(units); }

  /// Makes room for so many runs of a style, once it has the first.
  void ReserveRuns(StyleID style, std::size_t count) {
    expectedRuns_[static_cast<std::size_t>(style)] = count;
  }

  /// Appends a piece without style.
  void Append(std::u16string_view piece);

  /// Appends a piece and records its run. An empty piece has a run, too.
  void Append(StyleID style, std::u16string_view piece, UTF16String runString = {},
              RunAdjustment adjustment = {});

  /// The same from UTF-8.
  void AppendUTF8(StyleID style, std::string_view piece);

  /// Records a run over the piece that comes next.
  void RecordRunBefore(StyleID style, std::u16string_view piece);

  /// The text; the writer is empty afterwards.
  UTF16String TakeText();

 private:
  /// The runs of a style, which are looked up once: a map's entries stay where they are.
  std::vector<StyleRun>& RunsOf(StyleID style);

  /// Counts what was appended behind the first `unitsBefore` units.
  std::size_t CountAppended(std::size_t unitsBefore);

  /// The library's own styles, 0 to 13.
  static constexpr std::size_t kStyleCount = 14;

  StyleRunMap& runs_;
  std::array<std::vector<StyleRun>*, kStyleCount> runsByStyle_{};
  std::array<std::size_t, kStyleCount> expectedRuns_{};
  UTF16String text_;
  std::size_t bytes_ = 0;
};

}  // namespace ornwhatsnew

#endif  // ORNWHATSNEW_SRC_PANEL_STYLEDTEXTWRITER_H_
