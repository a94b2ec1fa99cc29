// Defines functions that several renderers use to read a layout.
#ifndef ORNWHATSNEW_SRC_RENDER_RENDEREDTEXT_H_
#define ORNWHATSNEW_SRC_RENDER_RENDEREDTEXT_H_

#include <string_view>

#include <ornwhatsnew/PanelLayout.h>

namespace ornwhatsnew {

inline constexpr char16_t kLineSeparator = 0x2028;

/// Returns the text of `span` as a view into the text of `layout`.
std::u16string_view SpanText(const PanelLayout& layout, const LayoutSpan& span);

/// Returns whether the panel has a header. If it has one, titles are one heading level below the
/// header. Otherwise, titles use the level that the header would have, so that a page skips no
/// heading level.
bool HasHeader(const PanelLayout& layout);

/// Returns the rating request of `paragraph`, or null if the paragraph has none.
const RatingRequest* FindRatingRequest(const PanelLayout& layout, const LayoutParagraph& paragraph);

/// Returns the question of `request`, or `kDefaultRatingQuestion` if the question is empty.
std::u16string_view RatingQuestion(const RatingRequest& request);

/// Returns the string to print after `text`, which is the text of `span`: a space and the
/// `PrintedLinkTarget` of the span's link in angle brackets. The result is empty if `isClickable`
/// is true or if the text equals the link. It is also empty if the span has no link or has a style
/// other than `kStyleHotSpot`.
UTF16String PrintedTarget(const LayoutSpan& span, std::u16string_view text, bool isClickable);

}  // namespace ornwhatsnew

#endif  // ORNWHATSNEW_SRC_RENDER_RENDEREDTEXT_H_
