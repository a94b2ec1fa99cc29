// Wraps a paragraph at the width of a terminal.
#ifndef ORNWHATSNEW_SRC_RENDER_PARAGRAPHWRAPPER_H_
#define ORNWHATSNEW_SRC_RENDER_PARAGRAPHWRAPPER_H_

#include <cstddef>
#include <memory>
#include <string_view>
#include <vector>

namespace ornwhatsnew {

/// The indents of a paragraph, and the length of its prefix, such as a bullet and the gap after it.
/// `firstIndent` is the indent of the first line, and `hangingIndent` is the indent of the other
/// lines, both in columns. `unbrokenPrefix` is the number of UTF-16 code units of the prefix.
/// The prefix is broken only if it does not fit on one line.
struct ParagraphShape {
  std::size_t firstIndent = 0;
  std::size_t hangingIndent = 0;
  std::size_t unbrokenPrefix = 0;
};

/// One line of a wrapped paragraph: `indent` spaces, and then the UTF-16 units `[begin, end)` of
/// the paragraph. The spaces at a line break belong to no line.
struct WrappedLine {
  std::size_t begin;
  std::size_t end;
  std::size_t indent;

  friend bool operator==(const WrappedLine&, const WrappedLine&) = default;
};

/// Wraps paragraphs at a fixed width, according to the Unicode line breaking rules. If a word is
/// longer than a line, breaks it between graphemes. Puts a grapheme that is wider than a line on a
/// separate line. A wrapper is not thread-safe.
class ParagraphWrapper {
 public:
  /// Creates a wrapper for lines of `width` columns. If `width` is 0, the wrapper never breaks a
  /// line.
  explicit ParagraphWrapper(std::size_t width);
  ~ParagraphWrapper();
  ParagraphWrapper(const ParagraphWrapper&) = delete;
  ParagraphWrapper& operator=(const ParagraphWrapper&) = delete;

  /// Returns the lines of `paragraph`. The result has at least one line. If the width is not 0,
  /// limits both indents of `shape` to half of the width. Does not wrap a paragraph of 2^31 UTF-16
  /// units or more. Takes linear time. REQUIRES: `paragraph` has no control characters.
  std::vector<WrappedLine> Wrap(std::u16string_view paragraph, ParagraphShape shape);

 private:
  struct Breaks;

  std::size_t width_;
  std::unique_ptr<Breaks> breaks_;
};

}  // namespace ornwhatsnew

#endif  // ORNWHATSNEW_SRC_RENDER_PARAGRAPHWRAPPER_H_
