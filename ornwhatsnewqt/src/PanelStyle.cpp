#include "ornwhatsnewqt/src/PanelStyle.h"

#include <algorithm>
#include <cmath>

#include <QtCore/QEvent>
#include <QtGui/QFontInfo>
#include <QtWidgets/QLineEdit>

#include <ornwhatsnew/WhatsNewTypes.h>

namespace ornwhatsnewqt {
namespace {

// Level AA of WCAG 2 requires this contrast ratio for text of normal size.
constexpr qreal kMinimumContrast = 4.5;

qreal linearComponent(qreal component) {
  return component <= 0.03928 ? component / 12.92 : std::pow((component + 0.055) / 1.055, 2.4);
}

qreal luminance(const QColor& color) {
  return 0.2126 * linearComponent(color.redF()) + 0.7152 * linearComponent(color.greenF()) +
         0.0722 * linearComponent(color.blueF());
}

qreal contrast(const QColor& first, const QColor& second) {
  const auto [darker, lighter] = std::minmax({luminance(first), luminance(second)});
  return (lighter + 0.05) / (darker + 0.05);
}

QColor mix(const QColor& from, const QColor& to, float share) {
  const auto component = [share](int first, int second) {
    return first + qRound(share * static_cast<float>(second - first));
  };
  return QColor(component(from.red(), to.red()), component(from.green(), to.green()),
                component(from.blue(), to.blue()));
}

/// Returns `wanted` if it is readable on both backgrounds. Otherwise, returns a readable mixture
/// with `text`, in which the share of `text` is as small as possible and a multiple of 10 %.
/// Returns `text` if no mixture is readable.
QColor readable(const QColor& wanted, const QColor& text, const QColor& background,
                const QColor& otherBackground) {
  for (int tenths = 0; tenths < 10; ++tenths) {
    const QColor color = mix(wanted, text, 0.1F * static_cast<float>(tenths));
    const bool isReadable = contrast(color, background) >= kMinimumContrast &&
                            contrast(color, otherBackground) >= kMinimumContrast;
    if (isReadable) return color;
  }
  return text;
}

}  // namespace

PanelStyle::PanelStyle(const QPalette& palette, const QFont& font) : font_(font) {
  const auto color = [&palette](QPalette::ColorRole role) {
    return palette.color(QPalette::Active, role);
  };
  page = color(QPalette::Window);
  card = color(QPalette::Base);
  text = color(QPalette::Text);
  // In a high-contrast palette, cards often have the colour of the page. Only the outline then
  // separates the cards from the page.
  cardOutline = mix(card, text, contrast(page, card) < 1.02 ? 0.5F : 0.14F);

  const QColor highlight = color(QPalette::Highlight);
  const bool isDark = luminance(card) < luminance(text);
  const QColor amber = isDark ? QColor(0xF5, 0xB9, 0x4A) : QColor(0x8F, 0x4E, 0x00);
  accentFill = mix(card, highlight, 0.12F);
  secondary = readable(mix(text, card, 0.38F), text, card, page);
  link = readable(color(QPalette::Link), text, card, page);
  warning = readable(amber, text, card, page);
  accent = readable(highlight, text, accentFill, page);
  accentText = contrast(accent, card) >= contrast(accent, text) ? card : text;
  selection = highlight;
  selectionText = color(QPalette::HighlightedText);

  const qreal desktopSize = QFontInfo(font).pixelSize();
  scale_ = std::max<qreal>(1, desktopSize / qreal{ornwhatsnew::kFontSize_NormalSmall});
}

QFont PanelStyle::font(float size, QFont::Weight weight) const {
  QFont font = font_;
  font.setPixelSize(static_cast<int>(std::lround(qreal{size} * scale_)));
  font.setWeight(weight);
  return font;
}

bool changesPanelStyle(const QEvent& event) {
  return event.type() == QEvent::PaletteChange || event.type() == QEvent::FontChange ||
         event.type() == QEvent::StyleChange;
}

void setFieldStyle(QLineEdit& field, const PanelStyle& style) {
  field.setFont(style.font(ornwhatsnew::kFontSize_NormalSmall));
  field.setStyleSheet(
      QStringLiteral("QLineEdit { color: %1; background: %2; border: 1px solid %3;"
                     " border-radius: 6px; padding: 4px 8px; }"
                     "QLineEdit:focus { border: 2px solid %4; padding: 3px 7px; }")
          .arg(style.text.name(), style.card.name(), style.secondary.name(), style.accent.name()));
}

}  // namespace ornwhatsnewqt
