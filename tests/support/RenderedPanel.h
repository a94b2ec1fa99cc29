// Parses rendered panels, and compares them with their layouts.
#ifndef TESTS_SUPPORT_RENDEREDPANEL_H_
#define TESTS_SUPPORT_RENDEREDPANEL_H_

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <ornwhatsnew/PanelLayout.h>

namespace test_support {

/// A block of a rendered panel, such as a heading, a list item or a paragraph.
struct RenderedBlock {
  /// "h1" to "h6", "p", "li", or "rating" for a rating request.
  std::string element;
  /// The text in UTF-8, with a newline for each line break.
  std::string text;
  /// The text and the target of each link, in order.
  std::vector<std::pair<std::string, std::string>> links;

  friend bool operator==(const RenderedBlock&, const RenderedBlock&) = default;
};

/// Returns the blocks of a fragment that `RenderHTML` returned. Throws `std::runtime_error` if
/// it finds an error, such as an unclosed element, an unexpected attribute, an unescaped character,
/// an unsafe link or a duplicate ID.
std::vector<RenderedBlock> ParseHTML(std::string_view fragment);

/// Returns the blocks of a string that `RenderMarkdown` returned. Parses the string with libcmark.
/// Throws `std::runtime_error` if it finds an element that `RenderMarkdown` must not write.
std::vector<RenderedBlock> ParseMarkdown(std::string_view text);

/// Compares `blocks` with the paragraphs of `layout`: their elements, visible characters and links.
/// `headingLevel` is the level of the panel's heading. Ignores paragraphs that have neither visible
/// characters nor links. Returns a description of the first difference, or an empty string if there
/// is none.
std::string FirstDifference(const std::vector<RenderedBlock>& blocks,
                            const ornwhatsnew::PanelLayout& layout, int headingLevel = 2);

/// Renders `layout` in HTML, Markdown and plain text, and compares the results with `layout`.
/// Returns a description of the first difference or syntax error, or an empty string if there is
/// none.
std::string FirstRenderingError(const ornwhatsnew::PanelLayout& layout);

}  // namespace test_support

#endif  // TESTS_SUPPORT_RENDEREDPANEL_H_
