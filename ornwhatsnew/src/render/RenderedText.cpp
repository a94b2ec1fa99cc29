#include "ornwhatsnew/src/render/RenderedText.h"

#include <algorithm>
#include <cstdint>

#include <orncore/string/Conversion.h>
#include <orncore/string/SafeText.h>
#include <ornwhatsnew/PanelRenderers.h>
#include <unicode/utf16.h>

#include "ornwhatsnew/src/render/LinkTarget.h"

namespace ornwhatsnew {
namespace {

constexpr char16_t kReplacement = 0xFFFD;
constexpr char16_t kByteOrderMark = 0xFEFF;

// Direction marks such as U+200E return false, because they affect only the text next to them.
constexpr bool ChangesDirection(char16_t unit) {
  return (unit >= 0x202A && unit <= 0x202E) || (unit >= 0x2066 && unit <= 0x2069);
}

/// Appends what HTML and Markdown contain instead of `unit`, which is not a surrogate.
void AppendMarkup(char16_t unit, UTF16String& markup) {
  if (unit == kByteOrderMark || ChangesDirection(unit)) return;
  if (unit == u'\t') {
    markup += u' ';
  } else if (unit == u'\n' || unit == kLineSeparator) {
    markup += kLineSeparator;
  } else {
    markup += orncore::string::IsControlCharacter(unit) ? kReplacement : unit;
  }
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

UTF16String MarkupText(std::u16string_view text) {
  UTF16String markup;
  markup.reserve(text.size());
  std::size_t position = 0;
  while (position < text.size()) {
    const std::size_t begin = position;
    // Use 64 bits, because the ICU macro mixes signed and unsigned 32-bit operands.
    std::int64_t character = 0;
    U16_NEXT_OR_FFFD(text, position, text.size(), character);
    if (U_IS_UNICODE_NONCHAR(character)) {
      markup += kReplacement;
    } else if (character > 0xFFFF) {
      markup.append(text, begin, position - begin);
    } else {
      AppendMarkup(static_cast<char16_t>(character), markup);
    }
  }
  return markup;
}

}  // namespace ornwhatsnew
