#include "ornwhatsnew/src/panel/LayoutWriter.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include <orncore/string/Conversion.h>
#include <unicode/utf16.h>

namespace ornwhatsnew {
namespace {

constexpr char16_t kUnicodeLineSeparator = 0x2028;
constexpr char16_t kParagraphSeparator = 0x2029;
constexpr char16_t kByteOrderMark = 0xFEFF;

constexpr bool IsLineEnd(char16_t unit) {
  return unit == u'\n' || unit == u'\r' || unit == kUnicodeLineSeparator ||
         unit == kParagraphSeparator;
}

constexpr bool IsWhiteSpace(char16_t unit) {
  return unit == u' ' || unit == u'\t' || IsLineEnd(unit);
}

constexpr bool IsVisible(char16_t unit) {
  return !IsWhiteSpace(unit) && unit != kByteOrderMark;
}

// Returns true only if `CleanText` would leave `string` unchanged in the middle of a paragraph.
// Most strings contain only characters from U+0020 to U+2027. Without this fast check, creating a
// layout would take more than 1.5 times as many instructions as creating the text with its style
// runs.
bool IsClean(std::u16string_view string) {
  return std::ranges::none_of(string, [](char16_t unit) { return unit < 0x20 || unit > 0x2027; });
}

// Returns the index after the first blank line of `string`, or npos if there is none. A blank line
// begins after a line end and contains only white space and U+FEFF.
std::size_t FindEndOfBlankLine(std::u16string_view string) {
  int lineEnds = 0;
  for (std::size_t i = 0; i < string.size(); ++i) {
    if (IsVisible(string[i])) lineEnds = 0;
    if (!IsLineEnd(string[i])) continue;
    if (string.substr(i).starts_with(u"\r\n")) ++i;
    if (++lineEnds == 2) return i + 1;
  }
  return std::u16string_view::npos;
}

// Returns the number of UTF-16 units of the first character of `string`, or 0 if it is empty.
std::size_t FirstCharacterLength(std::u16string_view string) {
  const bool isPair = !string.empty() && U16_IS_LEAD(string.front());
  return std::min<std::size_t>(string.size(), isPair ? 2 : 1);
}

// Frees the unused memory of `container` if less than half of its capacity is used. A host keeps
// the layout, and `Reserve` also reserves memory for changes that the panel does not show.
template <class Container>
void FreeUnusedMemory(Container& container) {
  if (container.capacity() > 2 * container.size()) container.shrink_to_fit();
}

}  // namespace

void LayoutWriter::Reserve(std::size_t paragraphs, std::size_t units) {
  layout_.paragraphs.reserve(paragraphs);
  layout_.text.reserve(units);
}

void LayoutWriter::BeginParagraph(ParagraphKind kind, const FeatureListItem* item) {
  if (!layout_.paragraphs.empty()) layout_.text += u'\n';
  paragraph_ = {};
  paragraph_.kind = kind;
  paragraph_.range.begin = layout_.text.size();
  paragraph_.indentLevel = kind == ParagraphKind::kTitle ? 0 : 1;
  if (item != nullptr) {
    paragraph_.itemKey = item->FeatureJiraIDKey();
    paragraph_.isSection = item->IsSection();
  }
  spans_.clear();
  endsWithCarriageReturn_ = false;
}

void LayoutWriter::EndParagraph(std::u16string_view newline) {
  // Append the newline template, although the next call removes white space. A translation of the
  // template can contain visible characters.
  AppendTemplate(newline);
  RemoveTrailingWhiteSpace();
  paragraph_.range.length = layout_.text.size() - paragraph_.range.begin;
  const bool canBeEmpty =
      paragraph_.kind == ParagraphKind::kChange || paragraph_.kind == ParagraphKind::kRatingRequest;
  if (paragraph_.range.length == 0 && !canBeEmpty) {
    if (!layout_.paragraphs.empty()) layout_.text.pop_back();  // the line feed before the paragraph
    return;
  }
  paragraph_.spans.assign(std::make_move_iterator(spans_.begin()),
                          std::make_move_iterator(spans_.end()));
  layout_.paragraphs.push_back(std::move(paragraph_));
}

void LayoutWriter::AppendTemplate(std::u16string_view string) {
  AppendSpan(std::nullopt, string);
}

void LayoutWriter::AppendRun(StyleID style, std::u16string_view string, UTF16String link,
                             RunAdjustment adjustment) {
  if (paragraph_.kind == ParagraphKind::kNotice) {
    std::size_t end = FindEndOfBlankLine(string);
    while (end != std::u16string_view::npos) {
      AppendSpan(style, string.substr(0, end), link);
      EndParagraph({});
      BeginParagraph(ParagraphKind::kNotice, nullptr);
      string.remove_prefix(end);
      end = FindEndOfBlankLine(string);
    }
  }
  // A style run whose start is adjusted does not cover the first character of its string. The span
  // for such a run begins after this character. It ends at the end of the string, even if the run
  // ends past the string.
  const std::size_t skipped = adjustment.start > 0 ? FirstCharacterLength(string) : 0;
  AppendTemplate(string.substr(0, skipped));
  AppendSpan(style, string.substr(skipped), std::move(link));
}

void LayoutWriter::AppendBullet(std::u16string_view bullet) {
  std::ranges::copy_if(bullet, std::back_inserter(paragraph_.bullet), IsVisible);
}

void LayoutWriter::AppendChangeText(std::u16string_view text) {
  paragraph_.hasText = !text.empty();
  AppendSpan(kStyleChangeText, text);
}

void LayoutWriter::AppendChangeTextUTF8(std::string_view text) {
  paragraph_.hasText = !text.empty();
  if (text.empty()) return;
  const std::size_t begin = layout_.text.size();
  orncore::string::AppendUTF8to16(text, layout_.text);
  AddSpan(begin, kStyleChangeText, {});
}

void LayoutWriter::AppendUnlockLabel(std::u16string_view label) {
  AppendSpan(kStyleUnlockLabel, label);
}

void LayoutWriter::AddRatingRequest(const FeatureListItem& item, RatingRequest request) {
  BeginParagraph(ParagraphKind::kRatingRequest, &item);
  for (UTF16String* string : {&request.title, &request.question, &request.description}) {
    CleanString(*string);
  }
  paragraph_.rating = layout_.ratingRequests.size();
  layout_.ratingRequests.push_back(std::move(request));
  EndParagraph({});
}

PanelLayout LayoutWriter::TakeLayout(bool hasItems) {
  layout_.hasItems = hasItems;
  FreeUnusedMemory(layout_.paragraphs);
  FreeUnusedMemory(layout_.text);
  return std::move(layout_);
}

void LayoutWriter::AppendSpan(std::optional<StyleID> style, std::u16string_view string,
                              UTF16String link) {
  if (string.empty()) return;
  const std::size_t begin = layout_.text.size();
  layout_.text += string;
  AddSpan(begin, style, std::move(link));
}

void LayoutWriter::AddSpan(std::size_t begin, std::optional<StyleID> style, UTF16String link) {
  CleanText(begin);
  const std::size_t length = layout_.text.size() - begin;
  if (length > 0) spans_.push_back({{begin, length}, style, std::move(link)});
}

void LayoutWriter::CleanText(std::size_t begin) {
  UTF16String& text = layout_.text;
  const std::u16string_view added = std::u16string_view(text).substr(begin);
  const bool isAtStart = begin == paragraph_.range.begin;
  if (IsClean(added) && !(isAtStart && added.starts_with(u' '))) {
    endsWithCarriageReturn_ = false;
    return;
  }
  std::size_t end = begin;
  for (std::size_t i = begin; i < text.size(); ++i) {
    const char16_t unit = text[i];
    const bool isSecondOfLineEnd = endsWithCarriageReturn_ && unit == u'\n';
    endsWithCarriageReturn_ = unit == u'\r';
    if (isSecondOfLineEnd || unit == kByteOrderMark) continue;
    // A paragraph of a layout must not begin with white space; see `BasicLayoutParagraph`.
    if (end == paragraph_.range.begin && IsWhiteSpace(unit)) continue;
    text[end++] = IsLineEnd(unit) ? kUnicodeLineSeparator : unit == u'\t' ? u' ' : unit;
  }
  text.resize(end);
}

void LayoutWriter::CleanString(UTF16String& string) {
  // Use the end of the layout's text as a buffer, because `CleanText` changes only that text.
  AppendTemplate(string);
  RemoveTrailingWhiteSpace();
  string = layout_.text.substr(paragraph_.range.begin);
  layout_.text.resize(paragraph_.range.begin);
  spans_.clear();
}

void LayoutWriter::RemoveTrailingWhiteSpace() {
  UTF16String& text = layout_.text;
  while (text.size() > paragraph_.range.begin && IsWhiteSpace(text.back())) text.pop_back();
  while (!spans_.empty() && spans_.back().range.begin >= text.size()) spans_.pop_back();
  if (spans_.empty()) return;
  TextRange& last = spans_.back().range;
  last.length = std::min(last.length, text.size() - last.begin);
}

}  // namespace ornwhatsnew
