// Provides the texts of a layout to the renderers.
#ifndef ORNWHATSNEW_SRC_RENDER_RENDEREDTEXT_H_
#define ORNWHATSNEW_SRC_RENDER_RENDEREDTEXT_H_

#include <string_view>

#include <ornwhatsnew/PanelLayout.h>

namespace ornwhatsnew {

inline constexpr char16_t kLineSeparator = 0x2028;

/// Returns the text of `span` as a view into the text of `layout`.
std::u16string_view SpanText(const PanelLayout& layout, const LayoutSpan& span);

/// Returns whether the panel has a header. Titles are one heading level below the header. Without a
/// header, they have its level, so that a page skips no level.
bool HasHeader(const PanelLayout& layout);

/// Returns the rating request of `paragraph`, or null if the paragraph has none.
const RatingRequest* FindRatingRequest(const PanelLayout& layout, const LayoutParagraph& paragraph);

/// Returns the question of `request`, or the default question.
std::u16string_view RatingQuestion(const RatingRequest& request);

/// Returns what to print after `text`, the text of `span`: a space and the target of its link in
/// angle brackets. The result is empty if `isClickable` is true, if the span has no link or has a
/// style other than `kStyleHotSpot`, or if its text is the target.
UTF16String PrintedTarget(const LayoutSpan& span, std::u16string_view text, bool isClickable);

}  // namespace ornwhatsnew

#endif  // ORNWHATSNEW_SRC_RENDER_RENDEREDTEXT_H_
