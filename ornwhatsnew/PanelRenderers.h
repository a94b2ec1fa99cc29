// Renders a layout as HTML, Markdown, plain text or text for a terminal.
//
//     const PanelLayout layout = list->GetLayoutForDisplay(kShowOnlyNew);
//     page << "<style>" << GetHTMLStyleSheet() << "</style>\n" << RenderHTML(layout);
//
// Each function escapes every character that its format interprets. It makes a link clickable only
// if `IsSafeLink` returns true. If the style of another link is `kStyleHotSpot`, the target of the
// link follows its text in angle brackets, as text of at most 200 characters. All other links are
// omitted.
//
// A rating request becomes a paragraph with its question. If the question is empty, the paragraph
// contains `kDefaultRatingQuestion`. A host can change the strings of `PanelLayout::ratingRequests`
// before it renders the layout, for example to set a translated question. A host must not change
// the text, the paragraphs and the spans of a layout, because their ranges depend on each other.
//
// The results are well-formed UTF-8. They replace unpaired surrogates with U+FFFD. The functions
// take linear time and are safe to call from any thread. They throw `std::bad_alloc` if memory runs
// out.
#ifndef ORNWHATSNEW_PANELRENDERERS_H_
#define ORNWHATSNEW_PANELRENDERERS_H_

#include <cstddef>
#include <functional>
#include <string_view>

#include <orncore/Export.h>
#include <ornwhatsnew/PanelLayout.h>
#include <ornwhatsnew/utility/SharedTypes.h>

namespace ornwhatsnew {

/// The question that the renderers write for a rating request without a question.
inline constexpr std::u16string_view kDefaultRatingQuestion = u"How do you like it?";

/// Returns the panel as an HTML fragment without scripts and style attributes: one element, which a
/// page can contain in its body. `orncore::string::SafeForDocument` replaces or removes unsafe
/// characters.
///
/// The elements have these classes:
///
/// | Element   | Class                     | Content                                        |
/// |-----------|---------------------------|------------------------------------------------|
/// | `section` | `ornwhatsnew`             | the panel                                      |
/// | `h2`      | `ornwhatsnew-header`      | the header                                     |
/// | `p`       | `ornwhatsnew-notice`      | a paragraph of the notice                      |
/// | `article` | `ornwhatsnew-item`        | an item                                        |
/// | `article` | `ornwhatsnew-section`     | an item that is a section, as a second class   |
/// | `h3`      | `ornwhatsnew-title`       | the title of an item                           |
/// | `p`       | `ornwhatsnew-description` | the description of an item                     |
/// | `ul`      | `ornwhatsnew-changes`     | the changes of an item, without their bullets  |
/// | `li`      | `ornwhatsnew-change`      | a change; changes without any text are omitted |
/// | `div`     | `ornwhatsnew-rating`      | a rating request: its description and question |
/// | `p`       | `ornwhatsnew-question`    | the question of a rating request               |
/// | `span`    | `ornwhatsnew-label`       | an unlock label                                |
/// | `span`    | `ornwhatsnew-code`        | the version of a change, or an internal key    |
/// | `span`    | `ornwhatsnew-note`        | a note about an ignored field                  |
/// | `a`       | `ornwhatsnew-link`        | a link such as "View more"                     |
/// | `a`       | `ornwhatsnew-issue`       | an issue key                                   |
/// | `a`       | `ornwhatsnew-commit`      | a commit ID                                    |
///
/// If the panel has no header, titles are `h2`. The link of a title is an `a` without a class. A
/// link that is not safe is a `span` with the class of its link.
///
/// Each item has an `id`, which stays the same in all languages and versions: `idPrefix` and the
/// key of the item. In the key, `_` and two hexadecimal digits replace each UTF-8 byte that is not
/// an ASCII letter, a digit or a hyphen. If an item occurs twice, the `id` of the second one ends
/// with `.2`. If a page contains several panels, pass a different `idPrefix` (UTF-8, not empty,
/// without white space) for each of them.
[[nodiscard]] ORN_EXPORT UTF8String RenderHTML(const PanelLayout& layout,
                                               std::string_view idPrefix = "ornwhatsnew-");

/// Returns a CSS style sheet for the fragment that `RenderHTML` returns. All its rules begin with
/// the class `ornwhatsnew`. It supports light and dark colour schemes, narrow pages, both text
/// directions and forced colours. Its colours are custom properties such as `--ornwhatsnew-muted`,
/// which a page can set. The string has static storage duration.
[[nodiscard]] ORN_EXPORT std::string_view GetHTMLStyleSheet() noexcept;

/// Returns the panel in CommonMark: the header as a heading of level 2, titles as headings of level
/// 3 (or 2 if the panel has no header), changes as a list, unlock labels as code spans, and rating
/// requests as block quotes with their description and question. Contains no HTML. Replaces and
/// omits the same characters as `RenderHTML`, and omits changes without any text. Is empty if no
/// paragraph has any text, and the layout has no rating request.
[[nodiscard]] ORN_EXPORT UTF8String RenderMarkdown(const PanelLayout& layout);

/// Selects what a terminal supports. The default options give plain text.
struct TerminalOptions {
  std::size_t width = 0;       ///< the width of a line in columns; 0: no wrapping
  bool hasStyles = false;      ///< true: colours and attributes (SGR sequences)
  bool hasHyperlinks = false;  ///< true: hyperlinks (OSC 8); false: link targets in the text
  /// Returns a line that follows the question of a rating request, such as a command that rates the
  /// feature. The line is never wrapped, so that a user can copy it. Without a function, the
  /// renderer adds no line.
  std::function<UTF16String(const RatingRequest&)> ratingLine = nullptr;
};

/// Returns the panel as lines for a terminal. An empty line separates items. Wrapped changes have a
/// hanging indent. If `options` has no hyperlinks, the target of a link with the style
/// `kStyleHotSpot` follows its text in angle brackets, even if the link is safe.
///
/// `orncore::string::SafeForTerminal` replaces or removes unsafe characters. The only control
/// characters in the result are newlines and the escape sequences that `options` selects. All
/// styles and hyperlinks end at the end of their line. The result ends with a newline.
[[nodiscard]] ORN_EXPORT UTF8String RenderTerminalText(const PanelLayout& layout,
                                                       const TerminalOptions& options);

/// Returns the panel as plain text with lines of at most `width` columns, for example for an e-mail
/// or a log. If `width` is 0, lines are not wrapped. The result is that of `RenderTerminalText`
/// without styles and hyperlinks.
[[nodiscard]] ORN_EXPORT UTF8String RenderPlainText(const PanelLayout& layout,
                                                    std::size_t width = 0);

}  // namespace ornwhatsnew

#endif  // ORNWHATSNEW_PANELRENDERERS_H_
