#include "tests/ornwhatsnewqt/TestLayout.h"

#include <utility>

namespace test_support {

using ornwhatsnew::LayoutParagraph;
using ornwhatsnew::ParagraphKind;
using ornwhatsnew::StyleID;

TestLayout& TestLayout::add(ParagraphKind kind, std::initializer_list<TestSpan> spans,
                            const std::u16string& bullet) {
  if (!layout_.paragraphs.empty()) layout_.text += u'\n';
  LayoutParagraph paragraph;
  paragraph.kind = kind;
  paragraph.bullet = bullet;
  paragraph.range.begin = layout_.text.size();
  const bool isInItem = kind != ParagraphKind::kHeader && kind != ParagraphKind::kNotice;
  if (isInItem) paragraph.itemKey = "EPIC-1";
  layout_.hasItems = layout_.hasItems || isInItem;
  for (const TestSpan& span : spans) {
    paragraph.spans.push_back({{layout_.text.size(), span.text.size()}, span.style, span.link});
    layout_.text += span.text;
  }
  paragraph.range.length = layout_.text.size() - paragraph.range.begin;
  layout_.paragraphs.push_back(std::move(paragraph));
  return *this;
}

TestLayout& TestLayout::header(const std::u16string& text) {
  return add(ParagraphKind::kHeader, {{text, StyleID::kStyleHeader}});
}

TestLayout& TestLayout::notice(const std::u16string& text) {
  return add(ParagraphKind::kNotice, {{text, StyleID::kStyleHeader}});
}

TestLayout& TestLayout::title(const std::u16string& text, const std::u16string& label,
                              const std::u16string& link) {
  const TestSpan title{text, StyleID::kStyleFeatureTitle, link};
  if (label.empty()) return add(ParagraphKind::kTitle, {title});
  return add(ParagraphKind::kTitle, {title, {u" "}, {label, StyleID::kStyleUnlockLabel}});
}

TestLayout& TestLayout::description(std::initializer_list<TestSpan> spans) {
  return add(ParagraphKind::kDescription, spans);
}

TestLayout& TestLayout::change(std::initializer_list<TestSpan> spans,
                               const std::u16string& bullet) {
  return add(ParagraphKind::kChange, spans, bullet);
}

TestLayout& TestLayout::change(const std::u16string& text) {
  return change({{text, StyleID::kStyleChangeText}});
}

ornwhatsnew::PanelLayout longLayout(int changes) {
  TestLayout builder;
  builder.header(u"Changes since v4.2");
  for (int i = 0; i < changes; ++i) {
    if (i % 10 == 0) builder.title(u"A feature", u"UNLOCKED");
    builder.change(u"A change with a text of an ordinary length, as authors write them");
  }
  return builder.layout();
}

}  // namespace test_support
