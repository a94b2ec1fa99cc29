#include "hosts/console/TerminalPanel.h"

#include <algorithm>
#include <string_view>
#include <utility>
#include <vector>

#include <orncore/string/Conversion.h>
#include <orncore/string/SafeText.h>
#include <ornwhatsnew/SafeLink.h>

#include "hosts/console/DisplayWidth.h"
#include "hosts/console/LinkTarget.h"
#include "hosts/console/ParagraphWrapper.h"
#include "hosts/console/TerminalStyle.h"

namespace hosts::console {
namespace {

using common::StyledSegment;
using orncore::string::SafeForTerminal;

constexpr std::u16string_view kGap = u"   ";
constexpr std::u16string_view kBadgePadding = u"\u00A0";
constexpr std::size_t kMaximumBulletWidth = 4;

/// The UTF-16 units `[begin, end)` of a paragraph. All of them come from the same segment.
struct Span {
  std::size_t begin;
  std::size_t end;
  const StyledSegment* segment;
  std::size_t link;  ///< the number of the hyperlink; 0: no hyperlink
};

struct Paragraph {
  std::u16string text;
  std::vector<Span> spans;

  void Append(std::u16string_view added, const StyledSegment* segment, std::size_t link) {
    if (added.empty()) return;
    const std::size_t begin = text.size();
    text += added;
    spans.push_back({begin, text.size(), segment, link});
  }
};

std::size_t TabWidth(std::size_t width) {
  if (width == 0 || width >= 40) return 3;
  return width >= 20 ? 2 : 1;
}

/// The tabs at the start of a paragraph, and the bullet after them if there is one.
struct Prefix {
  std::size_t tabs = 0;
  std::size_t bulletEnd = 0;  ///< the position of the tab after the bullet; 0: no bullet
  ParagraphShape shape;
};

Prefix MeasurePrefix(std::u16string_view text, std::size_t tabWidth) {
  Prefix prefix;
  prefix.tabs = std::min(text.find_first_not_of(u'\t'), text.size());
  prefix.shape.firstIndent = prefix.tabs * tabWidth;
  prefix.shape.hangingIndent = prefix.shape.firstIndent;
  const std::size_t tab = text.find(u'\t', prefix.tabs);
  if (prefix.tabs == 0 || tab == std::u16string_view::npos) return prefix;
  const std::u16string_view bullet = text.substr(prefix.tabs, tab - prefix.tabs);
  const std::size_t columns = DisplayWidth(bullet);
  if (columns > kMaximumBulletWidth) return prefix;
  prefix.bulletEnd = tab;
  const std::size_t column = prefix.shape.firstIndent + columns;
  prefix.shape.hangingIndent = (column + tabWidth - 1) / tabWidth * tabWidth;
  if (prefix.shape.hangingIndent == column && !bullet.ends_with(u' ')) {
    prefix.shape.hangingIndent += tabWidth;
  }
  prefix.shape.unbrokenPrefix = bullet.size() + prefix.shape.hangingIndent - column;
  return prefix;
}

/// Returns the replacement of the tab at `position`. For the tabs of the indent, it is empty. For
/// the tab after a bullet, it consists of the spaces up to the hanging indent. For every other tab,
/// it consists of three spaces.
std::u16string TabReplacement(std::size_t position, const Prefix& prefix) {
  if (position < prefix.tabs) return {};
  if (position != prefix.bulletEnd) return std::u16string(kGap);
  const std::size_t bullet = prefix.bulletEnd - prefix.tabs;
  return std::u16string(prefix.shape.unbrokenPrefix - bullet, u' ');
}

Paragraph WithoutTabs(const Paragraph& paragraph, const Prefix& prefix) {
  Paragraph result;
  for (const Span& span : paragraph.spans) {
    std::u16string text;
    for (std::size_t i = span.begin; i < span.end; ++i) {
      if (paragraph.text[i] == u'\t') {
        text += TabReplacement(i, prefix);
      } else {
        text += paragraph.text[i];
      }
    }
    result.Append(text, span.segment, span.link);
  }
  return result;
}

/// Writes the spans of one line, and the escape sequences that switch styles and hyperlinks between
/// the spans.
class LineWriter {
 public:
  /// Creates a writer that appends to `output`. Writes styles only if `isStyled` is true. Writes a
  /// hyperlink for each span that has one.
  LineWriter(std::string& output, bool isStyled) : output_(output), isStyled_(isStyled) {}

  void Add(std::u16string_view text, const Span& span) {
    if (isStyled_) SwitchStyle(StyleStart(span.segment->styles));
    SwitchLink(span);
    orncore::string::AppendUTF16to8(text, output_);
  }

  void Finish() {
    if (link_ != 0) output_ += kHyperlinkEnd;
    SwitchStyle({});
    output_ += '\n';
  }

 private:
  void SwitchStyle(std::string style) {
    if (style == style_) return;
    if (!style_.empty()) output_ += kStyleEnd;
    output_ += style;
    style_ = std::move(style);
  }

  void SwitchLink(const Span& span) {
    if (span.link == link_) return;
    if (span.link == 0) {
      output_ += kHyperlinkEnd;
    } else {
      output_ += HyperlinkStart(span.segment->link, span.link);
    }
    link_ = span.link;
  }

  std::string& output_;
  bool isStyled_;
  std::string style_;
  std::size_t link_ = 0;
};

class PanelRenderer {
 public:
  explicit PanelRenderer(const TerminalLook& look)
      : look_(look), tabWidth_(TabWidth(look.width)), wrapper_(look.width) {}

  std::string Render(std::span<const StyledSegment> segments) {
    for (std::size_t i = 0; i < segments.size(); ++i) {
      AddSegment(segments[i]);
      const bool isLinkDone = i + 1 == segments.size() || segments[i + 1].link != segments[i].link;
      if (isLinkDone) AddLinkTarget(segments[i]);
    }
    if (!paragraph_.text.empty()) FinishParagraph();
    if (output_.empty()) output_ += '\n';
    return std::move(output_);
  }

 private:
  void AddSegment(const StyledSegment& segment) {
    const std::size_t link = look_.hasHyperlinks ? NumberOfLink(segment.link) : 0;
    const std::u16string text = SafeForTerminal(orncore::string::UTF8to16(segment.text));
    const bool isBadge = look_.isStyled && segment.styles.Has(ornwhatsnew::kStyleUnlockLabelBox);
    std::size_t begin = 0;
    for (;;) {
      const std::size_t end = std::min(text.find(u'\n', begin), text.size());
      if (isBadge) paragraph_.Append(kBadgePadding, &segment, link);
      paragraph_.Append(std::u16string_view(text).substr(begin, end - begin), &segment, link);
      if (isBadge) paragraph_.Append(kBadgePadding, &segment, link);
      if (end == text.size()) return;
      FinishParagraph();
      begin = end + 1;
    }
  }

  /// Returns the number of the hyperlink to `link`, or 0 if `link` is empty or unsafe. Consecutive
  /// calls with the same link return the same number.
  std::size_t NumberOfLink(std::string_view link) {
    if (link != lastLink_) {
      lastLink_ = link;
      lastLinkNumber_ = ornwhatsnew::IsSafeLink(link) ? ++linkCount_ : 0;
    }
    return lastLinkNumber_;
  }

  /// Appends the target of the link in angle brackets, unless the link is a hyperlink or its text
  /// is the target.
  void AddLinkTarget(const StyledSegment& segment) {
    if (!segment.styles.Has(ornwhatsnew::kStyleHotSpot) || segment.link.empty() ||
        segment.text == segment.link) {
      return;
    }
    if (look_.hasHyperlinks && ornwhatsnew::IsSafeLink(segment.link)) return;
    const std::string target = " <" + PrintedLinkTarget(segment.link) + ">";
    paragraph_.Append(orncore::string::UTF8to16(target), &segment, 0);
  }

  void FinishParagraph() {
    Prefix prefix = MeasurePrefix(paragraph_.text, tabWidth_);
    const Paragraph paragraph = WithoutTabs(paragraph_, prefix);
    paragraph_ = {};
    const bool isTitle = !paragraph.spans.empty() && paragraph.spans.front().segment->styles.Has(
                                                         ornwhatsnew::kStyleFeatureTitle);
    if (isTitle) prefix.shape.hangingIndent += tabWidth_;
    const std::vector<WrappedLine> lines = wrapper_.Wrap(paragraph.text, prefix.shape);
    const bool isEmpty = lines.size() == 1 && lines.front().begin == lines.front().end;
    if ((isTitle || isEmpty) && !output_.empty()) isGapDue_ = true;
    if (isEmpty) return;
    if (std::exchange(isGapDue_, false)) output_ += '\n';
    WriteLines(paragraph, lines);
  }

  void WriteLines(const Paragraph& paragraph, const std::vector<WrappedLine>& lines) {
    const std::u16string_view text = paragraph.text;
    auto span = paragraph.spans.begin();
    for (const WrappedLine& line : lines) {
      LineWriter writer(output_, look_.isStyled);
      output_.append(line.indent, ' ');
      for (std::size_t begin = line.begin; begin < line.end;) {
        while (span->end <= begin) ++span;
        const std::size_t end = std::min(span->end, line.end);
        writer.Add(text.substr(begin, end - begin), *span);
        begin = end;
      }
      writer.Finish();
    }
  }

  TerminalLook look_;
  std::size_t tabWidth_;
  ParagraphWrapper wrapper_;
  Paragraph paragraph_;
  std::string output_;
  bool isGapDue_ = false;
  std::string_view lastLink_;
  std::size_t lastLinkNumber_ = 0;
  std::size_t linkCount_ = 0;
};

}  // namespace

std::string RenderTerminalPanel(std::span<const StyledSegment> segments, const TerminalLook& look) {
  return PanelRenderer(look).Render(segments);
}

}  // namespace hosts::console
