#include <ornwhatsnew/PanelRenderers.h>

#include <algorithm>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <orncore/string/Conversion.h>
#include <orncore/string/DisplayWidth.h>
#include <orncore/string/SafeLink.h>
#include <orncore/string/SafeText.h>

#include "ornwhatsnew/src/render/ParagraphWrapper.h"
#include "ornwhatsnew/src/render/RenderedText.h"
#include "ornwhatsnew/src/render/TerminalStyle.h"

namespace ornwhatsnew {
namespace {

/// The maximum hanging indent after a bullet, in columns. Without this limit, a long bullet and a
/// text with many lines would make the output much longer than the layout.
constexpr std::size_t kMaximumHangingIndent = 40;
constexpr std::u16string_view kGap = u"   ";
constexpr std::u16string_view kBadgePadding = u"\u00A0";

/// The style and the hyperlink of a part of a line. `hyperlink` is null if the part has none.
struct SpanStyle {
  std::optional<StyleID> styleID;
  const UTF16String* hyperlink = nullptr;
  std::size_t hyperlinkNumber = 0;
};

/// The UTF-16 units `[begin, end)` of a line, which have the same style.
struct LinePart {
  std::size_t begin;
  std::size_t end;
  SpanStyle style;
};

/// A line of a paragraph before wrapping. The parts cover the text in ascending order.
struct Line {
  std::u16string text;
  std::vector<LinePart> parts;

  void Append(std::u16string_view added, const SpanStyle& style) {
    if (added.empty()) return;
    const std::size_t begin = text.size();
    text += added;
    parts.push_back({begin, text.size(), style});
  }
};

std::size_t IndentWidth(std::size_t width) {
  if (width == 0 || width >= 40) return 3;
  return width >= 20 ? 2 : 1;
}

/// Returns whether the span is the gap before an unlock label or before a link with the style
/// `kStyleHotSpot`. In a layout, this gap is a space without a style.
bool IsGap(const LayoutParagraph& paragraph, std::size_t span, std::u16string_view text) {
  if (text != u" " || paragraph.spans[span].style || span + 1 == paragraph.spans.size()) {
    return false;
  }
  const std::optional<StyleID> next = paragraph.spans[span + 1].style;
  return next == kStyleUnlockLabel || next == kStyleHotSpot;
}

/// Writes the parts of one line, and the escape sequences that switch styles and hyperlinks between
/// the parts.
class LineWriter {
 public:
  /// Creates a writer that appends to `output`. Writes styles only if `hasStyles` is true. Writes a
  /// hyperlink for each part that has one.
  LineWriter(UTF8String& output, bool hasStyles) : output_(output), hasStyles_(hasStyles) {}

  void Add(std::u16string_view text, const SpanStyle& style) {
    if (hasStyles_) SwitchStyle(StyleStart(style.styleID));
    SwitchHyperlink(style);
    orncore::string::AppendUTF16to8(text, output_);
  }

  void Finish() {
    if (hyperlinkNumber_ != 0) output_ += kHyperlinkEnd;
    SwitchStyle({});
    output_ += '\n';
  }

 private:
  void SwitchStyle(std::string_view style) {
    if (style == style_) return;
    if (!style_.empty()) output_ += kStyleEnd;
    output_ += style;
    style_ = style;
  }

  void SwitchHyperlink(const SpanStyle& style) {
    if (style.hyperlinkNumber == hyperlinkNumber_) return;
    if (style.hyperlinkNumber == 0) {
      output_ += kHyperlinkEnd;
    } else {
      output_ += HyperlinkStart(orncore::string::UTF16to8(*style.hyperlink), style.hyperlinkNumber);
    }
    hyperlinkNumber_ = style.hyperlinkNumber;
  }

  UTF8String& output_;
  bool hasStyles_;
  std::string_view style_;
  std::size_t hyperlinkNumber_ = 0;
};

class TerminalRenderer {
 public:
  TerminalRenderer(const PanelLayout& layout, const TerminalOptions& options)
      : layout_(layout),
        options_(options),
        indentWidth_(IndentWidth(options.width)),
        wrapper_(options.width) {}

  UTF8String Render() {
    for (const LayoutParagraph& paragraph : layout_.paragraphs) WriteParagraph(paragraph);
    if (output_.empty()) output_ += '\n';
    return std::move(output_);
  }

 private:
  void WriteParagraph(const LayoutParagraph& paragraph) {
    const bool isPartOfItem =
        paragraph.kind == ParagraphKind::kDescription || paragraph.kind == ParagraphKind::kChange;
    if (!isPartOfItem) AddGap();
    shape_ = {};
    shape_.firstIndent = static_cast<std::size_t>(paragraph.indentLevel) * indentWidth_;
    shape_.hangingIndent = shape_.firstIndent;
    if (paragraph.kind == ParagraphKind::kTitle) shape_.hangingIndent += indentWidth_;
    AppendBullet(paragraph.bullet);
    for (std::size_t i = 0; i < paragraph.spans.size(); ++i) AppendSpan(paragraph, i);
    if (const RatingRequest* const request = FindRatingRequest(layout_, paragraph)) {
      AppendText(RatingQuestion(*request), {.styleID = kStyleRatingPlaceholder});
      FinishLine();
      if (options_.ratingLine) WriteUnwrapped(options_.ratingLine(*request));
    } else {
      FinishLine();
    }
    if (!isPartOfItem && paragraph.kind != ParagraphKind::kTitle) AddGap();
  }

  /// Requests an empty line before the next line, unless the panel has no lines yet.
  void AddGap() { isGapDue_ = !output_.empty(); }

  /// Appends the bullet and the spaces up to the text. Sets the hanging indent to the column where
  /// the text begins, but at most to `kMaximumHangingIndent`. Does nothing for an empty bullet.
  void AppendBullet(std::u16string_view bullet) {
    if (bullet.empty()) return;
    std::u16string text = orncore::string::SafeForTerminal(bullet);
    const std::size_t end = shape_.firstIndent + orncore::string::DisplayWidth(text);
    const std::size_t textBegin = (end / indentWidth_ + 1) * indentWidth_;
    text.append(textBegin - end, u' ');
    shape_.hangingIndent = std::min(textBegin, kMaximumHangingIndent);
    shape_.unbrokenPrefix = text.size();
    line_.Append(text, {});
  }

  void AppendSpan(const LayoutParagraph& paragraph, std::size_t index) {
    const LayoutSpan& span = paragraph.spans[index];
    const std::u16string_view text = SpanText(layout_, span);
    SpanStyle style{.styleID = span.style};
    if (options_.hasHyperlinks && orncore::string::IsSafeLink(span.link)) {
      style.hyperlink = &span.link;
      style.hyperlinkNumber = ++hyperlinkCount_;
    }
    const bool isBadge = options_.hasStyles && span.style == kStyleUnlockLabel;
    if (isBadge) line_.Append(kBadgePadding, style);
    AppendText(IsGap(paragraph, index, text) ? kGap : text, style);
    if (isBadge) line_.Append(kBadgePadding, style);
    line_.Append(PrintedTarget(span, text, style.hyperlink != nullptr), {.styleID = span.style});
  }

  /// Appends `text`, and finishes the current line at each line end.
  void AppendText(std::u16string_view text, const SpanStyle& style) {
    constexpr std::u16string_view kLineEnds = u"\n\u2028";
    std::size_t end = text.find_first_of(kLineEnds);
    while (end != std::u16string_view::npos) {
      line_.Append(SafeText(text.substr(0, end)), style);
      FinishLine();
      text.remove_prefix(end + 1);
      end = text.find_first_of(kLineEnds);
    }
    line_.Append(SafeText(text), style);
  }

  static std::u16string SafeText(std::u16string_view text) {
    std::u16string safe = orncore::string::SafeForTerminal(text);
    std::ranges::replace_if(
        safe, [](char16_t unit) { return unit == u'\t' || unit == u'\n'; }, u' ');
    return safe;
  }

  /// Wraps and writes the current line. If it is empty, calls `AddGap` instead. The next line of
  /// the paragraph has the hanging indent.
  void FinishLine() {
    const Line line = std::exchange(line_, {});
    const std::vector<WrappedLine> lines = wrapper_.Wrap(line.text, shape_);
    shape_ = {shape_.hangingIndent, shape_.hangingIndent, 0};
    const bool isEmpty = lines.size() == 1 && lines.front().begin == lines.front().end;
    if (isEmpty) {
      AddGap();
      return;
    }
    WriteLines(line, lines);
  }

  /// Writes `text`, the result of `TerminalOptions::ratingLine`, on one line, even if it is wider
  /// than the terminal.
  void WriteUnwrapped(std::u16string_view text) {
    Line line;
    line.Append(SafeText(text), {.styleID = kStyleRatingPlaceholder});
    WriteLines(line, {{0, line.text.size(), shape_.hangingIndent}});
  }

  void WriteLines(const Line& line, const std::vector<WrappedLine>& lines) {
    if (std::exchange(isGapDue_, false)) output_ += '\n';
    const std::u16string_view text = line.text;
    auto part = line.parts.begin();
    for (const WrappedLine& wrapped : lines) {
      LineWriter writer(output_, options_.hasStyles);
      output_.append(wrapped.indent, ' ');
      for (std::size_t begin = wrapped.begin; begin < wrapped.end;) {
        while (part->end <= begin) ++part;
        const std::size_t end = std::min(part->end, wrapped.end);
        writer.Add(text.substr(begin, end - begin), part->style);
        begin = end;
      }
      writer.Finish();
    }
  }

  const PanelLayout& layout_;
  TerminalOptions options_;
  std::size_t indentWidth_;
  ParagraphWrapper wrapper_;
  ParagraphShape shape_;  ///< the shape of the current line
  Line line_;             ///< the current line
  UTF8String output_;
  bool isGapDue_ = false;
  std::size_t hyperlinkCount_ = 0;
};

}  // namespace

UTF8String RenderTerminalText(const PanelLayout& layout, const TerminalOptions& options) {
  return TerminalRenderer(layout, options).Render();
}

UTF8String RenderPlainText(const PanelLayout& layout, std::size_t width) {
  return RenderTerminalText(layout, {.width = width});
}

}  // namespace ornwhatsnew
