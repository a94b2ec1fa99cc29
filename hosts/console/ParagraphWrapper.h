// Wraps a paragraph at the width of a terminal.
#ifndef HOSTS_CONSOLE_PARAGRAPHWRAPPER_H_
#define HOSTS_CONSOLE_PARAGRAPHWRAPPER_H_

#include <cstddef>
#include <memory>
#include <string_view>
#include <vector>

namespace hosts::console {

/// The indents of a paragraph in columns, for its first line and for the others. `unbrokenPrefix`
/// is the number of units at its start (a bullet and the gap after it) without a line break.
struct ParagraphShape {
  std::size_t firstIndent = 0;
  std::size_t hangingIndent = 0;
  std::size_t unbrokenPrefix = 0;
};

/// One line: UTF-16 units `[begin, end)` of the paragraph after `indent` columns. Spaces at a break
/// belong to no line.
struct WrappedLine {
  std::size_t begin;
  std::size_t end;
  std::size_t indent;

  friend bool operator==(const WrappedLine&, const WrappedLine&) = default;
};

/// Wraps paragraphs at one width. Lines break according to the Unicode rules. A word that is longer
/// than a line breaks between graphemes. A grapheme that is wider than a line is on a line of its
/// own. Not thread-safe.
class ParagraphWrapper {
 public:
  /// `width` in columns; 0 never wraps.
  explicit ParagraphWrapper(std::size_t width);
  ~ParagraphWrapper();
  ParagraphWrapper(const ParagraphWrapper&) = delete;
  ParagraphWrapper& operator=(const ParagraphWrapper&) = delete;

  /// Returns the lines of a paragraph, at least one. Indents are at most half of the width. Takes
  /// linear time. REQUIRES: the paragraph has no control characters.
  std::vector<WrappedLine> Wrap(std::u16string_view paragraph, ParagraphShape shape);

 private:
  struct Breaks;

  std::size_t width_;
  std::unique_ptr<Breaks> breaks_;
};

}  // namespace hosts::console

#endif  // HOSTS_CONSOLE_PARAGRAPHWRAPPER_H_
