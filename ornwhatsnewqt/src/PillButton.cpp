#include "ornwhatsnewqt/src/PillButton.h"

#include <QtGui/QFontMetrics>
#include <QtGui/QPainter>

#include <ornwhatsnew/WhatsNewTypes.h>

#include "ornwhatsnewqt/src/PanelStyle.h"

namespace ornwhatsnewqt {
namespace {

constexpr int kTickWidth = 20;

QFont fontOf(const PanelStyle& style, const QAbstractButton& button, PillLook look) {
  switch (look) {
    case PillLook::Tab:
      return style.font(ornwhatsnew::kFontSize_Buttons,
                        button.isChecked() ? QFont::DemiBold : QFont::Normal);
    case PillLook::Action:
      return style.font(ornwhatsnew::kFontSize_NormalSmall, QFont::DemiBold);
    case PillLook::Choice:
      break;
  }
  return style.font(ornwhatsnew::kFontSize_NormalSmall);
}

QMargins paddingOf(PillLook look) {
  return look == PillLook::Tab ? QMargins(0, 4, 0, 8) : QMargins(14, 6, 14, 6);
}

/// Draws a tick, so that colour is not the only sign of a checked button.
void drawTick(QPainter& painter, const QRectF& rect, const QColor& color) {
  painter.setPen(QPen(color, 2, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
  painter.setBrush(Qt::NoBrush);
  const QPointF center = rect.center();
  painter.drawPolyline(QPolygonF(
      {center + QPointF(-4.5, 0), center + QPointF(-1.5, 3.5), center + QPointF(4.5, -3.5)}));
}

void drawRing(QPainter& painter, const QRectF& rect, qreal radius, const QColor& color) {
  painter.setPen(QPen(color, 2));
  painter.setBrush(Qt::NoBrush);
  painter.drawRoundedRect(rect.adjusted(1, 1, -1, -1), radius, radius);
}

struct PillColors {
  QColor fill;
  QColor outline;
  QColor text;
};

PillColors colorsOf(const PanelStyle& style, const QAbstractButton& button, PillLook look) {
  if (look == PillLook::Action) {
    if (!button.isEnabled()) return {Qt::transparent, style.cardOutline, style.secondary};
    return {style.accent, style.accent, style.accentText};
  }
  const bool isLit = button.isChecked() || button.isDown() || button.underMouse();
  return {isLit ? style.accentFill : style.card,
          button.isChecked() ? style.accent : style.secondary,
          button.isChecked() ? style.accent : style.text};
}

void paintTab(QPainter& painter, const QAbstractButton& button, const PanelStyle& style) {
  const QRect content = button.rect().adjusted(kRingSpace, kRingSpace, -kRingSpace, -kRingSpace);
  painter.setPen(button.isChecked() ? style.text : style.secondary);
  painter.setLayoutDirection(button.layoutDirection());
  painter.drawText(content.marginsRemoved(paddingOf(PillLook::Tab)),
                   Qt::AlignLeft | Qt::AlignVCenter, button.text());
  if (button.isChecked() && button.isEnabled()) {
    const QRectF line(content.left(), content.bottom() - 3, content.width(), 3);
    painter.setPen(Qt::NoPen);
    painter.setBrush(style.accent);
    painter.drawRoundedRect(line, 1.5, 1.5);
  }
  if (button.hasFocus()) drawRing(painter, button.rect(), 4, style.accent);
}

}  // namespace

QSize pillSize(const QAbstractButton& button, PillLook look) {
  const PanelStyle style(button.palette(), button.font());
  QFont font = fontOf(style, button, look);
  // Measure the text of a tab in bold even if the tab is not checked. Otherwise, the tab would grow
  // when the user checks it.
  if (look == PillLook::Tab) font.setWeight(QFont::DemiBold);
  const QSize text = QFontMetrics(font).size(Qt::TextSingleLine, button.text());
  const int tick = look == PillLook::Choice ? kTickWidth : 0;
  return text.grownBy(paddingOf(look)) + QSize(tick + 2 * kRingSpace, 2 * kRingSpace);
}

void paintPill(QAbstractButton& button, PillLook look) {
  const PanelStyle style(button.palette(), button.font());
  QPainter painter(&button);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setFont(fontOf(style, button, look));
  if (look == PillLook::Tab) {
    paintTab(painter, button, style);
    return;
  }
  const PillColors colors = colorsOf(style, button, look);
  const QRectF shape =
      QRectF(button.rect())
          .adjusted(kRingSpace + 0.5, kRingSpace + 0.5, -kRingSpace - 0.5, -kRingSpace - 0.5);
  painter.setPen(QPen(colors.outline, 1));
  painter.setBrush(colors.fill);
  painter.drawRoundedRect(shape, shape.height() / 2, shape.height() / 2);

  QRectF text = shape;
  if (look == PillLook::Choice && button.isChecked()) {
    const bool isRightToLeft = button.layoutDirection() == Qt::RightToLeft;
    const qreal left = isRightToLeft ? shape.right() - 10 - kTickWidth : shape.left() + 10;
    drawTick(painter, QRectF(left, shape.top(), kTickWidth, shape.height()), colors.text);
    text.translate(isRightToLeft ? -kTickWidth / 2 : kTickWidth / 2, 0);
  }
  painter.setPen(colors.text);
  painter.drawText(text, Qt::AlignCenter, button.text());
  if (button.hasFocus()) {
    drawRing(painter, button.rect(), button.height() / 2.0 - 1, style.accent);
  }
}

}  // namespace ornwhatsnewqt
