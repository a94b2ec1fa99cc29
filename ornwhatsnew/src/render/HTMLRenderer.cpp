#include <ornwhatsnew/PanelRenderers.h>

#include <map>
#include <string>

#include <orncore/string/Conversion.h>
#include <orncore/string/SafeLink.h>
#include <orncore/string/SafeText.h>

#include "ornwhatsnew/src/render/RenderedText.h"

namespace ornwhatsnew {
namespace {

/// Returns the result of `SafeForDocument(text)` as HTML. Each line separator becomes a `br`
/// element. A result without this element can also be the value of an attribute.
UTF16String EscapeHTML(std::u16string_view text) {
  UTF16String escaped;
  escaped.reserve(text.size());
  for (const char16_t unit : orncore::string::SafeForDocument(text)) {
    switch (unit) {
      case u'&':
        escaped += u"&amp;";
        break;
      case u'<':
        escaped += u"&lt;";
        break;
      case u'>':
        escaped += u"&gt;";
        break;
      case u'"':
        escaped += u"&quot;";
        break;
      case u'\'':
        escaped += u"&#39;";
        break;
      case kLineSeparator:
        escaped += u"<br>";
        break;
      default:
        escaped += unit;
    }
  }
  return escaped;
}

/// Returns the `id` of an item: `prefix` and the encoded key. The encoded key consists of ASCII
/// letters, digits, `-` and `_`, which need no escapes in URLs and CSS selectors.
std::string ItemID(std::string_view prefix, std::string_view itemKey) {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  constexpr std::string_view kKept =
      "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-";
  std::string result(prefix);
  for (const char character : itemKey) {
    if (kKept.find(character) != std::string_view::npos) {
      result += character;
      continue;
    }
    const auto byte = static_cast<unsigned char>(character);
    result += '_';
    result += kDigits[byte >> 4U];
    result += kDigits[byte & 0xFU];
  }
  return result;
}

/// Returns the CSS class of spans with this style, or an empty string if these spans have no class.
std::u16string_view SpanClass(std::optional<StyleID> style) {
  if (!style) return {};
  switch (*style) {
    case kStyleUnlockLabel:
      return u"ornwhatsnew-label";
    case kStyleInternalCode:
      return u"ornwhatsnew-code";
    case kStyleInternalWarning:
      return u"ornwhatsnew-note";
    case kStyleHotSpot:
      return u"ornwhatsnew-link";
    case kStyleIssueLink:
      return u"ornwhatsnew-issue";
    case kStyleCommitLink:
      return u"ornwhatsnew-commit";
    default:
      return {};  // the class of the paragraph is sufficient
  }
}

UTF16String HeadingElement(int level) {
  return UTF16String(u"h") + static_cast<char16_t>(u'0' + level);
}

class HTMLRenderer {
 public:
  HTMLRenderer(const PanelLayout& layout, const HTMLOptions& options)
      : layout_(layout),
        options_(options),
        headerElement_(HeadingElement(options.headingLevel)),
        titleElement_(HeadingElement(options.headingLevel + (HasHeader(layout) ? 1 : 0))) {}

  UTF8String Render() {
    output_ = u"<section class=\"ornwhatsnew\" dir=\"auto\">\n";
    for (const LayoutParagraph& paragraph : layout_.paragraphs) {
      OpenOrCloseElements(paragraph);
      WriteParagraph(paragraph);
    }
    CloseItem();
    output_ += u"</section>\n";
    return orncore::string::UTF16to8(output_);
  }

 private:
  /// Closes the open `ul` element if `paragraph` is not a change. Closes the open `article` element
  /// and its `ul` element if `paragraph` does not belong to the current item. Opens an `article`
  /// element if `paragraph` is the first paragraph of an item.
  void OpenOrCloseElements(const LayoutParagraph& paragraph) {
    const ParagraphKind kind = paragraph.kind;
    if (kind != ParagraphKind::kChange) CloseList();
    const bool isInItem = kind != ParagraphKind::kHeader && kind != ParagraphKind::kNotice;
    // An item without a title begins with another kind of paragraph, so compare the item keys, too.
    const bool isNewItem = isInItem && (kind == ParagraphKind::kTitle || item_ == nullptr ||
                                        item_->itemKey != paragraph.itemKey);
    if (!isInItem || isNewItem) CloseItem();
    if (isNewItem) OpenItem(paragraph);
  }

  void OpenItem(const LayoutParagraph& paragraph) {
    item_ = &paragraph;
    std::string id = ItemID(options_.idPrefix, paragraph.itemKey);
    const int occurrence = ++occurrences_[paragraph.itemKey];
    if (occurrence > 1) id += '.' + std::to_string(occurrence);
    output_ += u"<article class=\"ornwhatsnew-item";
    if (paragraph.isSection) output_ += u" ornwhatsnew-section";
    output_ += u'"';
    WriteID(id);
    output_ += u">\n";
  }

  void WriteID(std::string_view id) {
    if (!id.empty()) output_ += u" id=\"" + EscapeHTML(orncore::string::UTF8to16(id)) + u'"';
  }

  /// Returns the `id` of a paragraph of the layout, or an empty string if it has none.
  std::string_view ParagraphID(const LayoutParagraph& paragraph) const {
    const auto index = static_cast<std::size_t>(&paragraph - layout_.paragraphs.data());
    return index < options_.paragraphIDs.size() ? std::string_view(options_.paragraphIDs[index])
                                                : std::string_view();
  }

  void CloseItem() {
    CloseList();
    if (item_ != nullptr) output_ += u"</article>\n";
    item_ = nullptr;
  }

  void OpenList() {
    if (!isListOpen_) output_ += u"<ul class=\"ornwhatsnew-changes\">\n";
    isListOpen_ = true;
  }

  void CloseList() {
    if (isListOpen_) output_ += u"</ul>\n";
    isListOpen_ = false;
  }

  void WriteParagraph(const LayoutParagraph& paragraph) {
    const std::string_view id = ParagraphID(paragraph);
    switch (paragraph.kind) {
      case ParagraphKind::kHeader:
        WriteElement(headerElement_, u"ornwhatsnew-header", ContentOf(paragraph), id);
        break;
      case ParagraphKind::kTitle:
        WriteElement(titleElement_, u"ornwhatsnew-title", ContentOf(paragraph), id);
        break;
      case ParagraphKind::kDescription:
        WriteElement(u"p", u"ornwhatsnew-description", ContentOf(paragraph), id);
        break;
      case ParagraphKind::kNotice:
        WriteElement(u"p", u"ornwhatsnew-notice", ContentOf(paragraph), id);
        break;
      case ParagraphKind::kChange:
        if (paragraph.spans.empty()) break;
        OpenList();
        WriteElement(u"li", u"ornwhatsnew-change", ContentOf(paragraph), id);
        break;
      case ParagraphKind::kRatingRequest:
        if (const RatingRequest* const request = FindRatingRequest(layout_, paragraph)) {
          WriteRatingRequest(*request, id);
        }
        break;
    }
  }

  void WriteRatingRequest(const RatingRequest& request, std::string_view id) {
    output_ += u"<div class=\"ornwhatsnew-rating\"";
    WriteID(id);
    output_ += u">\n";
    if (!request.description.empty()) {
      WriteElement(u"p", u"ornwhatsnew-description", EscapeHTML(request.description), {});
    }
    WriteElement(u"p", u"ornwhatsnew-question", EscapeHTML(RatingQuestion(request)), {});
    output_ += u"</div>\n";
  }

  void WriteElement(std::u16string_view name, std::u16string_view elementClass,
                    std::u16string_view content, std::string_view id) {
    output_.append(u"<").append(name).append(u" class=\"").append(elementClass).append(u"\"");
    WriteID(id);
    output_.append(u">").append(content);
    output_.append(u"</").append(name).append(u">\n");
  }

  UTF16String ContentOf(const LayoutParagraph& paragraph) const {
    UTF16String content;
    for (const LayoutSpan& span : paragraph.spans) AppendSpan(span, content);
    return content;
  }

  void AppendSpan(const LayoutSpan& span, UTF16String& content) const {
    const std::u16string_view text = SpanText(layout_, span);
    const std::u16string_view spanClass = SpanClass(span.style);
    const bool isLink = orncore::string::IsSafeLink(span.link);
    const std::u16string_view name = isLink ? u"a" : u"span";
    const bool hasElement = isLink || !spanClass.empty();
    if (hasElement) content.append(u"<").append(name);
    if (!spanClass.empty()) content.append(u" class=\"").append(spanClass).append(u"\"");
    if (isLink) content.append(u" href=\"").append(EscapeHTML(span.link)).append(u"\"");
    if (hasElement) content.append(u">");
    content.append(EscapeHTML(text)).append(EscapeHTML(PrintedTarget(span, text, isLink)));
    if (hasElement) content.append(u"</").append(name).append(u">");
  }

  const PanelLayout& layout_;
  const HTMLOptions& options_;
  const UTF16String headerElement_;
  const UTF16String titleElement_;
  UTF16String output_;
  /// The first paragraph of the current item. The pointer is null outside items.
  const LayoutParagraph* item_ = nullptr;
  bool isListOpen_ = false;
  std::map<std::string, int> occurrences_;
};

}  // namespace

UTF8String RenderHTML(const PanelLayout& layout, const HTMLOptions& options) {
  return HTMLRenderer(layout, options).Render();
}

}  // namespace ornwhatsnew
