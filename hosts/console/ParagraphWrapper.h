// Wraps a paragraph at the width of a terminal.
#ifndef HOSTS_CONSOLE_PARAGRAPHWRAPPER_H_
#define HOSTS_CONSOLE_PARAGRAPHWRAPPER_H_

#include <cstddef>
#include <memory>
#include <string_view>
#include <vector>

namespace hosts::console {

/// The indents of a paragraph's first line and of its other lines, in columns. `unbrokenPrefix` is
/// the number of UTF-16 units at its start that stay on one line, such as a bullet and the gap
/// after it.
struct ParagraphShape {
  std::size_t firstIndent = 0;
  std::size_t hangingIndent = 0;
  std::size_t unbrokenPrefix = 0;
};

/// One line: `indent` spaces, and then the UTF-16 units `[begin, end)` of the paragraph. No line
/// includes the spaces at a break.
struct WrappedLine {
  std::size_t begin;
  std::size_t end;
  std::size_t indent;

  friend bool operator==(const WrappedLine&, const WrappedLine&) = default;
};

/// Wraps paragraphs at a fixed width, according to the Unicode line breaking rules. Breaks a word
/// that is longer than a line between graphemes. Puts a grapheme that is wider than a line on a
/// separate line. Not thread-safe.
class ParagraphWrapper {
 public:
  /// `width` is in columns. With 0, the wrapper never breaks a line.
  explicit ParagraphWrapper(std::size_t width);
  ~ParagraphWrapper();
  ParagraphWrapper(const ParagraphWrapper&) = delete;
  ParagraphWrapper& operator=(const ParagraphWrapper&) = delete;

  /// Returns the lines of a paragraph, at least one. Limits the indents to half of the width. Takes
  /// linear time. REQUIRES: the paragraph has no control characters.
  std::vector<WrappedLine> Wrap(std::u16string_view paragraph, ParagraphShape shape);

 private:
  struct Breaks;

  std::size_t width_;
  std::unique_ptr<Breaks> breaks_;
};

}  // namespace hosts::console

#endif  // HOSTS_CONSOLE_PARAGRAPHWRAPPER_H_
