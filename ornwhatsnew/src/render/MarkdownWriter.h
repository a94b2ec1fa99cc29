// Writes blocks of CommonMark.
#ifndef ORNWHATSNEW_SRC_RENDER_MARKDOWNWRITER_H_
#define ORNWHATSNEW_SRC_RENDER_MARKDOWNWRITER_H_

#include <cstddef>
#include <string_view>
#include <utility>

#include <ornwhatsnew/utility/SharedTypes.h>

namespace ornwhatsnew {

/// The syntax of a block. `prefix` begins the first line of the block, and `continuation` begins
/// all its other lines. If `hasLineBreaks` is false, the block has one line.
struct MarkdownBlock {
  std::u16string_view prefix;
  std::u16string_view continuation;
  bool hasLineBreaks = true;

  friend bool operator==(const MarkdownBlock&, const MarkdownBlock&) = default;
};

inline constexpr MarkdownBlock kMarkdownHeading2 = {u"## ", {}, false};
inline constexpr MarkdownBlock kMarkdownHeading3 = {u"### ", {}, false};
inline constexpr MarkdownBlock kMarkdownParagraph = {};
inline constexpr MarkdownBlock kMarkdownListItem = {u"- ", u"  "};
inline constexpr MarkdownBlock kMarkdownQuote = {u"> ", u"> "};

/// Writes one block after another. Writes nothing for a block that contains only white space and
/// no link. Escapes the text, so that it contains no CommonMark syntax.
class MarkdownWriter {
 public:
  /// Begins a block. Adjacent list items belong to one list.
  void BeginBlock(const MarkdownBlock& block);
  void EndBlock();

  /// Appends the result of `SafeForDocument(text)`. Each line separator in it becomes a hard line
  /// break, or a space in a block without line breaks. Omits white space at both ends of each line.
  void AppendText(std::u16string_view text);
  /// Appends `text` as a link. REQUIRES: `IsSafeLink(target)`.
  void AppendLink(std::u16string_view text, std::u16string_view target);
  /// Appends `text` as a code span, in which line ends become spaces. If `text` contains only
  /// spaces or directly follows a backtick, appends `text` as ordinary text.
  void AppendCode(std::u16string_view text);

  /// Returns the blocks. Do not use the writer afterwards.
  UTF16String TakeBlocks() { return std::move(output_); }

 private:
  void AppendUnit(char16_t unit);
  /// Writes the prefix of the block, if it is missing, and the pending line breaks and spaces.
  void WritePending();
  bool IsEscaped(char16_t unit) const;
  std::u16string_view CurrentLine() const;

  UTF16String output_;
  MarkdownBlock block_;
  MarkdownBlock lastBlock_;  ///< the last block that was written
  bool isStarted_ = false;   ///< whether the prefix of the current block was written
  std::size_t lineBreaks_ = 0;
  std::size_t spaces_ = 0;
  std::size_t lineBegin_ = 0;  ///< the index in `output_` of the text of the current line
};

}  // namespace ornwhatsnew

#endif  // ORNWHATSNEW_SRC_RENDER_MARKDOWNWRITER_H_
