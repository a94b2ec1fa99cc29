#include <ornwhatsnew/PanelRenderers.h>

#include <orncore/string/Conversion.h>
#include <orncore/string/SafeLink.h>

#include "ornwhatsnew/src/render/MarkdownWriter.h"
#include "ornwhatsnew/src/render/RenderedText.h"

namespace ornwhatsnew {
namespace {

const MarkdownBlock& BlockOf(ParagraphKind kind, bool hasHeader) {
  switch (kind) {
    case ParagraphKind::kHeader:
      return kMarkdownHeading2;
    case ParagraphKind::kTitle:
      return hasHeader ? kMarkdownHeading3 : kMarkdownHeading2;
    case ParagraphKind::kChange:
      return kMarkdownListItem;
    case ParagraphKind::kRatingRequest:
      return kMarkdownQuote;
    default:
      return kMarkdownParagraph;
  }
}

void WriteSpan(const LayoutSpan& span, std::u16string_view text, MarkdownWriter& writer) {
  const bool isLink = orncore::string::IsSafeLink(span.link);
  if (isLink) {
    writer.AppendLink(text, span.link);
  } else if (span.style == kStyleUnlockLabel) {
    writer.AppendCode(text);
  } else {
    writer.AppendText(text);
    writer.AppendText(PrintedTarget(span, text, isLink));
  }
}

}  // namespace

UTF8String RenderMarkdown(const PanelLayout& layout) {
  MarkdownWriter writer;
  const bool hasHeader = HasHeader(layout);
  for (const LayoutParagraph& paragraph : layout.paragraphs) {
    writer.BeginBlock(BlockOf(paragraph.kind, hasHeader));
    for (const LayoutSpan& span : paragraph.spans) {
      WriteSpan(span, SpanText(layout, span), writer);
    }
    if (const RatingRequest* const request = FindRatingRequest(layout, paragraph)) {
      writer.AppendText(request->description);
      writer.AppendText(u"\n");
      writer.AppendText(RatingQuestion(*request));
    }
    writer.EndBlock();
  }
  return orncore::string::UTF16to8(writer.TakeBlocks());
}

}  // namespace ornwhatsnew
