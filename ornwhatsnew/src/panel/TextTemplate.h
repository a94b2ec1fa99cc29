// A text with marks that are filled in, again and again: the version, links and notes of every
// change line.
//
// Looking for the marks takes several times as long as filling them, and the text never changes
// within a display. So it is cut at its marks once, and filling it is a row of appends. The result
// is what replacing the marks in one pass from left to right gives; inserted text is never
// searched.
#ifndef ORNWHATSNEW_SRC_PANEL_TEXTTEMPLATE_H_
#define ORNWHATSNEW_SRC_PANEL_TEXTTEMPLATE_H_

#include <array>
#include <cstddef>
#include <string_view>
#include <vector>

#include <ornwhatsnew/utility/SharedTypes.h>

namespace ornwhatsnew {

/// A template that knows where its marks stand. A value; fill it from any number of threads.
class TextTemplate {
 public:
  /// Which marks stand for an argument; the others are text.
  enum class Marks { kFirst /* @0 */, kBoth /* @0 and @1 */ };

  explicit TextTemplate(std::u16string_view text, Marks marks = Marks::kFirst);

  /// Replaces what `out` holds by the text with each `@0` filled by `first` and, where that is a
  /// mark, each `@1` by `second`. Keeps the capacity of `out`; no argument may lie in it.
  void Fill(UTF16String& out, std::u16string_view first, std::u16string_view second = {}) const;

  /// The filled text.
  UTF16String Filled(std::u16string_view first) const;

 private:
  // What stands before a mark, and the number of the argument that takes the mark's place.
  struct Part {
    std::size_t begin = 0;
    std::size_t length = 0;
    std::size_t argument = 0;
  };

  UTF16String text_;
  std::vector<Part> parts_;
  std::size_t restBegin_ = 0;
};

}  // namespace ornwhatsnew

#endif  // ORNWHATSNEW_SRC_PANEL_TEXTTEMPLATE_H_
