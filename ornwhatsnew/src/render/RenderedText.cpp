#include "ornwhatsnew/src/render/RenderedText.h"

#include <algorithm>

#include <orncore/string/Conversion.h>
#include <ornwhatsnew/PanelRenderers.h>

#include "ornwhatsnew/src/render/LinkTarget.h"

namespace ornwhatsnew {

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

}  // namespace ornwhatsnew
