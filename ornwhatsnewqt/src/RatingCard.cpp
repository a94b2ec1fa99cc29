#include "ornwhatsnewqt/src/RatingCard.h"

#include <QtCore/QEvent>
#include <QtCore/QLocale>
#include <QtGui/QAccessible>
#include <QtGui/QPainter>
#include <QtWidgets/QButtonGroup>
#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QRadioButton>
#include <QtWidgets/QVBoxLayout>

#include <ornwhatsnew/WhatsNewTypes.h>

#include "ornwhatsnewqt/src/FlowLayout.h"
#include "ornwhatsnewqt/src/LocalizedText.h"
#include "ornwhatsnewqt/src/NewsFormats.h"
#include "ornwhatsnewqt/src/PanelStrings.h"
#include "ornwhatsnewqt/src/PanelStyle.h"
#include "ornwhatsnewqt/src/PillButton.h"
#include "ornwhatsnewqt/src/SafeText.h"

namespace ornwhatsnewqt {
namespace {

void setLook(QLabel& label, const QFont& font, const QColor& color) {
  QPalette colors;
  colors.setColor(QPalette::WindowText, color);
  label.setPalette(colors);
  label.setFont(font);
}

}  // namespace

RatingCard::RatingCard(const ornwhatsnew::RatingRequest& request, QWidget* parent)
    : QFrame(parent) {
  auto* const layout = new QVBoxLayout(this);
  const int side = ornwhatsnew::kRightMargin - kRingSpace;
  layout->setContentsMargins(side, kCardPadding, side, kCardPadding);
  layout->setSpacing(8);
  title_ = addLabel("title");
  description_ = addLabel("description");
  question_ = addLabel("question");
  addChoices();
  addComment();
  thanks_ = addLabel("thanks");
  thanks_->hide();
  applyStyle();
  setRequest(request);
}

QLabel* RatingCard::addLabel(const char* name) {
  auto* const label = new QLabel(this);
  label->setObjectName(QLatin1String(name));
  label->setTextFormat(Qt::PlainText);
  label->setWordWrap(true);
  label->setContentsMargins(kRingSpace, 0, kRingSpace, 0);
  layout()->addWidget(label);
  return label;
}

void RatingCard::addChoices() {
  choices_ = new QWidget(this);
  choices_->setObjectName(QStringLiteral("choices"));
  auto* const row = new FlowLayout(2);
  choices_->setLayout(row);
  stars_ = new QButtonGroup(this);
  for (int stars = 1; stars <= 5; ++stars) {
    auto* const choice = new Pill<QRadioButton>(PillLook::Choice, choices_);
    row->addWidget(choice);
    stars_->addButton(choice, stars);
  }
  layout()->addWidget(choices_);
}

void RatingCard::addComment() {
  comment_ = new QLineEdit(this);
  comment_->setObjectName(QStringLiteral("comment"));

  auto* const sendButton = new Pill<QPushButton>(PillLook::Action, this);
  sendButton->setObjectName(QStringLiteral("send"));
  // Without this call, Enter in any widget of a dialog would send the rating of the first card.
  sendButton->setAutoDefault(false);
  sendButton->setEnabled(false);
  sendButton_ = sendButton;
  auto* const row = new QHBoxLayout;
  row->setContentsMargins(kRingSpace, 0, 0, 0);
  row->setSpacing(8);
  row->addWidget(comment_, 1);
  row->addWidget(sendButton_);
  static_cast<QVBoxLayout*>(layout())->addLayout(row);
  connect(stars_, &QButtonGroup::idToggled, sendButton_, [this] { sendButton_->setEnabled(true); });
  connect(comment_, &QLineEdit::returnPressed, sendButton_, &QPushButton::click);
  connect(sendButton_, &QPushButton::clicked, this, &RatingCard::send);
}

void RatingCard::applyStyle() {
  const PanelStyle style(palette(), font());
  setLook(*title_, style.font(ornwhatsnew::kFontSize_Buttons, QFont::DemiBold), style.text);
  setLook(*question_, style.font(ornwhatsnew::kFontSize_Normal), style.text);
  setLook(*description_, style.font(ornwhatsnew::kFontSize_NormalSmall), style.secondary);
  setLook(*thanks_, style.font(ornwhatsnew::kFontSize_Normal, QFont::Medium), style.accent);
  setFieldStyle(*comment_, style);
}

void RatingCard::setRequest(const ornwhatsnew::RatingRequest& request) {
  itemKey_ = QString::fromStdString(request.itemKey);
  title_->setText(safeText(request.title));
  description_->setText(safeText(request.description));
  description_->setVisible(!request.description.empty());
  hasOwnQuestion_ = !request.question.empty();
  if (hasOwnQuestion_) question_->setText(safeText(request.question));
  retranslate();
}

void RatingCard::retranslate() {
  if (!hasOwnQuestion_) question_->setText(localizedText(strings::kQuestion));
  setAccessibleName(title_->text());
  choices_->setAccessibleName(question_->text());
  for (int stars = 1; stars <= 5; ++stars) {
    QAbstractButton& choice = *stars_->button(stars);
    choice.setText(localizedText(strings::kStarNames[static_cast<std::size_t>(stars - 1)]));
    choice.setAccessibleDescription(localizedText(strings::kStars, {QLocale().toString(stars)}) +
                                    QStringLiteral(", ") + title_->text());
    choice.setToolTip(localizedText(strings::kStars, {QLocale().toString(stars)}));
  }
  comment_->setPlaceholderText(localizedText(strings::kComment));
  comment_->setAccessibleName(localizedText(strings::kComment));
  comment_->setAccessibleDescription(localizedText(strings::kCommentDescription));
  sendButton_->setText(localizedText(strings::kSend));
  sendButton_->setAccessibleDescription(localizedText(strings::kSendDescription, {title_->text()}));
  thanks_->setText(localizedText(strings::kThanks));
}

void RatingCard::focusChoice() {
  QAbstractButton* const checked = stars_->checkedButton();
  (checked != nullptr ? checked : stars_->button(1))->setFocus(Qt::OtherFocusReason);
}

void RatingCard::send() {
  if (isRated_) return;
  isRated_ = true;
  thanks_->show();
  QAccessibleEvent event(thanks_, QAccessible::Alert);
  QAccessible::updateAccessibility(&event);
  // Emit the signal before hiding the widgets, because its receiver moves the focus to the next
  // card that is not rated. If a widget is hidden while it has the focus, Qt moves the focus,
  // possibly out of this page.
  Q_EMIT rated(stars_->checkedId(), comment_->text().trimmed());
  for (QWidget* widget :
       {static_cast<QWidget*>(question_), static_cast<QWidget*>(description_), choices_,
        static_cast<QWidget*>(comment_), static_cast<QWidget*>(sendButton_)})
    widget->hide();
}

void RatingCard::changeEvent(QEvent* event) {
  // The card can receive a change event before its constructor has created `thanks_`, the last
  // widget.
  if (changesPanelStyle(*event) && thanks_ != nullptr) applyStyle();
  QFrame::changeEvent(event);
}

void RatingCard::paintEvent(QPaintEvent* /*event*/) {
  const PanelStyle style(palette(), font());
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(style.cardOutline, 1));
  painter.setBrush(style.card);
  painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), kCardRadius, kCardRadius);
}

}  // namespace ornwhatsnewqt
