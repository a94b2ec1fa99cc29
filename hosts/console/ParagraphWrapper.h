// Breaks one paragraph into lines that fit a terminal.
#ifndef HOSTS_CONSOLE_PARAGRAPHWRAPPER_H_
#define HOSTS_CONSOLE_PARAGRAPHWRAPPER_H_

#include <cstddef>
#include <memory>
#include <string_view>
#include <vector>

namespace hosts::console {

/// How a paragraph stands: the columns before its first line and before the others, and the units
/// at its start (a bullet with the gap behind it) that are not to be parted from what follows.
struct ParagraphShape {
  std::size_t firstIndent = 0;
  std::size_t hangingIndent = 0;
  std::size_t unbrokenPrefix = 0;
};

/// One line: UTF-16 units `[begin, end)` of the paragraph behind `indent` columns. Blanks at a
/// break belong to no line.
struct WrappedLine {
  std::size_t begin;
  std::size_t end;
  std::size_t indent;

  friend bool operator==(const WrappedLine&, const WrappedLine&) = default;
};

/// Wraps any number of paragraphs for one width. Lines break where Unicode's rules allow it; a word
/// longer than a line breaks between characters, but never within one with its combining marks. A
/// character wider than the whole line stands alone on it. One thread at a time.
class ParagraphWrapper {
 public:
  /// `width` in columns; 0 never wraps.
  explicit ParagraphWrapper(std::size_t width);
  ~ParagraphWrapper();
  ParagraphWrapper(const ParagraphWrapper&) = delete;
  ParagraphWrapper& operator=(const ParagraphWrapper&) = delete;

  /// The lines of a paragraph, at least one. The text has no control characters. Indents that leave
  /// less than half of the width are cut down to half. Takes time linear in the text.
  std::vector<WrappedLine> Wrap(std::u16string_view paragraph, ParagraphShape shape);

 private:
  class Breaks;

  std::size_t width_;
  std::unique_ptr<Breaks> breaks_;
};

}  // namespace hosts::console

#endif  // HOSTS_CONSOLE_PARAGRAPHWRAPPER_H_
