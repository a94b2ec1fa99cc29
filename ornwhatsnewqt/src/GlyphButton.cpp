#include "ornwhatsnewqt/src/GlyphButton.h"

#include <QtGui/QPainter>

#include "ornwhatsnewqt/src/PanelStyle.h"

namespace ornwhatsnewqt {
namespace {

// Glyphs are drawn in a square from (0, 0) to (20, 20).
constexpr qreal kGlyphSize = 20;
constexpr int kButtonSize = 36;

void drawGlyph(QPainter& painter, Glyph glyph) {
  switch (glyph) {
    case Glyph::Search:
      painter.drawEllipse(QPointF(8.5, 8.5), 5.5, 5.5);
      painter.drawLine(QPointF(12.6, 12.6), QPointF(17, 17));
      break;
    case Glyph::Print:
      painter.drawPolyline(
          QPolygonF({QPointF(6, 7), QPointF(6, 3), QPointF(14, 3), QPointF(14, 7)}));
      painter.drawPolyline(QPolygonF({QPointF(6, 14), QPointF(3, 14), QPointF(3, 7), QPointF(17, 7),
                                      QPointF(17, 14), QPointF(14, 14)}));
      painter.drawRect(QRectF(6, 11.5, 8, 5.5));
      break;
    case Glyph::Close:
      painter.drawLine(QPointF(5, 5), QPointF(15, 15));
      painter.drawLine(QPointF(15, 5), QPointF(5, 15));
      break;
    case Glyph::Up:
      painter.drawPolyline(QPolygonF({QPointF(5, 12.5), QPointF(10, 7.5), QPointF(15, 12.5)}));
      break;
    case Glyph::Down:
      painter.drawPolyline(QPolygonF({QPointF(5, 7.5), QPointF(10, 12.5), QPointF(15, 7.5)}));
      break;
  }
}

}  // namespace

GlyphButton::GlyphButton(Glyph glyph, QWidget* parent) : QAbstractButton(parent), glyph_(glyph) {
  setFocusPolicy(Qt::StrongFocus);
  setAttribute(Qt::WA_Hover);
}

void GlyphButton::setNames(const QString& name, const QString& description,
                           const QKeySequence& shortcut) {
  setAccessibleName(name);
  setAccessibleDescription(description);
  const QString key = shortcut.toString(QKeySequence::NativeText);
  setToolTip(key.isEmpty() ? name : name + QStringLiteral(" (") + key + u')');
}

QSize GlyphButton::sizeHint() const {
  return QSize(kButtonSize, kButtonSize);
}

void GlyphButton::paintEvent(QPaintEvent* /*event*/) {
  const PanelStyle style(palette(), font());
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const QRectF shape = QRectF(rect()).adjusted(1, 1, -1, -1);
  if (isEnabled() && (underMouse() || isDown())) {
    painter.setPen(Qt::NoPen);
    painter.setBrush(style.accentFill);
    painter.drawRoundedRect(shape, 6, 6);
  }
  if (hasFocus()) {
    painter.setPen(QPen(style.accent, 2));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(shape, 6, 6);
  }
  painter.setOpacity(isEnabled() ? 1 : 0.4);
  painter.translate(QRectF(rect()).center() - QPointF(kGlyphSize / 2, kGlyphSize / 2));
  painter.setPen(QPen(style.secondary, 1.6, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
  painter.setBrush(Qt::NoBrush);
  drawGlyph(painter, glyph_);
}

}  // namespace ornwhatsnewqt
