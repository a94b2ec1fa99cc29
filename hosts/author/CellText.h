// Converts the text of a spreadsheet's cell to text that a data file can contain.
#ifndef HOSTS_AUTHOR_CELLTEXT_H_
#define HOSTS_AUTHOR_CELLTEXT_H_

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace hosts::author {

/// The text of a cell after conversion, and the numbers of the replacements.
struct ConvertedText {
  std::string text;               ///< UTF-8
  std::size_t openingQuotes = 0;  ///< quotes at the start of a word, replaced by U+201C
  std::size_t closingQuotes = 0;  ///< other quotes, replaced by U+201D
  std::size_t inchMarks = 0;      ///< quotes after a digit, replaced by U+2033
  std::size_t lineEnds = 0;       ///< line ends, replaced by a space
};

/// Replaces what a data file cannot contain in `text`, which must be well-formed UTF-8:
///
/// - A double quote becomes U+2033 after a digit, U+201C at the start of a word, and otherwise
///   U+201D. A word starts at the start of the text and after white space, opening punctuation, a
///   dash, a slash or an equals sign, if no white space follows.
/// - A line end becomes a space. CR LF is one line end. So are LF, CR, VT, FF and the Unicode line
///   ends U+0085, U+2028 and U+2029.
ConvertedText ConvertText(std::string_view text);

/// Returns a description of the replacements, for example "1 '"' by U+201D, 2 line ends by spaces".
/// Returns an empty string if there are none.
std::string DescribeReplacements(const ConvertedText& converted);

/// Returns why a field of a data file cannot contain `value`, with a remedy, for example "contains
/// a line end; remove it". Returns `std::nullopt` if a field can contain it.
std::optional<std::string> ProblemWith(std::string_view value);

}  // namespace hosts::author

#endif  // HOSTS_AUTHOR_CELLTEXT_H_
