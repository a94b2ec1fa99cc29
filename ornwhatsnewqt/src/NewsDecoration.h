// Draws what a text document cannot contain: cards, label boxes and focus rings.
#ifndef ORNWHATSNEWQT_SRC_NEWSDECORATION_H_
#define ORNWHATSNEWQT_SRC_NEWSDECORATION_H_

#include <QtCore/QList>
#include <QtCore/QRectF>
#include <QtGui/QTextBlock>

#include "ornwhatsnewqt/src/PanelStyle.h"

QT_BEGIN_NAMESPACE
class QPainter;
class QTextDocument;
QT_END_NAMESPACE

namespace ornwhatsnewqt {

/// Draws the shapes around the text of a `NewsDocument`. All coordinates are those of the document.
/// Drawing takes time proportional to the size of the visible part of the document.
class NewsDecoration {
 public:
  /// Creates an object that draws in the part `visible` of `document`. The document must be laid
  /// out. `document` and `style` must outlive this object.
  NewsDecoration(const QTextDocument& document, const PanelStyle& style, const QRectF& visible);

  /// Draws a card behind each visible item.
  void drawCards(QPainter& painter) const;

  /// Draws a box with rounded corners behind each visible label.
  void drawLabelBoxes(QPainter& painter) const;

  /// Draws a ring around each line of the text from `begin` to `end`. Both positions must be in one
  /// block.
  void drawFocusRing(QPainter& painter, int begin, int end) const;

  /// Returns the rectangles of the text from `begin` to `end`, one for each line. Both positions
  /// must be in one block.
  static QList<QRectF> textRects(const QTextDocument& document, int begin, int end);

  /// Returns the block at the vertical position `y`, or the nearest block if there is none.
  static QTextBlock blockAt(const QTextDocument& document, qreal y);

 private:
  bool isVisible(const QTextBlock& block) const;
  QRectF rectOf(const QTextBlock& block) const;
  void drawCard(QPainter& painter, qreal top, qreal bottom) const;
  void drawLabelBox(QPainter& painter, const QTextFragment& label) const;

  const QTextDocument& document_;
  const PanelStyle& style_;
  QRectF visible_;
};

}  // namespace ornwhatsnewqt

#endif  // ORNWHATSNEWQT_SRC_NEWSDECORATION_H_
