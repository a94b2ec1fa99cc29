// Renders a layout as HTML, Markdown, plain text or text for a terminal.
//
//     const PanelLayout layout = list->GetLayoutForDisplay(kShowOnlyNew);
//     page << "<style>" << GetHTMLStyleSheet() << "</style>\n" << RenderHTML(layout);
//
// Each renderer escapes, replaces or removes every character that its format would interpret. It
// makes a link clickable only if `orncore::string::IsSafeLink` returns true. An unsafe link becomes
// text. If this link has the style `kStyleHotSpot`, its target follows in angle brackets,
// percent-encoded and shortened to at most 200 characters. The target is omitted if it is equal to
// the text.
//
// Each renderer writes the question of each rating request, or `kDefaultRatingQuestion` if the
// question is empty. A host can change the strings of `PanelLayout::ratingRequests` before it
// renders the layout, for example to set a translated question. A host must not change the text,
// the paragraphs or the spans of a layout, because their ranges depend on each other.
//
// The results are well-formed UTF-8. Unpaired surrogates become U+FFFD. The functions take linear
// time and are safe to call from any thread. They throw `std::bad_alloc` if memory runs out.
#ifndef ORNWHATSNEW_PANELRENDERERS_H_
#define ORNWHATSNEW_PANELRENDERERS_H_

#include <cstddef>
#include <functional>
#include <span>
#include <string>
#include <string_view>

#include <orncore/Export.h>
#include <ornwhatsnew/PanelLayout.h>
#include <ornwhatsnew/utility/SharedTypes.h>

namespace ornwhatsnew {

/// The question that the renderers write for a rating request without a question.
inline constexpr std::u16string_view kDefaultRatingQuestion = u"How do you like it?";

/// The options of `RenderHTML`: the heading levels and the `id` attributes of the HTML. The
/// defaults are suitable for a page that contains one panel.
struct HTMLOptions {
  /// The start of the `id` of each item. It must be a non-empty UTF-8 string without white space.
  /// If a page contains several panels, use a different prefix for each of them.
  std::string_view idPrefix = "ornwhatsnew-";
  /// The level of the header, from 1 to 5. Titles are one level below the header. If the panel has
  /// no header, titles have this level.
  int headingLevel = 2;
  /// The `id` of each paragraph, by its index in `PanelLayout::paragraphs`. If the string for a
  /// paragraph is missing or empty, the paragraph has no `id`. The span refers to the caller's
  /// strings.
  std::span<const std::string> paragraphIDs = {};
};

/// Returns the panel as an HTML fragment without scripts or style attributes: one element, which a
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
/// | `span`    | `ornwhatsnew-note`        | a note for internal users                      |
/// | `a`       | `ornwhatsnew-link`        | a link such as "View more"                     |
/// | `a`       | `ornwhatsnew-issue`       | an issue key                                   |
/// | `a`       | `ornwhatsnew-commit`      | a commit ID                                    |
///
/// `HTMLOptions::headingLevel` changes the elements `h2` and `h3`. If the panel has no header, a
/// title is an `h2`. The link of a title is an `a` without a class, or only text if it is unsafe.
/// If any other link is unsafe or empty, a `span` with the same class replaces the `a`.
///
/// Each item has an `id`, which is the same in all languages and versions: the prefix of
/// `options` and the key of the item. In the key, `_` and two hexadecimal digits replace each UTF-8
/// byte that is not an ASCII letter, a digit or a hyphen. If an item occurs several times, its
/// second `id` ends with `.2`, its third `id` ends with `.3`, and so on.
[[nodiscard]] ORN_EXPORT UTF8String RenderHTML(const PanelLayout& layout,
                                               const HTMLOptions& options = {});

/// Returns a CSS style sheet for the fragment that `RenderHTML` returns. Each of its selectors
/// begins with a class whose name begins with `ornwhatsnew`. The style sheet supports light and
/// dark colour schemes, narrow pages, both text directions and forced colours. The background and
/// the normal text have system colours. All other colours are custom properties such as
/// `--ornwhatsnew-muted`, which a page can set. The string has static storage duration.
[[nodiscard]] ORN_EXPORT std::string_view GetHTMLStyleSheet() noexcept;

/// Returns the panel in CommonMark. The header is a heading of level 2. Titles are headings of
/// level 3, or of level 2 if the panel has no header. Changes are list items, and unlock labels are
/// code spans. A rating request is a block quote with its description and question. The result
/// contains no HTML. Replaces and omits the same characters as `RenderHTML`, and omits changes
/// without any text. The result is empty if no paragraph has text and the layout has no rating
/// request.
[[nodiscard]] ORN_EXPORT UTF8String RenderMarkdown(const PanelLayout& layout);

/// The properties of a terminal. The default options give plain text.
struct TerminalOptions {
  std::size_t width = 0;       ///< the width of a line in columns, or 0 for no wrapping
  bool hasStyles = false;      ///< whether to write colours and attributes (SGR sequences)
  bool hasHyperlinks = false;  ///< whether safe links are hyperlinks (OSC 8)
  /// Returns a line that follows the question of a rating request, such as a command that rates the
  /// feature. The line is never wrapped, so that a user can copy it. If the function is empty, the
  /// renderer adds no line.
  std::function<UTF16String(const RatingRequest&)> ratingLine = nullptr;
};

/// Returns the panel as lines for a terminal. Empty lines separate the paragraphs, but the title,
/// the description and the changes of an item are adjacent. Wrapped titles and changes have a
/// hanging indent. If `hasHyperlinks` is false, the target of each link with the style
/// `kStyleHotSpot` follows its text in angle brackets, unless the two are equal. The target of a
/// safe link is not shortened.
///
/// `orncore::string::SafeForTerminal` replaces or removes unsafe characters. Apart from newlines
/// and the escape sequences that `options` selects, the result contains no control characters. All
/// styles and hyperlinks end at the end of their line. The result ends with a newline.
[[nodiscard]] ORN_EXPORT UTF8String RenderTerminalText(const PanelLayout& layout,
                                                       const TerminalOptions& options);

/// Returns the panel as plain text with lines of at most `width` columns, for example for an e-mail
/// or a log. If `width` is 0, lines are not wrapped. The result is that of `RenderTerminalText`
/// without styles or hyperlinks.
[[nodiscard]] ORN_EXPORT UTF8String RenderPlainText(const PanelLayout& layout,
                                                    std::size_t width = 0);

}  // namespace ornwhatsnew

#endif  // ORNWHATSNEW_PANELRENDERERS_H_
