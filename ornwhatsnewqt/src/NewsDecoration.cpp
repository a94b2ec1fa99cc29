#include "ornwhatsnewqt/src/NewsDecoration.h"

#include <algorithm>
#include <utility>

#include <QtGui/QAbstractTextDocumentLayout>
#include <QtGui/QFontMetricsF>
#include <QtGui/QGlyphRun>
#include <QtGui/QPainter>
#include <QtGui/QTextDocument>
#include <QtGui/QTextLayout>

#include "ornwhatsnewqt/src/NewsDocument.h"
#include "ornwhatsnewqt/src/NewsFormats.h"

namespace ornwhatsnewqt {
namespace {

// If an edge of a card is this far outside the visible part of the document, the edge and its
// rounded corners are invisible.
constexpr qreal kInvisibleDistance = 2 * kCardRadius;

/// Returns the `ItemPart` of `block`, or 0 if the block is outside of items.
int partOf(const QTextBlock& block) {
  return block.blockFormat().intProperty(NewsDocument::Part);
}

/// Returns the left and the right edge of the text from `begin` to `end` in `line`.
std::pair<qreal, qreal> horizontalRange(const QTextLine& line, int begin, int end) {
  // Where the direction of the text changes, one position of the text cursor has two x-coordinates.
  // Therefore use the glyphs.
  QRectF glyphs;
  for (const QGlyphRun& run : line.glyphRuns(begin, end - begin)) glyphs |= run.boundingRect();
  if (!glyphs.isEmpty()) return {glyphs.left(), glyphs.right()};
  // Tabs and the spaces at the end of a line have no glyphs.
  return std::minmax({line.cursorToX(begin), line.cursorToX(end)});
}

}  // namespace

NewsDecoration::NewsDecoration(const QTextDocument& document, const PanelStyle& style,
                               const QRectF& visible)
    : document_(document), style_(style), visible_(visible) {}

QTextBlock NewsDecoration::blockAt(const QTextDocument& document, qreal y) {
  const int position = document.documentLayout()->hitTest(QPointF(0, y), Qt::FuzzyHit);
  return document.findBlock(std::max(position, 0));
}

QRectF NewsDecoration::rectOf(const QTextBlock& block) const {
  return document_.documentLayout()->blockBoundingRect(block);
}

bool NewsDecoration::isVisible(const QTextBlock& block) const {
  return block.isValid() &&
         rectOf(block).top() <= visible_.bottom() + kInvisibleDistance + kCardPadding;
}

void NewsDecoration::drawCards(QPainter& painter) const {
  QTextBlock block = blockAt(document_, visible_.top());
  // Begin one block earlier, because the padding of the card above can be visible, although the
  // text of that card is not.
  if (block.previous().isValid()) block = block.previous();
  qreal top = visible_.top() - kInvisibleDistance;
  for (; isVisible(block); block = block.next()) {
    if (partOf(block) == 0) continue;
    if (partOf(block) == NewsDocument::FirstBlock) top = rectOf(block).top() - kCardPadding;
    const QTextBlock next = block.next();
    if (partOf(next) != NewsDocument::LaterBlock) {
      drawCard(painter, top, rectOf(block).bottom() + kCardPadding);
    } else if (!isVisible(next)) {
      drawCard(painter, top, visible_.bottom() + kInvisibleDistance);
    }
  }
}

void NewsDecoration::drawCard(QPainter& painter, qreal top, qreal bottom) const {
  const QRectF card(visible_.left() + kPageMargin, top, visible_.width() - 2 * kPageMargin,
                    bottom - top);
  painter.setPen(QPen(style_.cardOutline, 1));
  painter.setBrush(style_.card);
  // Move the edges to the centres of pixels. Otherwise, the outline, which is one pixel wide, would
  // be blurred.
  painter.drawRoundedRect(card.adjusted(0.5, 0.5, -0.5, -0.5), kCardRadius, kCardRadius);
}

void NewsDecoration::drawLabelBoxes(QPainter& painter) const {
  QTextBlock block = blockAt(document_, visible_.top());
  for (; isVisible(block); block = block.next()) {
    for (auto part = block.begin(); !part.atEnd(); ++part) {
      const QTextFragment fragment = part.fragment();
      if (fragment.charFormat().boolProperty(NewsDocument::IsLabel))
        drawLabelBox(painter, fragment);
    }
  }
}

void NewsDecoration::drawLabelBox(QPainter& painter, const QTextFragment& label) const {
  const QFontMetricsF metrics(label.charFormat().font());
  const qreal height = metrics.capHeight() + 12;
  painter.setPen(QPen(style_.accent, 1));
  painter.setBrush(style_.accentFill);
  for (const QRectF& line :
       textRects(document_, label.position(), label.position() + label.length())) {
    QRectF box(line.left() - kLabelPadding, line.center().y() - height / 2,
               line.width() + 2 * kLabelPadding, height);
    painter.drawRoundedRect(box.adjusted(0.5, 0.5, -0.5, -0.5), height / 2, height / 2);
  }
}

void NewsDecoration::drawFocusRing(QPainter& painter, int begin, int end) const {
  painter.setPen(QPen(style_.accent, 2));
  painter.setBrush(Qt::NoBrush);
  for (const QRectF& line : textRects(document_, begin, end))
    painter.drawRoundedRect(line.adjusted(-4, -1, 4, 1), 4, 4);
}

QList<QRectF> NewsDecoration::textRects(const QTextDocument& document, int begin, int end) {
  const QTextBlock block = document.findBlock(begin);
  const QPointF origin = document.documentLayout()->blockBoundingRect(block).topLeft();
  const QTextLayout& layout = *block.layout();
  QList<QRectF> rects;
  for (int i = 0; i < layout.lineCount(); ++i) {
    const QTextLine line = layout.lineAt(i);
    const int first = std::max(begin - block.position(), line.textStart());
    const int last = std::min(end - block.position(), line.textStart() + line.textLength());
    if (first >= last) continue;
    const auto [left, right] = horizontalRange(line, first, last);
    rects.append(QRectF(left, line.y(), right - left, line.ascent() + line.descent())
                     .translated(layout.position().x(), origin.y() - layout.boundingRect().top()));
  }
  return rects;
}

}  // namespace ornwhatsnewqt
