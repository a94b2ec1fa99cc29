#include "ornwhatsnewqt/src/MessageBar.h"

#include <QtGui/QAccessible>
#include <QtGui/QPainter>
#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QLabel>

#include "ornwhatsnewqt/src/GlyphButton.h"
#include "ornwhatsnewqt/src/LocalizedText.h"
#include "ornwhatsnewqt/src/PanelStrings.h"
#include "ornwhatsnewqt/src/PanelStyle.h"

namespace ornwhatsnewqt {

MessageBar::MessageBar(QWidget* parent)
    : QFrame(parent), text_(new QLabel(this)), dismissButton_(new GlyphButton(Glyph::Close, this)) {
  text_->setObjectName(QStringLiteral("message"));
  text_->setTextFormat(Qt::PlainText);
  text_->setWordWrap(true);
  dismissButton_->setObjectName(QStringLiteral("dismiss"));
  auto* const layout = new QHBoxLayout(this);
  layout->setContentsMargins(18, 4, 6, 4);
  layout->addWidget(text_, 1);
  layout->addWidget(dismissButton_, 0, Qt::AlignTop);
  connect(dismissButton_, &QAbstractButton::clicked, this, &QWidget::hide);
  retranslate({});
  hide();
}

void MessageBar::retranslate(const QString& message) {
  setText(message);
  dismissButton_->setNames(localizedText(strings::kDismiss),
                           localizedText(strings::kDismissDescription));
}

void MessageBar::setText(const QString& message) {
  text_->setText(message);
  text_->setAccessibleName(message);
}

void MessageBar::setMessage(const QString& message) {
  if (message == text_->text()) return;
  setText(message);
  setVisible(!message.isEmpty());
  if (message.isEmpty()) return;
  QAccessibleEvent event(text_, QAccessible::Alert);
  QAccessible::updateAccessibility(&event);
}

void MessageBar::paintEvent(QPaintEvent* /*event*/) {
  const PanelStyle style(palette(), font());
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(style.warning, 1));
  painter.setBrush(style.card);
  painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), 8, 8);
  painter.setPen(Qt::NoPen);
  painter.setBrush(style.warning);
  const bool isRightToLeft = layoutDirection() == Qt::RightToLeft;
  painter.drawRoundedRect(QRectF(isRightToLeft ? width() - 10 : 6, 8, 4, height() - 16), 2, 2);
}

}  // namespace ornwhatsnewqt
