#include "hosts/console/LintText.h"

#include <algorithm>
#include <string_view>
#include <vector>

#include <orncore/string/Conversion.h>
#include <orncore/string/DisplayWidth.h>
#include <orncore/string/SafeText.h>

#include "hosts/common/TextFile.h"

namespace hosts::console {
namespace {

using author::Finding;
using author::Severity;

/// The maximum number of characters that an excerpt contains before the position of the finding.
constexpr std::size_t kCharactersBefore = 30;
/// The maximum number of characters in an excerpt.
constexpr std::size_t kCharacters = 76;

/// The escape sequence that switches off all colours and attributes.
constexpr std::string_view kStyleEnd = "\x1B[0m";

std::string_view SeverityStart(Severity severity) {
  if (severity == Severity::kError) return "\x1B[1;31m";
  return severity == Severity::kWarning ? "\x1B[1;35m" : "\x1B[1;94m";
}

/// The offsets at which the lines of a file begin.
class LineIndex {
 public:
  explicit LineIndex(std::string_view text) : text_(text) {
    for (std::size_t begin = 0; begin <= text.size();) {
      begins_.push_back(begin);
      const std::size_t end = text.find('\n', begin);
      if (end == text.npos) break;
      begin = end + 1;
    }
  }

  /// Returns the line with the number `number`, counted from 1, without its line ending. Returns an
  /// empty string if there is no such line.
  std::string_view Line(std::size_t number) const {
    if (number == 0 || number > begins_.size()) return {};
    std::string_view line = text_.substr(begins_[number - 1]);
    line = line.substr(0, line.find('\n'));
    while (line.ends_with('\r')) line.remove_suffix(1);
    return line;
  }

 private:
  std::string_view text_;
  std::vector<std::size_t> begins_;
};

/// Returns whether `unit` is a low surrogate, the second code unit of a surrogate pair.
bool IsTrail(char16_t unit) {
  return unit >= 0xDC00 && unit <= 0xDFFF;
}

std::size_t CountCharacters(std::u16string_view text) {
  return text.size() - static_cast<std::size_t>(std::ranges::count_if(text, IsTrail));
}

/// Returns the characters of `text` with the indexes from `first` to `last` - 1. Replaces each
/// character that is not safe for a terminal with exactly one other character, so that the columns
/// of the finding remain valid.
std::vector<std::u16string> SafeCharacters(std::u16string_view text, std::size_t first,
                                           std::size_t last) {
  std::vector<std::u16string> characters;
  for (std::size_t i = 0, index = 0; index < last; ++index) {
    const bool isPair = i + 1 < text.size() && IsTrail(text[i + 1]);
    const std::u16string_view character = text.substr(i, isPair ? 2 : 1);
    i += character.size();
    if (index < first) continue;
    const bool isTab = character == u"\t";
    std::u16string safe = isTab ? u" " : orncore::string::SafeForTerminal(character);
    characters.push_back(safe.empty() ? u"\uFFFD" : safe);
  }
  return characters;
}

/// If the excerpt `characters` omits characters at its start or its end, replaces three characters
/// there with "...".
void MarkOmissions(std::vector<std::u16string>& characters, bool isStartOmitted,
                   bool isEndOmitted) {
  constexpr std::ptrdiff_t kPoints = 3;
  if (isStartOmitted) std::fill_n(characters.begin(), kPoints, u".");
  if (isEndOmitted) std::fill_n(characters.end() - kPoints, kPoints, u".");
}

/// Returns two lines: an excerpt of `line` around the position of the finding, and carets below
/// this position.
std::string Excerpt(const Finding& finding, std::string_view line) {
  const std::u16string units = orncore::string::UTF8to16(common::WithoutByteOrderMark(line));
  const std::size_t size = CountCharacters(units);
  const std::size_t begin = std::min(finding.place.column - 1, size);
  const bool isOneLine = finding.place.endLine == finding.place.line;
  const std::size_t end = isOneLine ? std::min(finding.place.endColumn - 1, size) : size;
  const std::size_t first = begin > kCharactersBefore ? begin - kCharactersBefore : 0;
  const std::size_t last = std::min(first + kCharacters, size);
  std::vector<std::u16string> characters = SafeCharacters(units, first, last);
  MarkOmissions(characters, first > 0, last < size);
  std::u16string text;
  std::string carets;
  for (std::size_t i = first; i < last; ++i) {
    const std::u16string& character = characters[i - first];
    text += character;
    const char mark = i < begin ? ' ' : '^';
    if (i < end) carets.append(orncore::string::DisplayWidth(character), mark);
  }
  if (carets.find('^') == carets.npos) carets += '^';
  return "  " + orncore::string::UTF16to8(text) + "\n  " + carets + "\n";
}

std::string HeadLine(const Finding& finding, bool isStyled) {
  const std::string severity(author::SeverityName(finding.severity));
  std::string line = orncore::string::EscapeInvisible(finding.file) + ":" +
                     std::to_string(finding.place.line) + ":" +
                     std::to_string(finding.place.column) + ": ";
  line += isStyled
              ? std::string(SeverityStart(finding.severity)) + severity + std::string(kStyleEnd)
              : severity;
  return line + ": " + finding.message + " [" + std::string(author::InfoOf(finding.code).name) +
         "]\n";
}

}  // namespace

std::string LintText(const author::LintReport& report, const FileTexts& texts, bool isStyled) {
  std::map<std::string_view, LineIndex> indexes;
  std::string output;
  for (const Finding& finding : report.findings) {
    output += HeadLine(finding, isStyled);
    const auto text = texts.find(finding.file);
    const bool isWholeFile = finding.place.column == finding.place.endColumn &&
                             finding.place.line == finding.place.endLine;
    if (!isStyled || isWholeFile || text == texts.end()) continue;
    const auto index = indexes.try_emplace(finding.file, text->second).first;
    output += Excerpt(finding, index->second.Line(finding.place.line));
  }
  return output;
}

}  // namespace hosts::console
