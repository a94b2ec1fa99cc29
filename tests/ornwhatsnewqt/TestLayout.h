// Builds layouts for tests of the panel.
#ifndef TESTS_ORNWHATSNEWQT_TESTLAYOUT_H_
#define TESTS_ORNWHATSNEWQT_TESTLAYOUT_H_

#include <initializer_list>
#include <optional>
#include <string>

#include <ornwhatsnew/PanelLayout.h>

namespace test_support {

/// A span of a test layout.
struct TestSpan {
  std::u16string text;
  std::optional<ornwhatsnew::StyleID> style = {};
  std::u16string link = {};
};

/// Builds a layout paragraph by paragraph. A title begins an item.
///
///     TestLayout().title(u"Map").change({{u"Faster", StyleID::kStyleChangeText}}).layout()
class TestLayout {
 public:
  TestLayout& header(const std::u16string& text);
  TestLayout& notice(const std::u16string& text);
  /// Adds a title. If `label` is not empty, adds the label after the title.
  TestLayout& title(const std::u16string& text, const std::u16string& label = {},
                    const std::u16string& link = {});
  TestLayout& description(std::initializer_list<TestSpan> spans);
  TestLayout& change(std::initializer_list<TestSpan> spans,
                     const std::u16string& bullet = u"\u2022");
  /// Adds a change with a bullet, and with `text` in the style `kStyleChangeText`.
  TestLayout& change(const std::u16string& text);

  const ornwhatsnew::PanelLayout& layout() const { return layout_; }

 private:
  TestLayout& add(ornwhatsnew::ParagraphKind kind, std::initializer_list<TestSpan> spans,
                  const std::u16string& bullet = {});

  ornwhatsnew::PanelLayout layout_;
};

/// Returns a layout with a header, and with `changes` changes in items of ten changes each.
ornwhatsnew::PanelLayout longLayout(int changes);

}  // namespace test_support

#endif  // TESTS_ORNWHATSNEWQT_TESTLAYOUT_H_
