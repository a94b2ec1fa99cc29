#include <ornwhatsnew/PanelLayout.h>

#include <string_view>

#include <orncore/string/Conversion.h>

namespace ornwhatsnew {
namespace {

using orncore::string::UTF16to8;

// Appends the text of `paragraph` to `converted` in UTF-8. Returns the paragraph with ranges in
// `converted`.
BasicLayoutParagraph<UTF8String> ConvertParagraph(const LayoutParagraph& paragraph,
                                                  std::u16string_view text, UTF8String& converted) {
  BasicLayoutParagraph<UTF8String> result{.kind = paragraph.kind,
                                          .range = {converted.size(), 0},
                                          .indentLevel = paragraph.indentLevel,
                                          .bullet = UTF16to8(paragraph.bullet),
                                          .hasText = paragraph.hasText,
                                          .itemKey = paragraph.itemKey,
                                          .isSection = paragraph.isSection,
                                          .rating = paragraph.rating,
                                          .spans = {}};
  result.spans.reserve(paragraph.spans.size());
  for (const LayoutSpan& span : paragraph.spans) {
    const std::size_t begin = converted.size();
    orncore::string::AppendUTF16to8(text.substr(span.range.begin, span.range.length), converted);
    result.spans.push_back({{begin, converted.size() - begin}, span.style, UTF16to8(span.link)});
  }
  result.range.length = converted.size() - result.range.begin;
  return result;
}

}  // namespace

PanelLayoutUTF8 ConvertToUTF8(const PanelLayout& layout) {
  PanelLayoutUTF8 result;
  result.hasItems = layout.hasItems;
  result.paragraphs.reserve(layout.paragraphs.size());
  for (const LayoutParagraph& paragraph : layout.paragraphs) {
    if (!result.paragraphs.empty()) result.text += '\n';
    result.paragraphs.push_back(ConvertParagraph(paragraph, layout.text, result.text));
  }
  for (const RatingRequest& request : layout.ratingRequests) {
    result.ratingRequests.push_back({request.itemKey, UTF16to8(request.title),
                                     UTF16to8(request.question), UTF16to8(request.description)});
  }
  return result;
}

}  // namespace ornwhatsnew
