#include "ornwhatsnew/src/render/MarkdownWriter.h"

#include <algorithm>

#include <orncore/string/SafeText.h>

#include "ornwhatsnew/src/render/RenderedText.h"

namespace ornwhatsnew {
namespace {

constexpr bool IsDigit(char16_t unit) {
  return unit >= u'0' && unit <= u'9';
}

UTF16String CleanCode(std::u16string_view text) {
  UTF16String code = orncore::string::SafeForDocument(text);
  std::ranges::replace(code, kLineSeparator, u' ');
  return code;
}

std::size_t LongestRun(std::u16string_view text, char16_t searched) {
  std::size_t longest = 0;
  std::size_t run = 0;
  for (const char16_t unit : text) {
    run = unit == searched ? run + 1 : 0;
    longest = std::max(longest, run);
  }
  return longest;
}

/// Escapes `target` for the parentheses of a CommonMark link. REQUIRES: `IsSafeLink(target)`.
UTF16String EscapeTarget(std::u16string_view target) {
  // The index is 0 if there is no semicolon, because `npos` + 1 is 0.
  const std::size_t afterSemicolons = target.rfind(u';') + 1;
  UTF16String escaped;
  for (std::size_t i = 0; i < target.size(); ++i) {
    const char16_t unit = target[i];
    if (unit == u'(' || unit == u')') escaped += u'\\';
    escaped += unit;
    // Escape an ampersand that could begin a character reference, which ends with a semicolon. Do
    // not use a backslash, because libcmark 0.30 does not interpret it here.
    if (unit == u'&' && i < afterSemicolons) escaped += u"amp;";
  }
  return escaped;
}

}  // namespace

void MarkdownWriter::BeginBlock(const MarkdownBlock& block) {
  block_ = block;
  isStarted_ = false;
  spaces_ = 0;
}

void MarkdownWriter::EndBlock() {
  if (!isStarted_) return;
  output_ += u'\n';
  lastBlock_ = block_;
}

void MarkdownWriter::AppendText(std::u16string_view text) {
  for (const char16_t unit : orncore::string::SafeForDocument(text)) AppendUnit(unit);
}

void MarkdownWriter::AppendLink(std::u16string_view text, std::u16string_view target) {
  WritePending();
  // Do not write a target with an ampersand as an autolink (`<URL>`). Some parsers interpret
  // character references in an autolink, and CommonMark has no escape for an ampersand there.
  if (text == target && target.find(u'&') == std::u16string_view::npos) {
    output_.append(u"<").append(target).append(u">");
    return;
  }
  // "![" would begin an image.
  if (CurrentLine().ends_with(u'!')) output_.insert(output_.size() - 1, 1, u'\\');
  output_ += u'[';
  AppendText(text);
  WritePending();
  output_.append(u"](").append(EscapeTarget(target)).append(u")");
}

void MarkdownWriter::AppendCode(std::u16string_view text) {
  const UTF16String code = CleanCode(text);
  const bool isBlank = code.find_first_not_of(u' ') == UTF16String::npos;
  // A backtick directly before the fence would become a part of the fence.
  if (isBlank || (isStarted_ && spaces_ == 0 && CurrentLine().ends_with(u'`'))) {
    AppendText(code);
    return;
  }
  WritePending();
  const UTF16String fence(LongestRun(code, u'`') + 1, u'`');
  // If a code span begins and ends with a space, CommonMark removes both spaces. The padding
  // preserves the spaces of `code`, and separates its backticks from the fence.
  const bool isPadded = code.starts_with(u'`') || code.ends_with(u'`') ||
                        (code.starts_with(u' ') && code.ends_with(u' '));
  const std::u16string_view padding = isPadded ? u" " : u"";
  output_.append(fence).append(padding).append(code).append(padding).append(fence);
}

void MarkdownWriter::AppendUnit(char16_t unit) {
  if (unit == kLineSeparator && block_.hasLineBreaks) {
    ++lineBreaks_;
    return;
  }
  if (unit == u' ' || unit == kLineSeparator) {
    ++spaces_;
    return;
  }
  WritePending();
  if (IsEscaped(unit)) output_ += u'\\';
  output_ += unit;
}

void MarkdownWriter::WritePending() {
  if (!isStarted_) {
    const bool isSameList = block_ == kMarkdownListItem && lastBlock_ == kMarkdownListItem;
    if (!output_.empty() && !isSameList) output_ += u'\n';
    output_ += block_.prefix;
    isStarted_ = true;
    lineBegin_ = output_.size();
    lineBreaks_ = 0;
  }
  for (; lineBreaks_ > 0; --lineBreaks_) {
    output_.append(u"\\\n").append(block_.continuation);
    lineBegin_ = output_.size();
  }
  if (!CurrentLine().empty()) output_.append(spaces_, u' ');
  spaces_ = 0;
}

std::u16string_view MarkdownWriter::CurrentLine() const {
  return std::u16string_view(output_).substr(lineBegin_);
}

// Returns whether to escape `unit`, the next character of the current line. Few characters are
// escaped, so that the Markdown source is easy to read. Some escaped characters have a meaning
// only in GitHub Flavored Markdown: `|`, `~` within a line, `/` in "://", and `.` after "www".
bool MarkdownWriter::IsEscaped(char16_t unit) const {
  constexpr std::u16string_view kAlwaysEscaped = u"\\`*_[]<>&#|~";
  constexpr std::u16string_view kEscapedAtLineStart = u"+-=:";
  if (kAlwaysEscaped.find(unit) != std::u16string_view::npos) return true;
  const std::u16string_view line = CurrentLine();
  if (line.empty()) return kEscapedAtLineStart.find(unit) != std::u16string_view::npos;
  // Check the end of the output, because the "://" of a URL can be split between spans.
  if (unit == u'/') return line.ends_with(u":/");
  if (unit == u'.' && line.ends_with(u"www")) return true;
  // At the start of a line, a number of at most nine digits with a period or a closing parenthesis
  // would begin an ordered list. Check the length of the line first, because reading the whole
  // line at each period could take quadratic time.
  return (unit == u'.' || unit == u')') && line.size() <= 9 && std::ranges::all_of(line, IsDigit);
}

}  // namespace ornwhatsnew
