// Converts the text of spreadsheet cells for data files, and checks the values of fields.
#ifndef HOSTS_AUTHOR_CELLTEXT_H_
#define HOSTS_AUTHOR_CELLTEXT_H_

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace hosts::author {

/// The text of a cell after conversion, and the number of replacements of each kind.
struct ConvertedText {
  std::string text;               ///< UTF-8
  std::size_t openingQuotes = 0;  ///< quotes at the start of a word, replaced by U+201C
  std::size_t closingQuotes = 0;  ///< other quotes, replaced by U+201D
  std::size_t inchMarks = 0;      ///< quotes after a digit, replaced by U+2033
  std::size_t lineEnds = 0;       ///< line breaks, each replaced by a space
};

/// Returns `text`, which must be well-formed UTF-8, with these replacements:
///
/// - A double quote becomes U+2033 after a digit, U+201C at the start of a word, and otherwise
///   U+201D. A word can start at the start of the text, or after white space, opening punctuation,
///   a dash, a slash or an equals sign. However, a quote before white space or at the end of the
///   text is not at the start of a word.
/// - A line break becomes a space. Line breaks are CR LF, LF, CR, VT, FF, U+0085, U+2028 and
///   U+2029.
ConvertedText ConvertText(std::string_view text);

/// Returns a list of the replacements. In a message, the list follows the word "replaced", for
/// example "1 '"' by '″', 2 line breaks by spaces". Returns an empty string if there are no
/// replacements.
std::string DescribeReplacements(const ConvertedText& converted);

/// Returns why `value` must not be a field of a data file, and what to do, for example "is not
/// valid UTF-8; convert it to UTF-8". Returns `std::nullopt` if there is no problem.
std::optional<std::string> ProblemWith(std::string_view value);

}  // namespace hosts::author

#endif  // HOSTS_AUTHOR_CELLTEXT_H_
