// Builds layouts without a list, for tests and fuzzers of code that draws layouts.
#ifndef TESTS_SUPPORT_LAYOUTBUILDER_H_
#define TESTS_SUPPORT_LAYOUTBUILDER_H_

#include <optional>
#include <string>
#include <utility>

#include <ornwhatsnew/PanelLayout.h>

namespace test_support {

/// Builds a layout paragraph by paragraph. Unlike a list, adds all strings unchanged.
class LayoutBuilder {
 public:
  /// Begins a paragraph. If `kind` is `kChange`, the paragraph has the bullet "•".
  LayoutBuilder& Begin(ornwhatsnew::ParagraphKind kind, std::string itemKey = {}) {
    using ornwhatsnew::ParagraphKind;
    if (!layout_.paragraphs.empty()) layout_.text += u'\n';
    ornwhatsnew::LayoutParagraph& paragraph = layout_.paragraphs.emplace_back();
    paragraph.kind = kind;
    paragraph.range.begin = layout_.text.size();
    paragraph.indentLevel = kind == ParagraphKind::kTitle ? 0 : 1;
    paragraph.itemKey = std::move(itemKey);
    if (kind == ParagraphKind::kChange) paragraph.bullet.push_back(0x2022);
    return *this;
  }

  /// Adds a span to the last paragraph. If `text` is empty, does nothing.
  LayoutBuilder& Span(const std::u16string& text, std::optional<ornwhatsnew::StyleID> style = {},
                      std::u16string link = {}) {
    if (text.empty()) return *this;
    Last().spans.push_back({{layout_.text.size(), text.size()}, style, std::move(link)});
    Last().range.length += text.size();
    layout_.text += text;
    return *this;
  }

  /// Adds a paragraph with a rating request.
  LayoutBuilder& Rating(std::u16string question, std::u16string description = {}) {
    Begin(ornwhatsnew::ParagraphKind::kRatingRequest);
    Last().rating = layout_.ratingRequests.size();
    layout_.ratingRequests.push_back({{}, {}, std::move(question), std::move(description)});
    return *this;
  }

  /// Returns the last paragraph, so that a test can change its members.
  ornwhatsnew::LayoutParagraph& Last() { return layout_.paragraphs.back(); }

  const ornwhatsnew::PanelLayout& Layout() const { return layout_; }

 private:
  ornwhatsnew::PanelLayout layout_;
};

}  // namespace test_support

#endif  // TESTS_SUPPORT_LAYOUTBUILDER_H_
