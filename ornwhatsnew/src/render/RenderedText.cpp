#include "ornwhatsnew/src/render/RenderedText.h"

#include <algorithm>

#include <orncore/string/Conversion.h>
#include <orncore/string/SafeText.h>
#include <ornwhatsnew/PanelRenderers.h>

#include "ornwhatsnew/src/render/LinkTarget.h"

namespace ornwhatsnew {
namespace {

constexpr char16_t kReplacement = 0xFFFD;
constexpr char16_t kByteOrderMark = 0xFEFF;

constexpr bool IsNoncharacter(char16_t unit) {
  return unit >= 0xFFFE || (unit >= 0xFDD0 && unit <= 0xFDEF);
}

// Direction marks such as U+200E return false, because they affect only the text next to them.
constexpr bool ChangesDirection(char16_t unit) {
  return (unit >= 0x202A && unit <= 0x202E) || (unit >= 0x2066 && unit <= 0x2069);
}

}  // namespace

std::u16string_view SpanText(const PanelLayout& layout, const LayoutSpan& span) {
  return std::u16string_view(layout.text).substr(span.range.begin, span.range.length);
}

bool HasHeader(const PanelLayout& layout) {
  return std::ranges::find(layout.paragraphs, ParagraphKind::kHeader, &LayoutParagraph::kind) !=
         layout.paragraphs.end();
}

const RatingRequest* FindRatingRequest(const PanelLayout& layout,
                                       const LayoutParagraph& paragraph) {
  return paragraph.rating ? &layout.ratingRequests.at(*paragraph.rating) : nullptr;
}

std::u16string_view RatingQuestion(const RatingRequest& request) {
  if (request.question.empty()) return kDefaultRatingQuestion;
  return request.question;
}

UTF16String PrintedTarget(const LayoutSpan& span, std::u16string_view text, bool isClickable) {
  if (isClickable || span.style != kStyleHotSpot || span.link.empty() || span.link == text) {
    return {};
  }
  const UTF8String target = PrintedLinkTarget(orncore::string::UTF16to8(span.link));
  return u" <" + orncore::string::AsciiToUTF16(target) + u">";
}

char16_t MarkupUnit(char16_t unit) noexcept {
  if (unit == u'\t') return u' ';
  if (unit == u'\n' || unit == kLineSeparator) return kLineSeparator;
  if (orncore::string::IsControlCharacter(unit) || IsNoncharacter(unit)) return kReplacement;
  return ChangesDirection(unit) || unit == kByteOrderMark ? u'\0' : unit;
}

}  // namespace ornwhatsnew
